#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "orvu/Position.h"
#include "orvu/Serializable.h"
#include "orvu/Status.h"

namespace Orvu {

/// One elementary stream (video, audio, captions, data) of a service. Wire name "serviceComponent"; also the element of
/// a ServiceComponentList. -1 in a number means "not known".
class ORVU_EXPORT ServiceComponent : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceComponent;

    int streamType = -1;     ///< stream_type of the PMT, 0 to 255 (ISO/IEC 13818-1).
    int componentTag = -1;   ///< component_tag, 0 to 255; travels as hexadecimal text. Reading back -1 throws.
    int pid = -1;            ///< PID of the stream, 0 to 8191 (ISO/IEC 13818-1).
    std::string state;       ///< The applications agree on the words; left out when empty.
    int streamContent = -1;  ///< stream_content of the component descriptor, 0 to 15; travels as hexadecimal text.
    int componentType = -1;  ///< component_type of the component descriptor, 0 to 255; travels as hexadecimal text.
    int vol = -1;            ///< Volume; commands set 0 to 100. Never checked here.
    std::string ISO639languageCode;  ///< ISO 639-2. Written only for audio and caption tags, 0x10 to 0x37.
    Position* pos = nullptr;         ///< Owned, may be null. Written only for video tags, 0x00 to 0x0F.
    int dataComponentId = -1;        ///< data_component_id of the data component descriptor, 0 to 65535 (ARIB STD-B10).

    ServiceComponent();
    ~ServiceComponent() override;
    ServiceComponent(const ServiceComponent&) = delete;
    ServiceComponent& operator=(const ServiceComponent&) = delete;

    char* serialize() override;
    /// Hexadecimal and decimal number texts are read, malformed ones as -1. Throws std::invalid_argument for a number
    /// text without digits, std::out_of_range for one above 2147483647, and what Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The components of a service. Wire name "components".
class ORVU_EXPORT ServiceComponentList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeComponents;

    std::vector<ServiceComponent*> components;  ///< Owned; deleted with the list.

    ServiceComponentList();
    ~ServiceComponentList() override;
    ServiceComponentList(const ServiceComponentList&) = delete;
    ServiceComponentList& operator=(const ServiceComponentList&) = delete;

    /// Appends `component` and takes it; null is ignored.
    void addComponent(ServiceComponent* component);

    /// Always with "HEADER". Switches the header flag of every component off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the components under "components", which is required; those that cannot be read are left out. Throws
    /// what ServiceComponent throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Names one component. Wire name "serviceComponentTag".
class ORVU_EXPORT ServiceComponentTag : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceComponentTag;

    int componentTag = 0;  ///< component_tag, 0 to 255; travels as a number.

    ServiceComponentTag();
    ~ServiceComponentTag() override;
    ServiceComponentTag(const ServiceComponentTag&) = default;
    ServiceComponentTag& operator=(const ServiceComponentTag&) = default;

    char* serialize() override;
    /// "componentTag" is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Starts, pauses or stops one component, moves its window or sets its volume. Wire name "serviceCompTagAction".
class ORVU_EXPORT ServiceCompTagAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceCompTagAction;

    int componentTag = 0;                   ///< component_tag, 0 to 255; travels as a number.
    StatusType action = StatusTypeUnknown;  ///< Start, pause or stop.
    Position* pos = nullptr;                ///< Where the window goes. Owned, may be null.
    int vol = -1;  ///< Volume, 0 to 100; -1 when not given. Read only from a text without a position.
    bool localAssociatedAccess = false;  ///< True when an application of the service itself asks.

    ServiceCompTagAction();
    ~ServiceCompTagAction() override;
    ServiceCompTagAction(const ServiceCompTagAction&) = delete;
    ServiceCompTagAction& operator=(const ServiceCompTagAction&) = delete;

    /// Whether the action is one that a component knows: start, pause or stop.
    bool checkAction();
    /// Whether the position lies on the virtual display. Call it only while `pos` is not null.
    bool checkPos();
    /// Whether `vol` is a volume: 0 to 100.
    bool checkVol(int vol);

