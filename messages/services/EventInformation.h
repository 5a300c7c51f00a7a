#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class BinaryData;
class EventInfo;
class EventInfoList;

void write(JsonWriter& json, BinaryData& message);
void read(JsonReader& json, BinaryData& message);

void write(JsonWriter& json, EventInfo& message);
void read(JsonReader& json, EventInfo& message);

void write(JsonWriter& json, EventInfoList& message);
void read(JsonReader& json, EventInfoList& message);

}  // namespace Orvu
