#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvu/typed/Request.h"

/// \file
/// How a handler's parameter says which messages it takes, and where handlers are kept. Not for applications.

namespace Orvu {
namespace Detail {

/// What a callable returns and takes; `void` for one that does not take exactly one parameter of a known type.
template <class Result, class Parameter>
struct Signature {
    using ResultType = Result;
    using ParameterType = Parameter;
};

template <class Function>
struct SignatureOf : Signature<void, void> {};
template <class Result, class Parameter>
struct SignatureOf<Result (*)(Parameter)> : Signature<Result, Parameter> {};
template <class Result, class Class, class Parameter>
struct SignatureOf<Result (Class::*)(Parameter)> : Signature<Result, Parameter> {};
template <class Result, class Class, class Parameter>
struct SignatureOf<Result (Class::*)(Parameter) const> : Signature<Result, Parameter> {};
template <class Result, class Parameter>
struct SignatureOf<Result (*)(Parameter) noexcept> : Signature<Result, Parameter> {};
template <class Result, class Class, class Parameter>
struct SignatureOf<Result (Class::*)(Parameter) noexcept> : Signature<Result, Parameter> {};
template <class Result, class Class, class Parameter>
struct SignatureOf<Result (Class::*)(Parameter) const noexcept> : Signature<Result, Parameter> {};

template <class Callable, class = void>
struct CallOf : SignatureOf<Callable> {};
template <class Callable>
struct CallOf<Callable, std::void_t<decltype(&Callable::operator())>> : SignatureOf<decltype(&Callable::operator())> {};

/// The class of messages that a parameter stands for, and whether the answer comes later.
template <class Parameter>
struct MessageOf {
    using Type = void;
    static constexpr bool isDeferred = false;
};
template <class Message>
struct MessageOf<const Message&> {
    using Type = Message;
    static constexpr bool isDeferred = false;
};
template <class Message>
struct MessageOf<Request<Message>> {
    using Type = Message;
    static constexpr bool isDeferred = true;
};
template <class Message>
struct MessageOf<const Request<Message>&> : MessageOf<void> {};

/// Whether a handler may take messages of this class. An application's own class is an error.
template <class Message>
constexpr bool isTaken()
{
    static_assert(!isMessage<Message> || isCatalogued<Message>,
                  "Orvu: the library makes no messages of this class: name one of its own, such as Orvu::ServiceList");
    return isCatalogued<Message>;
}

template <class Type>
inline constexpr bool isAnswer = std::is_same_v<Type, Answer> || isMessage<Type> || isMessagePointer<Type>;

/// What a callable says about itself as a handler of a Receiver. Its checks are written so that the first error is the
/// one that helps.
template <class Callable>
struct HandlerTraits {
    using Call = CallOf<std::decay_t<Callable>>;
    using Parameter = MessageOf<typename Call::ParameterType>;
    using Message = typename Parameter::Type;
    using Result = typename Call::ResultType;
    static constexpr bool isDeferred = Parameter::isDeferred;
    static constexpr bool takesAMessage = isTaken<Message>();
    static constexpr bool answers = isDeferred ? std::is_void_v<Result> : isAnswer<Result>;
    static constexpr bool isGood = takesAMessage && answers;

    static_assert(takesAMessage,
                  "Orvu: a handler takes one message of the library, as in [](const Orvu::ServiceList&), or a request "
                  "that it answers later, as in [](Orvu::Request<Orvu::ServiceList> request)");
    static_assert(!takesAMessage || isDeferred || answers,
                  "Orvu: a handler returns its answer: a message, a std::unique_ptr to one, or Orvu::Answer");
    static_assert(!takesAMessage || !isDeferred || answers,
                  "Orvu: a handler that takes an Orvu::Request returns nothing: it calls request.answer()");
};

/// A registered handler of a Receiver.
class Handler {
public:
    virtual ~Handler() = default;
    virtual void serve(Question question) = 0;
};

template <class Callable>
class HandlerOf final : public Handler {
public:
    explicit HandlerOf(Callable callable) : callable_(std::move(callable)) {}

    void serve(Question question) override
    {
        using Traits = HandlerTraits<Callable>;
        using Message = typename Traits::Message;
        if constexpr (Traits::isDeferred) {
            callable_(Request<Message>(std::move(question)));
        } else {
            question.answer(callable_(static_cast<const Message&>(*question->getData())));
        }
    }

private:
    Callable callable_;
};

/// The handlers of a Receiver or a Listener, by the numbers of their types. Fixed once they are closed; then any thread
/// may use them.
template <class Kind>
class Handlers {
public:
    /// `owner` is named in log lines.
    explicit Handlers(const char* owner) : owner_(owner) {}

    /// False, with a log line, once they are closed, and for a type that has one. One that is never called, because no
    /// message `isReceived`, is a fault.
    bool add(DataType type, bool isReceived, std::unique_ptr<Kind> handler)
    {
        const std::string name = '"' + std::string(Serializable::dataTypeString(type)) + '"';
        if (isReceived || isClosed_) return put(byType_[typeOfReceived(type)], std::move(handler), name.c_str());
        fault_ = "there is a handler for " + name + ", and no message of this type can be received";
        return true;
    }

    /// The same for a handler that is kept elsewhere, at `place`.
    template <class Other>
    bool put(std::unique_ptr<Other>& place, std::unique_ptr<Other> handler, const char* name)
    {
        if (isClosed_ || place) {
            OrvuRestInterface::log(isClosed_ ? "%s: the handler for %s comes too late: it has listened"
                                             : "%s: there is a handler for %s already",
                                   owner_, name);
            return false;
        }
        place = std::move(handler);
        return true;
    }

    void close() { isClosed_ = true; }
    void clear() { byType_.clear(); }

    /// Null without one.
    Kind* at(DataType type) const { return type < byType_.size() ? byType_[type].get() : nullptr; }
    /// Why nobody can listen with them; empty when somebody can.
    const std::string& fault() const { return fault_; }

private:
    const char* const owner_;
    std::vector<std::unique_ptr<Kind>> byType_{kTypeCount};
    std::string fault_;
    std::atomic<bool> isClosed_{false};
};

}  // namespace Detail
}  // namespace Orvu
