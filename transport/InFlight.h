#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "transport/Socket.h"

namespace Orvu {

/// The sockets of exchanges in flight, so that the one on whose behalf they run can end them. Any thread.
class InFlight {
public:
    /// Adds a socket. False, and nothing is added, once wakeAll() was called. Throws std::bad_alloc.
    bool enter(int fd);
    /// Removes a socket; before it is closed, or its number could name another one by then. False once wakeAll() was
    /// called: what the exchange has come to is no longer wanted.
    bool leave(int fd);
    /// False once wakeAll() was called.
    bool isOpen() const { return !closing_; }
    /// Shuts every socket down, which wakes those who wait on it, and lets no other in from now on.
    void wakeAll();
    /// Waits until every socket has left.
    void waitUntilEmpty();

private:
    std::mutex mutex_;
    std::condition_variable emptied_;
    std::vector<int> sockets_;
    std::atomic<bool> closing_{false};
};

/// A socket that is in flight while it lives: it enters when made, and leaves before it is closed.
class Connection {
public:
    Connection() = default;
    /// Without a socket, which is closed then, when it was not let in. Throws std::bad_alloc.
    Connection(Socket socket, std::shared_ptr<InFlight> inFlight);
    Connection(Connection&&) = default;
    Connection& operator=(Connection&&) = delete;
    ~Connection();

    explicit operator bool() const { return static_cast<bool>(socket_); }
    int fd() const { return socket_.fd(); }
    /// Leaves early; the socket stays. False when the exchange is no longer wanted.
    bool leave();
    /// Whether the exchange is still wanted, also after leaving.
    bool isWanted() const { return wantedIn_ && wantedIn_->isOpen(); }
    /// Gives the descriptor away, after leaving.
    int release() { return socket_.release(); }
    /// Leaves and closes.
    void close();

private:
    Socket socket_;
    std::shared_ptr<InFlight> inFlight_;  // null when it has left
    std::shared_ptr<InFlight> wantedIn_;  // the same, also after leaving
};

}  // namespace Orvu
