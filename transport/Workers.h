#pragma once

#include <csignal>
#include <memory>
#include <mutex>
#include <vector>

#include "transport/InFlight.h"

namespace Orvu {

/// The threads that serve the connections of the request server, each one connection after the other.
///
/// A connection is served at once, by an idle worker or by a new one: it never waits for what another one's callback
/// does. A worker whose connection is served idles for ten seconds, unless eight do so already. Any thread.
class Workers : public std::enable_shared_from_this<Workers> {
public:
    Workers();  ///< Throws std::bad_alloc.

    /// Lets workers idle. While an application's callback runs, its worker has the signal mask `signals`.
    void open(const sigset_t& signals);
    /// False, and the connection is closed, when there is no thread for it.
    bool serve(Connection connection);
    /// From now on no worker idles: returns when the idle ones have ended; each other one ends after its connection.
    void close();

    /// Whether the calling thread is a worker in a callback.
    static bool isInCallback();

private:
    class Worker;

    bool handOver(Connection& connection);
    bool idle(Worker& worker);
    sigset_t signals();

    std::mutex mutex_;  // guards the three below
    sigset_t signals_{};
    std::vector<Worker*> idle_;  // the one that idled last at the end
    bool isOpen_ = false;
};

}  // namespace Orvu
