#include "Ending.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <sys/signalfd.h>
#include <vector>

namespace OrvuTool {
namespace {

sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    struct sigaction hangUp {};
    sigaction(SIGHUP, nullptr, &hangUp);
    if (hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);  // ignored under nohup: so it stays
    return signals;
}

Descriptor blockedAndKept(const sigset_t& signals)
{
    Descriptor kept(signalfd(-1, &signals, SFD_CLOEXEC));
    if (kept) pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return kept;
}

/// For `poll`; never shorter than the time that is left.
int millisecondsUntil(Clock::time_point until)
{
    if (until == kNever) return -1;
    const Clock::time_point now = Clock::now();
    if (until <= now) return 0;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now).count();
    return static_cast<int>(std::min<decltype(left)>(left, INT_MAX));
}

}  // namespace

Ending::Ending() : signals_(blockedAndKept(endingSignals())) {}

Ending::Awaited Ending::waitFor(std::initializer_list<pollfd*> states, Clock::time_point until)
{
    std::vector<pollfd> all = {{signals_.fd(), POLLIN, 0}};
    for (const pollfd* state : states)
        all.push_back(*state);
    int ready;
    do {
        ready = poll(all.data(), all.size(), millisecondsUntil(until));
    } while (ready < 0 && errno == EINTR);
    auto from = all.begin();
    if ((from++)->revents != 0) return Awaited::Signal;
    for (pollfd* state : states)
        *state = *from++;
    return ready == 0 ? Awaited::TimeOver : Awaited::Ready;
}

}  // namespace OrvuTool
