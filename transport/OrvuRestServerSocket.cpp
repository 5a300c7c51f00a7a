#include "transport/OrvuRestServerSocket.h"

#include <new>

#include "log/Log.h"
#include "transport/InFlight.h"
#include "transport/RequestReceiver.h"

namespace Orvu {
namespace {

constexpr Acceptor::Kind kKind{
    "OrvuRestServerSocket",
    Acceptor::SinceStarted,
    Acceptor::KeepsSocket,
    "OrvuRestServerSocket::stop: Stopping server",
    nullptr,
    "OrvuRestServerSocket::serverThread -- init",
    nullptr,
    kAcceptedLine,
    "OrvuRestServerSocket::serverThread: Server loop end!",
    "OrvuRestServerSocket::serverThread -- end",
};

StaticMutex instanceMutex;

std::shared_ptr<OrvuRestServerSocket>& instance()
{
    static Immortal<std::shared_ptr<OrvuRestServerSocket>> instance;
    return *instance;
}

}  // namespace

/// The connections whose request is being received, and the workers who do it.
class OrvuRestServerSocket::Requests final : public Connections {
public:
    Requests() : inFlight_(std::make_shared<InFlight>()), workers_(std::make_shared<Workers>(inFlight_)) {}

    void begin(const Socket& listener) override { workers_->open(listener, signalsOfThisThread()); }
    void waitUntilNeeded() override { workers_->waitUntilNoneIdles(); }

    void take(Socket socket) override
    {
        try {
            if (workers_->serve(std::move(socket))) return;
        } catch (const std::bad_alloc&) {
            // out of memory: there is no worker
        }
        logLine("OrvuRestServerSocket::serverThread: ERROR Fail to start worker thread!");
    }

    /// Requests that were accepted are still served.
    void drop() override { workers_->close(); }

    /// Drops what is still being received, and what comes from now on.
    void end()
    {
        inFlight_->close();
        inFlight_->waitUntilEmpty();
    }

private:
    const std::shared_ptr<InFlight> inFlight_;
    const std::shared_ptr<Workers> workers_;
};

OrvuRestServerSocket::OrvuRestServerSocket() : requests_(std::make_unique<Requests>()), acceptor_(kKind, *requests_) {}

OrvuRestServerSocket::~OrvuRestServerSocket() = default;

std::shared_ptr<OrvuRestServerSocket> OrvuRestServerSocket::sharedInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    try {
        if (!instance()) instance().reset(new OrvuRestServerSocket, [](auto* old) { delete old; });
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerSocket::getInstance: ERROR out of memory!");
    }
    return instance();
}

OrvuRestServerSocket* OrvuRestServerSocket::getInstance()
{
    return sharedInstance().get();
}

void OrvuRestServerSocket::dropRequests()
{
    std::unique_lock<StaticMutex> lock(instanceMutex);
    const std::shared_ptr<OrvuRestServerSocket> server = instance();
    lock.unlock();
    if (server) server->requests_->end();
}

void OrvuRestServerSocket::destroyInstance()
{
    dropRequests();
    std::unique_lock<StaticMutex> lock(instanceMutex);
    const std::shared_ptr<OrvuRestServerSocket> server = std::move(instance());
    lock.unlock();
    if (server) server->acceptor_.retire();
}

bool OrvuRestServerSocket::configure(int port)
{
    return acceptor_.configure({htonl(INADDR_ANY)}, port);
}

bool OrvuRestServerSocket::start()
{
    return acceptor_.start();
}

void OrvuRestServerSocket::stop()
{
    acceptor_.stop();
}

bool OrvuRestServerSocket::send(unsigned char*, unsigned int)
{
    return false;
}

}  // namespace Orvu
