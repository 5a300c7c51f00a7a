#include "CuttingRelay.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <system_error>
#include <utility>

namespace OrvuTool {
namespace {

constexpr std::chrono::seconds kLastAnswersTime(1);
constexpr std::chrono::milliseconds kPauseWithoutDescriptors(100);
constexpr timeval kPatience{5, 0};  // for a peer that does not take its answer

sockaddr_in socketAddress(const std::string& address, int port)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(static_cast<std::uint16_t>(port));
    result.sin_addr.s_addr = htonl(INADDR_ANY);
    if (!address.empty()) inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

Descriptor connectedToServer(int port)
{
    Descriptor server(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = socketAddress("127.0.0.1", port);
    const bool connected = connect(server.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return connected ? std::move(server) : Descriptor();
}

bool sendAll(int to, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// What there is to read; empty at the end of the stream, none at a fault.
std::optional<std::string> received(int from)
{
    std::string bytes(65536, '\0');
    const ssize_t size = recv(from, bytes.data(), bytes.size(), 0);
    if (size < 0) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

/// Passes the peer's next bytes on to the server, or their end. False when the peer has gone.
bool passRequest(pollfd& peer, int server)
{
    const std::optional<std::string> bytes = received(peer.fd);
    if (!bytes || !sendAll(server, *bytes)) return false;
    if (!bytes->empty()) return true;
    peer.fd = -1;  // not polled any more
    return shutdown(server, SHUT_WR) == 0;
}

/// All that the server sends until it closes the connection, while it gets what the peer sends; none when the peer has
/// gone.
std::optional<std::string> answerOf(int serverSocket, int peerSocket)
{
    std::string answer;
    pollfd states[] = {{serverSocket, POLLIN, 0}, {peerSocket, POLLIN, 0}};
    while (poll(states, 2, -1) > 0 || errno == EINTR) {
        if (states[0].revents != 0) {
            const std::optional<std::string> bytes = received(serverSocket);
            if (!bytes || bytes->empty()) return answer;
            answer += *bytes;
        } else if (states[1].revents != 0 && !passRequest(states[1], serverSocket)) {
            return answer.empty() ? std::nullopt : std::optional(answer);
        }
    }
    return std::nullopt;
}

}  // namespace

bool CuttingRelay::listen(const std::string& address, int port)
{
    listening_ = Descriptor(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    setsockopt(listening_.fd(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in here = socketAddress(address, port);
    if (bind(listening_.fd(), reinterpret_cast<const sockaddr*>(&here), sizeof here) != 0) return false;
    if (::listen(listening_.fd(), SOMAXCONN) != 0) return false;
    accepting_ = std::thread([this] { accept(); });
    return true;
}

int CuttingRelay::port() const
{
    sockaddr_in here{};
    socklen_t size = sizeof here;
    getsockname(listening_.fd(), reinterpret_cast<sockaddr*>(&here), &size);
    return ntohs(here.sin_port);
}

void CuttingRelay::accept()
{
    while (true) {
        Descriptor peer(accept4(listening_.fd(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!peer && errno == EINVAL) return;  // stopped
        if (!peer) {
            std::this_thread::sleep_for(kPauseWithoutDescriptors);
            continue;
        }
        serveOnAThread(std::move(peer));
    }
}

/// Without a thread the peer's connection closes.
void CuttingRelay::serveOnAThread(Descriptor peer)
{
    countPeer(1);
    try {
        std::thread([this, peer = std::move(peer)]() mutable {
            serve(std::move(peer));
            countPeer(-1);
        }).detach();
    } catch (const std::system_error&) {
        countPeer(-1);
    }
}

void CuttingRelay::serve(Descriptor peer)
{
    setsockopt(peer.fd(), SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
    const Descriptor server = connectedToServer(serverPort_);
    if (!server) return;
    const std::optional<std::string> answer = answerOf(server.fd(), peer.fd());
    if (answer) sendAll(peer.fd(), frameToPass(*answer));
}

/// The frame itself; of a marked one the length of the text without its mark, and the half of that.
std::string CuttingRelay::frameToPass(const std::string& frame)
{
    std::uint32_t length;
    if (frame.size() <= sizeof length || frame[sizeof length] != kMark) return frame;
    std::memcpy(&length, frame.data(), sizeof length);
    --length;
    std::string half = frame.substr(sizeof length + 1, passed(frame.size() - sizeof length - 1));
    return half.insert(0, reinterpret_cast<const char*>(&length), sizeof length);
}

void CuttingRelay::countPeer(int change)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    peers_ += change;
    peerLeft_.notify_all();
}

void CuttingRelay::stop()
{
    shutdown(listening_.fd(), SHUT_RDWR);
    accepting_.join();
    std::unique_lock<std::mutex> lock(mutex_);
    peerLeft_.wait_for(lock, kLastAnswersTime, [this] { return peers_ == 0; });
}

}  // namespace OrvuTool
