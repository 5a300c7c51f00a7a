#include "transport/TcpClients.h"

#include <algorithm>
#include <functional>
#include <new>
#include <optional>

#include "log/Log.h"
#include "transport/Outgoing.h"

namespace Orvu {

/// One listener, as long as anybody uses it.
struct TcpClients::Client {
    explicit Client(Socket accepted) : socket(std::move(accepted)) {}

    bool isBroken() const
    {
        pollfd state{socket.fd(), 0, 0};
        return failed || (poll(&state, 1, 0) > 0 && (state.revents & (POLLERR | POLLHUP)) != 0);
    }
    bool hasEnded() const { return hasLostPeer(socket.fd()); }

    Socket socket;
    std::atomic<bool> failed{false};  // a write failed for good
    bool stalled = false;             // let a push wait too long; the sending thread's
};

/// One push on its way to one client.
struct TcpClients::Delivery {
    void proceed()
    {
        if (!bytes.offer(client->socket.fd())) client->failed = true;
    }
    bool isWaiting() const { return bytes.left() > 0 && !client->failed; }
    /// Whether the push waits for the client; once a client has let one wait too long, none does.
    bool isWorthWaiting() const { return isWaiting() && !client->stalled; }

    std::shared_ptr<Client> client;
    Outgoing bytes{nullptr, 0};
};

TcpClients::TcpClients() = default;
TcpClients::~TcpClients() = default;

void TcpClients::begin(const Socket&)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    isOpen_ = true;
}

void TcpClients::take(Socket connection)
{
    connection.sendAtOnce();
    try {
        auto client = std::make_shared<Client>(std::move(connection));
        const std::lock_guard<std::mutex> lock(mutex_);
        if (isOpen_) clients_.push_back(std::move(client));
        haveChanged_ = true;
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerTcpSocket::serverThread: ERROR out of memory!");
    }
}

void TcpClients::drop()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        isOpen_ = false;
        for (const auto& client : clients_)
            client->socket.shutdown();  // a push may still hold it
        clients_.clear();
        haveChanged_ = true;
    }
    forgetUnlisted();
}

bool TcpClients::makeRoom()
{
    if (!unlistGone()) return false;
    forgetUnlisted();
    return true;
}

/// Closes the descriptors of clients that are listed no more, once the push in progress has ended.
void TcpClients::forgetUnlisted()
{
    const std::lock_guard<std::mutex> untilThePushEnds(sending_);
    deliveries_.clear();
    haveChanged_ = true;
}

/// A bare end of stream comes last: the peer may still read.
bool TcpClients::unlistGone()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return unlist(&Client::isBroken) || unlist(&Client::hasEnded);
}

/// Drops the clients of which `isGone` is true; the others stay in their order. True when there were some.
bool TcpClients::unlist(bool (Client::*isGone)() const)
{
    std::size_t kept = 0;
    for (std::shared_ptr<Client>& client : clients_) {
        if (std::invoke(isGone, *client)) {
            client->socket.shutdown();  // a push may hold it
        } else {
            clients_[kept++].swap(client);
        }
    }
    const bool wereSome = kept < clients_.size();
    clients_.resize(kept);
    return wereSome;
}

[[gnu::hot]] bool TcpClients::send(const unsigned char* data, unsigned int size)
{
    const std::lock_guard<std::mutex> lock(sending_);
    if (haveChanged_) addressAll();
    if (size > 0) return handOut({data, size});
    for (std::size_t i = 0; i < deliveries_.size(); ++i)
        logLine("OrvuRestServerTcpSocket::send: ERROR data is empty!");
    return false;
}

/// Takes all the memory that a push needs, before its first byte goes out.
void TcpClients::addressAll()
{
    deliveries_.clear();
    const std::lock_guard<std::mutex> lock(mutex_);
    deliveries_.reserve(clients_.size());
    waiting_.reserve(clients_.size());
    for (const auto& client : clients_)
        deliveries_.push_back({client});
    haveChanged_ = false;
}

/// Gives the clients that could not take the push whole the rest, as they make room for it.
void TcpClients::finish()
{
    std::optional<Deadline> end;  // the clock is not asked when nobody waits
    for (bool inTime = true; inTime;) {
        waiting_.clear();
        for (const Delivery& delivery : deliveries_) {
            if (delivery.isWorthWaiting()) waiting_.push_back({delivery.client->socket.fd(), POLLOUT, 0});
        }
        if (waiting_.empty()) return;
        if (!end) end = after(kPatience);
        inTime = waitForAny(waiting_.data(), waiting_.size(), *end);
        // At the end all are tried once more: the system reports room only once there is plenty.
        for (Delivery& delivery : deliveries_) {
            if (delivery.isWorthWaiting()) delivery.proceed();
        }
    }
}

/// Tells who took the push whole. True when anybody did.
bool TcpClients::settle() const
{
    bool anybody = false;
    for (const Delivery& delivery : deliveries_) {
        const bool isWhole = delivery.bytes.left() == 0;
        delivery.client->stalled = delivery.isWaiting();
        if (!isWhole) logLine("OrvuRestServerTcpSocket::send: ERROR writing to socket");
        anybody = anybody || isWhole;
    }
    return anybody;
}

/// True when anybody took the push whole.
[[gnu::hot]] bool TcpClients::handOut(const Outgoing& bytes)
{
    bool isFinished = true;
    for (Delivery& delivery : deliveries_) {
        delivery.bytes = bytes;
        delivery.proceed();
        isFinished = isFinished && delivery.bytes.left() == 0;
    }
    if (!isFinished) finish();
    return settle();
}

}  // namespace Orvu
