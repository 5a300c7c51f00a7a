#include "push/Peers.h"

#include <algorithm>
#include <netinet/in.h>
#include <ostream>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <tuple>

#include "wire/Sockets.h"

namespace OrvuTests {
namespace {

constexpr std::size_t kHeadSize = 2;

std::tuple<in_addr_t, in_port_t> endOf(const sockaddr_in& address)
{
    return {address.sin_addr.s_addr, address.sin_port};
}

std::string bigEndian(std::size_t number, std::size_t size)
{
    std::string bytes(size, '\0');
    for (; size > 0; number >>= 8)
        bytes[--size] = static_cast<char>(number);
    return bytes;
}

std::size_t numberFrom(const std::string& bytes)
{
    std::size_t number = 0;
    for (const char byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

std::size_t sizeOfLength(unsigned char field)
{
    return field < 126 ? 0 : field == 126 ? 2 : 8;
}

}  // namespace

RawPeer unconnected()
{
    return RawPeer(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

void connectTo(int port, RawPeer& peer)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(peer.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot connect");
}

RawPeer connectedWithLittleRoom(int port)
{
    RawPeer peer = unconnected();
    const int room = 4096;
    setsockopt(peer.fd(), SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    connectTo(port, peer);
    return peer;
}

bool hasBytes(const RawPeer& peer)
{
    pollfd wanted{peer.fd(), POLLIN, 0};
    return poll(&wanted, 1, 0) > 0;
}

int otherEndOf(const RawPeer& peer)
{
    sockaddr_in own{};
    socklen_t size = sizeof own;
    getsockname(peer.fd(), reinterpret_cast<sockaddr*>(&own), &size);
    for (const int fd : openSockets()) {
        sockaddr_in other{};
        size = sizeof other;
        if (getpeername(fd, reinterpret_cast<sockaddr*>(&other), &size) == 0 && endOf(other) == endOf(own)) return fd;
    }
    return -1;
}

void keepLittleFor(const RawPeer& client)
{
    const int little = 4096;
    setsockopt(otherEndOf(client), SOL_SOCKET, SO_SNDBUF, &little, sizeof little);
}

std::string openingRequest(const std::string& key)
{
    return "GET /messages HTTP/1.1\r\n"
           "Host: 127.0.0.1\r\n"
           "Upgrade: websocket\r\n"
           "Connection: Upgrade\r\n"
           "Sec-WebSocket-Key: " +
           key +
           "\r\n"
           "Origin: http://127.0.0.1\r\n"
           "Sec-WebSocket-Version: 13\r\n"
           "\r\n";
}

bool shakesHands(RawPeer& peer)
{
    return peer.send(openingRequest()) && peer.receive(kAnswer.size()) == kAnswer;
}

std::string clientFrame(int first, const std::string& payload)
{
    static const std::string kMask = "\x37\xfa\x21\x3d";
    std::string frame(1, static_cast<char>(first));
    if (payload.size() < 126) {
        frame += static_cast<char>(0x80 | payload.size());
    } else {
        frame += static_cast<char>(0x80 | 126);
        frame += bigEndian(payload.size(), 2);
    }
    frame += kMask;
    for (std::size_t i = 0; i < payload.size(); ++i)
        frame += static_cast<char>(payload[i] ^ kMask[i % 4]);
    return frame;
}

void PrintTo(const Frame& frame, std::ostream* out)
{
    *out << std::hex << frame.first << std::dec << ", " << frame.payload.size()
         << " bytes: " << frame.payload.substr(0, 40);
}

std::optional<Frame> readServerFrame(RawPeer& peer)
{
    const std::string head = peer.receive(kHeadSize);
    if (head.size() < kHeadSize) return std::nullopt;
    const auto field = static_cast<unsigned char>(head[1]);
    const std::size_t lengthSize = sizeOfLength(field);
    const std::string length = peer.receive(lengthSize);
    if (length.size() < lengthSize) return std::nullopt;
    const std::size_t size = lengthSize == 0 ? field : numberFrom(length);
    Frame frame{static_cast<unsigned char>(head[0]), peer.receive(size)};
    if (frame.payload.size() < size) return std::nullopt;
    return frame;
}

std::vector<Frame> takeFrames(std::string& bytes)
{
    std::vector<Frame> frames;
    std::size_t at = 0;
    while (bytes.size() - at >= kHeadSize) {
        const auto field = static_cast<unsigned char>(bytes[at + 1]);
        const std::size_t headSize = kHeadSize + sizeOfLength(field);
        if (bytes.size() - at < headSize) break;
        const std::size_t size =
            headSize == kHeadSize ? field : numberFrom(bytes.substr(at + kHeadSize, headSize - kHeadSize));
        if (bytes.size() - at - headSize < size) break;
        frames.push_back({static_cast<unsigned char>(bytes[at]), bytes.substr(at + headSize, size)});
        at += headSize + size;
    }
    bytes.erase(0, at);
    return frames;
}

}  // namespace OrvuTests
