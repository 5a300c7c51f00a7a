#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace OrvuTool {

/// \file
/// The client's side of RFC 6455, as far as watching needs it: pure functions over bytes.

/// The key of an opening request. The 16 bytes are to be random.
std::string webSocketKey(const std::array<unsigned char, 16>& random);

/// The opening request, with its blank line.
std::string openingRequest(const std::string& host, int port, const std::string& key);

/// Why the head of an answer, all before its blank line, does not open a WebSocket for `key`; empty when it does.
std::string faultOfAnswer(const std::string& head, const std::string& key);

/// The frame that says good-bye, masked with four bytes that are to be random.
std::string closeFrame(const std::array<unsigned char, 4>& mask);

/// Reads the frames that a server sends, wherever the stream is cut. Keeps nothing of their payloads.
class FrameReader {
public:
    enum class Kind {
        Nothing,     ///< All bytes are taken; the next part needs more.
        Payload,     ///< Bytes of a message.
        MessageEnd,  ///< A message is whole.
        Close,       ///< The server says good-bye: the last part of all.
        Fault        ///< What comes is no frame that a server may send: the last part of all.
    };
    struct Part {
        Kind kind;
        std::string_view payload;  ///< Into the bytes that were given.
    };

    /// Takes the next part off the front of `bytes`. Pings and pongs are passed over.
    Part next(std::string_view& bytes);

private:
    Part takePayload(std::string_view& bytes);
    bool takeHeader(std::string_view& bytes);
    std::size_t headerSize() const;
    bool isAllowed() const;
    bool isControl() const { return (header_[0] & 0x08) != 0; }
    std::uint64_t length() const;

    std::string header_;      // of the frame, as far as it came
    bool inFrame_ = false;    // the header is whole
    std::uint64_t left_ = 0;  // bytes of the payload still to come
};

}  // namespace OrvuTool
