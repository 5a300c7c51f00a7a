#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <string_view>

#include "listener/Delivery.h"
#include "listener/ListenerConnection.h"
#include "listener/ValueSplitter.h"
#include "listener/WebSocketClient.h"

namespace Orvu {

/// Where a listener listens.
struct PublisherPlace {
    std::string host;
    int port;
    Channel channel;
};

/// Why an attempt or a connection has ended.
struct Loss {
    ListenerLoss why = ListenerLossNone;
    int error = 0;  // errno
    std::string reason;
};

/// The loss of a listener that has no memory.
Loss lossOfMemory();

/// One connection to a publisher, from connecting to its end. What it is given outlives it.
class Attachment {
public:
    static constexpr std::size_t kRoom = 65536;  ///< Bytes that are received at once.

    /// `room` has kRoom bytes and one more; `isOver` becomes true before `bell` rings.
    Attachment(const PublisherPlace& place, Delivery& delivery, const Socket& bell, const std::atomic<bool>& isOver,
               char* room);

    /// Connects, receives, and returns why that ended. Throws std::bad_alloc.
    Loss run(in_addr host, bool wasAttachedBefore);

    /// Hands over what was received of a value that is not whole. Throws std::bad_alloc.
    void handOverRest();

    bool wasAttached() const { return isAttached_; }

private:
    using End = std::optional<Loss>;

    End openWebSocket(bool wasAttachedBefore);
    End readAnswer(const std::string& key, bool wasAttachedBefore);

    void attach();
    Loss receive();
    End answerPing();
    End handle(std::size_t size);
    End takeFrames(std::string_view bytes);
    void takePayload(std::string_view payload);
    void endMessage();
    Loss detach();

    const PublisherPlace& place_;
    Delivery& delivery_;
    const std::atomic<bool>& isOver_;
    char* const room_;
    ListenerConnection connection_;
    ValueSplitter splitter_;
    ServerFrames frames_;
    bool isAttached_ = false;
};

}  // namespace Orvu
