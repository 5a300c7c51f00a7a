#include "transport/OrvuRestServerTcpSocket.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <poll.h>
#include <sys/socket.h>

#include "orvu/OrvuRestInterface.h"
#include "transport/Listener.h"
#include "transport/Outgoing.h"

namespace Orvu {
namespace {

constexpr Seconds kPushTime(5);
constexpr unsigned kMostLogged = 4096;  // no log line holds more

short statesOf(const Socket& socket, short wanted)
{
    pollfd state{socket.fd(), wanted, 0};
    return poll(&state, 1, 0) > 0 ? state.revents : short{0};
}

}  // namespace

/// One listener, as long as anybody uses it.
struct OrvuRestServerTcpSocket::Client {
    explicit Client(Socket accepted) : socket(std::move(accepted)) {}

    bool isBroken() const { return failed || (statesOf(socket, 0) & (POLLERR | POLLHUP)) != 0; }
    bool hasEnded() const { return (statesOf(socket, POLLRDHUP) & POLLRDHUP) != 0; }

    Socket socket;
    std::atomic<bool> failed{false};  // a write failed for good
    bool stalled = false;             // let a push wait too long; the sending thread's
};

/// One push on its way to one client.
struct OrvuRestServerTcpSocket::Delivery {
    void proceed()
    {
        if (!bytes.offer(client->socket.fd())) client->failed = true;
    }
    bool isWaiting() const { return bytes.left() > 0 && !client->failed; }
    /// Whether the push waits for the client; once a client has let one wait too long, none does.
    bool isWorthWaiting() const { return isWaiting() && !client->stalled; }

    std::shared_ptr<Client> client;
    Outgoing bytes;
};

OrvuRestServerTcpSocket::OrvuRestServerTcpSocket() = default;

OrvuRestServerTcpSocket::~OrvuRestServerTcpSocket()
{
    OrvuRestServerTcpSocket::stop();
}

bool OrvuRestServerTcpSocket::configure(int port)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) stopLocked();
    serverSocket_ = Socket::stream();
    if (!serverSocket_) {
        OrvuRestInterface::log("OrvuRestServerTcpSocket::configure: ERROR opening server socket!");
        return false;
    }
    if (!bindTo(serverSocket_, port)) {
        OrvuRestInterface::log("OrvuRestServerTcpSocket::configure: ERROR binding server socket!");
        serverSocket_ = Socket();
        return false;
    }
    return true;
}

bool OrvuRestServerTcpSocket::start()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) return true;
    if (!serverSocket_) {
        OrvuRestInterface::log("OrvuRestServerTcpSocket::start: ERROR configure before start!");
        return false;
    }
    if (listen(serverSocket_.fd(), SOMAXCONN) != 0) {
        OrvuRestInterface::log("OrvuRestServerTcpSocket::start: ERROR listening on server socket!");
        return false;
    }
    running_ = true;
    if (serverThread_.start(makeTask("orvu-accept", [this] { acceptClients(); }))) return true;
    running_ = false;
    serverSocket_.shutdown();  // it stays bound, so that the next start may succeed
    OrvuRestInterface::log("OrvuRestServerTcpSocket::start: ERROR run the server thread!");
    return false;
}

void OrvuRestServerTcpSocket::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
}

void OrvuRestServerTcpSocket::stopLocked()
{
    OrvuRestInterface::log("OrvuRestServerTcpSocket::stop: Stopping server");
    running_ = false;
    serverSocket_.shutdown();
    dropClients();
    serverThread_.join();
    const std::lock_guard<std::mutex> untilThePushEnds(sending_);
    serverSocket_ = Socket();
}

/// Ends a push in progress, too, which may still hold the clients. Nobody is listed once `running_` is off.
void OrvuRestServerTcpSocket::dropClients()
{
    const std::lock_guard<std::mutex> lock(clientsMutex_);
    for (const auto& client : clients_)
        client->socket.shutdown();
    clients_.clear();
}

void OrvuRestServerTcpSocket::acceptClients()
{
    OrvuRestInterface::log("OrvuRestServerTcpSocket::serverThread: Server loop start!");
    while (running_) {
        Socket socket = Socket::acceptedFrom(serverSocket_);
        const int reason = errno;
        if (socket) {
            list(std::move(socket));
        } else if (running_ && isLasting(reason)) {
            if (!isWantOfDescriptors(reason) || !releaseGone()) pauseAccepting();
        }
    }
    OrvuRestInterface::log("OrvuRestServerTcpSocket::serverThread: Server loop end!");
}

