#include "bench/PlainSockets.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <system_error>
#include <unistd.h>

namespace OrvuBench {
namespace {

using Length = std::uint32_t;  // that of the text and its NUL

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(port));
    return address;
}

void check(bool good, const char* what)
{
    if (!good) throw std::system_error(errno, std::generic_category(), what);
}

void serve(int connection, PlainServer::Answer answer)
{
    RequestRoom room;
    const std::string_view request = receiveText(connection, room.bytes, sizeof room.bytes);
    if (!request.empty()) answer(connection, request.data());
    close(connection);
}

}  // namespace

int streamSocket()
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    check(fd >= 0, "socket");
    return fd;
}

int listenOnFreePort(int fd)
{
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    check(bind(fd, plain, size) == 0, "bind");
    check(listen(fd, SOMAXCONN) == 0, "listen");
    check(getsockname(fd, plain, &size) == 0, "getsockname");
    return ntohs(address.sin_port);
}

bool connectTo(int port, int fd)
{
    const sockaddr_in peer = loopback(port);
    return connect(fd, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0;
}

int freePort()
{
    return PlainServer([](int, const char*) {}).port();
}

std::string_view receiveText(int fd, char* room, std::size_t size)
{
    Length length = 0;
    std::size_t have = 0;
    for (;;) {
        const ssize_t got = recv(fd, room + have, size - have, 0);
        if (got <= 0) return {};
        have += static_cast<std::size_t>(got);
        if (have < sizeof length) continue;
        std::memcpy(&length, room, sizeof length);
        const std::size_t end = sizeof length + length - 1;
        if (length == 0 || end >= size) return {};
        if (have < end) continue;
        room[end] = '\0';
        return {room + sizeof length, length - 1};
    }
}

bool sendText(int fd, std::string_view text)
{
    Length length = static_cast<Length>(text.size() + 1);
    iovec parts[] = {{&length, sizeof length}, {const_cast<char*>(text.data()), text.size()}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    return sendmsg(fd, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof length + text.size());
}

std::string_view exchange(int port, std::string_view request, AnswerRoom& room)
{
    const int fd = streamSocket();
    std::string_view answer;
    if (connectTo(port, fd) && sendText(fd, request)) answer = receiveText(fd, room.bytes, sizeof room.bytes);
    close(fd);
    return answer;
}

PlainServer::PlainServer(Answer answer, Threads threads)
    : answer_(answer), threads_(threads), listener_(streamSocket()), port_(listenOnFreePort(listener_))
{
    const int count = threads == Kept ? 4 : 1;
    for (int i = 0; i < count; ++i)
        acceptThreads_.emplace_back([this] { acceptConnections(); });
}

PlainServer::~PlainServer()
{
    shutdown(listener_, SHUT_RDWR);  // ends the accept threads
    for (std::thread& thread : acceptThreads_)
        thread.join();
    close(listener_);
}

void PlainServer::acceptConnections() const
{
    for (;;) {
        const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) {
            if (errno == EINVAL) return;
        } else if (threads_ == Kept) {
            serve(connection, answer_);
        } else {
            std::thread(serve, connection, answer_).detach();
        }
    }
}

}  // namespace OrvuBench
