#include "transport/WebSocketConnection.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <new>
#include <poll.h>
#include <sys/socket.h>

#include "log/Log.h"
#include "transport/Frame.h"
#include "transport/Outgoing.h"

namespace Orvu {
namespace {

constexpr int kReaderPauseMilliseconds = 60 * 1000;
constexpr std::size_t kReceiveSize = 2 * 1024;

const unsigned char* bytesOf(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

int shownSize(std::uint64_t size)
{
    return static_cast<int>(std::min<std::uint64_t>(size, INT_MAX));
}

/// For a client that has left without a close frame, or sends something that ends its stream. False: the connection
/// ends.
bool closing()
{
    logLine("OrvuRestServerWebSocket::clientReadThread: closing...");
    return false;
}

}  // namespace

void WebSocketConnection::serve()
{
    if (shakesHands()) clientReadThread();
    place_.end(*this);
    leaveTarget();
}

/// Waits until no push uses the connection; one in progress ends, since the connection has ended.
void WebSocketConnection::leaveTarget()
{
    if (target_.client != this) return;
    const std::lock_guard<std::mutex> lock(target_.writing);
    if (target_.client == this) target_.client = nullptr;
}

bool WebSocketConnection::shakesHands()
{
    try {
        if (doHanshake()) return true;
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerWebSocket::serverThread: ERROR out of memory!");
    }
    logLine("OrvuRestServerWebSocket::serverThread: Handshake fail! Ignoring client.");
    return false;
}

bool WebSocketConnection::doHanshake()
{
    logLine("OrvuRestServerWebSocket::doHanshake: doHanshake -->>");
    readOpeningRequest();
    const std::optional<std::string> response = getHSresponse(request_.text());
    if (!response) return false;
    request_.dropText();
    if (place_.give(shared_from_this())) return answer(*response);
    if (!isOver_) logLine("OrvuRestServerWebSocket::serverThread: Already have a client... ignoring connection.");
    return false;
}

void WebSocketConnection::readOpeningRequest()
{
    SocketSource source(socket_.fd(), kPatience, after(kPatience));
    char bytes[kReceiveSize];
    while (!request_.canBeJudged()) {
        const ssize_t got = source.read(bytes, sizeof bytes);
        if (got <= 0) return;
        const auto size = static_cast<std::size_t>(got);
        const std::size_t taken = request_.take(reinterpret_cast<const unsigned char*>(bytes), size);
        early_.assign(bytes + taken, size - taken);
    }
}

bool WebSocketConnection::answer(const std::string& response)
{
    logLine(
        "OrvuRestServerWebSocket::doHanshake: Handshaked, response: \n"
        "------------------------------------\n%s------------------------------------\n",
        response.c_str());
    socket_.sendAtOnce();
    socket_.keepAlive();
    Outgoing answer(response.data(), response.size());
    const std::lock_guard<std::mutex> beforeAnyPush(target_.writing);
    if (!answer.finish(socket_.fd(), kPatience)) {
        place_.end(*this);
        return false;
    }
    target_.client = this;
    logLine("OrvuRestServerWebSocket::doHanshake: doHanshake <<--");
    return true;
}

void WebSocketConnection::clientReadThread()
{
    logLine("OrvuRestServerWebSocket::clientReadThread: start");
    if (handleEarly()) {
        while (waitForBytes() && receive()) {
        }
    }
    place_.end(*this);
    logLine("OrvuRestServerWebSocket::clientReadThread end");
}

/// Handles what came together with the end of the opening request. False when the connection is to end, as for the
/// functions below.
bool WebSocketConnection::handleEarly()
{
    const std::string early = std::move(early_);
    return early.empty() || handle(bytesOf(early), bytesOf(early) + early.size());
}

bool WebSocketConnection::waitForBytes()
{
    for (;;) {
        place_.readerRests(*this);
        pollfd state{socket_.fd(), POLLIN, 0};
        const int ready = poll(&state, 1, kReaderPauseMilliseconds);
        const bool isInterrupted = ready < 0 && errno == EINTR;
        if (!place_.readerWorks(*this)) return false;
        if (ready > 0) return true;
        if (ready < 0 && !isInterrupted) return closing();
        if (ready == 0) logLine("OrvuRestServerWebSocket::clientReadThread: waiting...");
    }
}

bool WebSocketConnection::receive()
{
    unsigned char bytes[kReceiveSize];
    const ssize_t size = recv(socket_.fd(), bytes, sizeof bytes, MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) return true;
    if (size <= 0) return closing();
    return handle(bytes, bytes + size);
}

bool WebSocketConnection::handle(const unsigned char* at, const unsigned char* end)
{
    logLine("OrvuRestServerWebSocket::clientReadThread: -->> Receive data");
    at += request_.take(at, static_cast<std::size_t>(end - at));  // where it was judged before its blank line came
    while (const ReceivedFrame* const frame = frames_.next(at, end))
        if (!handle(*frame)) return false;
    if (frames_.isTooLong()) {
        logLine("receiveframe: ERROR text too long!");
        return closing();
    }
    logLine("OrvuRestServerWebSocket::clientReadThread <<-- Receive data");
    return true;
}

bool WebSocketConnection::handle(const ReceivedFrame& frame)
{
    logLine("receiveframe: %.*s | size: %d", shownSize(frame.shownSize), reinterpret_cast<const char*>(frame.shown),
            shownSize(frame.size));
    if (!place_.isAttached(*this)) {
        logLine("receiveframe: Invalid frame!");
        return false;
    }
    if (frame.opcode == WS_FR_OP_CLSE) {
        logLine("OrvuRestServerWebSocket::clientReadThread: Receive msg: WS_FR_OP_CLSE");
        return false;
    }
    if (frame.isLost) {
        logLine("receiveframe: ERROR out of memory!");
    } else if (frame.opcode == WS_FR_OP_TXT) {
        echo(frame.payload);
    }
    return true;
}

void WebSocketConnection::echo(const std::string& text)
{
    logLine("OrvuRestServerWebSocket::clientReadThread: Receive msg: WS_FR_OP_TXT");
    if (text.empty()) return;
    logLine("OrvuRestServerWebSocket::clientReadThread: Received msg: echo back to client: %.*s",
            shownSize(text.size()), text.data());
    const std::lock_guard<std::mutex> lock(target_.writing);
    sendframe(text.data(), text.size(), WS_FR_OP_TXT);
}

[[gnu::hot]] ssize_t WebSocketConnection::push(const void* data, std::size_t size)
{
    return isOver_ ? 0 : sendframe(data, size, WS_FR_OP_BIN);
}

/// The bytes that went out, the frame's header counted; -1 when writing failed. For whoever holds `writing`.
[[gnu::hot]] ssize_t WebSocketConnection::sendframe(const void* data, std::size_t size, int opcode)
{
    const FrameHeader header(opcode, static_cast<unsigned>(size));
    const std::size_t whole = header.size + size;
    ShortFrame room;
    Outgoing frame = frameOf(room, header.bytes, header.size, data, size);
    const bool isOpen = frame.offer(socket_.fd());
    if (frame.left() == 0) return static_cast<ssize_t>(whole);
    if (isOpen && frame.left() == whole) return -1;  // no room for its first byte: dropped whole
    if (isOpen && frame.finish(socket_.fd(), kPatience, after(kPatience))) return static_cast<ssize_t>(whole);
    place_.end(*this);  // its stream ends in the middle of a frame: nothing may follow
    return -1;
}

bool WebSocketConnection::hasArrived() const
{
    pollfd state{socket_.fd(), POLLIN, 0};
    return poll(&state, 1, 0) != 0;
}

void WebSocketConnection::shutdown()
{
    isOver_ = true;
    socket_.shutdown();
}

}  // namespace Orvu
