#include "transport/Frame.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

#include "transport/Outgoing.h"

namespace Orvu {
namespace {

constexpr std::size_t kLengthSize = sizeof(std::uint32_t);
constexpr std::size_t kFirstStep = 64 * 1024;

Deadline endOf(Seconds patience)
{
    return patience == Seconds::zero() ? kNever : after(patience);
}

}  // namespace

SocketSource::SocketSource(int fd, Seconds patience, Deadline end)
    : fd_(fd), patience_(patience), end_(end), flags_(MSG_DONTWAIT)
{}

SocketSource::SocketSource(int fd, Seconds patience) : fd_(fd), patience_(patience), end_(kNever), flags_(0) {}

ssize_t SocketSource::read(char* to, std::size_t size)
{
    const Deadline end = std::min(endOf(patience_), end_);
    for (;;) {
        const ssize_t got = recv(fd_, to, size, flags_);
        if (got >= 0 || (errno != EAGAIN && errno != EINTR)) return got;
        if (!waitFor(fd_, POLLIN, end)) return -1;
    }
}

std::optional<std::uint32_t> FrameReader::readLength()
{
    while (filled_ < kLengthSize) {
        const ssize_t got = source_.read(early_ + filled_, sizeof early_ - filled_);
        if (got <= 0) return std::nullopt;
        filled_ += static_cast<std::size_t>(got);
    }
    std::uint32_t length;
    std::memcpy(&length, early_, kLengthSize);
    return length;
}

std::string FrameReader::readText(std::size_t size)
{
    std::size_t have = std::min(filled_ - kLengthSize, size);
    std::string text(early_ + kLengthSize, have);
    while (have < size) {
        // One byte more than the text: a peer's NUL left unread would make closing reset the connection.
        if (have == text.size()) text.resize(std::min(size + 1, std::max(2 * have, kFirstStep)));
        const ssize_t got = source_.read(&text[have], text.size() - have);
        if (got <= 0) break;
        have += static_cast<std::size_t>(got);
    }
    text.resize(std::min(have, size));
    return text;
}

bool sendFrame(int fd, const char* text, std::size_t size, Seconds patience)
{
    if (size >= INT_MAX) return false;
    const std::uint32_t length = static_cast<std::uint32_t>(size) + 1;
    Outgoing frame(&length, sizeof length, text, size);
    return frame.finish(fd, patience);
}

}  // namespace Orvu
