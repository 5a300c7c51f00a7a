#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "transport/Socket.h"
#include "transport/WebSocketPlace.h"
#include "transport/WebSocketProtocol.h"

namespace Orvu {

class WebSocketConnection;

/// Who gets what is pushed, of the connections of one server.
struct PushTarget {
    std::mutex writing;  // one frame, or the answer to an opening request, at a time: held by whoever writes
    /// Once its opening request is answered, until its reader ends. Set by whoever holds `writing`.
    std::atomic<WebSocketConnection*> client{nullptr};
};

/// One connection of a WebSocket push server: its handshake, the frames that it sends and the echo. A reader thread
/// serves it; push() and shutdown() are for any thread.
class WebSocketConnection : public std::enable_shared_from_this<WebSocketConnection> {
public:
    /// `place` and `target` stay the caller's.
    WebSocketConnection(Socket socket, WebSocketPlace& place, PushTarget& target)
        : socket_(std::move(socket)), place_(place), target_(target)
    {}

    /// From the opening request to the end, for the reader thread.
    void serve();

    /// Sends one binary frame to the client of the target, for whoever holds `writing` of that. The bytes that went
    /// out, its header counted; 0 when the connection has been ended meanwhile, -1 when writing failed.
    ssize_t push(const void* data, std::size_t size);

    // What the place knows of it:

    /// Whether there is something to receive, or an end to notice.
    bool hasArrived() const;
    bool isPeerGone() const { return hasLostPeer(socket_.fd()); }
    /// Wakes all who wait for its socket. Only the place calls it.
    void shutdown();
    bool isOver() const { return isOver_; }

private:
    bool shakesHands();
    bool doHanshake();
    void readOpeningRequest();
    bool answer(const std::string& response);
    void leaveTarget();

    void clientReadThread();
    bool handleEarly();
    bool waitForBytes();
    bool receive();
    bool handle(const unsigned char* at, const unsigned char* end);
    bool handle(const ReceivedFrame& frame);
    void echo(const std::string& text);

    ssize_t sendframe(const void* data, std::size_t size, int opcode);

    Socket socket_;
    WebSocketPlace& place_;
    PushTarget& target_;
    std::atomic<bool> isOver_{false};

    // The reader's:
    OpeningRequest request_;
    std::string early_;  // what came together with the end of the opening request
    FrameStream frames_;
};

}  // namespace Orvu
