#pragma once

#include <cstddef>
#include <cstdint>

#include "orvu/Export.h"

namespace Orvu {

class Serializable;

/// What a publisher pushes through.
enum Channel : int {
    ChannelTcp = 0,       ///< createServer("tcp").
    ChannelWebSocket = 1  ///< createServer("websocket"): RFC 6455.
};

/// What a listener hands over.
enum PushedKind : int {
    PushedValue = 0,    ///< A whole JSON value: a message.
    PushedText = 1,     ///< The next piece of something that is not JSON, or of a value above the limits.
    PushedTextEnd = 2,  ///< The end of such a text, where it does not end with a line feed; no bytes.
    PushedBytes = 3     ///< The next bytes, as they came: see PushListener::handOverBytes().
};

/// Something that was pushed. It lives until the callback returns, and so does all that it points to. A later version
/// of the library may add fields at its end.
struct PushedMessage {
    PushedKind kind = PushedValue;  ///< What it is.

    /// `size` bytes, and then a NUL. A value has no NUL in it, and no white space around it.
    const char* text = nullptr;
    std::size_t size = 0;  ///< The bytes of `text`, without the NUL.

    /// The message that the factory makes of a value, when PushListener::makeObjects() asks for it; the listener
    /// deletes it. To keep it, take the pointer, set this one to null, and delete the message yourself. Null for a
    /// value whose "HEADER" names no type, one that its type cannot read, and when out of memory.
    Serializable* object = nullptr;
};

/// What a listener does.
enum ListenerState : int {
    ListenerStateConnecting = 1,  ///< It resolves the host's name, connects, and opens the WebSocket.
    ListenerStateAttached = 2,    ///< What is pushed from now on comes.
    ListenerStateLost = 3,        ///< The connection, or the attempt, has ended: see ListenerStatus::loss.
    ListenerStateWaiting = 4,     ///< It waits until the next attempt: see ListenerStatus::waitMilliseconds.
    ListenerStateStopped = 5      ///< It has ended by itself: see PushListener::reconnect(). stop() is not reported.
};

/// Why a listener is not attached any more, or could not be.
enum ListenerLoss : int {
    ListenerLossNone = 0,          ///< In the states Connecting and Attached.
    ListenerLossEnded = 1,         ///< The publisher closed the connection in good order.
    ListenerLossBroke = 2,         ///< The connection broke, with `errorNumber`. EPROTO: not a WebSocket frame.
    ListenerLossNotConnected = 3,  ///< No connection, with `errorNumber`, such as ECONNREFUSED; ETIMEDOUT after 5 s.
    ListenerLossNotResolved = 4,   ///< The host has no IPv4 address (EAFNOSUPPORT), or its name cannot be resolved.
    ListenerLossRefused = 5,       ///< It answers, but not as a WebSocket; ETIMEDOUT: not within 5 s.
    /// It closes the connection instead of opening the WebSocket. So does a publisher that has a client, since it takes
    /// one at a time; so do ports that are not for WebSockets.
    ListenerLossUnanswered = 6,
    /// The same from a port where this listener was attached before: another client is attached now.
    ListenerLossOccupied = 7
};

/// A change of a listener's state. It lives until the callback returns. A later version of the library may add fields
/// at its end.
struct ListenerStatus {
    ListenerState state = ListenerStateConnecting;  ///< What the listener does from now on.
    ListenerLoss loss = ListenerLossNone;           ///< In the states Lost, Waiting and Stopped: why.
    std::int32_t errorNumber = 0;                   ///< The system's (errno), in the same states; 0 without one.
    std::int32_t waitMilliseconds = 0;              ///< In the state Waiting: from now until the next attempt.
    const char* reason = "";                        ///< `loss` in words, in the same states; never null.
};

/// Listens to what a publisher pushes, over TCP or a WebSocket, and connects again when the connection is lost.
///
///     void onMessage(Orvu::PushedMessage& message, void*) { std::puts(message.text); }
///
///     Orvu::PushListener listener;
///     listener.onMessage(onMessage, nullptr);
///     listener.listen("127.0.0.1", 34000, Orvu::ChannelTcp);
///
/// Each listener that listens has one thread, `orvu-listener`, on which its callbacks run, one after the other. While
/// a callback runs, nothing more is received: the publisher drops what the system does not hold for a slow listener.
/// What is pushed while no listener is attached is lost.
///
/// The settings count from the next listen() on. Any thread may call any function, but the settings and listen() from
/// one thread at a time, and the destructor last. No exception leaves a function; one that leaves a callback is caught
/// and logged. A callback must not end its thread.
class ORVU_EXPORT PushListener {
public:
    /// What onMessage() takes.
    using MessageCallback = void (*)(PushedMessage& message, void* context);
    /// What onState() takes.
    using StateCallback = void (*)(const ListenerStatus& status, void* context);

    PushListener() noexcept;
    ~PushListener();  ///< Stops as stop() does. May be called in a callback of this listener.
    PushListener(const PushListener&) = delete;
    PushListener& operator=(const PushListener&) = delete;

    /// What receives the messages; null for nobody. `context` is handed to it each time, and stays yours.
    void onMessage(MessageCallback callback, void* context) noexcept;
    /// What hears of changes of the state; null for nobody.
    void onState(StateCallback callback, void* context) noexcept;
    /// Whether each value comes with the message that the factory makes of it. Off at first.
    void makeObjects(bool on) noexcept;
    /// Whether everything comes as PushedBytes: as it came, of a WebSocket the payloads alone. Off at first.
    void handOverBytes(bool on) noexcept;
    /// Whether to connect again after a loss: after 1 s first, twice as long after each failure, 30 s at most, each
    /// time up to a quarter less, so that the listeners of a restarted publisher do not all come back at once. On at
    /// first. When off, the listener ends after the first loss, with ListenerStateStopped.
    void reconnect(bool on) noexcept;

    /// Listens to the publisher on TCP `port`, 1 to 65535, of `host`, a name or dotted IPv4 address, until stop().
    /// Stops what it listened to before. Does not wait for the connection: that comes as a state. False, with a log
    /// line, for a host that is null or empty, another port, another channel, and when descriptors, threads or memory
    /// run out.
    bool listen(const char* host, int port, Channel channel) noexcept;

    /// Ends listening. It returns within a second, or when the callback that runs has ended; so do not hold a lock that
    /// a callback takes. Messages that have come meanwhile are dropped; when there are none, the beginning of a value
    /// that is not whole is handed over first, as text. No callback runs after it has returned, and its thread has
    /// ended. In two cases the thread ends by itself soon afterwards and begins no callback: when a callback of this
    /// listener calls stop() (another thread that calls it then waits as above), and while the host's name is being
    /// resolved. In both the listener may be deleted at once: its thread does not touch it. Nothing when not listening.
    void stop() noexcept;

private:
    struct ORVU_LOCAL Private;
    Private* const private_;  // null when there was no memory for it
};

}  // namespace Orvu
