#pragma once

#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>
#include <vector>

#include "transport/InFlight.h"

namespace Orvu {

/// The threads that serve the connections of the request server, each one connection after the other.
///
/// A connection is served at once, by an idle worker or by a new one: it never waits for what another one's callback
/// does. A worker whose connection is served idles for ten seconds, unless eight do so already. Those that idle accept
/// connections by themselves, which costs a thread switch less than being handed them; the accept thread is needed only
/// while none idles. Any thread.
class Workers : public std::enable_shared_from_this<Workers> {
public:
    /// For connections that are in flight with `inFlight` until their request is received. Throws std::bad_alloc.
    explicit Workers(std::shared_ptr<InFlight> inFlight);

    /// Lets workers idle, at a listening socket that stays open until they are closed. While an application's callback
    /// runs, its worker has the signal mask `signals`.
    void open(const Socket& listener, const sigset_t& signals);
    /// Starts a worker for an accepted connection; one whose peer has left without a word needs none. False, and the
    /// connection is closed, when there is no thread for it. Throws std::bad_alloc.
    bool serve(Socket accepted);
    /// Returns when no worker idles, or once closed.
    void waitUntilNoneIdles();
    /// From now on no worker idles: returns when the idle ones have ended; each other one ends after its connection.
    /// Called after the listening socket was shut down, which is what wakes them.
    void close();

    /// Whether the calling thread is a worker in a callback.
    static bool isInCallback();

private:
    class Worker;

    bool idle(Worker& worker);
    const Socket* beginIdling(Worker& worker);
    void endIdling(Worker& worker);
    ConnectionInFlight connectionOf(Socket accepted);
    void getSignals(sigset_t& signals);

    const std::shared_ptr<InFlight> inFlight_;

    std::mutex mutex_;  // guards all below
    std::condition_variable fewerIdle_;
    std::vector<Worker*> idle_;
    sigset_t signals_{};
    const Socket* listener_ = nullptr;
    bool isOpen_ = false;
};

}  // namespace Orvu
