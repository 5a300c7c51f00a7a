#include "transport/OrvuRestClientSocket.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <new>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <vector>

#include "log/Log.h"
#include "messages/core/Exact.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "transport/Frame.h"
#include "transport/MessageCalls.h"
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

/// Its first IPv4 address, in the order of the host's entry. Throws std::bad_alloc.
std::optional<in_addr> resolved(const std::string& host)
{
    in_addr address;
    if (inet_pton(AF_INET, host.c_str(), &address) == 1) return address;
    std::vector<char> room(1024);
    hostent entry;
    hostent* found = nullptr;
    int reason;
    while (gethostbyname_r(host.c_str(), &entry, room.data(), room.size(), &found, &reason) == ERANGE)
        room.resize(2 * room.size());
    if (!found || found->h_addrtype != AF_INET || !found->h_addr_list[0]) return std::nullopt;
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return address;
}

bool setTimeout(int fd, int option, int seconds)
{
    timeval time{};
    time.tv_sec = seconds;
    return setsockopt(fd, SOL_SOCKET, option, &time, sizeof time) == 0;
}

int pendingError(int fd)
{
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

/// Bounded by the socket's own send time-out.
bool connectTo(int fd, const in_addr& host, int port, int timeoutSeconds)
{
    if (port < 0 || port > 65535) return false;
    const sockaddr_in address = addressOf(host, port);
    const Deadline deadline = endOf(Seconds(timeoutSeconds));
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    if (errno != EINTR) return false;
    return waitFor(fd, POLLOUT, deadline) && pendingError(fd) == 0;  // a call cut short leaves the attempt going on
}

/// The text of the answer; none when it does not come whole.
std::optional<FrameText> readResponse(int fd, int timeoutSeconds)
{
    const Seconds patience(timeoutSeconds);
    SocketSource source(fd, patience);
    FrameReader frame(source);
    // Asking for an answer before it can be there would be in vain.
    const bool hasCome = waitFor(fd, POLLIN, endOf(patience));
    const std::optional<std::uint32_t> length = hasCome ? frame.readLength() : std::nullopt;
    if (!length) {
        logLine("OrvuRestClientSocket::send: Cannot get buffer size!");
        return std::nullopt;
    }
    const std::uint32_t size = *length == 0 ? 0 : *length - 1;
    if (size > kLongestText) {
        logLine("OrvuRestClientSocket::send: ERROR response of %u bytes is too long!", *length);
        return std::nullopt;
    }
    std::optional<FrameText> text = frame.readText(size);
    if (!text || text->empty()) {
        logLine("OrvuRestClientSocket::send: ERROR response data is empty!");
    } else if (text->size() < size) {
        logLine("OrvuRestClientSocket::send: ERROR response data is cut short!");
    } else {
        return text;
    }
    return std::nullopt;
}

Serializable* answerIn(const FrameText& text)
{
    const CheckedText checked(text.c_str());
    requireMemory(checked);
    std::unique_ptr<Serializable> answer(Serializable::factory(headerTypes(checked).mapped));
    if (!answer) {
        logLine("OrvuRestClientSocket::send: ERROR cannot find serializable class");
        logLine("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    if (!isFilled(*answer, checked, text.c_str())) {
        logLine("OrvuRestClientSocket::send: ERROR cannot deserialize response!");
        return make<UnknowRequest>();
    }
    logLine("OrvuRestClientSocket::send worked? -- end");
    return answer.release();
}

StaticMutex instanceMutex;

std::shared_ptr<OrvuRestClientSocket>& instance()
{
    static Immortal<std::shared_ptr<OrvuRestClientSocket>> instance;
    return *instance;
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
    std::unique_lock<StaticMutex> lock(instanceMutex);
    const std::shared_ptr<OrvuRestClientSocket> client = instance();
    lock.unlock();
    if (client) client->inFlight_->wakeAll();
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
        if (connect(kTimeoutSeconds)) {
            logLine("OrvuRestClientSocket::configure: -- end");
            return true;
        }
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::configure: ERROR out of memory!");
    }
    logLine("OrvuRestClientSocket::configure: ERROR cannot connect to server");
    return false;
}

int OrvuRestClientSocket::connectSocket(int timeoutSeconds)
{
    const auto untilItReturns = shared_from_this();
    try {
        Connection connection = connect(timeoutSeconds);
        Socket socket = connection.takeSocket();
        return connection.isWanted() && socket ? socket.release() : 0;
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR out of memory!");
        return 0;
    }
}

/// Empty on any failure.
Connection OrvuRestClientSocket::connect(int timeoutSeconds)
{
    logLine("OrvuRestClientSocket::connectSocket: -- init");
    const unsigned begun = inFlight_->wakes();
    const Peer peer = this->peer();
    if (peer.host.empty() || peer.port == 0) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR configure host/port before use!");
        return {};
    }
    Socket socket = Socket::stream();
    if (!socket) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR opening client socket");
        return {};
    }
    const std::optional<in_addr> address = resolved(peer.host);
    if (!address) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot find host: %s", peer.host.c_str());
        return {};
    }
    if (!setTimeout(socket.fd(), SO_RCVTIMEO, timeoutSeconds)) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_RCVTIMEO");
        return {};
    }
    if (!setTimeout(socket.fd(), SO_SNDTIMEO, timeoutSeconds)) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_SNDTIMEO");
        return {};
    }
    Connection connection(std::move(socket), inFlight_, begun);
    const bool isConnected = connection && connectTo(connection.fd(), *address, peer.port, timeoutSeconds);
    if (!connection.isWanted()) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR dropped, %s",
                inFlight_->isOpen() ? "the exchange was cancelled" : "the client goes away");
        return {};
    }
    if (!isConnected) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR connecting to host: %s:%d", peer.host.c_str(), peer.port);
        return {};
    }
    logLine("OrvuRestClientSocket::connectSocket: -- end");
    return connection;
}

