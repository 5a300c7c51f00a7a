#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class Position;

void write(JsonWriter& json, Position& position);
void read(JsonReader& json, Position& position);

}  // namespace Orvu
