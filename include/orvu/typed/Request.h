#pragma once

#include <cstdlib>
#include <memory>
#include <type_traits>
#include <utility>

#include "orvu/OrvuRestRequest.h"
#include "orvu/typed/Messages.h"

namespace Orvu {

/// What a handler returns when it has several kinds of answers: made of a message, which is copied or moved, or of a
/// unique_ptr to one.
///
///     [](const Orvu::ServiceSelection& wanted) -> Orvu::Answer {
///         if (!tune(wanted.serviceContextId)) return Orvu::ServiceNotFoundError();
///         return Orvu::SuccessResponse();
///     }
class Answer {
public:
    template <class Given, class = std::enable_if_t<!std::is_same_v<std::decay_t<Given>, Answer>>>
    Answer(Given&& given)
    {
        using Plain = std::decay_t<Given>;
        static_assert(Detail::isMessagePointer<Plain> || Detail::isMessage<Plain>,
                      "Orvu: an answer is a message or a std::unique_ptr to one");
        if constexpr (Detail::isMessagePointer<Plain>)
            message_ = std::forward<Given>(given);
        else if constexpr (Detail::isMessage<Plain>)
            message_ = copyOf<Plain>(std::forward<Given>(given));
    }

    /// Null when it was made of a null pointer.
    Serializable* get() const { return message_.get(); }

private:
    template <class Message, class Given>
    static std::unique_ptr<Serializable> copyOf(Given&& given)
    {
        static_assert(std::is_constructible_v<Message, Given>,
                      "Orvu: this message cannot be copied: return a std::unique_ptr to it");
        if constexpr (std::is_constructible_v<Message, Given>)
            return std::make_unique<Message>(std::forward<Given>(given));
        else
            return nullptr;
    }

    std::unique_ptr<Serializable> message_;
};

namespace Detail {

/// Owns a received request, and sees to it that it is answered: with PlatformUnavailable when nobody else does.
class Question {
public:
    explicit Question(OrvuRestRequest* request) : request_(request) {}
    Question(Question&& other) noexcept
        : request_(std::move(other.request_)), isAnswered_(std::exchange(other.isAnswered_, true))
    {}
    Question& operator=(Question&& other) noexcept
    {
        Question before(std::move(*this));
        request_ = std::move(other.request_);
        isAnswered_ = std::exchange(other.isAnswered_, true);
        return *this;
    }
    ~Question()
    {
        if (!isAnswered_) refuse();
    }

    /// Null once it was moved from.
    OrvuRestRequest* operator->() const { return request_.get(); }
    explicit operator bool() const { return request_ != nullptr; }

    /// Answers with what an application hands over. False when the peer did not take it, when the answer is null or
    /// cannot be sent by itself (then PlatformUnavailable goes out), and when it was answered before.
    template <class Given>
    bool answer(Given&& given)
    {
        if constexpr (std::is_same_v<std::decay_t<Given>, Answer>) {
            return answerWith(given.get());
        } else {
            return withMessage(std::forward<Given>(given),
                               [this](Serializable* message) { return answerWith(message); });
        }
    }

private:
    bool answerWith(Serializable* message)
    {
        if (std::exchange(isAnswered_, true)) return false;
        if (isReadyToSend(message, "Orvu::Request")) return request_->sendResponse(message) > 0;
        refuse();
        return false;
    }

    void refuse()
    {
        PlatformUnavailable unavailable;
        request_->sendResponse(&unavailable);
    }

    std::unique_ptr<OrvuRestRequest> request_;
    bool isAnswered_ = false;
};

}  // namespace Detail

/// A received request that is answered later, on any thread. It can be moved, not copied. One that is destroyed without
/// an answer is answered with a PlatformUnavailable. It needs no Receiver: the one that took it may be gone.
///
/// A lambda that holds one cannot be copied either, so a std::function does not take it: the compiler says
/// "std::function target must be copy-constructible". Pass it as a template parameter, or as a std::packaged_task:
///
///     void ask(const std::string& name, std::packaged_task<void(bool)> whenAnswered);
///
/// One thread at a time uses a request.
template <class Message>
class Request {
public:
    /// For Receiver.
    explicit Request(Detail::Question question) : question_(std::move(question)) {}

    /// The message of the peer. Ends the program, with a log line, when the request was moved away.
    const Message& operator*() const
    {
        if (!question_) {
            OrvuRestInterface::log("Orvu::Request: this request was moved away");
            std::abort();
        }
        return static_cast<const Message&>(*question_->getData());
    }
    const Message* operator->() const { return &**this; }

    /// Answers with a message, a unique_ptr to one, or an Answer; the first time counts. The answer's "HEADER" is
    /// switched on. False when the peer did not take it (it is gone, or stopped reading for 5 s), when the request was
    /// answered before or moved away, and for a message that cannot be sent by itself: the peer gets a
    /// PlatformUnavailable then. Blocks until the system has the answer.
    template <class Given>
    bool answer(Given&& given)
    {
        return question_.answer(std::forward<Given>(given));
    }

    /// Whether nobody waits for the answer any more; see OrvuRestRequest::isPeerGone(). True once it was moved away.
    bool isPeerGone() const { return !question_ || question_->isPeerGone(); }

private:
    Detail::Question question_;
};

}  // namespace Orvu
