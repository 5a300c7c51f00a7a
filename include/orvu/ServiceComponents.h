#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "orvu/Position.h"
#include "orvu/Serializable.h"
#include "orvu/Status.h"

namespace Orvu {

/// One elementary stream (video, audio, captions, data) of a service. Wire name "serviceComponent"; also the element of
/// a ServiceComponentList. A number of -1 is not known.
class ORVU_EXPORT ServiceComponent : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceComponent;

    int streamType = -1;    ///< stream_type of the PMT.
    int componentTag = -1;  ///< Travels as hexadecimal text. That of -1 cannot be read: reading it throws.
    int pid = -1;           ///< PID of the stream.
    std::string state;
    int streamContent = -1;          ///< stream_content of the component descriptor; travels as hexadecimal text.
    int componentType = -1;          ///< component_type of the component descriptor; travels as hexadecimal text.
    int vol = -1;                    ///< Volume.
    std::string ISO639languageCode;  ///< Written only for audio and caption tags, 0x10 to 0x37.
    Position* pos = nullptr;         ///< Owned, may be null. Written only for video tags, 0x00 to 0x0F.
    int dataComponentId = -1;        ///< data_component_id.

    ServiceComponent();
    ~ServiceComponent() override;
    ServiceComponent(const ServiceComponent&) = delete;
    ServiceComponent& operator=(const ServiceComponent&) = delete;

    /// Formatted.
    char* serialize() override;
    /// Every key is optional. Hexadecimal and decimal number texts are read, malformed ones as -1. Throws
    /// std::invalid_argument for a number text without digits, std::out_of_range for one above 2147483647, and what
    /// Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
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

    /// Formatted, always with "HEADER". Switches the header flag of every component off, for good: call its
    /// serializeHeader(true) before you send one alone.
    char* serialize() override;
    /// Appends the components under "components", which is required; those that cannot be read are left out. Throws
    /// what ServiceComponent throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Names one component. Wire name "serviceComponentTag".
class ORVU_EXPORT ServiceComponentTag : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceComponentTag;

    int componentTag = 0;  ///< Component tag; a plain number here.

    ServiceComponentTag();
    ~ServiceComponentTag() override;
    ServiceComponentTag(const ServiceComponentTag&) = default;
    ServiceComponentTag& operator=(const ServiceComponentTag&) = default;

    /// Formatted.
    char* serialize() override;
    /// "componentTag" is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Starts, pauses or stops one component, moves its window or sets its volume. Wire name "serviceCompTagAction".
class ORVU_EXPORT ServiceCompTagAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceCompTagAction;

    int componentTag = 0;                   ///< Component tag; a plain number here.
    StatusType action = StatusTypeUnknown;  ///< Start, pause or stop.
    Position* pos = nullptr;                ///< Owned, may be null.
    int vol = -1;                           ///< 0 to 100; -1 when not given. Read only from a text without a position.
    bool localAssociatedAccess = false;

    ServiceCompTagAction();
    ~ServiceCompTagAction() override;
    ServiceCompTagAction(const ServiceCompTagAction&) = delete;
    ServiceCompTagAction& operator=(const ServiceCompTagAction&) = delete;

    /// Whether the action is one that a component knows: start, pause or stop.
    bool checkAction();
    /// Whether the position lies on the virtual display. Only with a position.
    bool checkPos();
    /// Whether `vol` is a volume: 0 to 100.
    bool checkVol(int vol);

    /// Formatted.
    char* serialize() override;
    /// Calls the error-reporting reader of the object's own class and gives its result.
    bool deserialize(const char* text) override;
    /// Every key is optional. `error` becomes 1 for a text that is null or no JSON, 2 for an action that a component
    /// does not know, 3 for a bad position, 4 for a bad volume; what was read before stays. An action with a position
    /// never changes the volume; one without drops the position held so far. Throws what Position throws.
    bool deserialize(const char* text, unsigned char& error) override;
};

/// Switches a component on or off on the receiver's chip. Wire name "rtkChangeComponentStatus".
class ORVU_EXPORT RtkChangeComponentStatus : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeRtkChangeComponentStatus;

    bool enableComponent = false;
    unsigned componentTag = 0;  ///< Component tag; a plain number here.

    RtkChangeComponentStatus();
    ~RtkChangeComponentStatus() override;
    RtkChangeComponentStatus(const RtkChangeComponentStatus&) = default;
    RtkChangeComponentStatus& operator=(const RtkChangeComponentStatus&) = default;

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Asks for a set of PIDs as a stream. Wire name "streamPidsRequest"; answered by a StreamPidsResponse.
class ORVU_EXPORT StreamPidsRequest : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamPidsRequest;

    std::string handle;      ///< Agreed between the applications.
    std::string clientAddr;  ///< Agreed between the applications.
    std::vector<unsigned short> pids;

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

    /// Formatted, always with "HEADER".
    char* serialize() override;
    /// Calls deserializeObject(text, error).
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Where the stream of a StreamPidsRequest is found, or why not. Wire name "streamPidsResponse".
class ORVU_EXPORT StreamPidsResponse : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamPidsResponse;

    std::string handle;  ///< As in the request.
    std::string streamUrl;
    std::string mimeType = "video/mp2t";  ///< Never read back: keeps its default.
    int error = 0;                        ///< Written only while `success` is false.
    bool success = false;                 ///< Does not travel.

    StreamPidsResponse();
    ~StreamPidsResponse() override;
    StreamPidsResponse(const StreamPidsResponse&) = default;
    StreamPidsResponse& operator=(const StreamPidsResponse&) = default;

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// "0x" and the value in lower-case hexadecimal, at least two digits; a negative value as its 32-bit two's complement.
/// The caller releases the text with `free`. Null when out of memory.
ORVU_EXPORT char* convertIntToStringHex(int value);

/// The value of a decimal or "0x" hexadecimal number text, blanks around it and letter case ignored; -1 for what is
/// malformed, a sign included. Throws std::invalid_argument without any digits and std::out_of_range above 2147483647.
ORVU_EXPORT int validateStringNumber(std::string text);

/// Removes white space (characters 9 to 13 and 32) at the end, in place.
ORVU_EXPORT void rtrim(std::string& text);

/// Removes white space (characters 9 to 13 and 32) at the start, in place.
ORVU_EXPORT void ltrim(std::string& text);

}  // namespace Orvu
