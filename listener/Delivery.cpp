#include "listener/Delivery.h"

#include <exception>
#include <utility>

#include "log/Log.h"
#include "messages/core/Parsing.h"
#include "messages/core/ThreadEnd.h"
#include "orvu/Serializable.h"

namespace Orvu {
namespace {

void logEscaped(const char* what)
{
    logLine("PushListener::listen: ERROR exception from the callback: %s", what);
}

/// Deletes the object of a message unless the application has taken it.
struct OwnedObject {
    explicit OwnedObject(const PushedMessage& of) : message(of) {}
    ~OwnedObject() { delete message.object; }
    const PushedMessage& message;
};

}  // namespace

template <class Call>
void Delivery::callOut(Call call)
{
    if (!turn_) turn_.emplace(settings_.signals, kListenerThread);
    try {
        call();
    } catch (const std::exception& escaped) {
        logEscaped(escaped.what());
    } catch (...) {
        passThreadEndOn();
        logEscaped("of an unknown kind");
    }
}

void Delivery::value(std::string_view json)
{
    PushedMessage message{PushedValue, json.data(), json.size(), nullptr};
    const OwnedObject object(message);
    if (settings_.makesObjects && settings_.onMessage && !isOver_) message.object = messageIn(json.data());
    give(message);
}

void Delivery::bytes(char* begin, std::size_t size)
{
    const char after = std::exchange(begin[size], '\0');
    give(PushedBytes, {begin, size});
    begin[size] = after;
}

void Delivery::give(PushedKind kind, std::string_view bytes)
{
    PushedMessage message{kind, bytes.data(), bytes.size(), nullptr};
    give(message);
}

void Delivery::give(PushedMessage& message)
{
    if (isEnding_) end();
    if (settings_.onMessage && !isOver_) callOut([&] { settings_.onMessage(message, settings_.messageContext); });
}

void Delivery::status(const ListenerStatus& status)
{
    if (settings_.onState && !isOver_) callOut([&] { settings_.onState(status, settings_.stateContext); });
}

}  // namespace Orvu
