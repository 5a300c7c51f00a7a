#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "orvu/typed/Request.h"

/// \file
/// How a handler's parameter says which requests it takes. Not for applications.

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

template <class Type>
inline constexpr bool isAnswer = std::is_same_v<Type, Answer> || isMessage<Type> || isMessagePointer<Type>;

/// What a callable says about itself. Its checks are written so that the first error is the one that helps.
template <class Callable>
struct HandlerTraits {
    using Call = CallOf<std::decay_t<Callable>>;
    using Parameter = MessageOf<typename Call::ParameterType>;
    using Message = typename Parameter::Type;
    using Result = typename Call::ResultType;
    static constexpr bool isDeferred = Parameter::isDeferred;
    static constexpr bool takesAMessage = isReceivedClass<Message>;
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

/// A registered handler.
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

}  // namespace Detail
}  // namespace Orvu
