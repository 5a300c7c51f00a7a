#include "wire/Receiver.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "support/Observed.h"

namespace OrvuTests {
namespace {

using Orvu::OrvuRestInterface;
using Orvu::OrvuRestRequest;

struct Registration {
    std::mutex mutex;
    std::condition_variable idle;
    Handler handler;
    int calls = 0;
    int running = 0;
};

Registration& registration()
{
    static auto* const kForEver = new Registration;  // callbacks may still come while the process ends
    return *kForEver;
}

Handler begin()
{
    Registration& state = registration();
    const std::lock_guard<std::mutex> lock(state.mutex);
    if (!state.handler) return nullptr;
    ++state.calls;
    ++state.running;
    return state.handler;
}

void end()
{
    Registration& state = registration();
    const std::lock_guard<std::mutex> lock(state.mutex);
    if (--state.running == 0) state.idle.notify_all();
}

struct Running {
    ~Running() { end(); }
};

void* onRequest(OrvuRestRequest* request)
{
    const Handler handler = begin();
    if (!handler) {
        delete request;
        return nullptr;
    }
    const Running untilReturn;
    handler(request);
    return nullptr;
}

}  // namespace

void answerWithSuccess(OrvuRestRequest* request)
{
    Orvu::SuccessResponse answer;
    request->sendResponse(&answer);
    delete request;
}

RegisteredHandler::RegisteredHandler(Handler handler)
{
    Registration& state = registration();
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        state.handler = std::move(handler);
        state.calls = 0;
    }
    OrvuRestInterface::getInstance()->registerRequestCallback(onRequest);
}

RegisteredHandler::~RegisteredHandler()
{
    Registration& state = registration();
    {
        std::unique_lock<std::mutex> lock(state.mutex);
        state.handler = nullptr;
        state.idle.wait(lock, [&] { return state.running == 0; });
    }
    while (!threadsNamed("self", "orvu-worker").empty())  // which may still log
        std::this_thread::yield();
}

int RegisteredHandler::calls()
{
    const std::lock_guard<std::mutex> lock(registration().mutex);
    return registration().calls;
}

Receiver::Receiver(Handler handler) : handler_(std::move(handler))
{
    if (!OrvuRestInterface::getInstance()->startListenRequests(port())) throw std::runtime_error("cannot listen");
}

Receiver::~Receiver()
{
    OrvuRestInterface::destroyInstance();
}

std::optional<std::string> Receiver::ask(const std::string& text) const
{
    RawPeer peer = connect();
    peer.send(frameOf(text));
    return peer.readFrame();
}

std::vector<std::string> linesWith(LogCapture& log, const std::string& beginning)
{
    std::vector<std::string> found;
    for (const std::string& line : log.lines())
        if (line.compare(0, beginning.size(), beginning) == 0) found.push_back(line);
    return found;
}

bool waitForLines(LogCapture& log, const std::string& beginning, std::size_t count)
{
    return eventually([&] { return linesWith(log, beginning).size() >= count; });
}

bool areInOrder(const std::vector<std::string>& lines, const std::vector<std::string>& expected)
{
    auto place = lines.begin();
    for (const std::string& line : expected) {
        place = std::find(place, lines.end(), line);
        if (place == lines.end()) return false;
        ++place;
    }
    return true;
}

}  // namespace OrvuTests
