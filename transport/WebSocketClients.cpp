#include "transport/WebSocketClients.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <netinet/tcp.h>
#include <new>
#include <poll.h>
#include <sys/socket.h>

#include "log/Log.h"
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

void WebSocketClients::drop()
{
    {
        const std::lock_guard<std::mutex> lock(clientMutex_);
        if (candidate_) candidate_->shutdown();
        if (client_) client_->shutdown();
        client_.reset();
    }
    {
        const std::lock_guard<std::mutex> lock(threadMutex_);
        clientThread_.join();
    }
    const std::lock_guard<std::mutex> untilThePushEnds(writing_);
}

void WebSocketClients::take(Socket socket)
{
    if (attachedClient()) {
        logLine("OrvuRestServerWebSocket::serverThread: Already have a client... ignoring connection.");
        return;
    }
    logLine("OrvuRestServerWebSocket::serverThread: Accepted new client connection.");
    try {
        const auto client = std::make_shared<Socket>(std::move(socket));
        if (setCandidate(client) && doHanshake(client)) return startReading(client);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerWebSocket::serverThread: ERROR out of memory!");
    }
    logLine("OrvuRestServerWebSocket::serverThread: Handshake fail! Ignoring client.");
    setCandidate(nullptr);
}

/// False once the server is being stopped.
bool WebSocketClients::setCandidate(const Client& client)
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    candidate_ = client;
    return true;
}

/// The opening handshake. Whoever pushes once the client can know of it finds it attached.
bool WebSocketClients::doHanshake(const Client& client)
{
    logLine("OrvuRestServerWebSocket::doHanshake: doHanshake -->>");
    SocketSource source(client->fd(), kHandshakeTime, after(kHandshakeTime));
    const std::optional<std::string> response = getHSresponse(readOpeningRequest(source));
    if (!response) return false;
    logLine(
        "OrvuRestServerWebSocket::doHanshake: Handshaked, response: \n"
        "------------------------------------\n%s------------------------------------\n",
        response->c_str());

    client->sendAtOnce();
    watch(*client);
    const std::lock_guard<std::mutex> lock(writing_);
    Outgoing answer(response->data(), response->size());
    if (!answer.finish(client->fd(), kFrameTime) || !attach(client)) return false;
    logLine("OrvuRestServerWebSocket::doHanshake: doHanshake <<--");
    return true;
}

/// False once the server is being stopped.
bool WebSocketClients::attach(const Client& client)
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    candidate_.reset();
    client_ = client;
    return true;
}

void WebSocketClients::detach(const Client& client)
{
    {
        const std::lock_guard<std::mutex> lock(clientMutex_);
        if (client_ == client) client_.reset();
    }
    client->shutdown();  // last: whoever sees the end may come back at once
}

WebSocketClients::Client WebSocketClients::attachedClient()
{
    const std::lock_guard<std::mutex> lock(clientMutex_);
    return client_;
}

void WebSocketClients::startReading(const Client& client)
{
    const std::lock_guard<std::mutex> lock(threadMutex_);
    clientThread_.join();  // of the client before, which was detached
    if (clientThread_.start(makeTask("orvu-reader", [this, client] { clientReadThread(client); }))) return;
    logLine("OrvuRestServerWebSocket::serverThread: Could not create the client thread!");
    detach(client);
}

void WebSocketClients::clientReadThread(const Client& client)
{
    logLine("OrvuRestServerWebSocket::clientReadThread: start");
    while (attachedClient() == client) {
        pollfd state{client->fd(), POLLIN, 0};
        const int ready = poll(&state, 1, kReaderPauseMilliseconds);
        if (ready == 0) logLine("OrvuRestServerWebSocket::clientReadThread: waiting...");
        if (ready < 0 && errno != EINTR) leave(client);
        if (ready > 0) receive(client);
    }
    logLine("OrvuRestServerWebSocket::clientReadThread end");
}

/// The client went away without a close frame.
void WebSocketClients::leave(const Client& client)
{
    logLine("OrvuRestServerWebSocket::clientReadThread: closing...");
    detach(client);
}

void WebSocketClients::receive(const Client& client)
{
    unsigned char bytes[kWebSocketReceiveSize];
    const ssize_t size = recv(client->fd(), bytes, sizeof bytes, MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (size <= 0) return leave(client);

    logLine("OrvuRestServerWebSocket::clientReadThread: -->> Receive data");
    const ReceivedFrame frame = receiveframe(client, bytes, static_cast<std::size_t>(size));
    if (frame.opcode == WS_FR_OP_CLSE) {
        logLine("OrvuRestServerWebSocket::clientReadThread: Receive msg: WS_FR_OP_CLSE");
        return detach(client);
    }
    if (frame.opcode == WS_FR_OP_TXT) echo(client, frame);
    logLine("OrvuRestServerWebSocket::clientReadThread <<-- Receive data");
}

ReceivedFrame WebSocketClients::receiveframe(const Client& client, const unsigned char* bytes, std::size_t size)
{
    logLine("receiveframe: %.*s | size: %d", shownSize(size), reinterpret_cast<const char*>(bytes), shownSize(size));
    try {
        if (attachedClient() == client) return decodeFrame(bytes, size);
        logLine("receiveframe: Invalid frame!");
    } catch (const std::bad_alloc&) {
        logLine("receiveframe: ERROR out of memory!");
    }
    return {};
}

void WebSocketClients::echo(const Client& client, const ReceivedFrame& frame)
{
    logLine("OrvuRestServerWebSocket::clientReadThread: Receive msg: WS_FR_OP_TXT");
    if (!frame.payload || frame.payload->empty()) return;
    logLine("OrvuRestServerWebSocket::clientReadThread: Received msg: echo back to client: %.*s",
            shownSize(frame.payload->size()), frame.payload->data());
    const std::lock_guard<std::mutex> lock(writing_);
    sendframe(client, frame.payload->data(), frame.payload->size(), WS_FR_OP_TXT);
}

ssize_t WebSocketClients::push(const void* data, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(writing_);
    const Client client = attachedClient();
    return client ? sendframe(client, data, size, WS_FR_OP_BIN) : 0;
}

/// The bytes that went out, the frame's header counted; -1 when writing failed. For whoever holds `writing_`.
ssize_t WebSocketClients::sendframe(const Client& client, const void* data, std::size_t size, int opcode)
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
