#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Connection.h"
#include "JsonLines.h"
#include "LineCheck.h"
#include "WebSocketClient.h"

namespace OrvuTool {

class Ending;
class Output;

struct WatchOptions {
    std::string host;
    int port = 0;
    bool webSocket = false;
    bool raw = false;
    bool time = false;   // before each value
    bool check = false;  // whether the library reads it
    bool again = false;  // connect anew

    std::string publisher() const { return host + ":" + std::to_string(port); }
};

/// How one connection to a publisher ended.
struct WatchEnd {
    enum class Kind {
        Stopped,  ///< A signal came, or nobody takes the output any more.
        Closed,   ///< The publisher closed the connection, or is gone.
        Failed    ///< It cannot be reached, refuses to be watched, or the connection broke.
    };
    Kind kind;
    std::string reason;  ///< A sentence for the user; empty when stopped.
};

/// Watches a publisher over one connection. `options`, `ending` and `output` outlive it.
class Watch {
public:
    Watch(const WatchOptions& options, Ending& ending, Output& output);

    /// Connects to `server`, the options' publisher, and shows what comes, until the connection ends, a signal comes,
    /// or whoever reads the output leaves. Without a server it says why the publisher has no address. Once.
    WatchEnd run(const std::optional<sockaddr_in>& server);

    /// Whether the publisher has let itself be watched.
    bool isAttached() const { return isAttached_; }

private:
    using End = std::optional<WatchEnd>;

    WatchEnd connectAndWatch(const std::optional<sockaddr_in>& server);
    End shakeHands();
    End readAnswer(const std::string& key);
    void sayThatItWatches();
    End watchOn();
    void guessWhyNothingComes();
    WatchEnd closed() const;
    WatchEnd refused(const std::string& fault) const;
    WatchEnd leave();
    End show(std::string_view bytes);
    End showMessages(std::string_view bytes);
    void addPayload(std::string_view payload);
    End writeShown(End end);

    const WatchOptions& options_;
    Ending& ending_;
    Output& output_;
    Connection connection_;
    FrameReader frames_;
    JsonLines lines_;
    LineCheck check_;
    std::string shown_;  // not written yet
    bool isAttached_ = false;
    bool hasCome_ = false;                // something, since it is attached
    Clock::time_point guessAt_ = kNever;  // when nothing has come until then
};

}  // namespace OrvuTool
