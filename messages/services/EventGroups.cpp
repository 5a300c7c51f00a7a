#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "orvu/EventDescriptors.h"

// Groups travel inside an event, without a header. Each is read by place: its list directly follows its number,
// under whatever name.

namespace Orvu {

EventGroup::EventGroup() : Serializable(kDataType) {}
EventGroup::~EventGroup()
{
    deleteAll(descriptors);
}
void EventGroup::addDescriptor(EventGroupDescriptor* descriptor)
{
    take(descriptors, descriptor);
}

void write(JsonWriter& json, EventGroup& group)
{
    json.put("type", group.type);
    json.list("eventGroupDescriptor", group.descriptors);
}

void read(JsonReader& json, EventGroup& group)
{
    if (!json.optional("type", group.type)) return;  // without a type the group stays as it is
    json.required("type", listAfter(group.descriptors));
}

MESSAGE(EventGroup, Compact)

ComponentGroup::ComponentGroup() : Serializable(kDataType) {}
ComponentGroup::~ComponentGroup()
{
    deleteAll(components);
}
void ComponentGroup::addComponent(ComponentGroupDescriptor* component)
{
    take(components, component);
}

void write(JsonWriter& json, ComponentGroup& group)
{
    json.put("type", group.type);
    json.list("componentGroupDescriptor", group.components);
}

void read(JsonReader& json, ComponentGroup& group)
{
    if (!json.optional("type", group.type)) return;  // without a type the group stays as it is
    json.required("type", listAfter(group.components));
}

MESSAGE(ComponentGroup, Compact)

ComponentGroupDescriptor::ComponentGroupDescriptor() : Serializable(kDataType), caUnit(new CAUnit) {}
ComponentGroupDescriptor::~ComponentGroupDescriptor()
{
    delete caUnit;
}

template <>
constexpr std::size_t kHeldSize<ComponentGroupDescriptor> = sizeof(CAUnit);

void write(JsonWriter& json, ComponentGroupDescriptor& descriptor)
{
    json.put("id", descriptor.id);
    json.put("totalBitRate", descriptor.totalBitRate);
    json.put("description", descriptor.description);
    json.put("caUnit", asIs(descriptor.caUnit));
}

void read(JsonReader& json, ComponentGroupDescriptor& descriptor)
{
    json.optional("id", descriptor.id);
    json.optional("totalBitRate", descriptor.totalBitRate);
    json.optional("description", descriptor.description);
    json.optional("caUnit", descriptor.caUnit);
}

MESSAGE(ComponentGroupDescriptor, Compact)

CAUnit::CAUnit() : Serializable(kDataType) {}
CAUnit::~CAUnit() = default;

void CAUnit::addComponentTag(int tag)
{
    addValue(componentTags, tag);
}

void write(JsonWriter& json, CAUnit& unit)
{
    json.put("id", unit.id);
    json.list("caUnit", unit.componentTags);
}

void read(JsonReader& json, CAUnit& unit)
{
    if (!json.optional("id", unit.id)) return;  // without an id the unit stays as it is
    json.required("id", listAfter(eachNumber([&](int tag) { unit.componentTags.push_back(tag); })));
}

MESSAGE(CAUnit, Compact)

}  // namespace Orvu
