#pragma once

#include "orvu/Serializable.h"

/// \file
/// The outcomes of a request that carry no data: the whole content of such a message is its type.
///
/// serialize() always writes "HEADER" and nothing else, formatted, whatever the header flag says, since a result is
/// never nested. deserialize(text) is true for any text, null included: the type was established before. The
/// error-reporting reader is the base's: false.

namespace Orvu {

/// The request could not be understood. Also what the factory makes for DataTypeUnknown.
class ORVU_EXPORT UnknowRequest : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeUnknown;

    UnknowRequest();
    ~UnknowRequest() override;
    UnknowRequest(const UnknowRequest&) = default;
    UnknowRequest& operator=(const UnknowRequest&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The request arrived without a body, or nothing usable came back from a peer.
class ORVU_EXPORT EmptyData : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEmptyData;

    EmptyData();
    ~EmptyData() override;
    EmptyData(const EmptyData&) = default;
    EmptyData& operator=(const EmptyData&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// An argument of the request is not acceptable.
class ORVU_EXPORT IllegalArgument : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeIllegalArgument;

    IllegalArgument();
    ~IllegalArgument() override;
    IllegalArgument(const IllegalArgument&) = default;
    IllegalArgument& operator=(const IllegalArgument&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The receiver platform cannot serve the request now.
class ORVU_EXPORT PlatformUnavailable : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePlatformUnavailable;

    PlatformUnavailable();
    ~PlatformUnavailable() override;
    PlatformUnavailable(const PlatformUnavailable&) = default;
    PlatformUnavailable& operator=(const PlatformUnavailable&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A requested format is not supported.
class ORVU_EXPORT FormatNotSupported : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeFormatNotSupported;

    FormatNotSupported();
    ~FormatNotSupported() override;
    FormatNotSupported(const FormatNotSupported&) = default;
    FormatNotSupported& operator=(const FormatNotSupported&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The requested action is not supported.
class ORVU_EXPORT ActionNotSupported : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeActionNotSupported;

    ActionNotSupported();
    ~ActionNotSupported() override;
    ActionNotSupported(const ActionNotSupported&) = default;
    ActionNotSupported& operator=(const ActionNotSupported&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A parameter is not supported.
class ORVU_EXPORT ParameterNotSupported : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeParameterNotSupported;

    ParameterNotSupported();
    ~ParameterNotSupported() override;
    ParameterNotSupported(const ParameterNotSupported&) = default;
    ParameterNotSupported& operator=(const ParameterNotSupported&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The request was carried out.
class ORVU_EXPORT SuccessResponse : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeSuccess;

    SuccessResponse();
    ~SuccessResponse() override;
    SuccessResponse(const SuccessResponse&) = default;
    SuccessResponse& operator=(const SuccessResponse&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// There are no services (channels).
class ORVU_EXPORT EmptyChannelListError : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEmptyChannelList;

    EmptyChannelListError();
    ~EmptyChannelListError() override;
    EmptyChannelListError(const EmptyChannelListError&) = default;
    EmptyChannelListError& operator=(const EmptyChannelListError&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The service named in the request does not exist.
class ORVU_EXPORT ServiceNotFoundError : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceNotFound;

    ServiceNotFoundError();
    ~ServiceNotFoundError() override;
    ServiceNotFoundError(const ServiceNotFoundError&) = default;
    ServiceNotFoundError& operator=(const ServiceNotFoundError&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The resource does not exist.
class ORVU_EXPORT ResourceNotFound : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeResourceNotFound;

    ResourceNotFound();
    ~ResourceNotFound() override;
    ResourceNotFound(const ResourceNotFound&) = default;
    ResourceNotFound& operator=(const ResourceNotFound&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The resource exists but cannot be used now.
class ORVU_EXPORT ResourceUnavailable : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeResourceUnavailable;

    ResourceUnavailable();
    ~ResourceUnavailable() override;
    ResourceUnavailable(const ResourceUnavailable&) = default;
    ResourceUnavailable& operator=(const ResourceUnavailable&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// There is no broadcast signal.
class ORVU_EXPORT NoSignalError : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNoSignal;

    NoSignalError();
    ~NoSignalError() override;
    NoSignalError(const NoSignalError&) = default;
    NoSignalError& operator=(const NoSignalError&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The requested SI table is not available.
class ORVU_EXPORT TableNotFound : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTableNotFound;

    TableNotFound();
    ~TableNotFound() override;
    TableNotFound(const TableNotFound&) = default;
    TableNotFound& operator=(const TableNotFound&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A server could not be reached.
class ORVU_EXPORT CannotConnectToServer : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeCannotConnectToServer;

    CannotConnectToServer();
    ~CannotConnectToServer() override;
    CannotConnectToServer(const CannotConnectToServer&) = default;
    CannotConnectToServer& operator=(const CannotConnectToServer&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The request was handled and has no content to return.
class ORVU_EXPORT EmptyResponse : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEmptyResponse;

    EmptyResponse();
    ~EmptyResponse() override;
    EmptyResponse(const EmptyResponse&) = default;
    EmptyResponse& operator=(const EmptyResponse&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A required argument is missing.
class ORVU_EXPORT MissingArgument : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeMissingArgument;

    MissingArgument();
    ~MissingArgument() override;
    MissingArgument(const MissingArgument&) = default;
    MissingArgument& operator=(const MissingArgument&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// No TV service is being presented.
class ORVU_EXPORT TVServiceNotInUse : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTvServiceNotInUse;

    TVServiceNotInUse();
    ~TVServiceNotInUse() override;
    TVServiceNotInUse(const TVServiceNotInUse&) = default;
    TVServiceNotInUse& operator=(const TVServiceNotInUse&) = default;
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
