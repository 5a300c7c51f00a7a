#include "transport/OrvuRestClientSocket.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "log/Log.h"
#include "messages/core/Exact.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "transport/Connecting.h"
#include "transport/ExchangeNotes.h"
#include "transport/Frame.h"
#include "transport/MessageCalls.h"
#include "transport/Refusal.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

constexpr int kTimeoutSeconds = 5;
constexpr int kNoTimeout = 0;

/// The time-out that goes with a confirmation screen which waits for the user, and with everything else.
int timeoutFor(Serializable* request)
{
    if (!request || request->getDataType() != DataTypeConfirmationScreen) return kTimeoutSeconds;
    // A class built without run-time type information cannot be asked: its type number is all there is.
    const auto* const screen = typeOf(*request) ? dynamic_cast<const ConfirmationScreen*>(request)
                                                : static_cast<const ConfirmationScreen*>(request);
    return screen && !screen->dispose ? kNoTimeout : kTimeoutSeconds;
}

template <class Message>
Serializable* make()
{
    return new (std::nothrow) Message;
}

bool setTimeout(int fd, int option, int seconds)
{
    timeval time{};
    time.tv_sec = seconds;
    return setsockopt(fd, SOL_SOCKET, option, &time, sizeof time) == 0;
}

/// Whether the whole text went out.
bool sendText(const Connection& connection, const char* text, std::size_t size, Seconds patience, ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNotSent);
    std::size_t sent = 0;
    const bool isWhole = sendFrame(connection.fd(), text, size, patience, &sent) == FrameSent::Whole;
    if (!isWhole) notes.fail(withTimeOut(errno));
    notes.sent(sent);
    return isWhole;
}

/// The length of the answer's text, with the NUL; none when it does not come.
std::optional<std::uint32_t> readResponseLength(FrameReader& frame, int fd, Seconds patience, ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNoAnswer);
    errno = ETIMEDOUT;  // which a wait that ends in time does not set
    // Asking for an answer before it can be there would be in vain.
    if (waitFor(fd, POLLIN, endOf(patience))) return frame.readLength();
    notes.fail(withTimeOut(errno));
    return std::nullopt;
}

/// The text of the answer; none when it does not come whole.
std::optional<FrameText> readResponseText(FrameReader& frame, std::uint32_t size, ExchangeNotes& notes)
{
    std::optional<FrameText> text = frame.readText(size);
    if (text) notes.keep({text->c_str(), text->size()});
    if (text && text->size() == size) notes.enter(ExchangePhaseAnswerNotUnderstood);
    if (!text || text->empty()) {
        logLine("OrvuRestClientSocket::send: ERROR response data is empty!");
    } else if (text->size() < size) {
        logLine("OrvuRestClientSocket::send: ERROR response data is cut short!");
    } else {
        return text;
    }
    return std::nullopt;
}

/// The same from the length on.
std::optional<FrameText> readResponse(int fd, Seconds patience, ExchangeNotes& notes)
{
    NotedSource source(fd, patience, notes);
    FrameReader frame(source);
    const std::optional<std::uint32_t> length = readResponseLength(frame, fd, patience, notes);
    if (!length) {
        logLine("OrvuRestClientSocket::send: Cannot get buffer size!");
        return std::nullopt;
    }
    const std::uint32_t size = *length == 0 ? 0 : *length - 1;
    notes.announced(size);
    if (size <= kLongestText) return readResponseText(frame, size, notes);
    notes.enter(ExchangePhaseAnswerTooLong);
    notes.keep(frame.early());
    logLine("OrvuRestClientSocket::send: ERROR response of %u bytes is too long!", *length);
    return std::nullopt;
}

