#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class CAUnit;
class ComponentGroup;
class ComponentGroupDescriptor;
class ContentDescriptor;
class EventGroup;
class EventGroupDescriptor;
class HyperlinkDescriptor;
class LinkageDescriptor;
class SeriesDescriptor;

void write(JsonWriter& json, ContentDescriptor& message);
void read(JsonReader& json, ContentDescriptor& message);

void write(JsonWriter& json, LinkageDescriptor& message);
void read(JsonReader& json, LinkageDescriptor& message);

void write(JsonWriter& json, HyperlinkDescriptor& message);
void read(JsonReader& json, HyperlinkDescriptor& message);

void write(JsonWriter& json, SeriesDescriptor& message);
void read(JsonReader& json, SeriesDescriptor& message);

void write(JsonWriter& json, EventGroupDescriptor& message);
void read(JsonReader& json, EventGroupDescriptor& message);

void write(JsonWriter& json, EventGroup& message);
void read(JsonReader& json, EventGroup& message);

void write(JsonWriter& json, CAUnit& message);
void read(JsonReader& json, CAUnit& message);

void write(JsonWriter& json, ComponentGroupDescriptor& message);
void read(JsonReader& json, ComponentGroupDescriptor& message);

void write(JsonWriter& json, ComponentGroup& message);
void read(JsonReader& json, ComponentGroup& message);

}  // namespace Orvu
