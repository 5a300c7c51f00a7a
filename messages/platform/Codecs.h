#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class Codecs;
class DrmSystem;
class DrmSystemList;

void write(JsonWriter& json, Codecs& message);
void read(JsonReader& json, Codecs& message);

void write(JsonWriter& json, DrmSystem& message);
void read(JsonReader& json, DrmSystem& message);

void write(JsonWriter& json, DrmSystemList& message);
void read(JsonReader& json, DrmSystemList& message);

}  // namespace Orvu
