#include "transport/OrvuRestServerWebSocket.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <new>
#include <poll.h>
#include <sys/socket.h>

#include "orvu/OrvuRestInterface.h"
#include "transport/Listener.h"
#include "transport/Outgoing.h"

namespace Orvu {
namespace {

constexpr Seconds kHandshakeTime(5);
constexpr Seconds kFrameTime(5);
constexpr int kReaderPauseMilliseconds = 60 * 1000;

void setOption(const Socket& socket, int level, int option, int value)
{
    setsockopt(socket.fd(), level, option, &value, sizeof value);
}

/// A client that vanished without a word is found within two minutes, whether or not something is on its way to it.
void watch(const Socket& socket)
{
    setOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
    setOption(socket, IPPROTO_TCP, TCP_KEEPIDLE, 60);  // seconds, as the next one
    setOption(socket, IPPROTO_TCP, TCP_KEEPINTVL, 15);
    setOption(socket, IPPROTO_TCP, TCP_KEEPCNT, 4);
    setOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, 120 * 1000);  // milliseconds
}

int shownSize(std::size_t size)
{
    return static_cast<int>(std::min<std::size_t>(size, INT_MAX));
}

}  // namespace

OrvuRestServerWebSocket::OrvuRestServerWebSocket() = default;

OrvuRestServerWebSocket::~OrvuRestServerWebSocket()
{
    OrvuRestServerWebSocket::stop();
}

bool OrvuRestServerWebSocket::configure(int port)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) stopLocked();
    serverSocket_ = Socket::stream();
    if (!serverSocket_) {
        OrvuRestInterface::log("OrvuRestServerWebSocket::configure: ERROR opening server socket!");
        return false;
    }
    if (!bindTo(serverSocket_, port) || listen(serverSocket_.fd(), SOMAXCONN) != 0) {
        OrvuRestInterface::log("OrvuRestServerWebSocket::configure: ERROR binding server socket!");
        serverSocket_ = Socket();
        return false;
    }
    return true;
}

bool OrvuRestServerWebSocket::start()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) return true;
    if (!serverSocket_) {
        OrvuRestInterface::log("OrvuRestServerWebSocket::start: ERROR configure before start!");
        return false;
    }
    running_ = true;
    if (serverThread_.start(makeTask("orvu-accept", [this] { acceptClients(); }))) return true;
    running_ = false;
    OrvuRestInterface::log("OrvuRestServerWebSocket::start: ERROR run the server thread!");
    return false;
}

void OrvuRestServerWebSocket::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
}

void OrvuRestServerWebSocket::stopLocked()
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::stop: Stopping server -->>");
    running_ = false;
    serverSocket_.shutdown();
    dropClients();
    serverThread_.join();
    clientThread_.join();
    const std::lock_guard<std::mutex> untilThePushEnds(writing_);
    serverSocket_ = Socket();
    OrvuRestInterface::log("OrvuRestServerWebSocket::stop: Stopping server <<--");
}

/// Ends the handshake, the reading and the frame in progress. Nobody becomes a client once `running_` is off.
void OrvuRestServerWebSocket::dropClients()
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    if (candidate_) candidate_->shutdown();
    if (client_) client_->shutdown();
    client_.reset();
}

void OrvuRestServerWebSocket::acceptClients()
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: Server loop start!");
    while (running_) {
        OrvuRestInterface::log("OrvuRestServerWebSocket: Waiting new client connection...");
        Socket socket = Socket::acceptedFrom(serverSocket_);
        const int reason = errno;
        if (socket) {
            admit(std::move(socket));
        } else if (running_ && isLasting(reason)) {
            pauseAccepting();
        }
    }
    OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: Server loop end!");
}

void OrvuRestServerWebSocket::admit(Socket socket)
{
    if (attachedClient()) {
        OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: Already have a client... ignoring connection.");
        return;
    }
    OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: Accepted new client connection.");
    try {
        const auto client = std::make_shared<Socket>(std::move(socket));
        if (setCandidate(client) && doHanshake(client)) return startReading(client);
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: ERROR out of memory!");
    }
    OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: Handshake fail! Ignoring client.");
    setCandidate(nullptr);
}

/// False once the server is being stopped.
bool OrvuRestServerWebSocket::setCandidate(const Client& client)
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    candidate_ = client;
    return running_;
}

/// The opening handshake. Whoever pushes once the client can know of it finds it attached.
bool OrvuRestServerWebSocket::doHanshake(const Client& client)
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::doHanshake: doHanshake -->>");
    SocketSource source(client->fd(), kHandshakeTime, after(kHandshakeTime));
    const std::optional<std::string> response = getHSresponse(readOpeningRequest(source));
    if (!response) return false;
    OrvuRestInterface::log(
        "OrvuRestServerWebSocket::doHanshake: Handshaked, response: \n"
        "------------------------------------\n%s------------------------------------\n",
        response->c_str());

    sendAtOnce(*client);
    watch(*client);
    const std::lock_guard<std::mutex> lock(writing_);
    Outgoing answer(response->data(), response->size());
    if (!answer.finish(client->fd(), kFrameTime) || !attach(client)) return false;
    OrvuRestInterface::log("OrvuRestServerWebSocket::doHanshake: doHanshake <<--");
    return true;
}

