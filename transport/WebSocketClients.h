#pragma once

#include <list>
#include <memory>
#include <mutex>

#include "transport/Acceptor.h"
#include "transport/WebSocketConnection.h"
#include "transport/WebSocketPlace.h"

namespace Orvu {

/// The connections of a WebSocket push server, each with its reader thread: one at most is attached and gets what is
/// pushed, and eight at most are in their handshake. Any thread.
class WebSocketClients final : public Connections {
public:
    void begin(const Socket& listener) override;
    void take(Socket connection) override;
    /// A push in progress ends.
    void drop() override;

    /// Sends one binary frame. The bytes that went out, its header counted; 0 without a client, -1 when writing failed.
    ssize_t push(const void* data, std::size_t size);

private:
    struct Reader {
        std::weak_ptr<WebSocketConnection> connection;  // its thread's: closed when that ends
        Thread thread;
    };
    using Readers = std::list<Reader>;

    void endLongestHandshake();
    void start(const std::shared_ptr<WebSocketConnection>& connection);
    void joinEnding();

    WebSocketPlace place_;
    std::mutex pushing_;  // one push at a time

    std::mutex mutex_;  // guards what follows; never held while joining
    bool isOpen_ = false;
    Readers readers_;  // in the order of acceptance
};

}  // namespace Orvu
