#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "transport/Socket.h"

namespace Orvu {

class InGroup;

/// The sockets of exchanges in flight, so that the one on whose behalf they run can end them. Any thread.
class InFlight {
public:
    /// Adds a socket. False, and nothing is added, once close() was called, and when wakeAll() was called since
    /// `begun`, or wake() for its exchange's group. `exchange` may be null. Throws std::bad_alloc.
    bool enter(int fd, unsigned begun, InGroup* exchange = nullptr);
    /// Removes a socket; before it is closed, or its number could name another one by then.
    void leave(int fd, InGroup* exchange = nullptr);
    /// Shuts every socket down, which wakes those who wait on it.
    void wakeAll();
    /// The same for the exchanges of `group` alone.
    void wake(const void* group);
    /// The same, and lets no other in from now on.
    void close();
    /// Waits until every socket has left.
    void waitUntilEmpty();

    /// How often all were woken: an exchange that began before the last time is no longer wanted.
    unsigned wakes() const { return wakes_; }
    /// False once close() was called.
    bool isOpen() const { return !closed_; }
    /// Calls `begin` and returns true; once close() was called, returns false. close() waits while `begin` runs.
    template <class Begin>
    bool ifOpen(Begin begin)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!closed_) begin();
        return !closed_;
    }

private:
    friend class InGroup;

    void leaveGroup(InGroup& exchange);

    std::mutex mutex_;
    std::condition_variable emptied_;
    std::vector<int> sockets_;
    std::vector<InGroup*> inGroups_;
    std::atomic<unsigned> wakes_{0};
    std::atomic<bool> closed_{false};
};

/// An exchange of a group, from its beginning on, so that it can be ended with the others of the group. It outlives its
/// connection, and leaves the group when that is closed. A null group is no group.
class InGroup {
public:
    /// Throws std::bad_alloc.
    InGroup(InFlight& inFlight, const void* group);
    InGroup(const InGroup&) = delete;
    InGroup& operator=(const InGroup&) = delete;
    ~InGroup();

    bool isWoken() const { return isWoken_; }

private:
    friend class InFlight;

    InFlight& inFlight_;
    const void* const group_;
    bool isListed_ = false;  // in inFlight_; the thread of the exchange alone looks at it
    int fd_ = -1;            // guarded by the mutex of inFlight_
    std::atomic<bool> isWoken_{false};
};

/// A socket that is in flight while it lives: it enters when made, and leaves before it is closed.
class ConnectionInFlight {
public:
    ConnectionInFlight() = default;
    /// Of an exchange that began when `inFlight` had woken all `begun` times. Without a socket, which is closed then,
    /// when it was not let in. `exchange` may be null. Throws std::bad_alloc.
    ConnectionInFlight(Socket socket, std::shared_ptr<InFlight> inFlight, unsigned begun, InGroup* exchange = nullptr);
    ConnectionInFlight(ConnectionInFlight&& other) noexcept;
    ConnectionInFlight& operator=(ConnectionInFlight&& other) noexcept;
    ~ConnectionInFlight();

    explicit operator bool() const { return static_cast<bool>(socket_); }
    int fd() const { return socket_.fd(); }
    /// Whether the exchange is still wanted: false once all were woken, or those of its group.
    bool isWanted() const
    {
        return inFlight_ && inFlight_->isOpen() && inFlight_->wakes() == begun_ && !(exchange_ && exchange_->isWoken());
    }
    /// Leaves early; the socket stays.
    void leave();
    /// Gives the socket away, after leaving.
    Socket releaseSocket();
    /// Leaves and closes.
    void close();
    /// The sockets that it belongs to, also after leaving.
    const std::shared_ptr<InFlight>& inFlight() const { return inFlight_; }

private:
    Socket socket_;
    std::shared_ptr<InFlight> inFlight_;
    unsigned begun_ = 0;
    InGroup* exchange_ = nullptr;
    bool isIn_ = false;
};

}  // namespace Orvu
