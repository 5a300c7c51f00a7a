#pragma once

#include <memory>
#include <mutex>

#include "transport/Acceptor.h"
#include "transport/WebSocketProtocol.h"

namespace Orvu {

/// The client of a WebSocket push server: its handshake, its frames and the echo. Any thread.
class WebSocketClients : public Connections {
public:
    void take(Socket connection) override;
    void drop() override;

    /// Sends one binary frame. The bytes that went out, its header counted; 0 without a client, -1 when writing failed.
    ssize_t push(const void* data, std::size_t size);

private:
    using Client = std::shared_ptr<Socket>;

    bool setCandidate(const Client& client);
    bool doHanshake(const Client& client);
    bool attach(const Client& client);
    void detach(const Client& client);
    Client attachedClient();

    void startReading(const Client& client);
    void clientReadThread(const Client& client);
    void receive(const Client& client);
    void leave(const Client& client);
    ReceivedFrame receiveframe(const Client& client, const unsigned char* bytes, std::size_t size);
    void echo(const Client& client, const ReceivedFrame& frame);

    ssize_t sendframe(const Client& client, const void* data, std::size_t size, int opcode);

    std::mutex threadMutex_;
    Thread clientThread_;

    std::mutex writing_;  // one frame, or the answer to an opening request, at a time

    std::mutex clientMutex_;  // guards the two below; never held while waiting
    Client client_;           // the attached one
    Client candidate_;        // the one whose opening request is being read
};

}  // namespace Orvu
