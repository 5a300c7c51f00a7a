#pragma once

#include <chrono>
#include <cstddef>
#include <netinet/in.h>
#include <poll.h>
#include <utility>

namespace Orvu {

using Seconds = std::chrono::seconds;
using Deadline = std::chrono::steady_clock::time_point;

/// The deadline of a wait without a limit.
constexpr Deadline kNever = Deadline::max();

/// How long a peer may take for the next step of what it has begun, such as its handshake, or to make room for more
/// bytes.
constexpr Seconds kPatience(5);

/// The end of a wait that begins now.
inline Deadline after(Seconds wait)
{
    return std::chrono::steady_clock::now() + wait;
}

/// The same, but 0 seconds are no limit.
inline Deadline endOf(Seconds patience)
{
    return patience == Seconds::zero() ? kNever : after(patience);
}

/// A TCP port, 0 to 65535, of an IPv4 host, as the system's calls want it.
sockaddr_in addressOf(in_addr host, int port);

/// ETIMEDOUT for the error numbers that a call leaves when its time is over; any other as it is.
int withTimeOut(int error);

/// Waits until one of `events` (of `poll`), an error or a hang-up shows on `fd`; false when `deadline` comes first.
bool waitFor(int fd, short events, Deadline deadline);

/// The same for several sockets at once, each with its events; the results are in `revents`.
bool waitForAny(pollfd* wanted, std::size_t count, Deadline deadline);

/// Whether the peer of a connection has ended its stream, or the connection broke. Bytes that came before may be left
/// to receive.
bool hasLostPeer(int fd);

/// Owns one socket and closes it. shutdown() may be called from another thread; closing may not.
///
/// Sockets made here are closed by `exec` and never take a standard descriptor: the contract counts descriptors from 1,
/// and log lines go to 2.
class Socket {
public:
    Socket() = default;
    explicit Socket(int fd) : fd_(fd) {}  ///< Takes `fd`.
    Socket(Socket&& other) noexcept : fd_(other.release()) {}
    Socket& operator=(Socket&& other) noexcept;
    ~Socket();

    /// A new IPv4 stream socket; an empty one, with `errno` set, on failure.
    static Socket stream();
    /// The next connection of a listening socket; an empty one, with `errno` set, on failure. Blocks.
    static Socket acceptedFrom(const Socket& listener);

    /// Not a socket, but a counter that poll() finds readable once ring() was called; without one `errno` tells why.
    static Socket bell();

    explicit operator bool() const { return fd_ >= 0; }
    int fd() const { return fd_; }
    /// Gives the descriptor away.
    int release() { return std::exchange(fd_, -1); }
    /// Lets what is written go out at once, however small, instead of waiting until the peer has confirmed what went
    /// before.
    void sendAtOnce();
    /// Has the system find a peer that vanished without a word within two minutes, whether or not something is on its
    /// way to it.
    void keepAlive();
    /// Wakes whoever polls the bell, now and later.
    void ring() const;
    /// Ends the traffic both ways and wakes whoever waits for some. A listening socket stops listening and stays bound.
    void shutdown();

private:
    int fd_ = -1;
};

}  // namespace Orvu