/// `peerName` names the peer when the answer is refused.
template <class PeerName>
Serializable* answerIn(const FrameText& text, ExchangeNotes& notes, PeerName peerName)
{
    CheckedText checked(text.c_str());
    requireMemory(checked);
    const HeaderTypes types = headerTypes(checked);
    std::unique_ptr<Serializable> answer(Serializable::factory(types.mapped));
    if (!answer) {
        logLine("OrvuRestClientSocket::send: ERROR cannot find serializable class");
        logLine("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    if (!isFilled(*answer, checked, text.c_str())) {
        logLine("OrvuRestClientSocket::send: ERROR cannot deserialize response!");
        answer.reset();  // what it holds would be held twice
        logRefusal("OrvuRestClientSocket::send", peerName(), checked, types.mapped);
        return make<UnknowRequest>();
    }
    // What names no message is an UnknowRequest as well; that is not what the peer said.
    if (types.isName && types.mapped == types.named) notes.enter(ExchangePhaseAnswered);
    logLine("OrvuRestClientSocket::send worked? -- end");
    return answer.release();
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

std::shared_ptr<OrvuRestClientSocket> OrvuRestClientSocket::shared()
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
    return shared().get();
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

OrvuRestClientSocket::Peer OrvuRestClientSocket::peer()
{
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
        Connection connection = connect(nullptr, timeoutSeconds, notes, nullptr);
        Socket socket = connection.takeSocket();
        return connection.isWanted() && socket ? socket.release() : 0;
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR out of memory!");
        return 0;
    }
}

/// Empty on any failure.
Connection OrvuRestClientSocket::connect(const Address* own, int timeoutSeconds, ExchangeNotes& notes,
                                         InGroup* exchange)
{
    logLine("OrvuRestClientSocket::connectSocket: -- init");
    notes.enter(ExchangePhaseNoPeer);
    const unsigned begun = inFlight_->wakes();
    const Peer peer = own ? Peer{own->host ? own->host : "", own->port} : this->peer();
    if (peer.host.empty() || peer.port == 0) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR configure host/port before use!");
        return {};
    }
    notes.enter(ExchangePhaseNotConnected);
    Socket socket = Socket::stream();
    if (!socket) {
        notes.fail(errno);
        logLine("OrvuRestClientSocket::connectSocket: ERROR opening client socket");
        return {};
    }
    notes.enter(ExchangePhaseNotResolved);
    int error = 0;
    const std::optional<in_addr> address = resolved(peer.host, error);
    if (!address) {
        notes.fail(error);
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot find host: %s", peer.host.c_str());
        return {};
    }
    notes.enter(ExchangePhaseNotConnected);
    if (!setTimeout(socket.fd(), SO_RCVTIMEO, timeoutSeconds)) {
        notes.fail(errno);
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_RCVTIMEO");
        return {};
    }
    if (!setTimeout(socket.fd(), SO_SNDTIMEO, timeoutSeconds)) {
        notes.fail(errno);
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_SNDTIMEO");
        return {};
    }
    Connection connection(std::move(socket), inFlight_, begun, exchange);
    error = connection ? connectTo(connection.fd(), *address, peer.port, Seconds(timeoutSeconds)) : 0;
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
    const Seconds patience(timeoutSeconds);
    InGroup inGroup(*inFlight_, notes.group());
    Connection connection = connect(address, timeoutSeconds, notes, &inGroup);
    if (!connection) {
        logLine("OrvuRestClientSocket::send: ERROR cannot connect to server");
        return make<CannotConnectToServer>();
    }
    notes.enter(ExchangePhaseNothingToSend);
    JsonText text = textOf(request);
    if (!text) {
        logLine("OrvuRestClientSocket::send: ERROR cannot serialize request!");
        connection.close();
        logLine("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    const std::size_t size = std::strlen(text.get());
    if (size == 0) {
        logLine("OrvuRestClientSocket::send: ERROR serializable data is empty!");
        return make<EmptyData>();
    }
    if (!sendText(connection, text.get(), size, patience, notes)) {
        if (!connection.isWanted()) notes.cancel();
        logLine("OrvuRestClientSocket::send: ERROR writing to socket");
        return make<EmptyData>();
    }
    text.reset();
    const std::optional<FrameText> response = readResponse(connection.fd(), patience, notes);
    if (!response && !connection.isWanted()) notes.cancel();
    connection.close();
    const auto peerName = [this, address] {
        const Peer peer = address ? Peer{address->host ? address->host : "", address->port} : this->peer();
        return peer.host + ":" + std::to_string(peer.port);
    };
    return response ? answerIn(*response, notes, peerName) : make<EmptyData>();
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
