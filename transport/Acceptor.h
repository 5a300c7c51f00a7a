#pragma once

#include <atomic>
#include <mutex>
#include <netinet/in.h>

#include "transport/Socket.h"
#include "transport/Threads.h"

namespace Orvu {

/// What a server does with its connections.
class Connections {
public:
    /// Called by each start, before anybody accepts on `listener`.
    virtual void begin(const Socket& listener) { static_cast<void>(listener); }
    /// Called on the accept thread before it accepts: returns when it is needed, at the latest after drop().
    virtual void waitUntilNeeded() {}
    /// Takes a connection that was accepted. On the accept thread, which waits meanwhile.
    virtual void take(Socket connection) = 0;
    /// Ends them all, and whatever waits on one of them; from then until begin() none is taken. Called by each stop,
    /// before the accept thread has ended: it may be about to hand over a last one.
    virtual void drop() = 0;
    /// Called on the accept thread when descriptors ran out. True when some were released.
    virtual bool makeRoom() { return false; }

protected:
    ~Connections() = default;
};

/// A bound TCP socket and the thread that accepts connections on it. Any thread; its functions wait for each other.
class Acceptor {
public:
    enum Listening { SinceConfigured, SinceStarted };
    enum AfterFailedBind { KeepsSocket, ClosesSocket };

    /// What distinguishes the servers.
    struct Kind {
        const char* server;  ///< Its name at the beginning of log lines.
        Listening listening;
        AfterFailedBind afterFailedBind;
        // Whole log lines; null for none. `accepted` has one "%d", the descriptor or -1.
        const char* stopping;
        const char* stopped;
        const char* begins;
        const char* waits;
        const char* accepted;
        const char* loopEnds;
        const char* ends;
    };

    /// Both stay the caller's, and outlive the acceptor.
    Acceptor(const Kind& kind, Connections& connections) : kind_(kind), connections_(connections) {}
    /// Stops it.
    ~Acceptor();

    /// Binds TCP `port` of `address`, 0 for a port of the system's choice. Stops first when running.
    bool configure(in_addr address, int port);
    /// Once true, peers can connect. True as well, and nothing changes, when running.
    bool start();
    /// Returns when the accept thread has ended and every connection is dropped.
    void stop();
    /// Stops it for good: it cannot be configured any more. For an owner that does not wait until nobody uses the
    /// server.
    void retire();

    /// The port that is bound; 0 when none is.
    int port() const { return port_; }
    bool isRunning() const { return running_; }

private:
    void log(const char* what) const;
    bool listen();
    void stopLocked();
    void accept();

    const Kind& kind_;
    Connections& connections_;
    std::mutex mutex_;  // guards configure, start and stop; the accept thread never takes it
    Socket listener_;
    bool configured_ = false;  // not after a failed bind, though the socket may be kept
    bool isRetired_ = false;
    std::atomic<int> port_{0};
    std::atomic<bool> running_{false};
    Thread thread_;
};

}  // namespace Orvu
