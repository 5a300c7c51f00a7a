#pragma once

#include <string>
#include <vector>

#include "orvu/BinaryData.h"  // which this header declared before it had one of its own
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
    std::string endTime;    ///< In the same form.
    int runningStatus = 0;  ///< As signalled.
    std::string name;
    int originalNetworkId = 0;
    std::string shortDescription;
    std::string extendedDescription;
    int copyrightId = 0;  ///< Written as null below 1.
    std::string copyrightInfo;
    int parentalRating = 0;               ///< As signalled.
    int parentalRatingDescription = 0;    ///< Written as null below 1.
    std::string audioLanguageCode;        ///< ISO 639-2.
    std::string audioLanguageCode2;       ///< ISO 639-2.
    std::string dataContentLanguageCode;  ///< ISO 639-2.
    std::string dataContentText;
    bool hasInteractivity = false;
    std::string logoURI;
    /// Owned, may be null. Comes back as four zeros, whatever it was: it is written as a list and read as an object.
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

    /// Formatted. Empty texts and missing descriptors are written as null.
    char* serialize() override;
    /// Every key is optional: true for any JSON text. A descriptor that is present, null included, replaces the one
    /// held, which is the caller's from then on. A null key gives an empty descriptor.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The present and following events of a service, and its schedule. Wire name "eventInfoList".
class ORVU_EXPORT EventInfoList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventInfoList;

    std::string serviceContextId;    ///< Locator of the service.
    EventInfo* present = nullptr;    ///< Owned, may be null.
    EventInfo* following = nullptr;  ///< Owned, may be null.
    /// Owned, sorted by `startTime`; deleted with the list. The applications decide whether `present` and `following` are
    /// in it, too.
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

    /// Formatted, always with "HEADER". Switches the header flag of every event off, for good: call its
    /// serializeHeader(true) before you send one alone.
    char* serialize() override;
    /// "schedule" is required; its events are added to those held.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

}  // namespace Orvu