    char* serialize() override;
    /// Calls the error-reporting reader of the object's own class and gives its result.
    bool deserialize(const char* text) override;
    /// `error` becomes 1 for a text that is null or not JSON, 2 for an action that a component does not know, 3 for a
    /// bad position, 4 for a bad volume; what was read before stays. An action with a position never changes the
    /// volume; one without drops the position held so far. Throws what Position throws.
    bool deserialize(const char* text, unsigned char& error) override;
};

/// Switches a component on or off on the receiver's chip. Wire name "rtkChangeComponentStatus".
class ORVU_EXPORT RtkChangeComponentStatus : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeRtkChangeComponentStatus;

    bool enableComponent = false;  ///< True switches the component on, false off.
    unsigned componentTag = 0;     ///< component_tag, 0 to 255; travels as a number.

    RtkChangeComponentStatus();
    ~RtkChangeComponentStatus() override;
    RtkChangeComponentStatus(const RtkChangeComponentStatus&) = default;
    RtkChangeComponentStatus& operator=(const RtkChangeComponentStatus&) = default;

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Asks for a set of PIDs as a stream. Wire name "streamPidsRequest"; answered by a StreamPidsResponse.
class ORVU_EXPORT StreamPidsRequest : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamPidsRequest;

    std::string handle;                ///< Names the stream; the applications agree on it.
    std::string clientAddr;            ///< Where the client receives the stream; the applications agree on the form.
    std::vector<unsigned short> pids;  ///< 1 to 8191, in order; duplicates stay.

    StreamPidsRequest();
    ~StreamPidsRequest() override;
    StreamPidsRequest(const StreamPidsRequest&) = default;
    StreamPidsRequest& operator=(const StreamPidsRequest&) = default;

    /// Appends `pid`; PID 0 cannot be asked for and is ignored.
    void addPid(unsigned short pid);
    /// Reads the message; "pids" is required. False with `error` 101 for a text that is not JSON or whose "pids" is not
    /// an array, 105 without "pids", and `error` unchanged for a null text. Appends to the PIDs held.
    bool deserializeObject(const char* text, unsigned char& error);
    /// Serializable's, from a parsed item. A literal null is a null text, above.
    template <class Item, class = std::enable_if_t<!std::is_same_v<std::remove_cv_t<Item>, char>>>
    bool deserializeObject(Item* item, unsigned char& error)
    {
        return Serializable::deserializeObject(item, error);
    }
    /// Serializable's.
    bool deserializeObject(void* item) { return Serializable::deserializeObject(item); }

    /// Always with "HEADER".
    char* serialize() override;
    /// Calls deserializeObject(text, error).
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Where the stream of a StreamPidsRequest is found, or why not. Wire name "streamPidsResponse".
class ORVU_EXPORT StreamPidsResponse : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamPidsResponse;

    std::string handle;                   ///< As in the request.
    std::string streamUrl;                ///< URL of the stream; empty when there is none.
    std::string mimeType = "video/mp2t";  ///< Never read back: keeps its default.
    int error = 0;         ///< The applications agree on the codes. Written only while `success` is false.
    bool success = false;  ///< The stream is there: no `error` is written. Does not travel.

    StreamPidsResponse();
    ~StreamPidsResponse() override;
    StreamPidsResponse(const StreamPidsResponse&) = default;
    StreamPidsResponse& operator=(const StreamPidsResponse&) = default;

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// "0x" and the value in lower-case hexadecimal, at least two digits; a negative value as its 32-bit two's complement.
/// The caller releases the text with `free`. Null when out of memory. Any thread.
ORVU_EXPORT char* convertIntToStringHex(int value);

/// The value of a decimal or "0x" hexadecimal number text, blanks around it and letter case ignored; -1 for
/// malformed text, a sign included. Throws std::invalid_argument without any digits and std::out_of_range above
/// 2147483647. Any thread.
ORVU_EXPORT int validateStringNumber(std::string text);

/// Removes white space (characters 9 to 13 and 32) at the end, in place. Any thread.
ORVU_EXPORT void rtrim(std::string& text);

/// Removes white space (characters 9 to 13 and 32) at the start, in place. Any thread.
ORVU_EXPORT void ltrim(std::string& text);

}  // namespace Orvu
