#pragma once

#include <atomic>
#include <csignal>
#include <optional>
#include <string_view>

#include "listener/ValueSplitter.h"
#include "orvu/PushListener.h"
#include "transport/Threads.h"

namespace Orvu {

constexpr char kListenerThread[] = "orvu-listener";

/// What an application sets before it listens.
struct ListenerSettings {
    PushListener::MessageCallback onMessage = nullptr;
    void* messageContext = nullptr;
    PushListener::StateCallback onState = nullptr;
    void* stateContext = nullptr;
    bool makesObjects = false;
    bool givesBytes = false;
    bool reconnects = true;
    sigset_t signals = {};  // of the thread that called listen()
};

/// Hands what was pushed, and states, over to the application, on the listener's thread.
class Delivery : public ValueSplitter::Sink {
public:
    explicit Delivery(const ListenerSettings& settings) : settings_(settings) {}

    /// From now on nothing is handed over. Any thread.
    void end() { isOver_ = true; }
    /// From now on the next message does that, unless beginRest() comes first. Any thread.
    void endAtNextMessage() { isEnding_ = true; }
    /// The stream has ended: only the rest of it is still to be handed over.
    void beginRest() { isEnding_ = false; }

    void value(std::string_view json) override;
    void text(std::string_view bytes) override { give(PushedText, bytes); }
    void endText() override { give(PushedTextEnd, ""); }
    /// Bytes as they came; the one after them can be written, and is left as it was.
    void bytes(char* begin, std::size_t size);
    void status(const ListenerStatus& status);

    /// Gives the thread its library settings back after callbacks. It keeps the application's from one callback to the
    /// next, since the change takes longer than reading a message.
    void endTurn() { turn_.reset(); }

    bool givesBytes() const { return settings_.givesBytes; }
    bool reconnects() const { return settings_.reconnects; }

private:
    void give(PushedKind kind, std::string_view bytes);
    void give(PushedMessage& message);
    template <class Call>
    void callOut(Call call);

    const ListenerSettings settings_;
    std::atomic<bool> isOver_{false};
    std::atomic<bool> isEnding_{false};
    std::optional<ApplicationsTurn> turn_;
};

}  // namespace Orvu
