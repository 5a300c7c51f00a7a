#include "transport/OrvuRestClientSocket.h"

#include <cerrno>
#include <new>
#include <optional>

#include "log/Log.h"
#include "messages/core/Exact.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "transport/Connecting.h"
#include "transport/Exchange.h"
#include "transport/ExchangeNotes.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

constexpr int kTimeoutSeconds = kPatience.count();
constexpr int kNoTimeout = 0;

/// The time-out that goes with a confirmation screen which waits for the user, and with everything else. An object of a
/// class without run-time type information does not say whether it is such a screen: any class may have that number.
int timeoutFor(Serializable* request)
{
    if (!request || request->getDataType() != DataTypeConfirmationScreen || !typeOf(*request)) return kTimeoutSeconds;
    const auto* const screen = dynamic_cast<const ConfirmationScreen*>(request);
    return screen && !screen->dispose ? kNoTimeout : kTimeoutSeconds;
}

StaticMutex instanceMutex;

std::shared_ptr<OrvuRestClientSocket>& instance()
{
    static Immortal<std::shared_ptr<OrvuRestClientSocket>> instance;
    return *instance;
}

/// The client; null before its first use.
std::shared_ptr<OrvuRestClientSocket> existing()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    return instance();
}

}  // namespace

OrvuRestClientSocket::OrvuRestClientSocket() : inFlight_(std::make_shared<InFlight>()) {}
OrvuRestClientSocket::~OrvuRestClientSocket() = default;

std::shared_ptr<OrvuRestClientSocket> OrvuRestClientSocket::sharedInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    try {
        if (!instance()) instance().reset(new OrvuRestClientSocket, [](auto* old) { delete old; });
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::getInstance: ERROR out of memory!");
    }
    return instance();
}

OrvuRestClientSocket* OrvuRestClientSocket::getInstance()
{
    return sharedInstance().get();
}

void OrvuRestClientSocket::destroyInstance()
{
    logLine("OrvuRestClientSocket::destroyInstance: -- init");
    std::unique_lock<StaticMutex> lock(instanceMutex);
    const std::shared_ptr<OrvuRestClientSocket> client = std::move(instance());
    lock.unlock();
    if (client) {
        logLine("OrvuRestClientSocket::~OrvuRestClientSocket: -- init");
        client->inFlight_->close();
        logLine("OrvuRestClientSocket::~OrvuRestClientSocket: -- end");
    }
    logLine("OrvuRestClientSocket::destroyInstance: -- end");
}

void OrvuRestClientSocket::cancelRequests()
{
    const std::shared_ptr<OrvuRestClientSocket> client = existing();
    if (client) client->inFlight_->wakeAll();
}

void OrvuRestClientSocket::cancelRequests(const void* group)
{
    const std::shared_ptr<OrvuRestClientSocket> client = existing();
    if (client && group) client->inFlight_->wake(group);
}

void OrvuRestClientSocket::setPeer(Peer peer)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    peer_ = std::move(peer);
}

/// The one at `own`; the remembered one where that is null.
OrvuRestClientSocket::Peer OrvuRestClientSocket::peerAt(const Address* own)
{
    if (own) return {own->host ? own->host : "", own->port};
    const std::lock_guard<std::mutex> lock(mutex_);
    return peer_;
}

bool OrvuRestClientSocket::configure(const char* host, int port)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::configure: -- init");
    try {
        setPeer({host ? host : "", port});
        logLine("OrvuRestClientSocket::configure: Checking server connection...");
        if (canConnect(nullptr, nullptr)) {
            logLine("OrvuRestClientSocket::configure: -- end");
            return true;
        }
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::configure: ERROR out of memory!");
    }
    logLine("OrvuRestClientSocket::configure: ERROR cannot connect to server");
    return false;
}

bool OrvuRestClientSocket::isReachable(const Address& address, const void* group)
{
    const auto untilItReturns = shared_from_this();
    try {
        return canConnect(&address, group);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::isReachable: ERROR out of memory!");
        return false;
    }
}

bool OrvuRestClientSocket::canConnect(const Address* address, const void* group)
{
    ExchangeNotes notes;
    InGroup exchange(*inFlight_, group);
    return static_cast<bool>(connect(address, kTimeoutSeconds, notes, &exchange));
}

int OrvuRestClientSocket::connectSocket(int timeoutSeconds)
{
    const auto untilItReturns = shared_from_this();
    try {
        ExchangeNotes notes;
        ConnectionInFlight connection = connect(nullptr, timeoutSeconds, notes, nullptr);
        Socket socket = connection.releaseSocket();
        return connection.isWanted() && socket ? socket.release() : 0;
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR out of memory!");
        return 0;
    }
}

