#include "orvu/ServiceComponents.h"

#include <new>

#include "messages/core/Forms.h"
#include "messages/core/Json.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/core/Status.h"

namespace Orvu {
namespace {

/// A number that is written as hexadecimal text, and read from a number or a number text.
struct AsHex {
    int& field;

    void write(JsonWriter& json) const
    {
        const JsonText text(convertIntToStringHex(field));
        if (!text) throw std::bad_alloc();
        json.value(text.get());
    }
    const Expected& expected() const { return kExpectedNumberOrText; }
    bool read(JsonReader&, JsonValue value) const
    {
        if (value.integer(field)) return true;
        if (!value.isText()) return false;
        field = validateStringNumber(value.text());
        return true;
    }
};
AsHex asHex(int& field)
{
    return {field};
}

// Component tags as the broadcast standard allots them.
bool isVideo(int componentTag)
{
    return componentTag >= 0x00 && componentTag <= 0x0f;
}
bool isAudioOrCaption(int componentTag)
{
    return componentTag >= 0x10 && componentTag <= 0x37;
}

}  // namespace

ServiceComponent::ServiceComponent() : Serializable(kDataType) {}
ServiceComponent::~ServiceComponent()
{
    delete pos;
}

void write(JsonWriter& json, ServiceComponent& component)
{
    json.headerIfSet(component);
    json.put("streamType", component.streamType);
    json.put("componentTag", asHex(component.componentTag));
    json.put("pid", component.pid);
    json.putIf(!component.state.empty(), "state", component.state);
    json.putIf(component.streamContent >= 0, "streamContent", asHex(component.streamContent));
    json.putIf(component.componentType >= 0, "componentType", asHex(component.componentType));
    json.putIf(component.vol >= 0, "vol", component.vol);
    if (isVideo(component.componentTag) && component.pos) {  // only video has a place on the screen
        json.object("pos", [&] { contractOf<Position>().write(json, *component.pos); });
    }
    json.putIf(isAudioOrCaption(component.componentTag), "ISO639languageCode", component.ISO639languageCode);
    json.putIf(component.dataComponentId >= 0, "dataComponentId", component.dataComponentId);
}

void read(JsonReader& json, ServiceComponent& component)
{
    json.optional("streamType", component.streamType);
    json.optional("componentTag", asHex(component.componentTag));
    json.optional("pid", component.pid);
    json.optional("state", component.state);
    json.optional("streamContent", asHex(component.streamContent));
    json.optional("componentType", asHex(component.componentType));
    json.optional("vol", component.vol);
    json.optional("ISO639languageCode", component.ISO639languageCode);
    json.optional("pos", component.pos);
    json.optional("dataComponentId", component.dataComponentId);
}

MESSAGE(ServiceComponent, Formatted)

ServiceComponentList::ServiceComponentList() : Serializable(kDataType) {}
ServiceComponentList::~ServiceComponentList()
{
    deleteAll(components);
}
void ServiceComponentList::addComponent(ServiceComponent* component)
{
    take(components, component);
}

void write(JsonWriter& json, ServiceComponentList& list)
{
    json.header(list);
    json.list("components", list.components);
}

void read(JsonReader& json, ServiceComponentList& list)
{
    json.required("components", list.components);
}

MESSAGE(ServiceComponentList, Formatted)

ServiceComponentTag::ServiceComponentTag() : Serializable(kDataType) {}
ServiceComponentTag::~ServiceComponentTag() = default;

void write(JsonWriter& json, ServiceComponentTag& tag)
{
    json.headerIfSet(tag);
    json.put("componentTag", tag.componentTag);  // a number, where a ServiceComponent writes hexadecimal text
}

void read(JsonReader& json, ServiceComponentTag& tag)
{
    json.required("componentTag", tag.componentTag);
}

MESSAGE(ServiceComponentTag, Formatted)

RtkChangeComponentStatus::RtkChangeComponentStatus() : Serializable(kDataType) {}
RtkChangeComponentStatus::~RtkChangeComponentStatus() = default;

void write(JsonWriter& json, RtkChangeComponentStatus& status)
{
    json.headerIfSet(status);
    json.put("enableComponent", status.enableComponent);
    json.put("componentTag", status.componentTag);
}

void read(JsonReader& json, RtkChangeComponentStatus& status)
{
    json.optional("enableComponent", status.enableComponent);
    json.optional("componentTag", status.componentTag);
}

MESSAGE(RtkChangeComponentStatus, Formatted)

}  // namespace Orvu
