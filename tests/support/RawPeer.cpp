#include "support/RawPeer.h"

#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace OrvuTests {
namespace {

sockaddr_in local(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

[[noreturn]] void fail(const char* what)
{
    throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

/// Reading from it, or accepting.
void waitAtMostAMinute(int fd)
{
    const timeval minute{60, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &minute, sizeof minute);
}

/// 0 at the end, and also when the other side has reset the connection.
std::size_t readSome(int fd, char* to, std::size_t size)
{
    ssize_t got;
    do {
        got = recv(fd, to, size, 0);
    } while (got < 0 && errno == EINTR);
    if (got < 0 && errno != ECONNRESET) fail("waited in vain");
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}

}  // namespace

std::string lengthBytes(std::uint32_t length)
{
    std::string bytes(sizeof length, '\0');
    std::memcpy(bytes.data(), &length, sizeof length);
    return bytes;
}

std::string frameOf(const std::string& text)
{
    return lengthBytes(static_cast<std::uint32_t>(text.size() + 1)) + text;
}

RawPeer::RawPeer(int fd) : fd_(fd)
{
    const int on = 1;
    waitAtMostAMinute(fd_);
    setsockopt(fd_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

RawPeer RawPeer::unconnected()
{
    return RawPeer(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

RawPeer RawPeer::connectedTo(int port)
{
    RawPeer peer = unconnected();
    peer.connectTo(port);
    return peer;
}

void RawPeer::connectTo(int port)
{
    const sockaddr_in address = local(port);
    if (connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) fail("cannot connect");
}

RawPeer& RawPeer::operator=(RawPeer&& other) noexcept
{
    close();
    fd_ = std::exchange(other.fd_, -1);
    return *this;
}

RawPeer::~RawPeer()
{
    close();
}

bool RawPeer::send(const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t sent = ::send(fd_, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) return false;
        done += static_cast<std::size_t>(sent);
    }
    return true;
}

bool RawPeer::sendByteByByte(const std::string& bytes)
{
    for (const char byte : bytes)
        if (!send(std::string(1, byte))) return false;
    return true;
}

std::string RawPeer::receive(std::size_t size)
{
    std::string bytes(size, '\0');
    std::size_t have = 0;
    while (have < size) {
        const std::size_t got = readSome(fd_, &bytes[have], size - have);
        if (got == 0) break;
        have += got;
    }
    bytes.resize(have);
    return bytes;
}

std::optional<std::string> RawPeer::readFrame()
{
    const std::string head = receive(sizeof(std::uint32_t));
    if (head.size() < sizeof(std::uint32_t)) return std::nullopt;
    std::uint32_t length = 0;
    std::memcpy(&length, head.data(), sizeof length);
    const std::string text = receive(length - 1);
    if (text.size() < length - 1) return std::nullopt;
    return text;
}

std::string RawPeer::readToEnd()
{
    return readToEnd(65536);
}

std::string RawPeer::readToEnd(std::size_t size)
{
    std::string all;
    std::string piece(size, '\0');
    std::size_t got;
    while ((got = readSome(fd_, piece.data(), size)) > 0)
        all.append(piece, 0, got);
    return all;
}

void RawPeer::finishSending()
{
    shutdown(fd_, SHUT_WR);
}

void RawPeer::vanish()
{
    const linger atOnce{1, 0};
    setsockopt(fd_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close();
}

int RawPeer::ownPort() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

void RawPeer::close()
{
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
}

int boundSocket(int port, bool listening)
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = local(port);
    const bool bound = bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (bound && (!listening || listen(fd, 128) == 0)) return fd;
    ::close(fd);
    return -1;
}

RawListener::RawListener(int backlog) : fd_(boundSocket(lease_.port(), false))
{
    waitAtMostAMinute(fd_);
    if (listen(fd_, backlog) != 0) fail("cannot listen");
}

RawListener::~RawListener()
{
    ::close(fd_);
}

RawPeer RawListener::accept()
{
    const int fd = accept4(fd_, nullptr, nullptr, SOCK_CLOEXEC);
    if (fd < 0) fail("cannot accept");
    return RawPeer(fd);
}

}  // namespace OrvuTests
