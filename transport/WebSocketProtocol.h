#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "transport/Frame.h"

namespace Orvu {

/// \file
/// The part of RFC 6455 that the WebSocket push server speaks, as pure functions over bytes.

/// Frame opcodes (RFC 6455, section 5.2).
enum WebSocketOpcode : int {
    WS_FR_OP_TXT = 1,
    WS_FR_OP_BIN = 2,
    WS_FR_OP_CLSE = 8,
};

/// The most that is read of a client's opening request, and of one frame.
constexpr std::size_t kWebSocketReceiveSize = 2048;

/// Reads a client's opening request up to its blank line, kWebSocketReceiveSize bytes, or the end of the source.
std::string readOpeningRequest(ByteSource& source);

/// The value of "Sec-WebSocket-Accept" for a client's key of 24 characters (RFC 6455, section 4.2.2). Throws std::bad_alloc.
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
    int opcode = 0;
    std::optional<std::string> payload;  ///< Only of a final text frame that is long enough for its length and key.
};

/// Reads `size` received bytes (1 or more) as one frame. The payload is all that stands behind the masking key. Throws
/// std::bad_alloc.
ReceivedFrame decodeFrame(const unsigned char* bytes, std::size_t size);

}  // namespace Orvu
