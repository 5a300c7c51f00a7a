/// \file
/// A small receiver over the facade: it answers requests for its services, until Ctrl-C.
///
///     receiver PORT
///
/// The library's own log lines go to standard error; run it with ORVU_LOG=none to turn them off.

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "orvu/Orvu.h"

namespace {

using Orvu::OrvuRestInterface;
using Orvu::OrvuRestRequest;
using Orvu::Serializable;

/// The answer to the peer. Every message is a Serializable, so every answer has this type, an error too.
using Answer = std::unique_ptr<Serializable>;

struct Channel {
    std::string name;
    int networkId;
    int serviceId;
};

const std::vector<Channel> kChannels = {
    {"Canal Um HD", 1840, 58880},
    {"Canal Um Notícias", 1840, 58881},
    {"Canal Dois HD", 1848, 59136},
};

/// The receiver's own state. Requests come in on several threads at once, so it has a lock.
std::mutex mutex;
size_t current = 0;  // an index into kChannels

/// Services are named by a short text such as "1840.1840.01", their locator.
std::string locatorOf(const Channel& channel)
{
    return Orvu::ServiceContext::generateStringId(static_cast<unsigned>(channel.networkId),
                                                  static_cast<unsigned>(channel.networkId),
                                                  static_cast<unsigned>(channel.serviceId));
}

std::unique_ptr<Orvu::Service> serviceOf(const Channel& channel)
{
    auto service = std::make_unique<Orvu::Service>();
    service->serviceContextId = locatorOf(channel);
    service->serviceName = channel.name;
    service->transportStreamId = channel.networkId;
    service->originalNetworkId = channel.networkId;
    service->serviceId = channel.serviceId;
    return service;
}

Answer serviceList()
{
    auto list = std::make_unique<Orvu::ServiceList>();
    for (const Channel& channel : kChannels)
        list->addService(serviceOf(channel).release());  // the list owns its services
    return list;
}

Answer currentService()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return serviceOf(kChannels[current]);
}

/// Selects the service that the request names. The outcomes are messages of their own: success, or an error by its
/// name.
Answer select(const Orvu::ServiceSelection& wanted)
{
    const auto locator = Orvu::ServiceContext::parse(wanted.serviceContextId);
    if (!locator.valid || locator.allServices) return std::make_unique<Orvu::IllegalArgument>();
    if (locator.currentService) return std::make_unique<Orvu::SuccessResponse>();
    for (size_t i = 0; i < kChannels.size(); ++i) {
        if (locatorOf(kChannels[i]) != wanted.serviceContextId) continue;
        const std::lock_guard<std::mutex> lock(mutex);
        current = i;
        return std::make_unique<Orvu::SuccessResponse>();
    }
    return std::make_unique<Orvu::ServiceNotFoundError>();
}

/// The type of a message determines its class, so the casts are safe. Unknown types get an answer, too.
Answer answerTo(const Serializable& request, Orvu::DataType type)
{
    switch (type) {
        case Orvu::DataTypeServiceList:
            return serviceList();
        case Orvu::DataTypeCurrentService:
            return currentService();
        case Orvu::DataTypeServiceSelection:
            return select(static_cast<const Orvu::ServiceSelection&>(request));
        case Orvu::DataTypeUnknown:
            return std::make_unique<Orvu::UnknowRequest>();
        default:
            return std::make_unique<Orvu::ResourceNotFound>();
    }
}

/// The library calls this for every request, on threads of its own, several at once. From here on the request is ours:
/// it is answered once and deleted.
void* onRequest(OrvuRestRequest* received)
{
    const std::unique_ptr<OrvuRestRequest> request(received);
    const Serializable& message = *request->getData();
    const Answer answer = answerTo(message, message.getDataType());
    request->sendResponse(answer.get());
    return nullptr;
}

/// Stops listening and waits for the answers that are on their way.
int end(OrvuRestInterface& orvu)
{
    orvu.stopListenRequests();
    const bool allEnded = OrvuRestInterface::destroyInstance(2000);
    std::cout << "ended" << std::endl;
    if (!allEnded) std::_Exit(1);  // a callback still runs: nothing that it uses is destroyed
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    const int port = argc == 2 ? std::atoi(argv[1]) : 0;
    if (port < 1 || port > 65535) {
        std::cerr << "usage: receiver PORT\n";
        return 64;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any other thread is started

    OrvuRestInterface* orvu = OrvuRestInterface::getInstance();
    orvu->registerRequestCallback(onRequest);
    if (!orvu->startListenRequests(port)) {
        std::cerr << "receiver: port " << port << " is not available\n";
        return 1;
    }
    std::cout << "listening on port " << port << std::endl;
    int signal = 0;
    sigwait(&signals, &signal);
    return end(*orvu);
}
