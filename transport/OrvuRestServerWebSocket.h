#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "transport/OrvuRestSimpleServer.h"
#include "transport/Socket.h"
#include "transport/Threads.h"
#include "transport/WebSocketProtocol.h"

namespace Orvu {

/// Pushes messages to one browser-side client over WebSocket (RFC 6455) and echoes the texts that it sends.
///
/// Any thread. While a client is attached, later ones are refused. What is received counts as one frame for each receive of
/// at most 2048 bytes; binary, continuation, ping and pong frames are ignored.
class ORVU_EXPORT OrvuRestServerWebSocket : public OrvuRestSimpleServer {
public:
    OrvuRestServerWebSocket();
    ~OrvuRestServerWebSocket() override;

    bool configure(int port) override;
    bool start() override;
    /// Closes the client as well. A push in progress ends.
    void stop() override;
    /// Sends one binary frame. A frame that the client has no room for is dropped whole; one that began to go out is finished
    /// within 5 s, or the client is detached. True when the frame went out, and when writing it failed; false when no client
    /// is attached, unless there are no bytes to send.
    bool send(unsigned char* data, unsigned int size) override;

private:
    using Client = std::shared_ptr<Socket>;

    void stopLocked();
    void dropClients();

    void acceptClients();
    void admit(Socket socket);
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

    std::mutex mutex_;  // guards configure, start and stop; no thread of the server takes it
    Socket serverSocket_;
    Thread serverThread_;
    Thread clientThread_;  // the accept thread's while it runs
    std::atomic<bool> running_{false};

    std::mutex writing_;  // one frame, or the answer to an opening request, at a time

    std::mutex clientMutex_;  // guards the two below; never held while waiting
    Client client_;           // the attached one
    Client candidate_;        // the one whose opening request is being read
};

}  // namespace Orvu
