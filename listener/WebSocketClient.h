#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Orvu {

/// \file
/// The client's side of RFC 6455, as far as listening needs it: pure functions over bytes. They throw std::bad_alloc.

/// The key of an opening request. The 16 bytes are to be random.
std::string webSocketKey(const std::array<unsigned char, 16>& random);

/// The opening request, with its blank line.
std::string openingRequest(const std::string& host, int port, const std::string& key);

/// Why the head of an answer, all before its blank line, does not open a WebSocket for `key`; empty when it does.
std::string faultOfAnswer(const std::string& head, const std::string& key);

/// A client's frame without continuation: `opcode` is its low four bits, `payload` has at most 125 bytes. `mask` is
/// to be random, and new for each frame (RFC 6455, section 5.3).
std::string maskedFrame(int opcode, std::string_view payload, const std::array<unsigned char, 4>& mask);

/// The close frame.
std::string closeFrame(const std::array<unsigned char, 4>& mask);

/// The frame that answers a ping with its payload.
std::string pongFrame(std::string_view payload, const std::array<unsigned char, 4>& mask);

/// Reads the frames that a server sends, wherever the stream is cut. Keeps only the payloads of pings.
class ServerFrames {
public:
    enum class Kind {
        Nothing,     ///< All bytes are taken; the next part needs more.
        Payload,     ///< Bytes of a message.
        MessageEnd,  ///< A message is whole.
        Ping,        ///< A ping, which is to be answered; see ping().
        Close,       ///< A close frame: the last part of all.
        Fault        ///< Bytes that are not a frame of a server: the last part of all.
    };
    struct Part {
        Kind kind;
        std::string_view payload;  ///< Into the bytes that were given.
    };

    /// Takes the next part off the front of `bytes`. Pongs are skipped. Throws std::bad_alloc.
    Part next(std::string_view& bytes);

    /// The payload of the last ping; valid until the next call of next().
    const std::string& ping() const { return ping_; }

private:
    Part takePayload(std::string_view& bytes);
    bool takeHeader(std::string_view& bytes);
    std::size_t headerSize() const;
    bool isAllowed() const;
    bool isControl() const { return (header_[0] & 0x08) != 0; }
    bool isPing() const { return (header_[0] & 0x0f) == 0x09; }
    Kind endOfFrame();
    std::uint64_t length() const;

    std::string header_;      // of the frame, as far as it came
    bool inFrame_ = false;    // the header is whole
    std::uint64_t left_ = 0;  // bytes of the payload still to come
    std::string ping_;        // the payload of one, as far as it came
};

}  // namespace Orvu
