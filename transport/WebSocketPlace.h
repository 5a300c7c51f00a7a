#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>

namespace Orvu {

class WebSocketConnection;

/// The place of the one client that is attached to a WebSocket push server, for which connections compete. Any thread.
class WebSocketPlace {
public:
    /// Whether a newcomer is to be refused. The attached client's reader first handles what has already arrived, for up
    /// to 100 ms, since the client may have left. One whose stream has ended then leaves the place in any case.
    bool isTaken();
    /// The same question for a newcomer whose opening request is whole: unless refused, it is attached, and its reader
    /// counts as busy. False as well for one that was ended.
    bool give(const std::shared_ptr<WebSocketConnection>& newcomer);
    bool isAttached(const WebSocketConnection& connection);

    /// Ends a connection; an attached one leaves the place.
    void end(WebSocketConnection& connection);
    /// The same, unless it is attached.
    void endUnlessAttached(WebSocketConnection& connection);

    /// The reader of a connection is about to wait for bytes.
    void readerRests(const WebSocketConnection& connection);
    /// It no longer is. False when the connection is not attached any more.
    bool readerWorks(const WebSocketConnection& connection);

private:
    using Lock = std::unique_lock<std::mutex>;

    bool isFreeFor(const WebSocketConnection* newcomer, Lock& lock);
    void endLocked(WebSocketConnection& connection);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::shared_ptr<WebSocketConnection> client_;
    bool isReaderBusy_ = false;  // that of client_, with what it has received
};

}  // namespace Orvu