Serializable* OrvuRestClientSocket::send(Serializable* request, int timeoutSeconds)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::send: -- init");
    try {
        return exchange(request, timeoutSeconds);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::send: ERROR out of memory!");
        return make<EmptyData>();
    }
}

Serializable* OrvuRestClientSocket::exchange(Serializable* request, int timeoutSeconds)
{
    if (!request) {
        logLine("OrvuRestClientSocket::send: ERROR cannot send NULL data");
        return make<UnknowRequest>();
    }
    Connection connection = connect(timeoutSeconds);
    if (!connection) {
        logLine("OrvuRestClientSocket::send: ERROR cannot connect to server");
        return make<CannotConnectToServer>();
    }
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
    if (sendFrame(connection.fd(), text.get(), size, Seconds(timeoutSeconds)) != FrameSent::Whole) {
        logLine("OrvuRestClientSocket::send: ERROR writing to socket");
        return make<EmptyData>();
    }
    text.reset();
    const std::optional<FrameText> response = readResponse(connection.fd(), timeoutSeconds);
    connection.close();
    return response ? answerIn(*response) : make<EmptyData>();
}

Serializable* OrvuRestClientSocket::sendRequest(Serializable* request)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::sendRequest (Serializable): -- init");
    Serializable* const answer = send(request, timeoutFor(request));
    logLine("OrvuRestClientSocket::sendRequest(Serializable): -- end");
    return answer;
}

Serializable* OrvuRestClientSocket::sendRequest(DataType type)
{
    const auto untilItReturns = shared_from_this();
    logLine("OrvuRestClientSocket::sendRequest (DataType): -- init");
    const std::unique_ptr<Serializable> request(Serializable::factory(type));
    if (!request) {
        logLine("OrvuRestClientSocket::sendRequest (DataType): -- end 2");
        return nullptr;
    }
    Serializable* const answer = sendRequest(request.get());
    logLine("OrvuRestClientSocket::sendRequest (DataType): -- end 1");
    return answer;
}

}  // namespace Orvu
