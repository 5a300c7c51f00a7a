#include "listener/ListenerConnection.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>

#include "transport/Connecting.h"

namespace Orvu {
namespace {

constexpr std::chrono::milliseconds kLastWords{500};

bool mayBeRepeated(int error)
{
    return error == EAGAIN || error == EINTR;
}

}  // namespace

ListenerConnection::Awaited ListenerConnection::wait(short events, Deadline until)
{
    pollfd wanted[] = {{socket_.fd(), events, 0}, {bell_.fd(), POLLIN, 0}};
    const bool isReady = waitForAny(wanted, 2, until);
    if (wanted[1].revents != 0) return Awaited::Stop;
    if (isReady) return Awaited::Ready;
    return until != kNever && std::chrono::steady_clock::now() >= until ? Awaited::TimeOver : Awaited::Fault;
}

/// 0 when something is ready.
int ListenerConnection::faultAfter(Awaited awaited) const
{
    switch (awaited) {
        case Awaited::Ready:
            return 0;
        case Awaited::TimeOver:
            return ETIMEDOUT;
        case Awaited::Stop:
            return ECANCELED;
        default:
            return errno;
    }
}

int ListenerConnection::connectTo(in_addr host, int port)
{
    socket_ = Socket::stream();
    if (!socket_ || fcntl(socket_.fd(), F_SETFL, O_NONBLOCK) != 0) return errno;
    socket_.keepAlive();
    const sockaddr_in address = addressOf(host, port);
    if (connect(socket_.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return 0;
    if (errno != EINPROGRESS && errno != EINTR) return errno;
    const int fault = faultAfter(wait(POLLOUT, after(kPatience)));
    return fault != 0 ? fault : pendingError(socket_.fd());
}

ssize_t ListenerConnection::receive(char* room, std::size_t size, Deadline until)
{
    while (true) {
        const ssize_t got = recv(socket_.fd(), room, size, 0);
        if (got >= 0 || !mayBeRepeated(errno)) return got;
        const int fault = faultAfter(wait(POLLIN, until));
        if (fault == 0) continue;
        errno = fault;
        return -1;
    }
}

int ListenerConnection::send(std::string_view bytes)
{
    const Deadline until = after(kPatience);
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_.fd(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
        if (sent >= 0) continue;
        const int fault = mayBeRepeated(errno) ? faultAfter(wait(POLLOUT, until)) : errno;
        if (fault != 0) return fault;
    }
    return 0;
}

void ListenerConnection::finish(std::string_view goodBye)
{
    if (!goodBye.empty() && ::send(socket_.fd(), goodBye.data(), goodBye.size(), MSG_NOSIGNAL) < 0) return;
    ::shutdown(socket_.fd(), SHUT_WR);
    const Deadline until = std::chrono::steady_clock::now() + kLastWords;
    char unwanted[4096];
    while (std::chrono::steady_clock::now() < until && waitFor(socket_.fd(), POLLIN, until))
        if (recv(socket_.fd(), unwanted, sizeof unwanted, 0) <= 0) return;
}

}  // namespace Orvu
