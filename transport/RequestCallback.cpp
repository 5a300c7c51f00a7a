#include "transport/RequestCallback.h"

#include <condition_variable>
#include <exception>
#include <mutex>

#include "log/Log.h"
#include "messages/core/ThreadEnd.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

void logEscaped(const char* what)
{
    logLine("OrvuRestInterface::notifyCallback: ERROR exception from the callback: %s", what);
}

struct Running {
    std::mutex mutex;
    std::condition_variable fewer;
    int count = 0;
};

Running& running()
{
    static Immortal<Running> running;
    return *running;
}

}  // namespace

void logNotification()
{
    logLine("OrvuRestInterface::notifyCallback");
}

bool notify(RequestCallback callback, OrvuRestRequest* request)
{
    if (!callback) {
        logLine("Register a callback to receive requests!");
        return false;
    }
    try {
        callback(request);
    } catch (const std::exception& escaped) {
        logEscaped(escaped.what());
    } catch (...) {
        passThreadEndOn();
        logEscaped("of an unknown kind");
    }
    return true;
}

void RunningCallbacks::begin()
{
    const std::lock_guard<std::mutex> lock(running().mutex);
    ++running().count;
}

void RunningCallbacks::end()
{
    const std::lock_guard<std::mutex> lock(running().mutex);
    --running().count;
    running().fewer.notify_all();
}

bool RunningCallbacks::waitFor(int own, std::chrono::milliseconds patience)
{
    std::unique_lock<std::mutex> lock(running().mutex);
    return running().fewer.wait_for(lock, patience, [own] { return running().count <= own; });
}

}  // namespace Orvu
