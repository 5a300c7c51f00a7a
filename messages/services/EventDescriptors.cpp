#include "orvu/EventDescriptors.h"

#include "messages/core/Message.h"

// Descriptors travel inside an event: none of them ever writes a header.

namespace Orvu {
namespace {

/// The four nibbles, from an array of exactly four items.
struct AsNibbles {
    int (&nibbles)[4];

    const Expected& expected() const { return kExpectedNumbers; }
    bool read(JsonReader&, JsonValue value) const
    {
        if (value.items().size() != 4) return true;  // another length changes nothing and is not a fault
        int* next = nibbles;
        for (const JsonValue nibble : value.items()) {
            *next = 0;
            nibble.integer(*next++);  // of any item, so 1 for true; eachNumber() takes numbers alone
        }
        return true;
    }
};

}  // namespace

ContentDescriptor::ContentDescriptor() : Serializable(kDataType) {}
ContentDescriptor::~ContentDescriptor() = default;

void write(JsonWriter& json, ContentDescriptor& content)
{
    json.list("contentDescription", content.content);
}

void read(JsonReader& json, ContentDescriptor& content)
{
    json.required("contentDescription", AsNibbles{content.content});
}

MESSAGE(ContentDescriptor, Compact)

LinkageDescriptor::LinkageDescriptor() : Serializable(kDataType) {}
LinkageDescriptor::~LinkageDescriptor() = default;

void write(JsonWriter& json, LinkageDescriptor& linkage)
{
    json.put("tsId", linkage.tsId);
    json.put("networkId", linkage.networkId);
    json.put("serviceId", linkage.serviceId);
    json.put("type", linkage.type);
    json.put("data", linkage.data);
}

void read(JsonReader& json, LinkageDescriptor& linkage)
{
    json.optional("tsId", linkage.tsId);
    json.optional("networkId", linkage.networkId);
    json.optional("serviceId", linkage.serviceId);
    json.optional("type", linkage.type);
    json.ignored("data");  // written, never read back
}

MESSAGE(LinkageDescriptor, Compact)

HyperlinkDescriptor::HyperlinkDescriptor() : Serializable(kDataType) {}
HyperlinkDescriptor::~HyperlinkDescriptor() = default;

void write(JsonWriter& json, HyperlinkDescriptor& hyperlink)
{
    json.put("type", hyperlink.type);
    json.put("destinationType", hyperlink.destinationType);
    json.put("tsId", hyperlink.tsId);
    json.put("networkId", hyperlink.networkId);
    json.put("eventId", hyperlink.eventId);
    json.put("componentTag", hyperlink.componentTag);
    json.put("moduleId", hyperlink.moduleId);
    json.put("serviceId", hyperlink.serviceId);
    json.put("contentId", hyperlink.contentId);
    json.put("url", hyperlink.url);
}

void read(JsonReader& json, HyperlinkDescriptor& hyperlink)
{
    json.optional("type", hyperlink.type);
    json.optional("destinationType", hyperlink.destinationType);
    json.optional("tsId", hyperlink.tsId);
    json.optional("networkId", hyperlink.networkId);
    json.optional("eventId", hyperlink.eventId);
    json.optional("componentTag", hyperlink.componentTag);
    json.optional("moduleId", hyperlink.moduleId);
    json.optional("serviceId", hyperlink.serviceId);
    json.optional("contentId", hyperlink.contentId);
    json.optional("url", hyperlink.url);
}

MESSAGE(HyperlinkDescriptor, Compact)

SeriesDescriptor::SeriesDescriptor() : Serializable(kDataType) {}
SeriesDescriptor::~SeriesDescriptor() = default;

void write(JsonWriter& json, SeriesDescriptor& series)
{
    json.put("id", series.id);
    json.put("url", series.url);  // a number, whatever its name says
    json.put("repeatLabel", series.repeatLabel);
    json.put("programPattern", series.programPattern);
    json.put("episodeNumber", series.episodeNumber);
    json.put("lastEpisodeNumber", series.lastEpisodeNumber);
    json.put("name", series.name);
}

void read(JsonReader& json, SeriesDescriptor& series)
{
    json.optional("id", series.id);
    json.optional("url", series.url);
    json.optional("repeatLabel", series.repeatLabel);
    json.optional("programPattern", series.programPattern);
    json.optional("episodeNumber", series.episodeNumber);
    json.optional("lastEpisodeNumber", series.lastEpisodeNumber);
    json.optional("name", series.name);
}

MESSAGE(SeriesDescriptor, Compact)

EventGroupDescriptor::EventGroupDescriptor() : Serializable(kDataType) {}
EventGroupDescriptor::~EventGroupDescriptor() = default;

void write(JsonWriter& json, EventGroupDescriptor& descriptor)
{
    json.put("id", descriptor.id);
    json.put("tsId", descriptor.tsId);
    json.put("networkId", descriptor.networkId);
    json.put("serviceId", descriptor.serviceId);
}

void read(JsonReader& json, EventGroupDescriptor& descriptor)
{
    json.optional("id", descriptor.id);
    json.optional("tsId", descriptor.tsId);
    json.optional("networkId", descriptor.networkId);
    json.optional("serviceId", descriptor.serviceId);
}

MESSAGE(EventGroupDescriptor, Compact)

}  // namespace Orvu
