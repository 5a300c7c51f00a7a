#include "orvu/OrvuRestInterface.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <mutex>
#include <new>
#include <optional>

#include "log/Log.h"
#include "transport/ExchangeNotes.h"
#include "transport/MessageTexts.h"
#include "transport/OrvuRestClientSocket.h"
#include "transport/OrvuRestServerSocket.h"
#include "transport/PushServers.h"
#include "transport/RequestCallback.h"
#include "transport/Threads.h"
#include "transport/Workers.h"

namespace Orvu {
namespace {

StaticMutex destroying;
std::atomic<RequestCallback> requestCallback{nullptr};
std::atomic<void* (*)(const char*)> logCallback{nullptr};

/// Outside the facade, since threads may be inside one of its functions whenever another one destroys it.
PushServers& pushServers()
{
    static Immortal<PushServers> servers;
    return *servers;
}

class SharedAddress {
public:
    void set(ListenAddress address)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::swap(address_, address);
    }
    ListenAddress get()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return address_;
    }

private:
    std::mutex mutex_;
    ListenAddress address_;
};

SharedAddress& listenAddress()
{
    static Immortal<SharedAddress> address;
    return *address;
}

/// What the client's sendRequest() returns for the arguments.
template <class... Arguments>
Serializable* sendWithReport(ExchangeReport& report, Arguments... arguments)
{
    const std::shared_ptr<OrvuRestClientSocket> client = OrvuRestClientSocket::sharedInstance();
    if (client) return client->sendRequest(arguments..., report);
    ExchangeNotes notes(report);
    notes.enter(ExchangePhaseNoPeer);
    notes.fail(ENOMEM);
    return nullptr;
}

/// In the range of setSocketsPortsRange() when `range` is none.
SocketServerInfo* create(std::string protocol, std::optional<PushServers::PortRange> range)
{
    try {
        return pushServers().create(std::move(protocol), listenAddress().get(), range);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestInterface::createServer: ERROR out of memory!");
        return nullptr;
    }
}

}  // namespace

RequestCallback registeredCallback()
{
    return requestCallback;
}

[[gnu::hot]] OrvuRestInterface* OrvuRestInterface::getInstance()
{
    static Immortal<OrvuRestInterface> facade;
    return &*facade;
}

void OrvuRestInterface::destroyInstance()
{
    const std::lock_guard<StaticMutex> lock(destroying);
    OrvuRestServerSocket::dropRequests();  // whoever is still receiving leaves before objects go
    pushServers().end();
    requestCallback = nullptr;
    listenAddress().set(ListenAddress());
    OrvuRestClientSocket::destroyInstance();
    OrvuRestServerSocket::destroyInstance();
}

bool OrvuRestInterface::destroyInstance(int waitMilliseconds)
{
    destroyInstance();
    const int own = Workers::isInCallback() ? 1 : 0;
    return RunningCallbacks::waitFor(own, std::chrono::milliseconds(std::max(waitMilliseconds, 0)));
}

void OrvuRestInterface::log(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    logLineOf(format, arguments);
    va_end(arguments);
}

void OrvuRestInterface::registerLogCallback(void* (*callback)(const char*))
{
    logCallback = callback;
}

void OrvuRestInterface::registerRequestCallback(void* (*callback)(OrvuRestRequest*))
{
    requestCallback = callback;
}

void OrvuRestInterface::setListenAddress(std::string address)
{
    listenAddress().set(ListenAddress(std::move(address)));
}

bool OrvuRestInterface::startListenRequests(int port)
{
    logLine("startListenRequests");
    try {
        const std::optional<in_addr> address = listenAddress().get().usable("OrvuRestInterface::startListenRequests");
        const std::shared_ptr<OrvuRestServerSocket> server = OrvuRestServerSocket::sharedInstance();
        return address && server && server->acceptor().configure(*address, port) && server->start();
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestInterface::startListenRequests: ERROR out of memory!");
        return false;
    }
}

bool OrvuRestInterface::stopListenRequests()
{
    logLine("stopListenRequests");
    const std::shared_ptr<OrvuRestServerSocket> server = OrvuRestServerSocket::sharedInstance();
    if (server) server->stop();
    return true;
}

int OrvuRestInterface::requestPort()
{
    const std::shared_ptr<OrvuRestServerSocket> server = OrvuRestServerSocket::sharedInstance();
    return server && server->acceptor().isRunning() ? server->acceptor().port() : 0;
}

bool OrvuRestInterface::notifyCallback(OrvuRestRequest* request)
{
    logNotification();
    return notify(registeredCallback(), request);
}

bool OrvuRestInterface::configureClient(const char* host, int port)
{
    const std::shared_ptr<OrvuRestClientSocket> client = OrvuRestClientSocket::sharedInstance();
    return client && client->configure(host, port);
}

Serializable* OrvuRestInterface::sendRequest(Serializable* request)
{
    const std::shared_ptr<OrvuRestClientSocket> client = OrvuRestClientSocket::sharedInstance();
    return client ? client->sendRequest(request) : nullptr;
}

Serializable* OrvuRestInterface::sendRequest(DataType type)
{
    const std::shared_ptr<OrvuRestClientSocket> client = OrvuRestClientSocket::sharedInstance();
    return client ? client->sendRequest(type) : nullptr;
}

Serializable* OrvuRestInterface::sendRequest(Serializable* request, ExchangeReport& report)
{
    return sendWithReport(report, request);
}

Serializable* OrvuRestInterface::sendRequest(DataType type, ExchangeReport& report)
{
    return sendWithReport(report, type);
}

Serializable* OrvuRestInterface::sendRequest(const char* host, int port, Serializable* request, ExchangeReport& report)
{
    return sendWithReport(report, OrvuRestClientSocket::Address{host, port}, request);
}

bool OrvuRestInterface::isReachable(const char* host, int port, const void* group)
{
    const std::shared_ptr<OrvuRestClientSocket> client = OrvuRestClientSocket::sharedInstance();
    return client && client->isReachable({host, port}, group);
}

void OrvuRestInterface::cancelRequests()
{
    OrvuRestClientSocket::cancelRequests();
}

void OrvuRestInterface::cancelRequests(const void* group)
{
    OrvuRestClientSocket::cancelRequests(group);
}

void OrvuRestInterface::setSocketsPortsRange(int minPort, int maxPort)
{
    pushServers().setPortRange({minPort, maxPort});
}

SocketServerInfo* OrvuRestInterface::createServer(std::string protocol)
{
    return create(std::move(protocol), std::nullopt);
}

SocketServerInfo* OrvuRestInterface::createServer(std::string protocol, int minPort, int maxPort)
{
    return create(std::move(protocol), PushServers::PortRange{minPort, maxPort});
}

bool OrvuRestInterface::stopServer(int handler)
{
    return pushServers().stop(handler);
}

void OrvuRestInterface::stopAllServers()
{
    pushServers().stopAll();
}

[[gnu::hot]] bool OrvuRestInterface::sendMessage(int handler, unsigned char* data, unsigned int size)
{
    return pushServers().send(handler, data, size);
}

bool OrvuRestInterface::sendMessage(int handler, Serializable& message)
{
    const JsonText text = textWithHeader(message);
    if (!text) {
        logLine("OrvuRestInterface::sendMessage: ERROR cannot write the message!");
        return false;
    }
    return sendMessage(handler, reinterpret_cast<unsigned char*>(text.get()),
                       static_cast<unsigned>(std::strlen(text.get())));
}

std::string OrvuRestInterface::getCurrentIpAddress()
{
    return outsideAddress();
}

}  // namespace Orvu
