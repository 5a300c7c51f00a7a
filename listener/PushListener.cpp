#include "orvu/PushListener.h"

#include <memory>
#include <mutex>
#include <new>

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

std::shared_ptr<ListenerRun> newRun(const char* host, int port, Channel channel, const ListenerSettings& settings)
{
    try {
        return std::make_shared<ListenerRun>(PublisherPlace{host, port, channel}, settings);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

struct PushListener::Private {
    using Run = std::shared_ptr<ListenerRun>;

    Run run()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return current;
    }
    void begin(const Run& run)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        current = run;
    }
    /// Another thread may have begun the next one meanwhile.
    void forget(const Run& run)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (current == run) current.reset();
    }

    ListenerSettings settings;
    std::mutex mutex;  // guards `current`
    Run current;
};

PushListener::PushListener() noexcept : private_(new (std::nothrow) Private) {}

PushListener::~PushListener()
{
    stop();
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
    const std::shared_ptr<ListenerRun> run = newRun(host, port, channel, private_->settings);
    if (!run) return refuse("out of memory!");
    if (!run->start()) return refuse("Could not start the thread!");
    private_->begin(run);
    return true;
}

void PushListener::stop() noexcept
{
    if (!private_) return;
    const std::shared_ptr<ListenerRun> run = private_->run();
    if (!run) return;
    run->end();
    private_->forget(run);
}

}  // namespace Orvu
