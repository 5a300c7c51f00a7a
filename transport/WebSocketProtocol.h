#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace Orvu {

/// \file
/// The part of RFC 6455 that the WebSocket push server speaks, as pure functions over bytes.

/// Frame opcodes (RFC 6455, section 5.2).
enum WebSocketOpcode : int {
    WS_FR_OP_TXT = 1,
    WS_FR_OP_BIN = 2,
    WS_FR_OP_CLSE = 8,
};

/// A client's opening request, as it arrives.
class OpeningRequest {
public:
    static constexpr std::size_t kLongest = 8 * 1024;

    /// Takes what belongs to the request, its blank line included, of `size` bytes that came next; how many these are.
    /// Throws std::bad_alloc.
    std::size_t take(const unsigned char* bytes, std::size_t size);
    /// Whether its blank line has come.
    bool isWhole() const { return matched_ == 4; }
    /// Whether nothing that may still come counts.
    bool canBeJudged() const { return isWhole() || text_.size() == kLongest; }
    /// Its first kLongest bytes, as far as they have come.
    const std::string& text() const { return text_; }
    /// Keeps none of it from now on, and so takes no more memory.
    void dropText();

private:
    std::string text_;
    bool keepsText_ = true;
    int matched_ = 0;  // how much of the blank line and the line end before it the bytes so far end with
};

/// The value of "Sec-WebSocket-Accept" for a client's key of 24 characters (RFC 6455, section 4.2.2). Throws
/// std::bad_alloc.
std::string getHSaccept(const std::string& key);

/// The answer to an opening request; none when the request has no key, or one that is not 24 characters long. Throws
/// std::bad_alloc.
std::optional<std::string> getHSresponse(const std::string& request);

/// The bytes before the payload of an unmasked, unfragmented frame.
struct FrameHeader {
    FrameHeader(int opcode, unsigned int payloadSize);

    unsigned char bytes[10];
    std::size_t size;
};

/// What a client sent.
struct ReceivedFrame {
    static constexpr std::size_t kShown = 2048;

    int opcode = 0;
    std::string payload;     ///< Unmasked; only of a final text.
    bool isLost = false;     ///< There was no memory for the payload.
    std::uint64_t size = 0;  ///< Of the whole frame.
    std::size_t shownSize = 0;
    unsigned char shown[kShown] = {};  ///< Its first bytes, as they came.
};

/// Finds the frames in the bytes of a client, in whatever pieces they come. Of those that are not a final text the
/// payload is skipped, and a close frame is one by its first byte already. Four bytes count as the masking key even
/// where the mask bit is not set.
class FrameStream {
public:
    static constexpr std::uint64_t kLongestText = 64 * 1024;

    /// The next frame that ends in the bytes from `at` to `end`, which came next: `at` moves to where they go on after
    /// it. Null when there is none: `at` is `end`, then, and further bytes may end the frame. Valid until the next
    /// call.
    const ReceivedFrame* next(const unsigned char*& at, const unsigned char* end);
    /// Whether a text began that is longer than kLongestText. No further frame is found then.
    bool isTooLong() const;

private:
    void begin();
    bool isClose() const;
    bool isText() const;
    std::size_t headerSize() const;
    std::uint64_t payloadSize() const;
    bool takeHeader(const unsigned char*& at, const unsigned char* end);
    void takePayload(const unsigned char*& at, const unsigned char* end);
    void takeRest(const unsigned char*& at, const unsigned char* end);
    void show(const unsigned char* begin, const unsigned char* end);
    void unmask(const unsigned char* masked, std::size_t size);

    ReceivedFrame frame_;
    bool isComplete_ = false;
};

}  // namespace Orvu
