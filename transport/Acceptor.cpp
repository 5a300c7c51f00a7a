#include "transport/Acceptor.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

#include "log/Log.h"

namespace Orvu {
namespace {

bool bindTo(const Socket& socket, in_addr host, int port)
{
    if (port < 0 || port > 65535) return false;
    const int on = 1;
    setsockopt(socket.fd(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = addressOf(host, port);
    return bind(socket.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

/// The port that the system chose; 0 when it does not say.
int chosenPort(const Socket& socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (getsockname(socket.fd(), reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
    return ntohs(address.sin_port);
}

/// Whether the system, and not one peer, is the reason of a failed accept, so that it would fail again at once.
bool isLasting(int reason)
{
    return reason != ECONNABORTED && reason != EPROTO;
}

bool isWantOfDescriptors(int reason)
{
    return reason == EMFILE || reason == ENFILE;
}

/// So that an accept loop does not spin.
void pauseAccepting()
{
    constexpr int kMilliseconds = 100;
    poll(nullptr, 0, kMilliseconds);
}

}  // namespace

Acceptor::~Acceptor()
{
    if (!isRetired_) stop();
}

void Acceptor::log(const char* what) const
{
    logLine("%s::%s", kind_.server, what);
}

bool Acceptor::configure(in_addr address, int port)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (isRetired_) {
        log("configure: ERROR the server goes away!");
        return false;
    }
    if (running_) stopLocked();
    port_ = 0;
    listener_ = Socket::stream();
    configured_ = listener_ && bindTo(listener_, address, port) && (kind_.listening == SinceStarted || listen());
    if (configured_) port_ = port != 0 ? port : chosenPort(listener_);
    configured_ = port_ != 0;
    if (configured_) return true;
    log(listener_ ? "configure: ERROR binding server socket!" : "configure: ERROR opening server socket!");
    if (kind_.afterFailedBind == ClosesSocket) listener_ = Socket();
    return false;
}

bool Acceptor::listen()
{
    return ::listen(listener_.fd(), SOMAXCONN) == 0;
}

bool Acceptor::start()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) return true;
    if (!configured_) {
        log("start: ERROR configure before start!");
        return false;
    }
    if (kind_.listening == SinceStarted && !listen()) {
        log("start: ERROR listening on server socket!");
        return false;
    }
    connections_.begin(listener_);
    running_ = true;
    if (thread_.start(makeTask("orvu-accept", [this] { accept(); }))) return true;
    running_ = false;
    if (kind_.listening == SinceStarted) listener_.shutdown();  // it stays bound, so that the next start may succeed
    log("start: ERROR run the server thread!");
    return false;
}

void Acceptor::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
}

void Acceptor::retire()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
    isRetired_ = true;
}

void Acceptor::stopLocked()
{
    logLine("%s", kind_.stopping);
    running_ = false;
    configured_ = false;
    port_ = 0;
    listener_.shutdown();
    connections_.drop();
    thread_.join();
    listener_ = Socket();
    if (kind_.stopped) logLine("%s", kind_.stopped);
}

void Acceptor::accept()
{
    logLine("%s", kind_.begins);
    while (running_) {
        if (kind_.waits) logLine("%s", kind_.waits);
        connections_.waitUntilNeeded();
        if (!running_) break;
        Socket connection = Socket::acceptedFrom(listener_);
        const int reason = errno;
        if (!connection && reason == EAGAIN) continue;  // the listener's time-out, where it has one
        if (kind_.accepted) logLine(kind_.accepted, connection.fd());
        if (connection) {
            connections_.take(std::move(connection));
        } else if (running_ && isLasting(reason)) {
            if (!isWantOfDescriptors(reason) || !connections_.makeRoom()) pauseAccepting();
        }
    }
    logLine("%s", kind_.loopEnds);
    if (kind_.ends) logLine("%s", kind_.ends);
}

}  // namespace Orvu
