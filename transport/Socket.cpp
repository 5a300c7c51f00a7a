#include "transport/Socket.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Orvu {
namespace {

constexpr int kFirstOrdinaryDescriptor = 3;

/// Rounded up, so that a wait never ends early; -1, with which `poll` waits forever, for a deadline that never comes.
int millisecondsUntil(Deadline deadline)
{
    if (deadline == kNever) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, INT_MAX));
}

void setOption(int fd, int level, int option, int value)
{
    setsockopt(fd, level, option, &value, sizeof value);
}

Socket movedUp(Socket socket)
{
    if (!socket || socket.fd() >= kFirstOrdinaryDescriptor) return socket;
    Socket moved(fcntl(socket.fd(), F_DUPFD_CLOEXEC, kFirstOrdinaryDescriptor));
    const int reason = errno;
    socket = Socket();
    errno = reason;
    return moved;
}

}  // namespace

sockaddr_in addressOf(in_addr host, int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr = host;
    address.sin_port = htons(static_cast<in_port_t>(port));
    return address;
}

int withTimeOut(int error)
{
    // EINTR: the wait that followed was interrupted, and then over.
    return error == EAGAIN || error == EINTR || error == EINPROGRESS ? ETIMEDOUT : error;
}

bool waitFor(int fd, short events, Deadline deadline)
{
    pollfd wanted{fd, events, 0};
    return waitForAny(&wanted, 1, deadline);
}

bool waitForAny(pollfd* wanted, std::size_t count, Deadline deadline)
{
    int ready;
    do {
        ready = poll(wanted, static_cast<nfds_t>(count), millisecondsUntil(deadline));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

bool hasLostPeer(int fd)
{
    pollfd state{fd, POLLRDHUP, 0};
    return poll(&state, 1, 0) > 0 && (state.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

Socket& Socket::operator=(Socket&& other) noexcept
{
    const Socket old(std::exchange(fd_, other.release()));
    return *this;
}

Socket::~Socket()
{
    if (fd_ >= 0) close(fd_);
}

Socket Socket::stream()
{
    return movedUp(Socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)));
}

Socket Socket::acceptedFrom(const Socket& listener)
{
    int fd;
    do {
        fd = accept4(listener.fd(), nullptr, nullptr, SOCK_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    return movedUp(Socket(fd));
}

Socket Socket::bell()
{
    return movedUp(Socket(eventfd(0, EFD_CLOEXEC)));
}

void Socket::sendAtOnce()
{
    setOption(fd_, IPPROTO_TCP, TCP_NODELAY, 1);
}

void Socket::keepAlive()
{
    setOption(fd_, SOL_SOCKET, SO_KEEPALIVE, 1);
    setOption(fd_, IPPROTO_TCP, TCP_KEEPIDLE, 60);  // seconds, as the next one
    setOption(fd_, IPPROTO_TCP, TCP_KEEPINTVL, 15);
    setOption(fd_, IPPROTO_TCP, TCP_KEEPCNT, 4);
    setOption(fd_, IPPROTO_TCP, TCP_USER_TIMEOUT, 120 * 1000);  // milliseconds
}

void Socket::ring() const
{
    while (eventfd_write(fd_, 1) != 0 && errno == EINTR) {
    }
}

void Socket::shutdown()
{
    if (fd_ >= 0) ::shutdown(fd_, SHUT_RDWR);
}

}  // namespace Orvu
