#pragma once

#include <atomic>
#include <cerrno>
#include <functional>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <stdexcept>
#include <type_traits>
#include <utility>

/// \file
/// What can be done with one of the calls that SystemCalls.h lists.

namespace OrvuTests {

/// Instead of an error number: recv, send and write take or give one byte.
constexpr int kShort = -1;

/// Something that is asked for again and again, and can fail in its turn.
class CountedCall {
public:
    int count() const { return count_; }
    /// Whether it is the turn of the call that begins now, and with which error; 0 when it is not.
    int turn() { return count_.fetch_add(1, std::memory_order_relaxed) + 1 == nth_ ? error_.load() : 0; }

private:
    friend class FailingCall;
    std::atomic<int> count_{0};
    std::atomic<int> nth_{0};  // 0: none fails
    std::atomic<int> error_{0};
};

/// Makes one call fail while it lives. One at a time for each kind of call.
class FailingCall {
public:
    /// The `nth` from now on, counted from 1.
    FailingCall(CountedCall& call, int nth, int error) : call_(call), nth_(nth)
    {
        call.error_ = error;
        call.count_ = 0;
        call.nth_ = nth;
    }
    ~FailingCall() { call_.nth_ = 0; }
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;

    /// Whether it has.
    bool hasFailed() const { return call_.count_ >= nth_; }

private:
    CountedCall& call_;
    const int nth_;
};

/// One function of the system, such as SystemCall<int(int fd, int backlog)>.
template <class Signature>
class SystemCall;

template <class Result, class... Arguments>
class SystemCall<Result(Arguments...)> : public CountedCall {
public:
    explicit SystemCall(Result (*real)(Arguments...), Result (*failing)(int, Arguments...) = failWithErrno)
        : real_(real), failing_(failing)
    {}

    /// What the library calls.
    Result operator()(Arguments... arguments)
    {
        const int error = turn();
        return error == 0 ? unfailing(arguments...) : failing_(error, arguments...);
    }
    /// The same when no fault is in its way.
    Result unfailing(Arguments... arguments)
    {
        if (isReplaced_)
            if (const Answer answer = replaced(arguments...)) return static_cast<Result>(*answer);
        return real_(arguments...);
    }
    /// The system's.
    Result real(Arguments... arguments) const { return real_(arguments...); }

private:
    friend class Instead;

    using Answer = std::optional<std::conditional_t<std::is_void_v<Result>, bool, Result>>;
    using Replacement = std::function<Answer(Arguments...)>;

    static Result failWithErrno(int error, Arguments...)
    {
        errno = error;
        if constexpr (std::is_pointer_v<Result>) return nullptr;
        if constexpr (std::is_integral_v<Result>) return -1;
    }
    Answer replaced(Arguments... arguments)
    {
        const std::shared_lock<std::shared_mutex> lock(mutex_);
        return isReplaced_ ? replacement_(arguments...) : std::nullopt;
    }
    void replace(Replacement replacement)
    {
        if (isReplaced_) throw std::logic_error("this call is replaced already");
        const std::lock_guard<std::shared_mutex> lock(mutex_);
        replacement_ = std::move(replacement);
        isReplaced_ = true;
    }
    void restore()
    {
        isReplaced_ = false;
        const std::lock_guard<std::shared_mutex> lock(mutex_);
        replacement_ = nullptr;
    }

    Result (*const real_)(Arguments...);
    Result (*const failing_)(int, Arguments...);
    // Without a replacement there is no lock, which would hide races of the library.
    std::atomic<bool> isReplaced_{false};
    std::shared_mutex mutex_;
    Replacement replacement_;
};

/// Has each call of a kind ask `replacement` first while it lives, on the calling thread: what that returns is the
/// call's result; after std::nullopt the system's function is called. From a replacement of a function without a
/// result, true says that all is done. One at a time for each kind of call. The end waits for the threads that are in
/// `replacement`: where one may wait there, as in calls.accept4.real(), its thread has to end before.
class Instead {
public:
    template <class Signature, class Replacement>
    Instead(SystemCall<Signature>& call, Replacement replacement) : restore_([&call] { call.restore(); })
    {
        call.replace(std::move(replacement));
    }
    ~Instead() { restore_(); }
    Instead(const Instead&) = delete;
    Instead& operator=(const Instead&) = delete;

private:
    const std::function<void()> restore_;
};

}  // namespace OrvuTests
