#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class Bounds;
class DisplayLayer;
class NetworkInterface;
class PlatformCapabilities;

void write(JsonWriter& json, Bounds& message);
void read(JsonReader& json, Bounds& message);

void write(JsonWriter& json, DisplayLayer& message);
void read(JsonReader& json, DisplayLayer& message);

void write(JsonWriter& json, NetworkInterface& message);
void read(JsonReader& json, NetworkInterface& message);

void write(JsonWriter& json, PlatformCapabilities& message);
void read(JsonReader& json, PlatformCapabilities& message);

}  // namespace Orvu
