#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// One broadcast service (TV channel). Wire name "currentService"; also the element of a ServiceList.
class ORVU_EXPORT Service : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeCurrentService;

    std::string serviceContextId;  ///< Locator text such as "1840.1840.01" (see ServiceContext); never checked here.
    std::string serviceName;       ///< UTF-8, as broadcast.
    int transportStreamId = 0;     ///< transport_stream_id, 0 to 65535, as signalled.
    int originalNetworkId = 0;     ///< original_network_id, 0 to 65535, as signalled.
    int serviceId = 0;             ///< service_id, 0 to 65535, as signalled.

    Service();
    ~Service() override;
    Service(const Service&) = default;
    Service& operator=(const Service&) = default;

    /// A copy, header flag included; the caller deletes it. Null when out of memory.
    Service* clone();

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The channel list. Wire name "serviceList".
class ORVU_EXPORT ServiceList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceList;

    std::vector<Service*> services;  ///< Owned; deleted with the list.

    ServiceList();
    ~ServiceList() override;
    ServiceList(const ServiceList&) = delete;
    ServiceList& operator=(const ServiceList&) = delete;

    /// Appends `service` and takes it; null is ignored.
    void addService(Service* service);

    /// Always with "HEADER". Switches the header flag of every service off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the services under "serviceList", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Asks for a service, or reports one, by its locator. Wire name "serviceSelection".
class ORVU_EXPORT ServiceSelection : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceSelection;

    std::string serviceContextId;  ///< Locator text (see ServiceContext); never checked here.

    ServiceSelection();
    ~ServiceSelection() override;
    ServiceSelection(const ServiceSelection&) = default;
    ServiceSelection& operator=(const ServiceSelection&) = default;

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The broadcast time of the current service. Wire name "serviceTime".
class ORVU_EXPORT ServiceTime : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceTime;

    std::string time;  ///< The applications agree on a form, such as "2026-11-21T20:30:00-03:00"; not checked here.

    ServiceTime();
    ~ServiceTime() override;
    ServiceTime(const ServiceTime&) = default;
    ServiceTime& operator=(const ServiceTime&) = default;

    char* serialize() override;
    /// "time" is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
