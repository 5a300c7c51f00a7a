#pragma once

#include <optional>
#include <string>
#include <vector>

#include "support/RawPeer.h"

/// \file
/// What listens to push servers in the tests, below and above the WebSocket protocol.

namespace OrvuTests {

/// A socket that is to connect later, perhaps when no descriptors are left.
RawPeer unconnected();
/// Throws std::runtime_error when it cannot.
void connectTo(int port, RawPeer& peer);

/// Has room for a few kilobytes that it has not read: whoever sends it much more has to wait until it reads.
RawPeer connectedWithLittleRoom(int port);

/// Whether something can be read, the end of the stream included.
bool hasBytes(const RawPeer& peer);

/// The descriptor of this process at the other end of the connection; -1 without one.
int otherEndOf(const RawPeer& peer);

/// Lets the system keep only some kilobytes that are on their way to the client.
void keepLittleFor(const RawPeer& client);

/// The key of RFC 6455's example, and the server's answer to it.
inline const std::string kKey = "dGhlIHNhbXBsZSBub25jZQ==";
inline const std::string kAnswer =
    "HTTP/1.1 101 Switching Protocols\r\n"
    "Upgrade: websocket\r\n"
    "Connection: Upgrade\r\n"
    "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n"
    "\r\n";

/// What a browser sends first.
std::string openingRequest(const std::string& key = kKey);

/// Performs the opening handshake; false when the answer is another than kAnswer.
bool shakesHands(RawPeer& peer);

/// One frame as a client sends it: `first` is its first byte, the payload is masked and at most 65535 bytes long.
std::string clientFrame(int first, const std::string& payload);
inline std::string textFrame(const std::string& payload)
{
    return clientFrame(0x81, payload);
}
inline const std::string kCloseFrame = std::string("\x88\x80\x37\xfa\x21\x3d");

/// One frame as the server sends it.
struct Frame {
    int first = 0;
    std::string payload;
};
inline bool operator==(const Frame& a, const Frame& b)
{
    return a.first == b.first && a.payload == b.payload;
}
void PrintTo(const Frame& frame, std::ostream* out);

/// The next frame; none when the connection ends before it is whole.
std::optional<Frame> readServerFrame(RawPeer& peer);

/// The whole frames that `bytes` begin with; `bytes` keeps what follows the last of them.
std::vector<Frame> takeFrames(std::string& bytes);

}  // namespace OrvuTests
