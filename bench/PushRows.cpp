#include <algorithm>
#include <benchmark/benchmark.h>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "bench/PlainSockets.h"
#include "bench/Rows.h"
#include "orvu/OrvuRestInterface.h"

namespace OrvuBench {
namespace {

using Orvu::OrvuRestInterface;

struct Load {
    const char* subject;
    const char* protocol;
    std::size_t listeners;
    std::size_t size;
    int pushes;  // until the listeners read: as many as the system keeps for them without waiting
};
constexpr Load kLoads[] = {
    {"pushing to 1", "tcp", 1, 1024, 16},
    {"pushing to 8", "tcp", 8, 1024, 16},
    {"pushing to 64", "tcp", 64, 1024, 16},
    {"pushing a frame, 1 KB", "websocket", 1, 1024, 16},
    {"pushing a frame, 64 KB", "websocket", 1, 65536, 1},
};

bool isWebSocket(const Load& load)
{
    return load.protocol == std::string("websocket");
}

/// A final binary frame without mask (RFC 6455, section 5.2), or the bare message.
std::string onTheWire(const Load& load, const std::string& message)
{
    if (!isWebSocket(load)) return message;
    const bool isLong = message.size() > 0xFFFF;
    std::string frame = isLong ? "\x82\x7F" : "\x82\x7E";
    for (int shift = isLong ? 56 : 8; shift >= 0; shift -= 8)
        frame += static_cast<char>(message.size() >> shift);
    return frame + message;
}

class Sockets {
public:
    Sockets() = default;
    ~Sockets()
    {
        for (const int fd : fds_)
            close(fd);
    }
    Sockets(const Sockets&) = delete;
    Sockets& operator=(const Sockets&) = delete;

    int add(int fd)
    {
        fds_.push_back(fd);
        return fd;
    }
    auto begin() const { return fds_.begin(); }
    auto end() const { return fds_.end(); }

private:
    std::vector<int> fds_;
};

/// Those who are pushed to. They read when they are told to, so that a push never waits for them.
class Listeners {
public:
    Listeners(const Load& load, int port)
    {
        for (std::size_t i = 0; i < load.listeners; ++i) {
            if (!connectTo(port, sockets_.add(streamSocket()))) throw std::runtime_error("a listener was refused");
        }
        if (isWebSocket(load)) shakeHands();
    }

    /// Whether something came for each of them.
    bool haveSomething() const
    {
        constexpr int kMilliseconds = 1;
        return std::all_of(sockets_.begin(), sockets_.end(), [](int fd) {
            pollfd state{fd, POLLIN, 0};
            return poll(&state, 1, kMilliseconds) == 1;
        });
    }

    /// Takes all that comes to each of them up to `mark`.
    void takeUntil(const std::string& mark)
    {
        for (const int fd : sockets_) {
            std::string taken;
            while (taken.size() < mark.size() || taken.compare(taken.size() - mark.size(), mark.size(), mark) != 0)
                taken += take(fd, 1);
        }
    }

    /// Takes just these bytes for each of them, so many times; whether they came.
    bool take(const std::string& expected, int times)
    {
        bool came = true;
        for (const int fd : sockets_) {
            for (int i = 0; i < times; ++i)
                came = take(fd, expected.size()) == expected && came;
        }
        return came;
    }

private:
    void shakeHands()
    {
        const std::string request = "GET / HTTP/1.1\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n";
        for (const int fd : sockets_)
            send(fd, request.data(), request.size(), MSG_NOSIGNAL);
        takeUntil("\r\n\r\n");
    }

    std::string_view take(int fd, std::size_t size)
    {
        if (recv(fd, room_, size, MSG_WAITALL) != static_cast<ssize_t>(size))
            throw std::runtime_error("a push was cut");
        return {room_, size};
    }

    Sockets sockets_;
    char room_[128 * 1024];
};

/// The bytes that travel, to one socket after the other.
class BareLoop {
public:
    explicit BareLoop(const Load& load) : load_(load), listener_(listening_.add(streamSocket())) {}

    std::unique_ptr<Listeners> attached()
    {
        Load silent = load_;
        silent.protocol = "tcp";  // nobody shakes hands
        auto listeners = std::make_unique<Listeners>(silent, listenOnFreePort(listener_));
        for (std::size_t i = 0; i < load_.listeners; ++i)
            sendAtOnce(connections_.add(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)));
        return listeners;
    }

    /// What push() is given.
    std::string prepared(const std::string& message) const { return onTheWire(load_, message); }

    bool push(std::string& bytes) const
    {
        return std::all_of(connections_.begin(), connections_.end(), [&](int fd) {
            return write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
        });
    }

private:
    static void sendAtOnce(int fd)
    {
        const int on = 1;
        setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);  // as the library does
    }

    const Load load_;
    Sockets listening_;
    const int listener_;
    Sockets connections_;
};

class OrvuPublisher {
public:
    explicit OrvuPublisher(const Load& load) : load_(load), port_(freePort())
    {
        OrvuRestInterface* const orvu = OrvuRestInterface::getInstance();
        orvu->setSocketsPortsRange(port_, port_);
        const std::unique_ptr<Orvu::SocketServerInfo> server(orvu->createServer(load.protocol));
        if (!server || server->error) throw std::runtime_error("the push server found no port");
        handler_ = server->handler;
    }
    ~OrvuPublisher() { OrvuRestInterface::getInstance()->stopServer(handler_); }
    OrvuPublisher(const OrvuPublisher&) = delete;
    OrvuPublisher& operator=(const OrvuPublisher&) = delete;

    /// Once all of them are known to the server.
    std::unique_ptr<Listeners> attached()
    {
        auto listeners = std::make_unique<Listeners>(load_, port_);
        std::string hello = "?";
        std::string last = "!";
        do
            push(hello);
        while (!listeners->haveSomething());
        push(last);
        listeners->takeUntil(last);
        return listeners;
    }

    static std::string prepared(const std::string& message) { return message; }

    bool push(std::string& message) const
    {
        return OrvuRestInterface::getInstance()->sendMessage(handler_, reinterpret_cast<unsigned char*>(message.data()),
                                                             static_cast<unsigned>(message.size()));
    }

private:
    const Load load_;
    const int port_;
    int handler_ = 0;
};

template <class Publisher>
void runPushes(benchmark::State& state, const Load& load)
{
    Publisher publisher(load);
    const std::unique_ptr<Listeners> listeners = publisher.attached();
    const std::string message(load.size, 'x');
    std::string prepared = publisher.prepared(message);
    const std::string expected = onTheWire(load, message);
    for (auto _ : state) {
        for (int i = 0; i < load.pushes; ++i) {
            if (!publisher.push(prepared)) return state.SkipWithError("a push failed");
        }
        state.PauseTiming();
        if (!listeners->take(expected, load.pushes)) return state.SkipWithError("something else came");
        state.ResumeTiming();
    }
}

template <class Publisher>
void addRow(const Load& load, const char* name)
{
    benchmark::RegisterBenchmark((load.subject + std::string("/") + name).c_str(),
                                 [&load](benchmark::State& state) { runPushes<Publisher>(state, load); });
}

}  // namespace

void addPushRows()
{
    for (const Load& load : kLoads) {
        addRow<BareLoop>(load, "limit");
        addRow<OrvuPublisher>(load, "orvu");
    }
}

}  // namespace OrvuBench
