#include "orvu/OrvuRestInterface.h"

#include <arpa/inet.h>
#include <atomic>
#include <cstring>
#include <exception>
#include <ifaddrs.h>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <new>

#include "transport/OrvuRestClientSocket.h"
#include "transport/OrvuRestServerSocket.h"
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

bool notify(RequestCallback callback, OrvuRestRequest* request)
{
    OrvuRestInterface::log("OrvuRestInterface::notifyCallback");
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
    log("OrvuRestInterface::createServer: cannot create the server: %s", protocol.c_str());
    return nullptr;
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
