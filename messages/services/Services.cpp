#include "orvu/Services.h"

#include <memory>
#include <new>

#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {

Service::Service() : Serializable(kDataType) {}
Service::~Service() = default;

Service* Service::clone()
{
    try {
        auto copy = std::make_unique<Service>(*this);
        copy->copyHeaderFlag(*this);
        return copy.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void write(JsonWriter& json, Service& service)
{
    json.headerIfSet(service);
    json.put("serviceContextId", service.serviceContextId);
    json.put("serviceName", service.serviceName);
    json.put("transportStreamId", service.transportStreamId);
    json.put("originalNetworkId", service.originalNetworkId);
    json.put("serviceId", service.serviceId);
}

void read(JsonReader& json, Service& service)
{
    json.optional("serviceContextId", service.serviceContextId);
    json.optional("serviceName", service.serviceName);
    json.optional("transportStreamId", service.transportStreamId);
    json.optional("originalNetworkId", service.originalNetworkId);
    json.optional("serviceId", service.serviceId);
}

MESSAGE(Service, Formatted)

ServiceList::ServiceList() : Serializable(kDataType) {}
ServiceList::~ServiceList()
{
    deleteAll(services);
}
void ServiceList::addService(Service* service)
{
    take(services, service);
}

void write(JsonWriter& json, ServiceList& list)
{
    json.header(list);
    json.list("serviceList", list.services);
}

void read(JsonReader& json, ServiceList& list)
{
    json.required("serviceList", list.services);
}

MESSAGE(ServiceList, Formatted)

ServiceSelection::ServiceSelection() : Serializable(kDataType) {}
ServiceSelection::~ServiceSelection() = default;

void write(JsonWriter& json, ServiceSelection& selection)
{
    json.headerIfSet(selection);
    json.put("serviceContextId", selection.serviceContextId);
}

void read(JsonReader& json, ServiceSelection& selection)
{
    json.optional("serviceContextId", selection.serviceContextId);
}

MESSAGE(ServiceSelection, Formatted)

ServiceTime::ServiceTime() : Serializable(kDataType) {}
ServiceTime::~ServiceTime() = default;

void write(JsonWriter& json, ServiceTime& time)
{
    json.headerIfSet(time);
    json.put("time", time.time);
}

void read(JsonReader& json, ServiceTime& time)
{
    json.required("time", time.time);
}

MESSAGE(ServiceTime, Formatted)

}  // namespace Orvu
