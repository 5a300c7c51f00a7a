#include "transport/PushServers.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <new>
#include <optional>
#include <utility>

#include "log/Log.h"
#include "transport/OrvuRestServerTcpSocket.h"
#include "transport/OrvuRestServerWebSocket.h"

namespace Orvu {
namespace {

constexpr long long kMostPorts = 65536;

/// A server on the first port of the range on which it can be configured; none when there is no such port.
template <class Kind>
PushServers::Server bound(in_addr address, PushServers::PortRange range)
{
    const auto [minPort, maxPort] = range;
    const auto server = std::make_shared<Kind>();
    const long long last = std::min<long long>(maxPort, minPort + kMostPorts - 1);
    for (long long port = minPort; port <= last; ++port) {
        logLine("OrvuRestInterface::createServer: Trying");
        if (server->acceptor().configure(address, static_cast<int>(port))) return {server, &server->acceptor()};
        logLine("OrvuRestInterface::createServer: cannot configure the server");
    }
    return {};
}

}  // namespace

void PushServers::setPortRange(PortRange range)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    portRange_ = range;
}

PushServers::PortRange PushServers::portRange()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return portRange_;
}

SocketServerInfo* PushServers::create(std::string protocol, const ListenAddress& listen, std::optional<PortRange> own)
{
    logLine("OrvuRestInterface::createServer: protocol: %s", protocol.c_str());
    const auto boundTo = protocol == "tcp"         ? bound<OrvuRestServerTcpSocket>
                         : protocol == "websocket" ? bound<OrvuRestServerWebSocket>
                                                   : nullptr;
    if (!boundTo) {
        logLine("OrvuRestInterface::createServer: cannot create the server: %s", protocol.c_str());
        return nullptr;
    }
    const std::optional<in_addr> address = listen.usable("OrvuRestInterface::createServer");
    if (!address) return nullptr;
    Server server = boundTo(*address, own ? *own : portRange());
    if (!server.pushes) return nullptr;
    auto info = std::make_unique<SocketServerInfo>();
    info->protocol = std::move(protocol);
    info->ipAddress = listen.isOne() ? listen.text() : outsideAddress();
    info->port = server.acceptor->port();
    startAs(*info, std::move(server));
    return info.release();
}

/// A value of the C library's generator, seeded again each time; the next free one if a server has it already.
int PushServers::newHandler() const
{
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    int handler = std::rand();
    while (servers_.count(handler) != 0)
        handler = std::rand();
    return handler;
}

/// Starts the server and registers it under a handle of its own, or sets the error in the record.
void PushServers::startAs(SocketServerInfo& info, Server server)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    info.handler = newHandler();
    Server& place = servers_[info.handler];
    if (server.pushes->start()) {
        logLine("OrvuRestInterface::createServer: ------------------------");
        place = std::move(server);
        return;
    }
    info.error = 1;
    logLine("OrvuRestInterface::createServer: cannot start the server 1");
    server = {};
    logLine("OrvuRestInterface::createServer: cannot start the server 2");
    servers_.erase(info.handler);
}

int PushServers::count()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return static_cast<int>(servers_.size());
}

bool PushServers::stop(int handler)
{
    logLine("OrvuRestInterface::stopServer: handler: %d handler severs count: %d", handler, count());
    std::unique_lock<std::mutex> lock(mutex_);
    const auto stopped = servers_.extract(handler);
    lock.unlock();
    if (stopped) {
        stopped.mapped().acceptor->retire();
        return true;
    }
    logLine("OrvuRestInterface::stopServer: cannot locate the server");
    return false;
}

void PushServers::stopAll()
{
    logLine("OrvuRestInterface::stopAllServers: severs count: %d", count());
    stopEach();
}

void PushServers::end()
{
    setPortRange(kNoPorts);
    stopEach();
}

void PushServers::stopEach()
{
    std::unique_lock<std::mutex> lock(mutex_);
    const auto stopped = std::exchange(servers_, {});
    lock.unlock();
    for (const auto& [handler, server] : stopped)
        server.acceptor->retire();
}

/// The server of that handle; null when there is none.
[[gnu::hot]] std::shared_ptr<OrvuRestSimpleServer> PushServers::find(int handler)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = servers_.find(handler);
    return place == servers_.end() ? nullptr : place->second.pushes;
}

[[gnu::hot]] bool PushServers::send(int handler, unsigned char* data, unsigned int size)
{
    logLine("OrvuRestInterface::sendMessage: handler: %d | size: %d", handler, static_cast<int>(size));
    if (const auto server = find(handler)) return server->send(data, size);
    logLine("OrvuRestInterface::sendMessage: cannot found handler: %d", handler);
    return false;
}

}  // namespace Orvu
