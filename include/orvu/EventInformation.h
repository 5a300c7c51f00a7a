#pragma once

#include <string>
#include <vector>

#include "orvu/BinaryData.h"  // its classes used to be declared here
#include "orvu/EventDescriptors.h"
#include "orvu/Serializable.h"

namespace Orvu {

/// One event of the programme guide. Wire name "eventInfo".
class ORVU_EXPORT EventInfo : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventInfo;

    /// The applications agree on a form, such as "2026-11-21T20:30:00-03:00". Schedules are sorted by its bytes, so a
    /// fixed width and one offset for all events keep them in the order of time.
    std::string startTime;
    std::string endTime;                  ///< In the same form.
    int runningStatus = 0;                ///< running_status, 0 to 7, as signalled.
    std::string name;                     ///< Name of the event, UTF-8, as broadcast.
    int originalNetworkId = 0;            ///< original_network_id, 0 to 65535, as signalled.
    std::string shortDescription;         ///< UTF-8, as broadcast.
    std::string extendedDescription;      ///< UTF-8, as broadcast.
    int copyrightId = 0;                  ///< Copyright identifier, 1 or more. Written as null below 1.
    std::string copyrightInfo;            ///< Copyright text, UTF-8, as broadcast.
    int parentalRating = 0;               ///< rating of the parental_rating_descriptor, as signalled.
    int parentalRatingDescription = 0;    ///< Content descriptors, as signalled. Written as null below 1.
    std::string audioLanguageCode;        ///< First audio language: ISO 639-2, such as "por".
    std::string audioLanguageCode2;       ///< Second audio language: ISO 639-2; empty without one.
    std::string dataContentLanguageCode;  ///< Language of the data content: ISO 639-2.
    std::string dataContentText;          ///< Description of the data content, UTF-8, as broadcast.
    bool hasInteractivity = false;        ///< True when interactive applications accompany it.
    std::string logoURI;                  ///< URI of the event's logo; empty without one.
    /// Owned, may be null. Comes back as four zeros, whatever its values: written as a list, it is read as an object.
    ContentDescriptor* contentDescription = nullptr;
    /// Owned, may be null. Comes back as an empty descriptor when it is null, as the next four do: ask isEmpty().
    LinkageDescriptor* linkage = nullptr;
    HyperlinkDescriptor* hyperlink = nullptr;  ///< Owned, may be null. Comes back as an empty one when it is null.
    SeriesDescriptor* series = nullptr;        ///< Owned, may be null. Comes back as an empty one when it is null.
    EventGroup* eventGroup = nullptr;          ///< Owned, may be null. Comes back as an empty one when it is null.
    ComponentGroup* componentGroup = nullptr;  ///< Owned, may be null. Comes back as an empty one when it is null.

    EventInfo();
    ~EventInfo() override;
    EventInfo(const EventInfo&) = delete;
    EventInfo& operator=(const EventInfo&) = delete;

    /// Empty texts and missing descriptors are written as null.
    char* serialize() override;
    /// A descriptor that is present, null included, replaces the one held, which is the caller's from then on. A null
    /// key gives an empty descriptor.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The present and following events of a service, and its schedule. Wire name "eventInfoList".
class ORVU_EXPORT EventInfoList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventInfoList;

    std::string serviceContextId;    ///< Locator of the service.
    EventInfo* present = nullptr;    ///< The event on air. Owned, may be null.
    EventInfo* following = nullptr;  ///< The next event. Owned, may be null.
    /// Owned, sorted by `startTime`; deleted with the list. The applications decide whether `present` and `following`
    /// are in it, too.
    std::vector<EventInfo*> schedule;
    std::string timestamp;  ///< Time of the data, such as "2026-11-21T20:30:00-03:00"; not checked here.

    EventInfoList();
    ~EventInfoList() override;
    EventInfoList(const EventInfoList&) = delete;
    EventInfoList& operator=(const EventInfoList&) = delete;

    /// Adds `event` and takes it, and sorts the schedule; null is ignored. At most one pass over the schedule while it
    /// is sorted; events with equal times may change their order.
    void addScheduleEvent(EventInfo* event);
    /// Whether `a` starts before `b`, by the bytes of their `startTime`.
    static bool compare(EventInfo* a, EventInfo* b);

    /// Always with "HEADER". Switches the header flag of every event off, for good: see serializeHeader(true).
    char* serialize() override;
    /// "schedule" is required; its events are added to those held.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
