#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "orvu/Serializable.h"
#include "transport/InFlight.h"
#include "transport/Socket.h"

namespace Orvu {

/// What the request client is made of. Each exchange holds it, so that the client may be destroyed meanwhile.
/// The operations are those of OrvuRestClientSocket.
class RequestClient {
public:
    RequestClient() : inFlight_(std::make_shared<InFlight>()) {}  ///< Throws std::bad_alloc.

    bool configure(const char* host, int port);
    int connectSocket(int timeoutSeconds);
    Serializable* send(Serializable* request, int timeoutSeconds);
    Serializable* sendRequest(Serializable* request);
    Serializable* sendRequest(DataType type);

    /// Ends every exchange in flight, and those that begin later.
    void wakeExchanges() { inFlight_->wakeAll(); }

private:
    struct Peer {
        std::string host;
        int port = 0;
    };

    void setPeer(Peer peer);
    Peer peer();
    Connection connect(int timeoutSeconds);
    Serializable* exchange(Serializable* request, int timeoutSeconds);

    std::mutex mutex_;  // guards peer_
    Peer peer_;
    const std::shared_ptr<InFlight> inFlight_;
};

}  // namespace Orvu
