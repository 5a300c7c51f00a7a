#include "orvu/PushListener.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

#include "listener/ListenerRun.h"
#include "log/Log.h"

namespace Orvu {
namespace {

const char* nameOf(Channel channel)
{
    return channel == ChannelTcp ? "tcp" : channel == ChannelWebSocket ? "websocket" : nullptr;
}

bool refuse(const char* why)
{
    logLine("PushListener::listen: ERROR %s", why);
    return false;
}

}  // namespace

struct PushListener::Private {
    using Run = std::shared_ptr<ListenerRun>;

    /// Ends every run. Callbacks must not wait for each other: when one of them calls this, it does not wait, and the
    /// runs stay until another thread has waited for them.
    void end()
    {
        const bool waits = !isInCallback();
        std::size_t kept = 0;
        while (const Run run = at(kept)) {
            if (run->end(waits))
                forget(run);
            else
                ++kept;
        }
    }
    bool isInCallback()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return std::any_of(runs.begin(), runs.end(), [](const Run& run) { return run->isOnThisThread(); });
    }
    Run at(std::size_t index)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return index < runs.size() ? runs[index] : nullptr;
    }
    void add(const Run& run)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        runs.push_back(run);
    }
    void forget(const Run& run)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        runs.erase(std::remove(runs.begin(), runs.end(), run), runs.end());
    }

    ListenerSettings settings;
    std::mutex mutex;       // guards `runs`
    std::vector<Run> runs;  // the last one listens; those before it were ended by their own callbacks
};

PushListener::PushListener() noexcept : private_(new (std::nothrow) Private) {}

PushListener::~PushListener()
{
    stop();
    if (!private_) return;
    for (const Private::Run& run : private_->runs)
        run->letGo();
    delete private_;
}

void PushListener::onMessage(MessageCallback callback, void* context) noexcept
{
    if (!private_) return;
    private_->settings.onMessage = callback;
    private_->settings.messageContext = context;
}

void PushListener::onState(StateCallback callback, void* context) noexcept
{
    if (!private_) return;
    private_->settings.onState = callback;
    private_->settings.stateContext = context;
}

void PushListener::makeObjects(bool on) noexcept
{
    if (private_) private_->settings.makesObjects = on;
}

void PushListener::handOverBytes(bool on) noexcept
{
    if (private_) private_->settings.givesBytes = on;
}

void PushListener::reconnect(bool on) noexcept
{
    if (private_) private_->settings.reconnects = on;
}

bool PushListener::listen(const char* host, int port, Channel channel) noexcept
{
    if (!private_) return refuse("out of memory!");
    stop();
    if (!host || *host == '\0') return refuse("no host!");
    if (port < 1 || port > 65535) return refuse("not a port to connect to!");
    if (!nameOf(channel)) return refuse("not a channel!");
    logLine("PushListener::listen: %s:%d (%s)", host, port, nameOf(channel));
    private_->settings.signals = signalsOfThisThread();
    try {
        const auto run = std::make_shared<ListenerRun>(PublisherPlace{host, port, channel}, private_->settings);
        private_->add(run);
        if (run->start()) return true;
        private_->forget(run);
    } catch (const std::bad_alloc&) {
        return refuse("out of memory!");
    }
    return refuse("Could not start the thread!");
}

void PushListener::stop() noexcept
{
    if (private_) private_->end();
}

}  // namespace Orvu
