#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace OrvuBench {

/// \file
/// The publishers, which are the library and a loop of sends, and their listeners.

/// What is pushed, and to how many listeners.
struct Load {
    const char* subject;
    const char* protocol;  // "tcp" or "websocket"
    std::size_t listeners;
    std::size_t size;  // of one message, in bytes
};

/// The bytes of one push: a final binary frame without mask (RFC 6455, section 5.2), or the bare message.
std::string onTheWire(const Load& load, const std::string& message);
/// The size of these bytes for a message of this size.
std::size_t sizeOnTheWire(const Load& load, std::size_t size);

/// Owns sockets and closes them.
class Sockets {
public:
    Sockets() = default;
    ~Sockets();
    Sockets(const Sockets&) = delete;
    Sockets& operator=(const Sockets&) = delete;

    int add(int fd);
    auto begin() const { return fds_.begin(); }
    auto end() const { return fds_.end(); }

private:
    std::vector<int> fds_;
};

/// The listeners. They read when told to.
class Listeners {
public:
    /// Connects them. Throws std::runtime_error.
    Listeners(std::size_t count, int port);

    void shakeHands();
    /// Whether each has something to read.
    bool haveSomething() const;
    /// Reads what each receives, up to `mark`.
    void takeUntil(const std::string& mark);
    /// Reads exactly these bytes for each, that many times; whether they came.
    bool take(const std::string& expected, int times);

    const Sockets& sockets() const { return sockets_; }

private:
    std::string_view take(int fd, std::size_t size);

    Sockets sockets_;
    char room_[128 * 1024];
};

/// Writes the bytes to one socket after the other.
class BareLoop {
public:
    explicit BareLoop(const Load& load);

    /// Connects the listeners.
    std::unique_ptr<Listeners> attached();
    /// What push() is given.
    std::string prepared(const std::string& message) const { return onTheWire(load_, message); }
    /// Waits for room. As with the library, a frame whose first byte finds none is not sent: false.
    bool push(std::string& bytes) const;

private:
    const Load load_;
    Sockets listening_;
    const int listener_;
    Sockets connections_;
};

/// The library's push server.
class OrvuPublisher {
public:
    /// Throws std::runtime_error.
    explicit OrvuPublisher(const Load& load);
    ~OrvuPublisher();
    OrvuPublisher(const OrvuPublisher&) = delete;
    OrvuPublisher& operator=(const OrvuPublisher&) = delete;

    /// Connects the listeners; returns once the server knows all of them.
    std::unique_ptr<Listeners> attached();
    static std::string prepared(const std::string& message) { return message; }
    bool push(std::string& message) const;

private:
    const Load load_;
    const int port_;
    int handler_ = 0;
};

}  // namespace OrvuBench
