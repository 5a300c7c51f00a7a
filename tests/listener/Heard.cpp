#include "listener/Heard.h"

#include <algorithm>
#include <chrono>

#include "transport/WebSocketProtocol.h"

namespace OrvuTests {
namespace {

std::string textOf(const Orvu::PushedMessage& message)
{
    static const char* const kKinds[] = {"value: ", "text: ", "end of text", "bytes: "};
    return kKinds[message.kind] + std::string(message.text, message.size);
}

std::string textOf(const Orvu::ListenerStatus& status)
{
    const std::string why = std::to_string(status.loss) + "/" + std::to_string(status.errorNumber);
    switch (status.state) {
        case Orvu::ListenerStateConnecting:
            return "connecting";
        case Orvu::ListenerStateAttached:
            return "attached";
        case Orvu::ListenerStateLost:
            return "lost " + why + ": " + status.reason;
        case Orvu::ListenerStateWaiting:
            return "waiting";
        default:
            return "stopped " + why;
    }
}

}  // namespace

std::vector<std::string> Heard::all()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return all_;
}

std::vector<std::string> Heard::messages()
{
    std::vector<std::string> messages;
    for (const std::string& what : all())
        for (const char* const kind : {"value: ", "text: ", "end of text", "bytes: "})
            if (what.rfind(kind, 0) == 0) messages.push_back(what);
    return messages;
}

bool Heard::waitFor(const std::string& wanted, int times)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return grown_.wait_for(lock, std::chrono::seconds(60),
                           [&] { return std::count(all_.begin(), all_.end(), wanted) >= times; });
}

int Heard::pause()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return pause_;
}

void Heard::listenTo(Orvu::PushListener& listener)
{
    listener.onMessage(onMessage, this);
    listener.onState(onState, this);
}

void Heard::onMessage(Orvu::PushedMessage& message, void* heard)
{
    static_cast<Heard*>(heard)->add(textOf(message));
}

void Heard::onState(const Orvu::ListenerStatus& status, void* context)
{
    Heard& heard = *static_cast<Heard*>(context);
    if (status.state == Orvu::ListenerStateWaiting) {
        const std::lock_guard<std::mutex> lock(heard.mutex_);
        heard.pause_ = status.waitMilliseconds;
    }
    heard.add(textOf(status));
}

void Heard::add(const std::string& what)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        all_.push_back(what);
        grown_.notify_all();
    }
    if (action) action(what);
}

RawPeer openedWebSocket(RawListener& server)
{
    RawPeer client = server.accept();
    std::string request;
    while (request.size() < 4 || request.compare(request.size() - 4, 4, "\r\n\r\n") != 0)
        request += client.receive(1);
    client.send(Orvu::getHSresponse(request).value());
    return client;
}

}  // namespace OrvuTests