/// Empty on any failure.
ConnectionInFlight OrvuRestClientSocket::connect(const Address* own, int timeoutSeconds, ExchangeNotes& notes,
                                                 InGroup* exchange)
{
    logLine("OrvuRestClientSocket::connectSocket: -- init");
    notes.enter(ExchangePhaseNoPeer);
    const unsigned begun = inFlight_->wakes();
    const Peer peer = peerAt(own);
    if (peer.host.empty() || peer.port == 0) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR configure host/port before use!");
        return {};
    }
    Socket socket = openSocket(notes);
    if (!socket) return {};
    const std::optional<in_addr> address = findHost(peer.host, notes);
    if (!address || !setTimeouts(socket, timeoutSeconds, notes)) return {};
    ConnectionInFlight connection(std::move(socket), inFlight_, begun, exchange);
    const int error = connection ? connectTo(connection.fd(), *address, peer.port, Seconds(timeoutSeconds)) : 0;
    if (!connection.isWanted()) {
        notes.cancel();
        logLine("OrvuRestClientSocket::connectSocket: ERROR dropped, %s",
                inFlight_->isOpen() ? "the exchange was cancelled" : "the client goes away");
        return {};
    }
    if (error != 0) {
        notes.fail(error);
        logLine("OrvuRestClientSocket::connectSocket: ERROR connecting to host: %s:%d", peer.host.c_str(), peer.port);
        return {};
    }
    logLine("OrvuRestClientSocket::connectSocket: -- end");
    return connection;
}

Serializable* OrvuRestClientSocket::send(Serializable* request, int timeoutSeconds)
{
    ExchangeNotes notes;
    return send(nullptr, request, timeoutSeconds, notes);
}

Serializable* OrvuRestClientSocket::send(const Address* address, Serializable* request, int timeoutSeconds,
                                         ExchangeNotes& notes)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::send: -- init");
    try {
        return exchange(address, request, timeoutSeconds, notes);
    } catch (const std::bad_alloc&) {
        notes.fail(ENOMEM);
        logLine("OrvuRestClientSocket::send: ERROR out of memory!");
        return make<EmptyData>();
    }
}

Serializable* OrvuRestClientSocket::exchange(const Address* address, Serializable* request, int timeoutSeconds,
                                             ExchangeNotes& notes)
{
    if (!request) {
        logLine("OrvuRestClientSocket::send: ERROR cannot send NULL data");
        return make<UnknowRequest>();
    }
    InGroup inGroup(*inFlight_, notes.group());
    ConnectionInFlight connection = connect(address, timeoutSeconds, notes, &inGroup);
    if (!connection) {
        logLine("OrvuRestClientSocket::send: ERROR cannot connect to server");
        return make<CannotConnectToServer>();
    }
    const auto peerName = [this, address] {
        const Peer peer = peerAt(address);
        return peer.host + ":" + std::to_string(peer.port);
    };
    return exchangeOn(std::move(connection), *request, Seconds(timeoutSeconds), notes, peerName);
}

Serializable* OrvuRestClientSocket::sendRequest(Serializable* request)
{
    ExchangeNotes notes;
    return sendRequest(nullptr, request, notes);
}

Serializable* OrvuRestClientSocket::sendRequest(Serializable* request, ExchangeReport& report)
{
    ExchangeNotes notes(report);
    return sendRequest(nullptr, request, notes);
}

Serializable* OrvuRestClientSocket::sendRequest(const Address& address, Serializable* request, ExchangeReport& report)
{
    ExchangeNotes notes(report);
    return sendRequest(&address, request, notes);
}

Serializable* OrvuRestClientSocket::sendRequest(const Address* address, Serializable* request, ExchangeNotes& notes)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::sendRequest (Serializable): -- init");
    Serializable* const answer = send(address, request, timeoutFor(request), notes);
    logLine("OrvuRestClientSocket::sendRequest(Serializable): -- end");
    return answer;
}

Serializable* OrvuRestClientSocket::sendRequest(DataType type)
{
    ExchangeNotes notes;
    return sendRequest(type, notes);
}

Serializable* OrvuRestClientSocket::sendRequest(DataType type, ExchangeReport& report)
{
    ExchangeNotes notes(report);
    return sendRequest(type, notes);
}

Serializable* OrvuRestClientSocket::sendRequest(DataType type, ExchangeNotes& notes)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::sendRequest (DataType): -- init");
    const std::unique_ptr<Serializable> request(Serializable::factory(type));
    if (!request) {
        logLine("OrvuRestClientSocket::sendRequest (DataType): -- end 2");
        return nullptr;
    }
    Serializable* const answer = sendRequest(nullptr, request.get(), notes);
    logLine("OrvuRestClientSocket::sendRequest (DataType): -- end 1");
    return answer;
}

}  // namespace Orvu
