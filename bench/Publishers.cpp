#include "bench/Publishers.h"

#include <algorithm>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

#include "bench/PlainSockets.h"
#include "orvu/OrvuRestInterface.h"

namespace OrvuBench {
namespace {

using Orvu::OrvuRestInterface;

bool isWebSocket(const Load& load)
{
    return load.protocol == std::string_view("websocket");
}

void setOption(int fd, int level, int option, int value)
{
    setsockopt(fd, level, option, &value, sizeof value);
}

/// Those that the library sets.
void setOptions(int fd, bool isWebSocket)
{
    setOption(fd, IPPROTO_TCP, TCP_NODELAY, 1);
    if (!isWebSocket) return;
    setOption(fd, SOL_SOCKET, SO_KEEPALIVE, 1);
    setOption(fd, IPPROTO_TCP, TCP_KEEPIDLE, 60);
    setOption(fd, IPPROTO_TCP, TCP_KEEPINTVL, 15);
    setOption(fd, IPPROTO_TCP, TCP_KEEPCNT, 4);
    setOption(fd, IPPROTO_TCP, TCP_USER_TIMEOUT, 120 * 1000);
}

std::string frameHeader(std::size_t size)
{
    constexpr std::size_t kMostInAByte = 125;
    if (size <= kMostInAByte) return {'\x82', static_cast<char>(size)};
    const bool isLong = size > 0xFFFF;
    std::string header = isLong ? "\x82\x7F" : "\x82\x7E";
    for (int shift = isLong ? 56 : 8; shift >= 0; shift -= 8)
        header += static_cast<char>(size >> shift);
    return header;
}

bool sendWhole(int fd, std::string_view bytes, int firstFlags)
{
    for (int flags = firstFlags; !bytes.empty(); flags = 0) {
        const ssize_t sent = send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL | flags);
        if (sent < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

}  // namespace

std::string onTheWire(const Load& load, const std::string& message)
{
    return isWebSocket(load) ? frameHeader(message.size()) + message : message;
}

std::size_t sizeOnTheWire(const Load& load, std::size_t size)
{
    return isWebSocket(load) ? frameHeader(size).size() + size : size;
}

Sockets::~Sockets()
{
    for (const int fd : fds_)
        close(fd);
}

int Sockets::add(int fd)
{
    fds_.push_back(fd);
    return fd;
}

Listeners::Listeners(std::size_t count, int port)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!connectTo(port, sockets_.add(streamSocket()))) throw std::runtime_error("a listener was refused");
    }
}

void Listeners::shakeHands()
{
    const std::string request = "GET / HTTP/1.1\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n";
    for (const int fd : sockets_)
        send(fd, request.data(), request.size(), MSG_NOSIGNAL);
    takeUntil("\r\n\r\n");
}

bool Listeners::haveSomething() const
{
    constexpr int kMilliseconds = 1;
    return std::all_of(sockets_.begin(), sockets_.end(), [](int fd) {
        pollfd state{fd, POLLIN, 0};
        return poll(&state, 1, kMilliseconds) == 1;
    });
}

void Listeners::takeUntil(const std::string& mark)
{
    for (const int fd : sockets_) {
        std::string taken;
        while (taken.size() < mark.size() || taken.compare(taken.size() - mark.size(), mark.size(), mark) != 0)
            taken += take(fd, 1);
    }
}

bool Listeners::take(const std::string& expected, int times)
{
    bool came = true;
    for (const int fd : sockets_) {
        for (int i = 0; i < times; ++i)
            came = take(fd, expected.size()) == expected && came;
    }
    return came;
}

std::string_view Listeners::take(int fd, std::size_t size)
{
    if (recv(fd, room_, size, MSG_WAITALL) != static_cast<ssize_t>(size)) throw std::runtime_error("a push was cut");
    return {room_, size};
}

BareLoop::BareLoop(const Load& load) : load_(load), listener_(listening_.add(streamSocket())) {}

std::unique_ptr<Listeners> BareLoop::attached()
{
    auto listeners = std::make_unique<Listeners>(load_.listeners, listenOnFreePort(listener_));
    for (std::size_t i = 0; i < load_.listeners; ++i)
        setOptions(connections_.add(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)), isWebSocket(load_));
    return listeners;
}

bool BareLoop::push(std::string& bytes) const
{
    const int firstFlags = isWebSocket(load_) ? MSG_DONTWAIT : 0;
    return std::all_of(connections_.begin(), connections_.end(),
                       [&](int fd) { return sendWhole(fd, bytes, firstFlags); });
}

OrvuPublisher::OrvuPublisher(const Load& load) : load_(load), port_(freePort())
{
    OrvuRestInterface* const orvu = OrvuRestInterface::getInstance();
    orvu->setSocketsPortsRange(port_, port_);
    const std::unique_ptr<Orvu::SocketServerInfo> server(orvu->createServer(load.protocol));
    if (!server || server->error) throw std::runtime_error("the push server found no port");
    handler_ = server->handler;
}

OrvuPublisher::~OrvuPublisher()
{
    OrvuRestInterface::getInstance()->stopServer(handler_);
}

std::unique_ptr<Listeners> OrvuPublisher::attached()
{
    auto listeners = std::make_unique<Listeners>(load_.listeners, port_);
    if (isWebSocket(load_)) listeners->shakeHands();
    std::string hello = "?";
    std::string last = "!";
    do
        push(hello);
    while (!listeners->haveSomething());
    push(last);
    listeners->takeUntil(last);
    return listeners;
}

bool OrvuPublisher::push(std::string& message) const
{
    return OrvuRestInterface::getInstance()->sendMessage(handler_, reinterpret_cast<unsigned char*>(message.data()),
                                                         static_cast<unsigned>(message.size()));
}

}  // namespace OrvuBench
