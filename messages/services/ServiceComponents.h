#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class RtkChangeComponentStatus;
class ServiceCompTagAction;
class ServiceComponent;
class ServiceComponentList;
class ServiceComponentTag;
class StreamPidsRequest;
class StreamPidsResponse;

void write(JsonWriter& json, ServiceComponent& message);
void read(JsonReader& json, ServiceComponent& message);

void write(JsonWriter& json, ServiceComponentList& message);
void read(JsonReader& json, ServiceComponentList& message);

void write(JsonWriter& json, ServiceComponentTag& message);
void read(JsonReader& json, ServiceComponentTag& message);

void write(JsonWriter& json, ServiceCompTagAction& message);
void read(JsonReader& json, ServiceCompTagAction& message);

void write(JsonWriter& json, RtkChangeComponentStatus& message);
void read(JsonReader& json, RtkChangeComponentStatus& message);

void write(JsonWriter& json, StreamPidsRequest& message);
void read(JsonReader& json, StreamPidsRequest& message);

void write(JsonWriter& json, StreamPidsResponse& message);
void read(JsonReader& json, StreamPidsResponse& message);

}  // namespace Orvu
