#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "orvu/PushListener.h"
#include "orvu/typed/Handler.h"

namespace Orvu {
namespace Detail {

/// What a callable says about itself as a handler of a Listener. Its checks are written so that the first error is the
/// one that helps.
template <class Callable>
struct HearerTraits {
    using Call = CallOf<std::decay_t<Callable>>;
    using Parameter = typename Call::ParameterType;
    using Message = typename MessageOf<Parameter>::Type;
    static constexpr bool takesStates = std::is_same_v<Message, ListenerStatus>;
    static constexpr bool takesTheRest = std::is_same_v<Message, PushedMessage>;
    static constexpr bool takesAMessage = isTaken<Message>() && !MessageOf<Parameter>::isDeferred;
    static constexpr bool isKnown = takesStates || takesTheRest || takesAMessage;
    static constexpr bool returnsNothing = std::is_void_v<typename Call::ResultType>;
    static constexpr bool isGood = isKnown && returnsNothing;

    static_assert(isKnown,
                  "Orvu: a handler of a listener takes one message of the library, as in [](const Orvu::Service&), or "
                  "const Orvu::PushedMessage&, or const Orvu::ListenerStatus&");
    static_assert(!isKnown || returnsNothing, "Orvu: a handler of a listener returns nothing");
};

/// A registered handler of a Listener: for messages, for what has no handler, or for changes of the state.
template <class Kind>
class Hearer {
public:
    virtual ~Hearer() = default;
    virtual void hear(const Kind& what) = 0;
};

template <class Kind, class Callable>
class HearerOf final : public Hearer<Kind> {
public:
    explicit HearerOf(Callable callable) : callable_(std::move(callable)) {}

    void hear(const Kind& what) override
    {
        callable_(static_cast<const typename HearerTraits<Callable>::Message&>(what));
    }

private:
    Callable callable_;
};

/// What a Listener shares with the handler that runs, which may destroy the listener.
struct Hearing : std::enable_shared_from_this<Hearing> {
    Handlers<Hearer<Serializable>> messages{"Orvu::Listener"};  // closed once it has listened
    std::unique_ptr<Hearer<PushedMessage>> rest;
    std::unique_ptr<Hearer<ListenerStatus>> states;

