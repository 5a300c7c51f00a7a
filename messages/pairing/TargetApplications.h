#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class DeepLink;
class TargetApp;
class TargetAppAction;
class TargetAppFilter;
class TargetAppList;
class TargetAppPerformAction;

void write(JsonWriter& json, TargetAppFilter& message);
void read(JsonReader& json, TargetAppFilter& message);

void write(JsonWriter& json, TargetApp& message);
void read(JsonReader& json, TargetApp& message);

void write(JsonWriter& json, TargetAppList& message);
void read(JsonReader& json, TargetAppList& message);

void write(JsonWriter& json, TargetAppAction& message);
void read(JsonReader& json, TargetAppAction& message);

void write(JsonWriter& json, TargetAppPerformAction& message);
void read(JsonReader& json, TargetAppPerformAction& message);

void write(JsonWriter& json, DeepLink& message);
void read(JsonReader& json, DeepLink& message);

}  // namespace Orvu
