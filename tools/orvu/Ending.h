#pragma once

#include <chrono>
#include <initializer_list>
#include <poll.h>

#include "Descriptor.h"

namespace OrvuTool {

using Clock = std::chrono::steady_clock;
constexpr Clock::time_point kNever = Clock::time_point::max();

/// The signals that end a command that runs until it is stopped: Ctrl-C, SIGTERM, and SIGHUP unless it was ignored at
/// the start, as under nohup.
///
/// From construction on they only end the waits of this object. Construct it before any other thread starts, so that
/// later threads leave the signals to it, too.
class Ending {
public:
    enum class Awaited { Ready, TimeOver, Signal };

    Ending();

    /// Waits until any of `states` is ready, for each as `poll` does. Once a signal came, it waits for nothing else.
    Awaited waitFor(std::initializer_list<pollfd*> states, Clock::time_point until = kNever);

    /// Whether a signal came.
    bool hasCome() { return waitFor({}, Clock::time_point::min()) == Awaited::Signal; }

    /// Waits for a signal.
    void wait() { waitFor({}); }

private:
    Descriptor signals_;
};

}  // namespace OrvuTool
