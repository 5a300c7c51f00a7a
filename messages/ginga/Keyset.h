#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class GingaKeyset;

void write(JsonWriter& json, GingaKeyset& message);
void read(JsonReader& json, GingaKeyset& message);

}  // namespace Orvu
