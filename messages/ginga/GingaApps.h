#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class GingaAppAction;
class GingaAppList;
class RestGingaApp;

void write(JsonWriter& json, RestGingaApp& message);
void read(JsonReader& json, RestGingaApp& message);

void write(JsonWriter& json, GingaAppList& message);
void read(JsonReader& json, GingaAppList& message);

void write(JsonWriter& json, GingaAppAction& message);
void read(JsonReader& json, GingaAppAction& message);

}  // namespace Orvu
