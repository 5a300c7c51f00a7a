#include "listener/ListenerRun.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "listener/RandomBytes.h"
#include "log/Log.h"
#include "transport/Connecting.h"

namespace Orvu {
namespace {

constexpr std::chrono::milliseconds kResolvingTime{500};  // that stop() waits for
constexpr int kAfterFault = 100;                          // milliseconds, where waiting itself fails

Loss lossOfName(int error)
{
    const char* const why = error == EAFNOSUPPORT ? "it has no IPv4 address"
                            : error == 0          ? "unknown name"
                                                  : std::strerror(error);
    return {ListenerLossNotResolved, error, std::string("the host cannot be resolved: ") + why};
}

}  // namespace

ListenerRun::ListenerRun(PublisherPlace place, const ListenerSettings& settings)
    : place_(std::move(place)), delivery_(settings), bell_(Socket::bell()), room_(new char[Attachment::kRoom + 1])
{}

bool ListenerRun::start()
{
    if (!bell_) return false;
    const std::lock_guard<std::mutex> lock(mutex_);
    return thread_.start(makeTask(kListenerThread, [self = shared_from_this()] { self->run(); }));
}

bool ListenerRun::isOnThisThread()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return self_ && pthread_equal(*self_, pthread_self());
}

bool ListenerRun::end(bool waits)
{
    std::unique_lock<std::mutex> lock(mutex_);
    isOver_ = true;
    delivery_.endAtNextMessage();
    bell_.ring();
    if (!waits) {
        delivery_.end();
        return false;
    }
    if (!changed_.wait_for(lock, kResolvingTime, [this] { return hasEnded_; }))
        changed_.wait(lock, [this] { return hasEnded_ || isResolving_; });
    if (!hasEnded_) {
        delivery_.end();
        thread_.detach();
    }
    thread_.join();
    return true;
}

void ListenerRun::letGo()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    thread_.detach();
}

void ListenerRun::run()
{
    /// Also where a callback ends the thread.
    struct End {
        ListenerRun& run;
        ~End()
        {
            const std::lock_guard<std::mutex> lock(run.mutex_);
            run.hasEnded_ = true;
            run.changed_.notify_all();
        }
    };
    const End end{*this};
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        self_ = pthread_self();
    }
    listenAgainAndAgain();
    delivery_.endTurn();
}

void ListenerRun::listenAgainAndAgain()
{
    while (!isOver_) {
        const Loss loss = listenOnce();
        if (isOver_) return;
        logLine("PushListener::listen: %s:%d: %s", place_.host.c_str(), place_.port, loss.reason.c_str());
        tell(ListenerStateLost, loss);
        if (!delivery_.reconnects()) {
            logLine("PushListener::listen: stopped listening to %s:%d", place_.host.c_str(), place_.port);
            tell(ListenerStateStopped, loss);
            return;
        }
        pauseAfter(loss);
    }
}

Loss ListenerRun::listenOnce()
{
    tell(ListenerStateConnecting, {});
    try {
        return attachAndReceive();
    } catch (const std::bad_alloc&) {
        logLine("PushListener::listen: ERROR out of memory!");
        return lossOfMemory();
    }
}

Loss ListenerRun::attachAndReceive()
{
    int error = 0;
    const std::optional<in_addr> host = resolvedHost(error);
    if (!host) return lossOfName(error);
    Attachment attachment(place_, delivery_, bell_, isOver_, room_.get());
    const Loss loss = attachment.run(*host, wasAttached_);
    attachment.handOverRest();
    if (attachment.wasAttached()) {
        wasAttached_ = true;
        pauses_.reset();
    }
    return loss;
}

std::optional<in_addr> ListenerRun::resolvedHost(int& error)
{
    setResolving(true);
    try {
        const std::optional<in_addr> host = resolved(place_.host, error);
        setResolving(false);
        return host;
    } catch (...) {
        setResolving(false);
        throw;
    }
}

void ListenerRun::setResolving(bool isResolving)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    isResolving_ = isResolving;
    changed_.notify_all();
}

void ListenerRun::pauseAfter(const Loss& loss)
{
    const std::chrono::milliseconds pause = pauses_.next(randomBytes<1>()[0] / 255.0);
    const Deadline until = std::chrono::steady_clock::now() + pause;
    logLine("PushListener::listen: trying %s:%d again in %lld ms", place_.host.c_str(), place_.port,
            static_cast<long long>(pause.count()));
    tell(ListenerStateWaiting, loss, pause);
    if (!waitFor(bell_.fd(), POLLIN, until) && std::chrono::steady_clock::now() < until) poll(nullptr, 0, kAfterFault);
}

void ListenerRun::tell(ListenerState state, const Loss& loss, std::chrono::milliseconds wait)
{
    ListenerStatus status;
    status.state = state;
    status.loss = loss.why;
    status.errorNumber = loss.error;
    status.waitMilliseconds = static_cast<std::int32_t>(wait.count());
    status.reason = loss.reason.c_str();
    delivery_.status(status);
    delivery_.endTurn();
}

}  // namespace Orvu