    /// What the library calls. An exception of a handler passes: the library logs it.
    static void onMessage(PushedMessage& message, void* context)
    {
        const auto hearing = static_cast<Hearing*>(context)->shared_from_this();
        const Serializable* const object = message.object;
        if (Hearer<Serializable>* const handler = object ? hearing->messages.at(object->getDataType()) : nullptr)
            handler->hear(*object);
        else if (hearing->rest)
            hearing->rest->hear(message);
    }
    static void onState(const ListenerStatus& status, void* context)
    {
        const auto hearing = static_cast<Hearing*>(context)->shared_from_this();
        if (hearing->states) hearing->states->hear(status);
    }
};

}  // namespace Detail

/// Listens to what a publisher pushes, by handlers, one for each type of message, and connects again when the
/// connection is lost. It stops when it is destroyed. There may be any number of them.
///
///     Orvu::Listener listener;
///     listener.on([&](const Orvu::Service& service) { screen.show(service.serviceName); });
///     if (!listener.listen("127.0.0.1", 34000, Orvu::ChannelTcp)) return 1;
///
/// Handlers run on the listener's own thread, one after the other. While one runs, nothing more is received. When
/// a handler throws, the exception is logged.
///
/// Any thread may call stop(); call the other functions on one thread at a time. See PushListener for what a listener
/// misses, and when it tries again.
class Listener {
public:
    Listener() : hearing_(std::make_shared<Detail::Hearing>())
    {
        listener_.onMessage(Detail::Hearing::onMessage, hearing_.get());
        listener_.onState(Detail::Hearing::onState, hearing_.get());
        listener_.makeObjects(true);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    /// stop(), and then destroys the handlers.
    ~Listener() = default;

    /// Registers a handler, which returns nothing, for what its parameter names:
    ///
    /// - `const Message&`: messages of that type;
    /// - `const PushedMessage&`: all that no other handler takes, with its text and size: values without a type, of a
    ///   type that has no handler, or that their type cannot read, and texts that are not JSON;
    /// - `const ListenerStatus&`: changes of the listener's state.
    ///
    /// What it is given lives until it returns. The handler may hold what can only be moved. False, with a log line,
    /// once it has listened, and for what has a handler. One for a type that is never received makes listen() fail.
    template <class Callable>
    bool on(Callable callable)
    {
        using Traits = Detail::HearerTraits<Callable>;
        if constexpr (!Traits::isGood)
            return false;
        else if constexpr (Traits::takesStates)
            return hearing_->messages.put(hearing_->states, made<ListenerStatus>(std::move(callable)), "states");
        else if constexpr (Traits::takesTheRest)
            return hearing_->messages.put(hearing_->rest, made<PushedMessage>(std::move(callable)), "the rest");
        else
            return add(Detail::typeOfClass<typename Traits::Message>(), std::move(callable));
    }
    /// The same for a type whose class has several, such as `on<Orvu::DataTypeBinaryNIT>(handler)`.
    template <DataType type, class Callable>
    bool on(Callable callable)
    {
        using Traits = Detail::HearerTraits<Callable>;
        if constexpr (Traits::isGood) {
            static_assert(Detail::isOfClass<typename Traits::Message, type>(),
                          "Orvu: a message of this type is not of the class that the handler takes");
            return add(type, std::move(callable));
        } else {
            return false;
        }
    }

    /// Whether to connect again after a loss, from the next listen() on; see PushListener::reconnect(). On at first.
    void reconnect(bool on) { listener_.reconnect(on); }

    /// Listens to the publisher on TCP `port`, 1 to 65535, of `host`, a name or dotted IPv4 address, until stop().
    /// Stops what it listened to before. Does not wait for the connection: that comes as a state. False with a
    /// reason(), and a log line: for a host that is empty, another port, another channel, when there is a handler for a
    /// type that is never received, and when descriptors, threads or memory run out.
    bool listen(const std::string& host, int port, Channel channel)
    {
        stop();
        reason_ = faultOf(host, port, channel);
        if (reason_.empty()) {
            hearing_->messages.close();
            if (listener_.listen(host.c_str(), port, channel)) return true;
            reason_ = "there are no descriptors, threads or memory left";
        }
        OrvuRestInterface::log("Orvu::Listener: cannot listen: %s", reason_.c_str());
        return false;
    }

    /// Stops listening, and waits for the handler that runs: when it has returned none runs, and none begins any more.
    /// It returns within a second, or when that handler has ended; so do not hold a lock that a handler takes. A
    /// handler may call it, or destroy the listener: that waits for nobody. Can listen again afterwards.
    void stop() { listener_.stop(); }

    /// Why the last listen() failed; empty when it did not.
    const std::string& reason() const { return reason_; }

private:
    template <class Kind, class Callable>
    static std::unique_ptr<Detail::Hearer<Kind>> made(Callable callable)
    {
        return std::make_unique<Detail::HearerOf<Kind, Callable>>(std::move(callable));
    }

    template <class Callable>
    bool add(DataType type, Callable callable)
    {
        const bool isHeard = Detail::isReceived(type) && type != DataTypeUnknown;
        return hearing_->messages.add(type, isHeard, made<Serializable>(std::move(callable)));
    }

    std::string faultOf(const std::string& host, int port, Channel channel) const
    {
        if (!hearing_->messages.fault().empty()) return hearing_->messages.fault();
        if (host.empty()) return "there is no host";
        if (port < 1 || port > 65535) return "a port is 1 to 65535, not " + std::to_string(port);
        if (channel != ChannelTcp && channel != ChannelWebSocket)
            return "the channel is ChannelTcp or ChannelWebSocket, not " + std::to_string(channel);
        return {};
    }

    const std::shared_ptr<Detail::Hearing> hearing_;
    std::string reason_;
    PushListener listener_;  // the last one, so that it ends first
};

}  // namespace Orvu
