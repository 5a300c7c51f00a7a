#include "tools/Peer.h"

#include <cstdint>
#include <cstring>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace OrvuTests {
namespace {

int listeningOn(int port)
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || listen(fd, 16) != 0)
        throw std::runtime_error("cannot listen");
    return fd;
}

std::string receive(int fd, size_t size)
{
    std::string bytes(size, '\0');
    const ssize_t got = recv(fd, bytes.data(), size, MSG_WAITALL);
    bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return bytes;
}

std::string receiveFrame(int fd)
{
    const std::string head = receive(fd, sizeof(uint32_t));
    if (head.size() < sizeof(uint32_t)) return "";
    uint32_t length = 0;
    std::memcpy(&length, head.data(), sizeof length);
    return head + receive(fd, length - 1);
}

}  // namespace

Peer::Peer(std::function<std::string()> answer) : answer_(std::move(answer)), listening_(listeningOn(port_.port()))
{
    accepting_ = std::thread([this] { accept(); });
}

Peer::~Peer()
{
    shutdown(listening_, SHUT_RDWR);  // ends the accepting
    accepting_.join();
    close(listening_);
}

void Peer::accept()
{
    int client;
    while ((client = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0) {
        serve(client);
        close(client);
    }
}

void Peer::serve(int client)
{
    const std::string received = receiveFrame(client);
    if (received.empty()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        frames_.push_back(received);
    }
    const std::string bytes = answer_();
    send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

std::vector<std::string> Peer::frames()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return frames_;
}

}  // namespace OrvuTests
