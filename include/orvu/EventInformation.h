#pragma once

#include <string>
#include <vector>

#include "orvu/EventDescriptors.h"
#include "orvu/Serializable.h"

namespace Orvu {

class JsonReader;
class JsonWriter;

/// A raw SI table as bytes. One class for "binaryNIT", "binarySDT", "binaryPAT", "binaryBAT", "binaryPMT" and
/// "binaryEPG"; also the element of a BinaryDataMultipart.
class ORVU_EXPORT BinaryData : public Serializable {
public:
    std::string serviceContextId;  ///< Locator of the service that the table belongs to.
    unsigned bufferSize = 0;       ///< Bytes; at most 64 MiB can be received.
    /// A block made by `malloc`, owned; released with `free`. Comes back as a block without bytes when it is null.
    unsigned char* buffer = nullptr;
    std::string timestamp;  ///< Time of the data, such as "2026-11-21T20:30:00-03:00"; not checked here.

    /// `dataType` is one of DataTypeBinaryNIT to DataTypeBinaryEPG, or DataTypeBinaryDataMultipart for a part.
    explicit BinaryData(DataType dataType);
    ~BinaryData() override;
    BinaryData(const BinaryData&) = delete;
    BinaryData& operator=(const BinaryData&) = delete;

    /// Formatted; the bytes as Base64. Of a block that was received, no more bytes than came, whatever size was
    /// announced; once the application has set another `bufferSize`, no more than the block has room for.
    char* serialize() override;
    /// "serviceContextId", "bufferSize" and "buffer" are required; those before the missing one stay. Makes a new,
    /// zeroed block of 4 x "bufferSize" bytes; the block held before is the caller's from then on. False, the block
    /// unchanged, for more bytes than that, for a size above 64 MiB, and when out of memory.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false

private:
    friend void write(JsonWriter& json, BinaryData& data);
    friend void read(JsonReader& json, BinaryData& data);
    friend unsigned sendable(const BinaryData& data);  // how many bytes of the block may be sent

    const unsigned char* knownBlock_ = nullptr;  // the block that was held when a read last stored `bufferSize`
    unsigned knownSize_ = 0;                     // the bytes in it
    unsigned knownRoom_ = 0;                     // the bytes that it has room for
    unsigned announced_ = 0;                     // the `bufferSize` that the read stored
};

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
