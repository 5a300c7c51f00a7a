#include "transport/Outgoing.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace Orvu {

[[gnu::hot]] Outgoing::Outgoing(const void* head, std::size_t headSize, const void* body, std::size_t bodySize)
    : parts_{{const_cast<void*>(head), headSize}, {const_cast<void*>(body), bodySize}}
{}

ssize_t Outgoing::sendOnce(int fd)
{
    constexpr int kFlags = MSG_NOSIGNAL | MSG_DONTWAIT;
    if (parts_[1].iov_len == 0) return send(fd, parts_[0].iov_base, parts_[0].iov_len, kFlags);  // costs less
    msghdr message{};
    message.msg_iov = parts_;
    message.msg_iovlen = 2;
    return sendmsg(fd, &message, kFlags);
}

[[gnu::hot]] bool Outgoing::offer(int fd)
{
    while (left() > 0) {
        const ssize_t sent = sendOnce(fd);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) return errno == EAGAIN;
        skip(static_cast<std::size_t>(sent));
    }
    return true;
}

bool Outgoing::finish(int fd, Seconds patience, Deadline end)
{
    bool isOpen = offer(fd);
    while (isOpen && left() > 0)
        isOpen = offerMore(fd, std::min(endOf(patience), end));
    return isOpen;
}

/// Waits until the socket has taken some of the rest. False when it failed, or took nothing until `giveUp`.
bool Outgoing::offerMore(int fd, Deadline giveUp)
{
    const std::size_t before = left();
    while (left() == before) {
        if (std::chrono::steady_clock::now() >= giveUp) return false;
        // The system reports room only once there is plenty. A slow peer may have made less: a look every second.
        waitFor(fd, POLLOUT, std::min(giveUp, after(Seconds(1))));
        if (!offer(fd)) return false;
    }
    return true;
}

void Outgoing::skip(std::size_t sent)
{
    for (iovec& part : parts_) {
        const std::size_t taken = std::min(sent, part.iov_len);
        part.iov_base = static_cast<char*>(part.iov_base) + taken;
        part.iov_len -= taken;
        sent -= taken;
    }
}

}  // namespace Orvu
