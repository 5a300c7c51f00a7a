#include "orvu/EventInformation.h"

#include <algorithm>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {
namespace {

/// The four nibbles as a bare array; null without a descriptor.
struct AsBareNibbles {
    const ContentDescriptor* descriptor;

    void write(JsonWriter& json) const
    {
        if (!descriptor) return json.null();
        json.array(descriptor->content, [&](int nibble) { json.value(nibble); });
    }
};

/// A number, or null when it is below 1.
struct AsNullBelowOne {
    int number;

    void write(JsonWriter& json) const { number < 1 ? json.null() : json.value(number); }
};
AsNullBelowOne asNullBelowOne(int number)
{
    return {number};
}

/// A schedule in order stays as it is, so that events of equal times are not exchanged by being read once more.
void putInOrder(std::vector<EventInfo*>& schedule)
{
    if (!std::is_sorted(schedule.begin(), schedule.end(), EventInfoList::compare)) {
        std::sort(schedule.begin(), schedule.end(), EventInfoList::compare);
    }
}

}  // namespace

EventInfo::EventInfo() : Serializable(kDataType) {}

EventInfo::~EventInfo()
{
    delete contentDescription;
    delete linkage;
    delete hyperlink;
    delete series;
    delete eventGroup;
    delete componentGroup;
}

void write(JsonWriter& json, EventInfo& event)
{
    json.headerIfSet(event);
    json.put("startTime", asNullWhenEmpty(event.startTime));
    json.put("endTime", asNullWhenEmpty(event.endTime));
    json.put("runningStatus", event.runningStatus);
    json.put("name", asNullWhenEmpty(event.name));
    json.put("originalNetworkId", event.originalNetworkId);
    json.put("shortDescription", asNullWhenEmpty(event.shortDescription));
    json.put("extendedDescription", asNullWhenEmpty(event.extendedDescription));
    json.put("copyrightId", asNullBelowOne(event.copyrightId));
    json.put("copyrightInfo", asNullWhenEmpty(event.copyrightInfo));
    json.put("parentalRating", event.parentalRating);
    json.put("parentalRatingDescription", asNullBelowOne(event.parentalRatingDescription));
    json.put("audioLanguageCode", asNullWhenEmpty(event.audioLanguageCode));
    json.put("audioLanguageCode2", asNullWhenEmpty(event.audioLanguageCode2));
    json.put("dataContentLanguageCode", asNullWhenEmpty(event.dataContentLanguageCode));
    json.put("dataContentText", asNullWhenEmpty(event.dataContentText));
    json.put("hasInteractivity", event.hasInteractivity);
    json.put("logoURI", asNullWhenEmpty(event.logoURI));
    json.put("contentDescription", AsBareNibbles{event.contentDescription});  // its reader expects an object around it
    json.put("linkage", orNull(asIs(event.linkage)));
    json.put("hyperlink", orNull(asIs(event.hyperlink)));
    json.put("series", orNull(minified(event.series)));
    json.put("eventGroup", orNull(minified(event.eventGroup)));
    json.put("componentGroup", orNull(minified(event.componentGroup)));
}

void read(JsonReader& json, EventInfo& event)
{
    json.optional("startTime", event.startTime);
    json.optional("endTime", event.endTime);
    json.optional("runningStatus", event.runningStatus);
    json.optional("name", event.name);
    json.optional("originalNetworkId", event.originalNetworkId);
    json.optional("shortDescription", event.shortDescription);
    json.optional("extendedDescription", event.extendedDescription);
    json.optional("copyrightId", event.copyrightId);
    json.optional("copyrightInfo", event.copyrightInfo);
    json.optional("parentalRating", event.parentalRating);
    json.optional("parentalRatingDescription", event.parentalRatingDescription);
    json.optional("audioLanguageCode", event.audioLanguageCode);
    json.optional("audioLanguageCode2", event.audioLanguageCode2);
    json.optional("dataContentLanguageCode", event.dataContentLanguageCode);
    json.optional("dataContentText", event.dataContentText);
    json.optional("hasInteractivity", event.hasInteractivity);
    json.optional("logoURI", event.logoURI);
    json.optional("contentDescription",
                  replaced(event.contentDescription));  // also by null, which reads as a default descriptor
    json.optional("linkage", replaced(event.linkage));
    json.optional("hyperlink", replaced(event.hyperlink));
    json.optional("series", replaced(event.series));
    json.optional("eventGroup", replaced(event.eventGroup));
    json.optional("componentGroup", replaced(event.componentGroup));
}

MESSAGE(EventInfo, Formatted)

EventInfoList::EventInfoList() : Serializable(kDataType) {}

EventInfoList::~EventInfoList()
{
    delete present;
    delete following;
    deleteAll(schedule);
}

void EventInfoList::addScheduleEvent(EventInfo* event)
{
    if (!event) return;
    putInOrder(schedule);  // times may be changed from outside
    const auto place = std::upper_bound(schedule.begin(), schedule.end(), event, compare);
    takeAt(schedule, place, event);
}

bool EventInfoList::compare(EventInfo* a, EventInfo* b)
{
    return b && (!a || a->startTime < b->startTime);  // nulls, which an application may have put there, come first
}

void write(JsonWriter& json, EventInfoList& list)
{
    json.header(list);
    json.putIf(!list.serviceContextId.empty(), "serviceContextId", list.serviceContextId);
    json.put("present", list.present);
    json.put("following", list.following);
    json.list("schedule", list.schedule);
    json.putIf(!list.timestamp.empty(), "timestamp", list.timestamp);
}

void read(JsonReader& json, EventInfoList& list)
{
    json.optional("serviceContextId", list.serviceContextId);
    json.optional("present", list.present);
    json.optional("following", list.following);
    const std::size_t before = list.schedule.size();
    json.required("schedule", list.schedule);
    if (list.schedule.size() > before) putInOrder(list.schedule);  // otherwise the order is the application's
    json.optional("timestamp", list.timestamp);
}

MESSAGE(EventInfoList, Formatted)

}  // namespace Orvu
