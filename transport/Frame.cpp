#include "transport/Frame.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <poll.h>
#include <sys/socket.h>

#include "transport/Outgoing.h"

namespace Orvu {
namespace {

constexpr std::size_t kLengthSize = sizeof(std::uint32_t);
constexpr std::size_t kFirstStep = 64 * 1024;
constexpr std::size_t kUncounted = 64 * 1024;

}  // namespace

ssize_t SocketSource::read(char* to, std::size_t size)
{
    const Deadline end = std::min(endOf(patience_), end_);
    for (;;) {
        const ssize_t got = recv(fd_, to, size, MSG_DONTWAIT);
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

std::string_view FrameReader::early() const
{
    return std::string_view(early_, filled_).substr(std::min(filled_, kLengthSize));
}

std::optional<FrameText> FrameReader::readText(std::size_t size)
{
    FrameText text(room_);
    text.size_ = std::min(filled_ - kLengthSize, size);
    text.reserve(text.size_);  // so little does not count
    std::memcpy(text.bytes_.get(), early_ + kLengthSize, text.size_);
    while (text.size_ < size) {
        const bool isFull = text.size_ >= text.reserved_;
        if (isFull && !text.reserve(std::min(size, std::max(2 * text.size_, kFirstStep)))) return std::nullopt;
        // Some peers send a NUL after the text. Left unread, it would make closing reset the connection: the last read
        // takes it along, and the text's own NUL then takes its place.
        const std::size_t peersNul = text.reserved_ == size ? 1 : 0;
        const ssize_t got = source_.read(text.bytes_.get() + text.size_, text.reserved_ - text.size_ + peersNul);
        if (got <= 0) break;
        text.size_ += static_cast<std::size_t>(got);
    }
    text.size_ = std::min(text.size_, size);
    text.bytes_.get()[text.size_] = '\0';
    return text;
}

bool TextRoom::take(std::size_t bytes)
{
    std::size_t left = left_;
    do {
        if (left < bytes) return false;
    } while (!left_.compare_exchange_weak(left, left - bytes));
    return true;
}

TextShare::~TextShare()
{
    if (taken_ > 0) room_->giveBack(taken_);
}

bool TextShare::growTo(std::size_t size)
{
    if (!room_ || size <= kUncounted + taken_) return true;
    if (!room_->take(size - kUncounted - taken_)) return false;
    taken_ = size - kUncounted;
    return true;
}

bool FrameText::reserve(std::size_t size)
{
    if (!share_.growTo(size)) return false;
    char* const bytes = static_cast<char*>(std::realloc(bytes_.get(), size + 1));
    if (!bytes) throw std::bad_alloc();
    static_cast<void>(bytes_.release());  // it was the old place
    bytes_.reset(bytes);
    reserved_ = size;
    return true;
}

FrameSent sendFrame(int fd, const char* text, std::size_t size, Seconds patience, std::size_t* sent)
{
    if (sent) *sent = 0;
    if (size >= INT_MAX) {
        errno = EMSGSIZE;
        return FrameSent::Nothing;
    }
    const std::uint32_t length = static_cast<std::uint32_t>(size) + 1;
    ShortFrame room;
    Outgoing frame = frameOf(room, length, sizeof length, text, size);
    const bool isWhole = frame.finish(fd, patience);
    const std::size_t gone = sizeof length + size - frame.left();
    if (sent) *sent = gone;
    if (isWhole) return FrameSent::Whole;
    return gone == 0 ? FrameSent::Nothing : FrameSent::Part;
}

}  // namespace Orvu
