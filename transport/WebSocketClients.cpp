#include "transport/WebSocketClients.h"

#include <iterator>
#include <new>

#include "log/Log.h"

namespace Orvu {
namespace {

constexpr int kMostHandshakes = 8;

bool isEnding(const std::shared_ptr<WebSocketConnection>& connection)
{
    return !connection || connection->isOver();
}

}  // namespace

void WebSocketClients::begin(const Socket&)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    isOpen_ = true;
}

void WebSocketClients::take(Socket socket)
{
    joinEnding();
    if (place_.isTaken()) {
        logLine("OrvuRestServerWebSocket::serverThread: Already have a client... ignoring connection.");
        return;
    }
    logLine("OrvuRestServerWebSocket::serverThread: Accepted new client connection.");
    endLongestHandshake();
    try {
        start(std::make_shared<WebSocketConnection>(std::move(socket), place_, target_));
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerWebSocket::serverThread: ERROR out of memory!");
        logLine("OrvuRestServerWebSocket::serverThread: Handshake fail! Ignoring client.");
    }
}

/// When there are as many as there may be.
void WebSocketClients::endLongestHandshake()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        int count = 0;
        std::shared_ptr<WebSocketConnection> longest;
        for (const Reader& reader : readers_) {
            auto connection = reader.connection.lock();
            if (isEnding(connection) || place_.isAttached(*connection)) continue;
            if (++count == 1) longest = std::move(connection);
        }
        if (count < kMostHandshakes) return;
        place_.endUnlessAttached(*longest);
    }
    joinEnding();
}

void WebSocketClients::start(const std::shared_ptr<WebSocketConnection>& connection)
{
    Readers one(1);
    one.front().connection = connection;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!isOpen_) return;
    if (one.front().thread.start(makeTask("orvu-reader", [connection] { connection->serve(); }))) {
        readers_.splice(readers_.end(), one);
    } else {
        logLine("OrvuRestServerWebSocket::serverThread: Could not create the client thread!");
    }
}

/// Those that end do so at once: nothing that they may still wait for lasts.
void WebSocketClients::joinEnding()
{
    Readers ending;
    const std::lock_guard<std::mutex> lock(mutex_);
    for (auto reader = readers_.begin(); reader != readers_.end();) {
        const auto next = std::next(reader);
        if (isEnding(reader->connection.lock())) ending.splice(ending.end(), readers_, reader);
        reader = next;
    }
}

void WebSocketClients::drop()
{
    {
        Readers all;
        const std::lock_guard<std::mutex> lock(mutex_);
        isOpen_ = false;
        for (const Reader& reader : readers_)
            if (const auto connection = reader.connection.lock()) place_.end(*connection);
        all.swap(readers_);
    }
    const std::lock_guard<std::mutex> untilThePushEnds(target_.writing);
}

[[gnu::hot]] ssize_t WebSocketClients::push(const void* data, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(target_.writing);
    WebSocketConnection* const client = target_.client;
    return client ? client->push(data, size) : 0;
}

}  // namespace Orvu
