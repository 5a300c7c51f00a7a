#pragma once

#include <string>

#include "orvu/Serializable.h"

namespace Orvu {

/// Subscribes to stream events. Wire name "streamEventRequest".
class ORVU_EXPORT StreamEventRequest : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamEventRequest;

    int componentTag = 0;  ///< Not given below 1.
    int carouselId = 0;    ///< Not given below 1.
    std::string protocol;
    std::string handle;  ///< A text here, a number in StreamEventDispose.
    std::string host;
    std::string url;
    int port = 0;  ///< Not given below 1.

    StreamEventRequest();
    ~StreamEventRequest() override;
    StreamEventRequest(const StreamEventRequest&) = default;
    StreamEventRequest& operator=(const StreamEventRequest&) = default;

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Ends a subscription to stream events. Wire name "streamEventDispose".
class ORVU_EXPORT StreamEventDispose : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeStreamEventDispose;

    int handle = 0;  ///< A number here, a text in StreamEventRequest.

    StreamEventDispose();
    ~StreamEventDispose() override;
    StreamEventDispose(const StreamEventDispose&) = default;
    StreamEventDispose& operator=(const StreamEventDispose&) = default;

    /// Formatted.
    char* serialize() override;
    /// "handle" is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

}  // namespace Orvu
