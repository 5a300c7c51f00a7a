#include "Watch.h"

#include <cerrno>
#include <sys/eventfd.h>

#include "ExitCode.h"
#include "LocalTime.h"
#include "Output.h"

namespace OrvuTool {
namespace {

using namespace Orvu;

constexpr std::chrono::seconds kSilence(5);

constexpr char kOtherPorts[] = "a WebSocket port (try --websocket) or a port for requests (try orvu ask)";

/// For a watcher, a publisher that vanishes has ended.
bool hasClosed(const ListenerStatus& status)
{
    return status.loss == ListenerLossEnded || (status.loss == ListenerLossBroke && status.errorNumber == ECONNRESET);
}

std::string faultOfHost(const std::string& host, const ListenerStatus& status)
{
    if (status.errorNumber != EAFNOSUPPORT) return "cannot resolve " + host;
    return "orvu uses IPv4 only, and " + host + " has no IPv4 address";
}

std::string inWholeSeconds(int milliseconds)
{
    return std::to_string((milliseconds + 999) / 1000) + " s";
}

}  // namespace

Watch::Watch(const WatchOptions& options, Ending& ending, Output& output)
    : options_(options),
      ending_(ending),
      output_(output),
      news_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      check_(options.time ? localTime().size() + 1 : 0)
{
    listener_.onMessage(onMessage, this);
    listener_.onState(onState, this);
    listener_.handOverBytes(options.raw);
    listener_.reconnect(options.again);
}

int Watch::run()
{
    const Channel channel = options_.webSocket ? ChannelWebSocket : ChannelTcp;
    if (!listener_.listen(options_.host.c_str(), options_.port, channel)) {
        const std::string fault =
            options_.host.empty() ? "the host is empty" : "the system has no memory or threads left";
        complain("cannot connect to " + options_.publisher() + ": " + fault);
        return ExitNoServer;
    }
    waitForEnd();
    listener_.stop();
    return code_;
}

void Watch::waitForEnd()
{
    while (!isDone()) {
        pollfd reader{isConnecting() ? -1 : output_.descriptor(), 0, 0};
        pollfd news{news_.fd(), POLLIN, 0};
        const Ending::Awaited awaited = ending_.waitFor({&reader, &news}, guessAt());
        if (awaited == Ending::Awaited::Signal || reader.revents != 0) return;
        eventfd_t count;
        if (awaited == Ending::Awaited::TimeOver)
            guessWhyNothingComes();
        else if (eventfd_read(news_.fd(), &count) != 0 && errno != EAGAIN)
            return;
    }
}

bool Watch::isDone()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return isDone_;
}

/// Connecting goes on whether or not the output is read: standard error says what is wrong.
bool Watch::isConnecting()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return isConnecting_;
}

void Watch::setConnecting(bool isConnecting)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    isConnecting_ = isConnecting;
    eventfd_write(news_.fd(), 1);
}

Clock::time_point Watch::guessAt()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return hasCome_ ? kNever : guessAt_;
}

void Watch::guessWhyNothingComes()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (hasCome_ || guessAt_ > Clock::now()) return;  // something came, or the connection is another one
    guessAt_ = kNever;
    const std::string guess = "nothing came for 5 s: perhaps nothing is pushed yet";
    note(options_.webSocket ? guess : guess + ", or this is " + kOtherPorts);
}

void Watch::onMessage(PushedMessage& message, void* watch)
{
    static_cast<Watch*>(watch)->show(message);
}

void Watch::show(const PushedMessage& message)
{
    if (isDone()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        hasCome_ = true;
    }
    std::string shown;
    if (options_.time) lines_.startLinesWith(localTime() + " ");
    if (options_.raw)
        shown.assign(message.text, message.size);
    else
        lines_.add(message, shown);
    if (!output_.write(shown, ending_)) return finish(ExitOk);
    if (!options_.check) return;
    for (const std::string& found : check_.add(shown))
        complain(found);
}

void Watch::onState(const ListenerStatus& status, void* context)
{
    Watch& watch = *static_cast<Watch*>(context);
    if (watch.isDone()) return;
    if (status.state == ListenerStateAttached) watch.sayThatItWatches();
    if (status.state == ListenerStateWaiting) watch.sayThatItTriesAgain(status);
    if (status.state == ListenerStateStopped) watch.sayWhyItEnds(status);
    watch.setConnecting(status.state == ListenerStateConnecting);
}

void Watch::sayThatItWatches()
{
    note("watching " + options_.publisher() + ", until Ctrl-C");
    const std::lock_guard<std::mutex> lock(mutex_);
    hasCome_ = false;
    guessAt_ = Clock::now() + kSilence;
    eventfd_write(news_.fd(), 1);
}

void Watch::sayThatItTriesAgain(const ListenerStatus& status)
{
    note(reasonOf(status) + "; trying again in " + inWholeSeconds(status.waitMilliseconds));
    const std::lock_guard<std::mutex> lock(mutex_);
    guessAt_ = kNever;
}

void Watch::sayWhyItEnds(const ListenerStatus& status)
{
    const std::string reason = reasonOf(status);
    hasClosed(status) ? note(reason) : complain(reason);
    finish(hasClosed(status) ? ExitOk : ExitNoServer);
}

void Watch::finish(int code)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    isDone_ = true;
    code_ = code;
    eventfd_write(news_.fd(), 1);
}

std::string Watch::reasonOf(const ListenerStatus& status)
{
    if (hasClosed(status)) return closed();
    const std::string cannotConnect = "cannot connect to " + options_.publisher() + ": ";
    const std::string cannotWatch = options_.publisher() + " cannot be watched: ";
    switch (status.loss) {
        case ListenerLossNotConnected:
            return cannotConnect + status.reason;
        case ListenerLossNotResolved:
            return cannotConnect + faultOfHost(options_.host, status);
        case ListenerLossUnanswered:
        case ListenerLossOccupied:
            return cannotWatch +
                   "it closes the connection; perhaps another client is attached, or it is not a WebSocket port";
        default:
            return cannotWatch + status.reason;
    }
}

std::string Watch::closed()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::string what = options_.publisher() + " closed the connection";
    if (hasCome_) return what;
    if (guessAt_ == kNever || options_.webSocket) return what + " and sent nothing";  // it was guessed why
    return what + " and sent nothing; perhaps it is " + kOtherPorts;
}

}  // namespace OrvuTool
