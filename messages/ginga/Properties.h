#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class NodeProperties;
class PersistProperty;
class PersistentProperties;
class PersistentVariableValue;
class Property;

void write(JsonWriter& json, Property& message);
void read(JsonReader& json, Property& message);

void write(JsonWriter& json, NodeProperties& message);
void read(JsonReader& json, NodeProperties& message);

void write(JsonWriter& json, PersistentProperties& message);
void read(JsonReader& json, PersistentProperties& message);

void write(JsonWriter& json, PersistProperty& message);
void read(JsonReader& json, PersistProperty& message);

void read(JsonReader& json, PersistentVariableValue& message);

}  // namespace Orvu
