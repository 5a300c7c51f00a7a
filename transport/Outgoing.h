#pragma once

#include <cstddef>
#include <cstring>
#include <sys/uio.h>

#include "transport/Socket.h"

namespace Orvu {

/// Bytes on their way into a socket: a head and a body that go out as one. They stay the caller's.
class Outgoing {
public:
    Outgoing(const void* head, std::size_t headSize, const void* body = nullptr, std::size_t bodySize = 0);

    /// Gives the socket as much as it takes without waiting. False when the socket failed for good.
    bool offer(int fd);

    /// Gives it all the rest, waiting for room up to `patience` at a time and not beyond `end`. False when the socket
    /// failed or the time was over.
    bool finish(int fd, Seconds patience, Deadline end = kNever);

    /// Bytes that the socket has not taken yet.
    std::size_t left() const { return parts_[0].iov_len + parts_[1].iov_len; }

private:
    ssize_t sendOnce(int fd);
    bool offerMore(int fd, Deadline giveUp);
    void skip(std::size_t sent);

    iovec parts_[2];
};

/// Room to put a short frame together.
using ShortFrame = char[1500];

/// A frame's head, the first bytes of `head`, and its body on their way: put together in `room`, which is to live as
/// long, when it is short. Sending two parts costs more.
template <class Head>
Outgoing frameOf(ShortFrame& room, const Head& head, std::size_t headSize, const void* body, std::size_t bodySize)
{
    if (bodySize == 0 || headSize + bodySize > sizeof room) return {&head, headSize, body, bodySize};
    std::memcpy(room, &head, sizeof head);  // of a constant size: no call
    std::memcpy(room + headSize, body, bodySize);
    return {room, headSize + bodySize};
}

}  // namespace Orvu
