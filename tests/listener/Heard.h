#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "orvu/PushListener.h"
#include "support/RawPeer.h"

namespace OrvuTests {

/// What a listener's callbacks are given.
class Heard {
public:
    /// One for each callback: "value: [1]", "text: hello", "end of text", "bytes: [1]", "connecting", "attached",
    /// "lost 1/0: it closed the connection", "waiting", "stopped 1/0". After "lost" come the loss and the error number.
    std::vector<std::string> all();
    /// Those of messages alone.
    std::vector<std::string> messages();
    /// Waits until one is `wanted`; false after 60 s.
    bool waitFor(const std::string& wanted, int times = 1);
    /// The pause of the last "waiting", in milliseconds.
    int pause();

    /// Has `listener` call this one.
    void listenTo(Orvu::PushListener& listener);

    /// Called in each callback, with what all() gets.
    std::function<void(const std::string&)> action;

private:
    static void onMessage(Orvu::PushedMessage& message, void* heard);
    static void onState(const Orvu::ListenerStatus& status, void* heard);
    void add(const std::string& what);

    std::mutex mutex_;
    std::condition_variable grown_;
    std::vector<std::string> all_;
    int pause_ = 0;
};

/// The next client of a server, its opening handshake performed.
RawPeer openedWebSocket(RawListener& server);

}  // namespace OrvuTests
