#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

#include "listener/Attachment.h"
#include "listener/GrowingPause.h"

namespace Orvu {

/// One listener from listen() to its end: its thread, and what that owns.
class ListenerRun : public std::enable_shared_from_this<ListenerRun> {
public:
    /// Throws std::bad_alloc.
    ListenerRun(PublisherPlace place, const ListenerSettings& settings);

    /// False when the system is out of descriptors or threads.
    bool start();
    /// What PushListener::stop() does: ends the connection and, if `waits`, the thread as well. Without waiting it
    /// returns false: then call it once more, or letGo(). Any thread, any number of times.
    bool end(bool waits);
    bool isOnThisThread();
    /// Lets the thread end by itself.
    void letGo();

private:
    void run();
    void listenAgainAndAgain();
    Loss listenOnce();
    Loss attachAndReceive();
    std::optional<in_addr> resolvedHost(int& error);
    void pauseAfter(const Loss& loss);
    void tell(ListenerState state, const Loss& loss, std::chrono::milliseconds wait = {});
    void setResolving(bool isResolving);

    const PublisherPlace place_;
    Delivery delivery_;
    const Socket bell_;  // readable once it is over
    const std::unique_ptr<char[]> room_;
    std::atomic<bool> isOver_{false};
    GrowingPause pauses_;
    bool wasAttached_ = false;

    std::mutex mutex_;  // guards all below
    std::condition_variable changed_;
    bool isResolving_ = false;
    bool hasEnded_ = false;  // the thread does nothing more
    std::optional<pthread_t> self_;
    Thread thread_;
};

}  // namespace Orvu
