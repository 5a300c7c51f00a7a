#include "orvu/OrvuRestInterface.h"

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <ifaddrs.h>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <new>
#include <optional>

#include "transport/OrvuRestClientSocket.h"
#include "transport/OrvuRestServerSocket.h"
#include "transport/OrvuRestServerTcpSocket.h"
#include "transport/OrvuRestServerWebSocket.h"
#include "transport/OrvuRestSimpleServer.h"
#include "transport/RequestCallback.h"
#include "transport/RequestClient.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

StaticMutex instanceMutex;
OrvuRestInterface* instance = nullptr;
std::atomic<RequestCallback> requestCallback{nullptr};  // outside the facade: threads read it while the facade goes
std::atomic<void* (*)(const char*)> logCallback{nullptr};

void logEscaped(const char* what)
{
    OrvuRestInterface::log("OrvuRestInterface::notifyCallback: ERROR exception from the callback: %s", what);
}

std::unique_ptr<OrvuRestSimpleServer> serverFor(const std::string& protocol)
{
    if (protocol == "tcp") return std::make_unique<OrvuRestServerTcpSocket>();
    if (protocol == "websocket") return std::make_unique<OrvuRestServerWebSocket>();
    return nullptr;
}

/// The first port of the range that the server could be configured on. What is no TCP port is not tried.
std::optional<int> configureInRange(OrvuRestSimpleServer& server, int minPort, int maxPort)
{
    for (int port = std::max(minPort, 0); port <= std::min(maxPort, 65535); ++port) {
        OrvuRestInterface::log("OrvuRestInterface::createServer: Trying");
        if (server.configure(port)) return port;
        OrvuRestInterface::log("OrvuRestInterface::createServer: cannot configure the server");
    }
    return std::nullopt;
}

std::string textOf(const sockaddr& address)
{
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, text, sizeof text);
    return text;
}

std::string firstOutsideAddress(const ifaddrs* interfaces)
{
    for (const ifaddrs* entry = interfaces; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET) continue;
        const std::string text = textOf(*entry->ifa_addr);
        if (text == "127.0.0.1") continue;
        OrvuRestInterface::log("valid IPv4 Address found");
        return text;
    }
    return "127.0.0.1";
}

}  // namespace

RequestCallback registeredCallback()
{
    return requestCallback;
}

void logNotification()
{
    OrvuRestInterface::log("OrvuRestInterface::notifyCallback");
}

bool notify(RequestCallback callback, OrvuRestRequest* request)
{
    if (!callback) {
        OrvuRestInterface::log("Register a callback to receive requests!");
        return false;
    }
    try {
        callback(request);
    } catch (const std::exception& escaped) {
        logEscaped(escaped.what());
    } catch (...) {
        logEscaped("of an unknown kind");
    }
    return true;
}

OrvuRestInterface::OrvuRestInterface() = default;

OrvuRestInterface::~OrvuRestInterface()
{
    requestCallback = nullptr;
}

OrvuRestInterface* OrvuRestInterface::getInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    if (!instance) instance = new (std::nothrow) OrvuRestInterface;
    return instance;
}

void OrvuRestInterface::destroyInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    OrvuRestServerSocket::dropRequests();  // whoever is still receiving leaves before objects go
    delete std::exchange(instance, nullptr);
    OrvuRestClientSocket::destroyInstance();
    OrvuRestServerSocket::destroyInstance();
}

void OrvuRestInterface::registerLogCallback(void* (*callback)(const char*))
{
    logCallback = callback;
}

void OrvuRestInterface::registerRequestCallback(void* (*callback)(OrvuRestRequest*))
{
    requestCallback = callback;
}

bool OrvuRestInterface::startListenRequests(int port)
{
    log("startListenRequests");
    OrvuRestServerSocket* const server = OrvuRestServerSocket::getInstance();
    return server && server->configure(port) && server->start();
}

bool OrvuRestInterface::stopListenRequests()
{
    log("stopListenRequests");
    OrvuRestServerSocket* const server = OrvuRestServerSocket::getInstance();
    if (server) server->stop();
    return true;
}

