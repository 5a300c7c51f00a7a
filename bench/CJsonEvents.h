#pragma once

#include "bench/CJsonMessages.h"

namespace OrvuBench {

struct Linkage {
    int tsId = 0;
    int networkId = 0;
    int serviceId = 0;
    int type = 0;
    std::string data;
};

struct Hyperlink {
    int type = 0;
    int destinationType = 0;
    int tsId = 0;
    int networkId = 0;
    int eventId = 0;
    int componentTag = 0;
    int moduleId = 0;
    int serviceId = 0;
    int contentId = 0;
    std::string url;
};

struct Series {
    int id = 0;
    int url = 0;
    int repeatLabel = 0;
    int programPattern = 0;
    int episodeNumber = 0;
    int lastEpisodeNumber = 0;
    std::string name;
};

struct RelatedEvent {
    int id = 0;
    int tsId = 0;
    int networkId = 0;
    int serviceId = 0;
};

struct RelatedEvents {
    int type = 0;
    std::vector<RelatedEvent> events;
};

struct ScrambledUnit {
    int id = 0;
    std::vector<int> componentTags;
};

struct Components {
    int id = 0;
    int totalBitRate = 0;
    std::string description;
    ScrambledUnit unit;
};

struct ComponentsByType {
    int type = 0;
    std::vector<Components> components;
};

struct Event {
    std::string startTime;
    std::string endTime;
    int runningStatus = 0;
    std::string name;
    int originalNetworkId = 0;
    std::string shortDescription;
    std::string extendedDescription;
    int copyrightId = 0;
    std::string copyrightInfo;
    int parentalRating = 0;
    int parentalRatingDescription = 0;
    std::string audioLanguageCode;
    std::string audioLanguageCode2;
    std::string dataContentLanguageCode;
    std::string dataContentText;
    bool hasInteractivity = false;
    std::string logoURI;
    std::vector<int> genre;
    Linkage linkage;
    Hyperlink hyperlink;
    Series series;
    RelatedEvents eventGroup;
    ComponentsByType componentGroup;
};

/// The guide of one service with cJSON alone.
struct EventList {
    std::string serviceContextId;
    std::vector<Event> schedule;
    std::string timestamp;
};

/// As the library reads: the genre is expected in an object, which a written text does not have, the data of a linkage
/// is not read, and the schedule is sorted.
void readFields(const cJSON* tree, EventList& list);
Text print(const EventList& list);

}  // namespace OrvuBench
