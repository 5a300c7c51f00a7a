#pragma once

#include <string>

#include "orvu/Serializable.h"

namespace Orvu {

/// Subscribes to stream events. Wire name "streamEventRequest".
class ORVU_EXPORT StreamEventRequest : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamEventRequest;

    int componentTag = 0;  ///< component_tag of the stream that carries the carousel, 1 to 255; left out below 1.
    int carouselId = 0;    ///< Identifies the carousel, 1 or more; left out below 1.
    std::string protocol;  ///< How the events come; the applications agree on the words. Left out when empty.
    std::string handle;    ///< Names the subscription. A text here, a number in StreamEventDispose.
    std::string host;      ///< Host name or address of the event source; left out when empty.
    std::string url;       ///< URL of the event source; left out when empty.
    int port = 0;          ///< Port of the event source, 1 to 65535; left out below 1.

    StreamEventRequest();
    ~StreamEventRequest() override;
    StreamEventRequest(const StreamEventRequest&) = default;
    StreamEventRequest& operator=(const StreamEventRequest&) = default;

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Ends a subscription to stream events. Wire name "streamEventDispose".
class ORVU_EXPORT StreamEventDispose : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamEventDispose;

    int handle = 0;  ///< Names the subscription. A number here, a text in StreamEventRequest.

    StreamEventDispose();
    ~StreamEventDispose() override;
    StreamEventDispose(const StreamEventDispose&) = default;
    StreamEventDispose& operator=(const StreamEventDispose&) = default;

    char* serialize() override;
    /// "handle" is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
