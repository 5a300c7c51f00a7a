#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class GingaEditCommand;
class NCLDocument;
class NCLEvent;
class NCLNode;
class NCLNodeAction;
class NCLNodeList;

void write(JsonWriter& json, NCLDocument& message);
void read(JsonReader& json, NCLDocument& message);

void write(JsonWriter& json, NCLEvent& message);
void read(JsonReader& json, NCLEvent& message);

void write(JsonWriter& json, NCLNode& message);
void read(JsonReader& json, NCLNode& message);

void write(JsonWriter& json, NCLNodeList& message);
void read(JsonReader& json, NCLNodeList& message);

void write(JsonWriter& json, NCLNodeAction& message);
void read(JsonReader& json, NCLNodeAction& message);

void write(JsonWriter& json, GingaEditCommand& message);
void read(JsonReader& json, GingaEditCommand& message);

}  // namespace Orvu
