#include "transport/OrvuRestServerSocket.h"

#include <cerrno>
#include <new>
#include <sys/socket.h>

#include "orvu/OrvuRestInterface.h"
#include "transport/InFlight.h"
#include "transport/Listener.h"
#include "transport/RequestWorker.h"

namespace Orvu {
namespace {

StaticMutex instanceMutex;
OrvuRestServerSocket* instance = nullptr;

}  // namespace

OrvuRestServerSocket::OrvuRestServerSocket() : inFlight_(std::make_shared<InFlight>()) {}

OrvuRestServerSocket::~OrvuRestServerSocket()
{
    OrvuRestServerSocket::stop();
    inFlight_->wakeAll();
    inFlight_->waitUntilEmpty();
}

OrvuRestServerSocket* OrvuRestServerSocket::getInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    try {
        if (!instance) instance = new OrvuRestServerSocket;
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestServerSocket::getInstance: ERROR out of memory!");
    }
    return instance;
}

void OrvuRestServerSocket::destroyInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    delete std::exchange(instance, nullptr);
}

void OrvuRestServerSocket::dropRequests()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    if (!instance) return;
    instance->inFlight_->wakeAll();
    instance->inFlight_->waitUntilEmpty();
}

bool OrvuRestServerSocket::configure(int port)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) stopLocked();
    configured_ = false;
    listener_ = Socket::stream();
    if (!listener_) {
        OrvuRestInterface::log("OrvuRestServerSocket::configure: ERROR opening server socket!");
        return false;
    }
    configured_ = bindTo(listener_, port);
    if (!configured_) OrvuRestInterface::log("OrvuRestServerSocket::configure: ERROR binding server socket!");
    return configured_;
}

bool OrvuRestServerSocket::start()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (running_) return true;
    if (!configured_) {
        OrvuRestInterface::log("OrvuRestServerSocket::start: ERROR configure before start!");
        return false;
    }
    if (listen(listener_.fd(), SOMAXCONN) != 0) {
        OrvuRestInterface::log("OrvuRestServerSocket::start: ERROR listening on server socket!");
        return false;
    }
    running_ = true;
    if (acceptThread_.start(makeTask("orvu-accept", [this] { acceptConnections(); }))) return true;
    running_ = false;
    listener_.shutdown();  // it stays bound, so that the next start may succeed
    OrvuRestInterface::log("OrvuRestServerSocket::start: ERROR run the server thread!");
    return false;
}

void OrvuRestServerSocket::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopLocked();
}

void OrvuRestServerSocket::stopLocked()
{
    OrvuRestInterface::log("OrvuRestServerSocket::stop: Stopping server");
    running_ = false;
    configured_ = false;
    listener_.shutdown();
    acceptThread_.join();
    listener_ = Socket();
}

bool OrvuRestServerSocket::send(unsigned char*, unsigned int)
{
    return false;
}

void OrvuRestServerSocket::acceptConnections()
{
    OrvuRestInterface::log("OrvuRestServerSocket::serverThread -- init");
    while (running_) {
        Socket socket = Socket::acceptedFrom(listener_);
        const int reason = errno;
        OrvuRestInterface::log("OrvuRestServerSocket::serverThread: clientSockfd: %d", socket.fd());
        if (socket) {
            serve(std::move(socket));
        } else if (running_ && isLasting(reason)) {
            pauseAccepting();
        }
    }
    OrvuRestInterface::log("OrvuRestServerSocket::serverThread: Server loop end!");
    OrvuRestInterface::log("OrvuRestServerSocket::serverThread -- end");
}

void OrvuRestServerSocket::serve(Socket socket)
{
    try {
        Connection connection(std::move(socket), inFlight_);
        if (!connection) return;  // the server is being destroyed
        if (startDetached(std::make_unique<RequestWorker>(std::move(connection)))) return;
    } catch (const std::bad_alloc&) {
        // no memory for a worker is no worker
    }
    OrvuRestInterface::log("OrvuRestServerSocket::serverThread: ERROR Fail to start worker thread!");
}

}  // namespace Orvu
