#include "transport/OrvuRestClientSocket.h"

#include <mutex>
#include <new>
#include <utility>

#include "orvu/OrvuRestInterface.h"
#include "transport/RequestClient.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

StaticMutex instanceMutex;
OrvuRestClientSocket* instance = nullptr;

}  // namespace

OrvuRestClientSocket::OrvuRestClientSocket(std::shared_ptr<RequestClient> client) : client_(std::move(client)) {}

OrvuRestClientSocket::~OrvuRestClientSocket()
{
    OrvuRestInterface::log("OrvuRestClientSocket::~OrvuRestClientSocket: -- init");
    client_->wakeExchanges();
    OrvuRestInterface::log("OrvuRestClientSocket::~OrvuRestClientSocket: -- end");
}

/// Under `instanceMutex`.
OrvuRestClientSocket* OrvuRestClientSocket::instanceLocked()
{
    try {
        if (!instance) instance = new OrvuRestClientSocket(std::make_shared<RequestClient>());
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestClientSocket::getInstance: ERROR out of memory!");
    }
    return instance;
}

OrvuRestClientSocket* OrvuRestClientSocket::getInstance()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    return instanceLocked();
}

std::shared_ptr<RequestClient> OrvuRestClientSocket::shared()
{
    const std::lock_guard<StaticMutex> lock(instanceMutex);
    const OrvuRestClientSocket* const client = instanceLocked();
    return client ? client->client_ : nullptr;
}

void OrvuRestClientSocket::destroyInstance()
{
    OrvuRestInterface::log("OrvuRestClientSocket::destroyInstance: -- init");
    {
        const std::lock_guard<StaticMutex> lock(instanceMutex);
        delete std::exchange(instance, nullptr);
    }
    OrvuRestInterface::log("OrvuRestClientSocket::destroyInstance: -- end");
}

// The copy keeps what an exchange uses while the client may go.

bool OrvuRestClientSocket::configure(const char* host, int port)
{
    return std::shared_ptr<RequestClient>(client_)->configure(host, port);
}

int OrvuRestClientSocket::connectSocket(int timeoutSeconds)
{
    return std::shared_ptr<RequestClient>(client_)->connectSocket(timeoutSeconds);
}

Serializable* OrvuRestClientSocket::send(Serializable* request, int timeoutSeconds)
{
    return std::shared_ptr<RequestClient>(client_)->send(request, timeoutSeconds);
}

Serializable* OrvuRestClientSocket::sendRequest(Serializable* request)
{
    return std::shared_ptr<RequestClient>(client_)->sendRequest(request);
}

Serializable* OrvuRestClientSocket::sendRequest(DataType type)
{
    return std::shared_ptr<RequestClient>(client_)->sendRequest(type);
}

}  // namespace Orvu