/// False once the server is being stopped.
bool OrvuRestServerWebSocket::attach(const Client& client)
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    candidate_.reset();
    if (running_) client_ = client;
    return running_;
}

void OrvuRestServerWebSocket::detach(const Client& client)
{
    {
        const std::lock_guard<std::mutex> lock(clientMutex_);
        if (client_ == client) client_.reset();
    }
    client->shutdown();  // last: whoever sees the end may come back at once
}

OrvuRestServerWebSocket::Client OrvuRestServerWebSocket::attachedClient()
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    return client_;
}

void OrvuRestServerWebSocket::startReading(const Client& client)
{
    clientThread_.join();  // of the client before, which was detached
    if (clientThread_.start(makeTask("orvu-reader", [this, client] { clientReadThread(client); }))) return;
    OrvuRestInterface::log("OrvuRestServerWebSocket::serverThread: Could not create the client thread!");
    detach(client);
}

void OrvuRestServerWebSocket::clientReadThread(const Client& client)
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: start");
    while (attachedClient() == client) {
        pollfd state{client->fd(), POLLIN, 0};
        const int ready = poll(&state, 1, kReaderPauseMilliseconds);
        if (ready == 0) OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: waiting...");
        if (ready < 0 && errno != EINTR) leave(client);
        if (ready > 0) receive(client);
    }
    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread end");
}

/// The client went away without a close frame.
void OrvuRestServerWebSocket::leave(const Client& client)
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: closing...");
    detach(client);
}

void OrvuRestServerWebSocket::receive(const Client& client)
{
    unsigned char bytes[kWebSocketReceiveSize];
    const ssize_t size = recv(client->fd(), bytes, sizeof bytes, MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (size <= 0) return leave(client);

    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: -->> Receive data");
    const ReceivedFrame frame = receiveframe(client, bytes, static_cast<std::size_t>(size));
    if (frame.opcode == WS_FR_OP_CLSE) {
        OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: Receive msg: WS_FR_OP_CLSE");
        return detach(client);
    }
    if (frame.opcode == WS_FR_OP_TXT) echo(client, frame);
    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread <<-- Receive data");
}

ReceivedFrame OrvuRestServerWebSocket::receiveframe(const Client& client, const unsigned char* bytes, std::size_t size)
{
    OrvuRestInterface::log("receiveframe: %.*s | size: %d", shownSize(size), reinterpret_cast<const char*>(bytes),
                           shownSize(size));
    try {
        if (attachedClient() == client) return decodeFrame(bytes, size);
        OrvuRestInterface::log("receiveframe: Invalid frame!");
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("receiveframe: ERROR out of memory!");
    }
    return {};
}

void OrvuRestServerWebSocket::echo(const Client& client, const ReceivedFrame& frame)
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: Receive msg: WS_FR_OP_TXT");
    if (!frame.payload || frame.payload->empty()) return;
    OrvuRestInterface::log("OrvuRestServerWebSocket::clientReadThread: Received msg: echo back to client: %.*s",
                           shownSize(frame.payload->size()), frame.payload->data());
    const std::lock_guard<std::mutex> lock(writing_);
    sendframe(client, frame.payload->data(), frame.payload->size(), WS_FR_OP_TXT);
}

bool OrvuRestServerWebSocket::send(unsigned char* data, unsigned int size)
{
    OrvuRestInterface::log("OrvuRestServerWebSocket::send: Message size: %d bytes", shownSize(size));
    const std::lock_guard<std::mutex> lock(writing_);
    const Client client = data || size == 0 ? attachedClient() : nullptr;
    const ssize_t sent = client ? sendframe(client, data, size, WS_FR_OP_BIN) : 0;
    OrvuRestInterface::log("OrvuRestServerWebSocket::send: Sent to client %d bytes", static_cast<int>(sent));
    return static_cast<std::size_t>(sent) >= size;  // a failed write, -1, is the largest number, as callers expect
}

/// The bytes that went out, the frame's header counted; -1 when writing failed. For whoever holds `writing_`.
ssize_t OrvuRestServerWebSocket::sendframe(const Client& client, const void* data, std::size_t size, int opcode)
{
    const FrameHeader header(opcode, static_cast<unsigned>(size));
    const std::size_t whole = header.size + size;
    Outgoing frame(header.bytes, header.size, data, size);
    const bool isOpen = frame.offer(client->fd());
    if (isOpen && frame.left() == whole) return -1;  // no room for its first byte: dropped whole
    if (isOpen && frame.finish(client->fd(), kFrameTime, after(kFrameTime))) return static_cast<ssize_t>(whole);
    detach(client);  // its stream ends in the middle of a frame: nothing may follow
    return -1;
}

}  // namespace Orvu
