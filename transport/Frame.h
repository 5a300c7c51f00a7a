#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/types.h>
#include <utility>

#include "messages/core/Json.h"
#include "transport/Socket.h"

namespace Orvu {

/// \file
/// One frame of an exchange, the same in both directions: four bytes with the length of the text plus one, in the
/// host's byte order, then the text without its NUL.

/// The longest text that is read: what is announced longer is refused.
constexpr std::uint32_t kLongestText = 64u << 20;

/// What the texts that are being received or read may take together. Any thread.
class TextRoom {
public:
    explicit TextRoom(std::size_t bytes) : left_(bytes) {}

    /// False when less than that is left.
    bool take(std::size_t bytes);
    void giveBack(std::size_t bytes) { left_ += bytes; }

private:
    std::atomic<std::size_t> left_;
};

/// What one text takes of such room; given back with the text. The first 64 KiB do not count, so that short texts are
/// received whatever others take.
class TextShare {
public:
    explicit TextShare(TextRoom* room) : room_(room) {}  ///< Null: without a bound.
    TextShare(TextShare&& other) noexcept : room_(other.room_), taken_(std::exchange(other.taken_, 0)) {}
    ~TextShare();

    /// False, and nothing changes, when a text of `size` bytes does not fit beside the others.
    bool growTo(std::size_t size);

private:
    TextRoom* room_;
    std::size_t taken_ = 0;
};

/// Where bytes come from.
class ByteSource {
public:
    /// Waits for bytes and takes at most `size` of them. The number taken; 0 at the end, -1 after an error or a
    /// time-out.
    virtual ssize_t read(char* to, std::size_t size) = 0;

protected:
    ~ByteSource() = default;
};

/// Bytes from a socket, which stays its owner's. A read waits for `patience` (0 is no limit), and not beyond `end`.
class SocketSource : public ByteSource {
public:
    SocketSource(int fd, Seconds patience, Deadline end = kNever) : fd_(fd), patience_(patience), end_(end) {}

    ssize_t read(char* to, std::size_t size) override;

private:
    const int fd_;
    const Seconds patience_;
    const Deadline end_;
};

/// The text of a frame, with a NUL after it. Grows without being cleared or, as far as the system can, copied.
class FrameText {
public:
    const char* c_str() const { return bytes_ ? bytes_.get() : ""; }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

private:
    friend class FrameReader;

    explicit FrameText(TextRoom* room) : share_(room) {}

    /// Makes room for `size` bytes and the NUL; false when they do not fit beside other texts. Throws std::bad_alloc.
    bool reserve(std::size_t size);

    std::unique_ptr<char, FreeText> bytes_;
    std::size_t size_ = 0;
    std::size_t reserved_ = 0;
    TextShare share_;
};

/// Reads one frame: first the length, then the text.
class FrameReader {
public:
    /// `room` limits this text together with others; null when only its own bound counts.
    explicit FrameReader(ByteSource& source, TextRoom* room = nullptr) : source_(source), room_(room) {}

    /// The announced length, the NUL counted. None when the source ends before its four bytes are there.
    std::optional<std::uint32_t> readLength();

    /// What has come of the text along with its length.
    std::string_view early() const;

    /// The text of `size` bytes; less when the source ends before, none when there is no room for it. Memory follows
    /// what arrives, not what was announced. Throws std::bad_alloc.
    std::optional<FrameText> readText(std::size_t size);

private:
    ByteSource& source_;
    TextRoom* const room_;
    std::size_t filled_ = 0;
    char early_[2048];  // the length and what came along with it: short frames need one read
};

/// What has gone out of a frame.
enum class FrameSent { Nothing, Part, Whole };

/// Sends `text` as one frame. Not whole when the peer is gone or takes nothing for `patience` (0 is no limit);
/// and nothing of a text whose length the frame cannot carry. `errno` then says why (see withTimeOut()). `sent`
/// receives the number of bytes that have gone out, the 4 of the length included.
FrameSent sendFrame(int fd, const char* text, std::size_t size, Seconds patience, std::size_t* sent = nullptr);

}  // namespace Orvu
