#pragma once

#include <mutex>
#include <string>

#include "Descriptor.h"
#include "Ending.h"
#include "JsonLines.h"
#include "LineCheck.h"
#include "orvu/PushListener.h"

namespace OrvuTool {

class Output;

struct WatchOptions {
    std::string host;
    int port = 0;
    bool webSocket = false;
    bool raw = false;
    bool time = false;   // shown before each value
    bool check = false;  // whether the library reads it
    bool again = false;  // connect again

    std::string publisher() const { return host + ":" + std::to_string(port); }
};

/// Watches a publisher. `options`, `ending` and `output` outlive it.
class Watch {
public:
    Watch(const WatchOptions& options, Ending& ending, Output& output);

    /// Shows what comes until a signal comes, the reader of the output leaves, or the connection ends and is not to
    /// be made again. Returns the exit code. Call it once.
    int run();

private:
    static void onMessage(Orvu::PushedMessage& message, void* watch);
    static void onState(const Orvu::ListenerStatus& status, void* watch);

    // On the listener's thread:
    void show(const Orvu::PushedMessage& message);
    void sayThatItWatches();
    void sayThatItTriesAgain(const Orvu::ListenerStatus& status);
    void sayWhyItEnds(const Orvu::ListenerStatus& status);
    void finish(int code);

    void waitForEnd();
    bool isConnecting();
    void setConnecting(bool isConnecting);
    Clock::time_point guessAt();
    bool isDone();
    void guessWhyNothingComes();
    std::string closed();
    std::string reasonOf(const Orvu::ListenerStatus& status);

    const WatchOptions& options_;
    Ending& ending_;
    Output& output_;
    const Descriptor news_;  // readable when the listener's thread has changed something
    JsonLines lines_;
    LineCheck check_;

    std::mutex mutex_;                    // guards all below
    bool hasCome_ = false;                // something came since it is attached
    Clock::time_point guessAt_ = kNever;  // the time to guess why nothing came
    bool isConnecting_ = true;
    bool isDone_ = false;
    int code_ = 0;

    Orvu::PushListener listener_;  // goes first: its callbacks use the others
};

}  // namespace OrvuTool
