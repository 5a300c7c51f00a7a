#include "transport/RequestClient.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <new>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "messages/core/Exact.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "transport/Frame.h"
#include "transport/MessageCalls.h"

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

std::optional<in_addr> addressOf(const std::string& host)
{
    in_addr address;
    if (inet_pton(AF_INET, host.c_str(), &address) == 1) return address;
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return std::nullopt;
    address = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr;
    freeaddrinfo(found);
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
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr = host;
    address.sin_port = htons(static_cast<in_port_t>(port));
    const Deadline deadline = endOf(Seconds(timeoutSeconds));
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    if (errno != EINTR) return false;
    return waitFor(fd, POLLOUT, deadline) && pendingError(fd) == 0;  // a call cut short leaves the attempt going on
}

/// The text of the answer; none when it does not come whole.
std::optional<FrameText> readResponse(int fd, int timeoutSeconds)
{
    SocketSource source(fd, Seconds(timeoutSeconds));
    FrameReader frame(source);
    const std::optional<std::uint32_t> length = frame.readLength();
    if (!length) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: Cannot get buffer size!");
        return std::nullopt;
    }
    const std::uint32_t size = *length == 0 ? 0 : *length - 1;
    if (size > kLongestText) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR response of %u bytes is too long!", *length);
        return std::nullopt;
    }
    std::optional<FrameText> text = frame.readText(size);
    if (!text || text->empty()) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR response data is empty!");
    } else if (text->size() < size) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR response data is cut short!");
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
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR cannot find serializable class");
        OrvuRestInterface::log("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    if (!isFilled(*answer, checked, text.c_str())) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR cannot deserialize response!");
        return make<UnknowRequest>();
    }
    OrvuRestInterface::log("OrvuRestClientSocket::send worked? -- end");
    return answer.release();
}

}  // namespace

void RequestClient::setPeer(Peer peer)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    peer_ = std::move(peer);
}

RequestClient::Peer RequestClient::peer()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return peer_;
}

bool RequestClient::configure(const char* host, int port)
{
    OrvuRestInterface::log("OrvuRestClientSocket::configure: -- init");
    try {
        setPeer({host ? host : "", port});
        OrvuRestInterface::log("OrvuRestClientSocket::configure: Checking server connection...");
        if (connect(kTimeoutSeconds)) {
            OrvuRestInterface::log("OrvuRestClientSocket::configure: -- end");
            return true;
        }
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestClientSocket::configure: ERROR out of memory!");
    }
    OrvuRestInterface::log("OrvuRestClientSocket::configure: ERROR cannot connect to server");
    return false;
}

int RequestClient::connectSocket(int timeoutSeconds)
{
    try {
        Connection connection = connect(timeoutSeconds);
        return connection.leave() ? connection.release() : 0;
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR out of memory!");
        return 0;
    }
}

/// Empty on any failure.
Connection RequestClient::connect(int timeoutSeconds)
{
    OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: -- init");
    const Peer peer = this->peer();
    if (peer.host.empty() || peer.port == 0) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR configure host/port before use!");
        return {};
    }
    Socket socket = Socket::stream();
    if (!socket) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR opening client socket");
        return {};
    }
    const std::optional<in_addr> address = addressOf(peer.host);
    if (!address) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR cannot find host: %s", peer.host.c_str());
        return {};
    }
    if (!setTimeout(socket.fd(), SO_RCVTIMEO, timeoutSeconds)) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_RCVTIMEO");
        return {};
    }
    if (!setTimeout(socket.fd(), SO_SNDTIMEO, timeoutSeconds)) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_SNDTIMEO");
        return {};
    }
    Connection connection(std::move(socket), inFlight_);
    if (!connection || !connectTo(connection.fd(), *address, peer.port, timeoutSeconds)) {
        OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: ERROR connecting to host: %s:%d",
                               peer.host.c_str(), peer.port);
        return {};
    }
    OrvuRestInterface::log("OrvuRestClientSocket::connectSocket: -- end");
    return connection;
}

Serializable* RequestClient::send(Serializable* request, int timeoutSeconds)
{
    OrvuRestInterface::log("OrvuRestClientSocket::send: -- init");
    try {
        return exchange(request, timeoutSeconds);
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR out of memory!");
        return make<EmptyData>();
    }
}

Serializable* RequestClient::exchange(Serializable* request, int timeoutSeconds)
{
    if (!request) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR cannot send NULL data");
        return make<UnknowRequest>();
    }
    Connection connection = connect(timeoutSeconds);
    if (!connection) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR cannot connect to server");
        return make<CannotConnectToServer>();
    }
    JsonText text = textOf(request);
    if (!text) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR cannot serialize request!");
        connection.close();
        OrvuRestInterface::log("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    const std::size_t size = std::strlen(text.get());
    if (size == 0) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR serializable data is empty!");
        return make<EmptyData>();
    }
    if (!sendFrame(connection.fd(), text.get(), size, Seconds(timeoutSeconds))) {
        OrvuRestInterface::log("OrvuRestClientSocket::send: ERROR writing to socket");
        return make<EmptyData>();
    }
    text.reset();
    const std::optional<FrameText> response = readResponse(connection.fd(), timeoutSeconds);
    connection.close();
    return response ? answerIn(*response) : make<EmptyData>();
}

Serializable* RequestClient::sendRequest(Serializable* request)
{
    OrvuRestInterface::log("OrvuRestClientSocket::sendRequest (Serializable): -- init");
    Serializable* const answer = send(request, timeoutFor(request));
    OrvuRestInterface::log("OrvuRestClientSocket::sendRequest(Serializable): -- end");
    return answer;
}

Serializable* RequestClient::sendRequest(DataType type)
{
    OrvuRestInterface::log("OrvuRestClientSocket::sendRequest (DataType): -- init");
    const std::unique_ptr<Serializable> request(Serializable::factory(type));
    if (!request) {
        OrvuRestInterface::log("OrvuRestClientSocket::sendRequest (DataType): -- end 2");
        return nullptr;
    }
    Serializable* const answer = sendRequest(request.get());
    OrvuRestInterface::log("OrvuRestClientSocket::sendRequest (DataType): -- end 1");
    return answer;
}

}  // namespace Orvu