void OrvuRestServerTcpSocket::list(Socket socket)
{
    sendAtOnce(socket);
    try {
        auto client = std::make_shared<Client>(std::move(socket));
        const std::lock_guard<std::mutex> lock(clientsMutex_);
        if (running_) clients_.push_back(std::move(client));
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestServerTcpSocket::serverThread: ERROR out of memory!");
    }
}

/// Drops clients whose peer is gone, for want of descriptors.
bool OrvuRestServerTcpSocket::releaseGone()
{
    if (!unlistGone()) return false;
    const std::lock_guard<std::mutex> untilThePushEnds(sending_);  // it may still hold their descriptors
    return true;
}

/// A bare end of stream comes last: the peer may still read.
bool OrvuRestServerTcpSocket::unlistGone()
{
    const std::lock_guard<std::mutex> lock(clientsMutex_);
    const std::size_t before = clients_.size();
    const auto drop = [this](bool (Client::*isGone)() const) {
        const auto gone = std::stable_partition(clients_.begin(), clients_.end(),
                                                [isGone](const auto& client) { return !(*client.*isGone)(); });
        std::for_each(gone, clients_.end(),
                      [](const auto& client) { client->socket.shutdown(); });  // a push may hold it
        clients_.erase(gone, clients_.end());
    };
    drop(&Client::isBroken);
    if (clients_.size() == before) drop(&Client::hasEnded);
    return clients_.size() < before;
}

bool OrvuRestServerTcpSocket::send(unsigned char* data, unsigned int size)
{
    const std::lock_guard<std::mutex> lock(sending_);
    if (!data) size = 0;
    OrvuRestInterface::log("OrvuRestServerTcpSocket::send: Send to client: %.*s",
                           static_cast<int>(std::min<unsigned>(size, kMostLogged)),
                           data ? reinterpret_cast<char*>(data) : "");
    try {
        return deliver(data, size);
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestServerTcpSocket::send: ERROR out of memory!");
        return false;
    }
}

/// Takes all the memory that the push needs, before its first byte goes out.
void OrvuRestServerTcpSocket::prepare(const unsigned char* data, unsigned int size)
{
    const std::lock_guard<std::mutex> lock(clientsMutex_);
    deliveries_.reserve(clients_.size());
    waiting_.reserve(clients_.size());
    for (const auto& client : clients_)
        deliveries_.push_back({client, Outgoing(data, size)});
}

/// Gives the clients that could not take the push whole the rest, as they make room for it.
void OrvuRestServerTcpSocket::finish()
{
    const Deadline end = after(kPushTime);
    for (bool inTime = true; inTime;) {
        waiting_.clear();
        for (const Delivery& delivery : deliveries_) {
            if (delivery.isWorthWaiting()) waiting_.push_back({delivery.client->socket.fd(), POLLOUT, 0});
        }
        if (waiting_.empty()) return;
        inTime = waitForAny(waiting_.data(), waiting_.size(), end);
        // At the end all are tried once more: the system reports room only once there is plenty.
        for (Delivery& delivery : deliveries_) {
            if (delivery.isWorthWaiting()) delivery.proceed();
        }
    }
}

/// Tells who took the push whole. True when anybody did.
bool OrvuRestServerTcpSocket::settle() const
{
    bool anybody = false;
    for (const Delivery& delivery : deliveries_) {
        const bool isWhole = delivery.bytes.left() == 0;
        delivery.client->stalled = delivery.isWaiting();
        if (!isWhole) OrvuRestInterface::log("OrvuRestServerTcpSocket::send: ERROR writing to socket");
        anybody = anybody || isWhole;
    }
    return anybody;
}

/// True when anybody took the push whole.
bool OrvuRestServerTcpSocket::handOut()
{
    for (Delivery& delivery : deliveries_)
        delivery.proceed();
    finish();
    return settle();
}

bool OrvuRestServerTcpSocket::deliver(const unsigned char* data, unsigned int size)
{
    prepare(data, size);
    for (std::size_t i = 0; size == 0 && i < deliveries_.size(); ++i)
        OrvuRestInterface::log("OrvuRestServerTcpSocket::send: ERROR data is empty!");
    const bool anybody = size > 0 && handOut();
    deliveries_.clear();  // they keep no client that has left
    return anybody;
}

}  // namespace Orvu
