#include "Connection.h"

#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <sys/socket.h>

namespace OrvuTool {
namespace {

constexpr std::chrono::seconds kConnectTime(5);

addrinfo* resolved(const std::string& host, const char* port, int family)
{
    addrinfo hints{};
    hints.ai_family = family;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    return getaddrinfo(host.c_str(), port, &hints, &found) == 0 ? found : nullptr;
}

int pendingError(int fd)
{
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

std::string faultOfConnecting(int error)
{
    if (error == ECONNREFUSED) return "refused, nobody listens there";
    if (error == ETIMEDOUT) return "no answer within " + std::to_string(kConnectTime.count()) + " s";
    return std::strerror(error);
}

}  // namespace

std::optional<sockaddr_in> addressOf(const std::string& host, int port)
{
    addrinfo* const found = resolved(host, std::to_string(port).c_str(), AF_INET);
    if (found == nullptr) return std::nullopt;
    const sockaddr_in address = *reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    freeaddrinfo(found);
    return address;
}

std::string faultOfHost(const std::string& host)
{
    if (host.empty()) return "the host is empty";
    addrinfo* const found = resolved(host, nullptr, AF_INET6);
    if (found == nullptr) return "cannot resolve " + host;
    freeaddrinfo(found);
    return "orvu uses IPv4 only, and " + host + " has no IPv4 address";
}

bool Connection::isReady(short events, Clock::time_point until)
{
    pollfd state{socket_.fd(), events, 0};
    return ending_.waitFor({&state}, until) == Ending::Awaited::Ready;
}

bool Connection::connectTo(const sockaddr_in& server)
{
    socket_ = Descriptor(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (connect(socket_.fd(), reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0) return true;
    int error = errno;
    if (error == EINPROGRESS)
        error = isReady(POLLOUT, Clock::now() + kConnectTime) ? pendingError(socket_.fd()) : ETIMEDOUT;
    if (error != 0) fault_ = faultOfConnecting(error);
    return error == 0;
}

bool Connection::send(std::string_view bytes, Clock::time_point until)
{
    while (!bytes.empty()) {
        if (!isReady(POLLOUT, until)) return false;
        const ssize_t sent = ::send(socket_.fd(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN && errno != EINTR) return false;
        if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void Connection::sendAtOnce(std::string_view bytes)
{
    if (::send(socket_.fd(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) return;  // it ends without a word, then
}

Connection::Came Connection::receive(std::string& bytes, int reader, Clock::time_point until)
{
    pollfd server{socket_.fd(), POLLIN, 0};
    pollfd pipe{reader, 0, 0};
    const Ending::Awaited awaited = ending_.waitFor({&server, &pipe}, until);
    if (awaited == Ending::Awaited::Signal || pipe.revents != 0) return Came::Stop;
    if (awaited == Ending::Awaited::TimeOver) return Came::TimeOver;
    bytes.resize(65536);
    const ssize_t size = recv(socket_.fd(), bytes.data(), bytes.size(), 0);
    const int error = size < 0 ? errno : 0;
    bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    if (size > 0 || error == EAGAIN || error == EINTR) return Came::Bytes;
    if (size == 0 || error == ECONNRESET) return Came::End;
    fault_ = std::strerror(error);
    return Came::Fault;
}

}  // namespace OrvuTool
