#include "bench/CJsonEvents.h"

#include "bench/CJsonFields.h"

namespace OrvuBench {
namespace {

bool startsBefore(const Event& a, const Event& b)
{
    return a.startTime < b.startTime;
}

}  // namespace

void readFields(const cJSON* tree, Linkage& linkage)
{
    read(tree, "tsId", linkage.tsId);
    read(tree, "networkId", linkage.networkId);
    read(tree, "serviceId", linkage.serviceId);
    read(tree, "type", linkage.type);
}

void readFields(const cJSON* tree, Hyperlink& link)
{
    read(tree, "type", link.type);
    read(tree, "destinationType", link.destinationType);
    read(tree, "tsId", link.tsId);
    read(tree, "networkId", link.networkId);
    read(tree, "eventId", link.eventId);
    read(tree, "componentTag", link.componentTag);
    read(tree, "moduleId", link.moduleId);
    read(tree, "serviceId", link.serviceId);
    read(tree, "contentId", link.contentId);
    read(tree, "url", link.url);
}

void readFields(const cJSON* tree, Series& series)
{
    read(tree, "id", series.id);
    read(tree, "url", series.url);
    read(tree, "repeatLabel", series.repeatLabel);
    read(tree, "programPattern", series.programPattern);
    read(tree, "episodeNumber", series.episodeNumber);
    read(tree, "lastEpisodeNumber", series.lastEpisodeNumber);
    read(tree, "name", series.name);
}

void readFields(const cJSON* tree, RelatedEvent& event)
{
    read(tree, "id", event.id);
    read(tree, "tsId", event.tsId);
    read(tree, "networkId", event.networkId);
    read(tree, "serviceId", event.serviceId);
}

void readFields(const cJSON* tree, RelatedEvents& group)
{
    read(tree, "type", group.type);
    readStructs(tree, "eventGroupDescriptor", group.events);
}

void readFields(const cJSON* tree, ScrambledUnit& unit)
{
    read(tree, "id", unit.id);
    read(tree, "caUnit", unit.componentTags);
}

void readFields(const cJSON* tree, Components& components)
{
    read(tree, "id", components.id);
    read(tree, "totalBitRate", components.totalBitRate);
    read(tree, "description", components.description);
    readStruct(tree, "caUnit", components.unit);
}

void readFields(const cJSON* tree, ComponentsByType& group)
{
    read(tree, "type", group.type);
    readStructs(tree, "componentGroupDescriptor", group.components);
}

void readFields(const cJSON* tree, Event& event)
{
    read(tree, "startTime", event.startTime);
    read(tree, "endTime", event.endTime);
    read(tree, "runningStatus", event.runningStatus);
    read(tree, "name", event.name);
    read(tree, "originalNetworkId", event.originalNetworkId);
    read(tree, "shortDescription", event.shortDescription);
    read(tree, "extendedDescription", event.extendedDescription);
    read(tree, "copyrightId", event.copyrightId);
    read(tree, "copyrightInfo", event.copyrightInfo);
    read(tree, "parentalRating", event.parentalRating);
    read(tree, "parentalRatingDescription", event.parentalRatingDescription);
    read(tree, "audioLanguageCode", event.audioLanguageCode);
    read(tree, "audioLanguageCode2", event.audioLanguageCode2);
    read(tree, "dataContentLanguageCode", event.dataContentLanguageCode);
    read(tree, "dataContentText", event.dataContentText);
    read(tree, "hasInteractivity", event.hasInteractivity);
    read(tree, "logoURI", event.logoURI);
    read(cJSON_GetObjectItem(tree, "contentDescription"), "contentDescription", event.genre);
    readStruct(tree, "linkage", event.linkage);
    readStruct(tree, "hyperlink", event.hyperlink);
    readStruct(tree, "series", event.series);
    readStruct(tree, "eventGroup", event.eventGroup);
    readStruct(tree, "componentGroup", event.componentGroup);
}

void readFields(const cJSON* tree, EventList& list)
{
    read(tree, "serviceContextId", list.serviceContextId);
    readStructs(tree, "schedule", list.schedule);
    if (!std::is_sorted(list.schedule.begin(), list.schedule.end(), startsBefore))
        std::sort(list.schedule.begin(), list.schedule.end(), startsBefore);
    read(tree, "timestamp", list.timestamp);
}

void addFields(cJSON* tree, const Linkage& linkage)
{
    add(tree, "tsId", linkage.tsId);
    add(tree, "networkId", linkage.networkId);
    add(tree, "serviceId", linkage.serviceId);
    add(tree, "type", linkage.type);
    add(tree, "data", linkage.data);
}

void addFields(cJSON* tree, const Hyperlink& link)
{
    add(tree, "type", link.type);
    add(tree, "destinationType", link.destinationType);
    add(tree, "tsId", link.tsId);
    add(tree, "networkId", link.networkId);
    add(tree, "eventId", link.eventId);
    add(tree, "componentTag", link.componentTag);
    add(tree, "moduleId", link.moduleId);
    add(tree, "serviceId", link.serviceId);
    add(tree, "contentId", link.contentId);
    add(tree, "url", link.url);
}

void addFields(cJSON* tree, const Series& series)
{
    add(tree, "id", series.id);
    add(tree, "url", series.url);
    add(tree, "repeatLabel", series.repeatLabel);
    add(tree, "programPattern", series.programPattern);
    add(tree, "episodeNumber", series.episodeNumber);
    add(tree, "lastEpisodeNumber", series.lastEpisodeNumber);
    add(tree, "name", series.name);
}

void addFields(cJSON* tree, const RelatedEvent& event)
{
    add(tree, "id", event.id);
    add(tree, "tsId", event.tsId);
    add(tree, "networkId", event.networkId);
    add(tree, "serviceId", event.serviceId);
}

void addFields(cJSON* tree, const RelatedEvents& group)
{
    add(tree, "type", group.type);
    addStructs(tree, "eventGroupDescriptor", group.events);
}

void addFields(cJSON* tree, const ScrambledUnit& unit)
{
    add(tree, "id", unit.id);
    add(tree, "caUnit", unit.componentTags);
}

void addFields(cJSON* tree, const Components& components)
{
    add(tree, "id", components.id);
    add(tree, "totalBitRate", components.totalBitRate);
    add(tree, "description", components.description);
    addStruct(tree, "caUnit", components.unit);
}

void addFields(cJSON* tree, const ComponentsByType& group)
{
    add(tree, "type", group.type);
    addStructs(tree, "componentGroupDescriptor", group.components);
}

void addFields(cJSON* tree, const Event& event)
{
    addOrNull(tree, "startTime", event.startTime);
    addOrNull(tree, "endTime", event.endTime);
    add(tree, "runningStatus", event.runningStatus);
    addOrNull(tree, "name", event.name);
    add(tree, "originalNetworkId", event.originalNetworkId);
    addOrNull(tree, "shortDescription", event.shortDescription);
    addOrNull(tree, "extendedDescription", event.extendedDescription);
    addOrNull(tree, "copyrightId", event.copyrightId);
    addOrNull(tree, "copyrightInfo", event.copyrightInfo);
    add(tree, "parentalRating", event.parentalRating);
    addOrNull(tree, "parentalRatingDescription", event.parentalRatingDescription);
    addOrNull(tree, "audioLanguageCode", event.audioLanguageCode);
    addOrNull(tree, "audioLanguageCode2", event.audioLanguageCode2);
    addOrNull(tree, "dataContentLanguageCode", event.dataContentLanguageCode);
    addOrNull(tree, "dataContentText", event.dataContentText);
    add(tree, "hasInteractivity", event.hasInteractivity);
    addOrNull(tree, "logoURI", event.logoURI);
    add(tree, "contentDescription", event.genre);
    addStruct(tree, "linkage", event.linkage);
    addStruct(tree, "hyperlink", event.hyperlink);
    addStruct(tree, "series", event.series);
    addStruct(tree, "eventGroup", event.eventGroup);
    addStruct(tree, "componentGroup", event.componentGroup);
}

Text print(const EventList& list)
{
    const Tree tree(cJSON_CreateObject());
    cJSON_AddStringToObject(tree.get(), "HEADER", "eventInfoList");
    add(tree.get(), "serviceContextId", list.serviceContextId);
    addStructs(tree.get(), "schedule", list.schedule);
    add(tree.get(), "timestamp", list.timestamp);
    return Text(cJSON_Print(tree.get()));
}

}  // namespace OrvuBench
