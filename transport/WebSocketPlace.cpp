#include "transport/WebSocketPlace.h"

#include <chrono>

#include "transport/WebSocketConnection.h"

namespace Orvu {
namespace {

constexpr std::chrono::milliseconds kLastWords(100);

}  // namespace

bool WebSocketPlace::isTaken()
{
    Lock lock(mutex_);
    return !isFreeFor(nullptr, lock);
}

bool WebSocketPlace::give(const std::shared_ptr<WebSocketConnection>& newcomer)
{
    Lock lock(mutex_);
    if (!isFreeFor(newcomer.get(), lock) || newcomer->isOver()) return false;
    client_ = newcomer;
    isReaderBusy_ = true;
    return true;
}

bool WebSocketPlace::isFreeFor(const WebSocketConnection* newcomer, Lock& lock)
{
    changed_.wait_for(lock, kLastWords, [&] {
        const bool isUnwanted = newcomer && newcomer->isOver();
        return isUnwanted || !client_ || (!isReaderBusy_ && !client_->hasArrived());
    });
    if (client_ && client_->isPeerGone()) endLocked(*client_);  // its reader was not quick enough
    return !client_;
}

bool WebSocketPlace::isAttached(const WebSocketConnection& connection)
{
    const Lock lock(mutex_);
    return client_.get() == &connection;
}

void WebSocketPlace::end(WebSocketConnection& connection)
{
    const Lock lock(mutex_);
    endLocked(connection);
}

void WebSocketPlace::endUnlessAttached(WebSocketConnection& connection)
{
    const Lock lock(mutex_);
    if (client_.get() != &connection) endLocked(connection);
}

/// Whoever sees the end may come back at once, and finds the place free.
void WebSocketPlace::endLocked(WebSocketConnection& connection)
{
    if (client_.get() == &connection) client_.reset();
    connection.shutdown();
    changed_.notify_all();
}

void WebSocketPlace::readerRests(const WebSocketConnection& connection)
{
    const Lock lock(mutex_);
    if (client_.get() != &connection) return;
    isReaderBusy_ = false;
    changed_.notify_all();
}

bool WebSocketPlace::readerWorks(const WebSocketConnection& connection)
{
    const Lock lock(mutex_);
    if (client_.get() != &connection) return false;
    isReaderBusy_ = true;
    return true;
}

}  // namespace Orvu