bool OrvuRestInterface::notifyCallback(OrvuRestRequest* request)
{
    logNotification();
    return notify(registeredCallback(), request);
}

bool OrvuRestInterface::configureClient(const char* host, int port)
{
    const std::shared_ptr<RequestClient> client = OrvuRestClientSocket::shared();
    return client && client->configure(host, port);
}

Serializable* OrvuRestInterface::sendRequest(Serializable* request)
{
    const std::shared_ptr<RequestClient> client = OrvuRestClientSocket::shared();
    return client ? client->sendRequest(request) : nullptr;
}

Serializable* OrvuRestInterface::sendRequest(DataType type)
{
    const std::shared_ptr<RequestClient> client = OrvuRestClientSocket::shared();
    return client ? client->sendRequest(type) : nullptr;
}

void OrvuRestInterface::setSocketsPortsRange(int minPort, int maxPort)
{
    minPort_ = minPort;
    maxPort_ = maxPort;
}

SocketServerInfo* OrvuRestInterface::createServer(std::string protocol)
{
    log("OrvuRestInterface::createServer: protocol: %s", protocol.c_str());
    try {
        std::unique_ptr<OrvuRestSimpleServer> server = serverFor(protocol);
        if (!server) {
            log("OrvuRestInterface::createServer: cannot create the server: %s", protocol.c_str());
            return nullptr;
        }
        const std::optional<int> port = configureInRange(*server, minPort_, maxPort_);
        if (!port) return nullptr;
        auto info = std::make_unique<SocketServerInfo>();
        info->handler = newHandler();
        info->protocol = std::move(protocol);
        info->ipAddress = getCurrentIpAddress();
        info->port = *port;
        startAs(*info, std::move(server));
        return info.release();
    } catch (const std::bad_alloc&) {
        log("OrvuRestInterface::createServer: ERROR out of memory!");
        return nullptr;
    }
}

/// A value of the C library's generator, seeded anew each time; the next one where a server has it already.
int OrvuRestInterface::newHandler() const
{
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    int handler = std::rand();
    while (servers_.count(handler) != 0)
        handler = std::rand();
    return handler;
}

/// Starts the server and registers it under the record's handle, or tells in the record that it could not be started.
void OrvuRestInterface::startAs(SocketServerInfo& info, std::unique_ptr<OrvuRestSimpleServer> server)
{
    std::unique_ptr<OrvuRestSimpleServer>& place = servers_[info.handler];
    if (server->start()) {
        log("OrvuRestInterface::createServer: ------------------------");
        place = std::move(server);
        return;
    }
    info.error = 1;
    log("OrvuRestInterface::createServer: cannot start the server 1");
    server.reset();
    log("OrvuRestInterface::createServer: cannot start the server 2");
    servers_.erase(info.handler);
}

bool OrvuRestInterface::stopServer(int handler)
{
    log("OrvuRestInterface::stopServer: handler: %d handler severs count: %d", handler,
        static_cast<int>(servers_.size()));
    if (servers_.erase(handler) == 1) return true;
    log("OrvuRestInterface::stopServer: cannot locate the server");
    return false;
}

void OrvuRestInterface::stopAllServers()
{
    log("OrvuRestInterface::stopAllServers: severs count: %d", static_cast<int>(servers_.size()));
    servers_.clear();
}

bool OrvuRestInterface::sendMessage(int handler, unsigned char* data, unsigned int size)
{
    log("OrvuRestInterface::sendMessage: handler: %d | size: %d", handler, static_cast<int>(size));
    const auto server = servers_.find(handler);
    if (server != servers_.end()) return server->second->send(data, size);
    log("OrvuRestInterface::sendMessage: cannot found handler: %d", handler);
    return false;
}

std::string OrvuRestInterface::getCurrentIpAddress()
{
    ifaddrs* interfaces = nullptr;
    getifaddrs(&interfaces);
    const std::string address = firstOutsideAddress(interfaces);
    freeifaddrs(interfaces);
    if (!address.empty()) return address;
    log("Cannot resolve the current IP. Check your network!");
    return "127.0.0.1";
}

}  // namespace Orvu
