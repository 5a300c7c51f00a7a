#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "orvu/typed/Handler.h"

namespace Orvu {
namespace Detail {

/// What a Receiver shares with the handlers that run.
struct Receiving {
    Handlers<Handler> handlers{"Orvu::Receiver"};  // closed once it has listened

    std::atomic<unsigned> waiting{0};     // threads that wait in stop()
    std::atomic<std::size_t> running{0};  // handlers; more of them only under Listening::mutex
    // Those below are guarded by Listening::mutex.
    bool isStopping = false;
    std::size_t stopping = 0;  // handlers that wait in stop() for the others
    std::condition_variable changed;
};

/// The one of this process that listens.
struct Listening {
    std::mutex mutex;
    std::shared_ptr<Receiving> receiving;

    /// Never destroyed: threads of the library may outlive static objects.
    static Listening& instance()
    {
        static Listening& listening = *std::make_unique<Listening>().release();
        return listening;
    }
};

/// One handler that runs, for as long as it lives. Empty when nobody receives any more.
class Running {
public:
    Running()
    {
        const std::lock_guard<std::mutex> lock(Listening::instance().mutex);
        const std::shared_ptr<Receiving>& receiving = Listening::instance().receiving;
        if (!receiving || receiving->isStopping) return;
        ++receiving->running;
        receiving_ = receiving;
        innermost() = this;
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running()
    {
        if (!receiving_) return;
        innermost() = outer_;
        --receiving_->running;
        if (receiving_->waiting == 0) return;  // whoever waits from now on looks at `running` afterwards
        const std::lock_guard<std::mutex> lock(Listening::instance().mutex);
        receiving_->changed.notify_all();
    }

    explicit operator bool() const { return receiving_ != nullptr; }
    Receiving* operator->() const { return receiving_.get(); }

    /// How many handlers of `receiving` run on this thread: one calls another through notifyCallback().
    static std::size_t onThisThread(const Receiving& receiving)
    {
        std::size_t count = 0;
        for (const Running* each = innermost(); each; each = each->outer_)
            if (each->receiving_.get() == &receiving) ++count;
        return count;
    }

private:
    static const Running*& innermost()
    {
        static thread_local const Running* innermost = nullptr;
        return innermost;
    }

    std::shared_ptr<Receiving> receiving_;
    const Running* const outer_ = innermost();
};

/// What the library calls for each request. An exception of a handler passes: the library logs it, and the question is
/// answered while it is destroyed.
inline void* onRequest(OrvuRestRequest* request)
{
    const Running running;
    Question question(request);
    if (!running) return nullptr;
    const Serializable* const message = question->getData();
    const DataType type = message ? message->getDataType() : DataTypeUnknown;
    if (Handler* const handler = running->handlers.at(type)) {
        handler->serve(std::move(question));
    } else if (type == DataTypeUnknown) {
        question.answer(UnknowRequest());
    } else {
        question.answer(ResourceNotFound());
    }
    return nullptr;
}

}  // namespace Detail

/// Answers requests by handlers, one for each type of message. In a process, one receiver listens at a time.
///
///     Orvu::Receiver receiver;
///     receiver.on([](const Orvu::ServiceList&) { return channels(); });
///     if (!receiver.listen(7575)) return 1;
///
/// Handlers run on threads of the library, several at once, the same one too. What has no handler is answered with
/// ResourceNotFound, what could not be understood with UnknowRequest. When a handler throws, the exception is logged
/// and the request answered with PlatformUnavailable.
///
/// Any thread may call stop(), port() and reason(); register handlers and call listen() on one.
class Receiver {
public:
    Receiver() : receiving_(std::make_shared<Detail::Receiving>()) {}
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    /// stop(), and then destroys the handlers.
    ~Receiver()
    {
        if (stopAndWait()) receiving_->handlers.clear();
    }

    /// Registers a handler for the type that its parameter names: `const Message&`, and it returns the answer; or
    /// `Request<Message>`, and it answers now or later. The answer of the first kind is a message, a unique_ptr to one,
    /// or an Answer. The handler may hold what can only be moved.
    ///
    /// False, with a log line, once it has listened, and for a type that has a handler. One for a type that is never
    /// received makes listen() fail.
    template <class Callable>
    bool on(Callable callable)
    {
        using Traits = Detail::HandlerTraits<Callable>;
        if constexpr (Traits::isGood)
            return add(Detail::typeOfClass<typename Traits::Message>(), std::move(callable));
        else
            return false;
    }
    /// The same for a type whose class has several, such as `on<Orvu::DataTypeBinaryNIT>(handler)`.
    template <DataType type, class Callable>
    bool on(Callable callable)
    {
        using Traits = Detail::HandlerTraits<Callable>;
        if constexpr (Traits::isGood) {
            static_assert(Detail::isOfClass<typename Traits::Message, type>(),
                          "Orvu: a message of this type is not of the class that the handler takes");
            return add(type, std::move(callable));
        } else {
            return false;
        }
    }

    /// Listens for requests on TCP `port` (with 0 the system chooses one), on the address that
    /// OrvuRestInterface::setListenAddress() names. Once true, peers can connect. False with a reason(): when the port
    /// is not available, when another receiver of this process listens, or the facade does, and when there is a handler
    /// for a type that is never received. Replaces the facade's callback. Can listen again after stop().
    bool listen(int port)
    {
        if (!receiving_->handlers.fault().empty()) return fail(receiving_->handlers.fault());
        if (!become()) return false;
        OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
        facade.registerRequestCallback(Detail::onRequest);
        const bool listens = facade.startListenRequests(port);
        std::unique_lock<std::mutex> lock(listening().mutex);
        if (listens && listening().receiving == receiving_ && !receiving_->isStopping) {
            reason_.clear();
            port_ = facade.requestPort();
            return true;
        }
        if (!listens) {
            listening().receiving.reset();
            return failLocked("TCP port " + std::to_string(port) + " is not available");
        }
        lock.unlock();
        facade.stopListenRequests();
        return fail("another thread stopped it");
    }

    /// Stops listening and waits for the handlers that run: when it has returned none runs, and none begins any more. A
    /// handler may call it, or destroy the receiver: it waits for the others. Requests that come too late for a
    /// handler, and those that are dropped unanswered, are answered with PlatformUnavailable.
    void stop() { stopAndWait(); }

    /// The TCP port that it listens on, also when the system chose it; 0 when it does not listen.
    int port() const
    {
        const std::lock_guard<std::mutex> lock(listening().mutex);
        return port_;
    }

    /// Why the last listen() failed; empty when it did not.
    std::string reason() const
    {
        const std::lock_guard<std::mutex> lock(listening().mutex);
        return reason_;
    }

private:
    static Detail::Listening& listening() { return Detail::Listening::instance(); }

    bool fail(std::string reason)
    {
        const std::lock_guard<std::mutex> lock(listening().mutex);
        return failLocked(std::move(reason));
    }
    bool failLocked(std::string reason)
    {
        reason_ = std::move(reason);
        OrvuRestInterface::log("Orvu::Receiver: cannot listen: %s", reason_.c_str());
        return false;
    }

    template <class Callable>
    bool add(DataType type, Callable callable)
    {
        return receiving_->handlers.add(type, Detail::isReceived(type),
                                        std::make_unique<Detail::HandlerOf<Callable>>(std::move(callable)));
    }

    /// Becomes the one that listens.
    bool become()
    {
        const std::lock_guard<std::mutex> lock(listening().mutex);
        if (listening().receiving == receiving_) return failLocked("this receiver listens already");
        if (listening().receiving) return failLocked("another receiver of this process listens");
        if (OrvuRestInterface::getInstance()->requestPort() != 0)
            return failLocked("this process listens for requests already, without a receiver");
        receiving_->handlers.close();
        receiving_->isStopping = false;
        listening().receiving = receiving_;
        return true;
    }

    /// False when a handler of this receiver called it, which still runs.
    bool stopAndWait()
    {
        const std::shared_ptr<Detail::Receiving> receiving = receiving_;
        std::unique_lock<std::mutex> lock(listening().mutex);
        if (listening().receiving == receiving && !receiving->isStopping) {
            receiving->isStopping = true;
            lock.unlock();
            OrvuRestInterface::getInstance()->stopListenRequests();
            lock.lock();
            listening().receiving.reset();
            port_ = 0;
        }
        const std::size_t own = Detail::Running::onThisThread(*receiving);
        receiving->stopping += own;
        ++receiving->waiting;
        receiving->changed.notify_all();
        receiving->changed.wait(lock, [&] { return receiving->running <= (own > 0 ? receiving->stopping : 0U); });
        --receiving->waiting;
        receiving->stopping -= own;
        return own == 0;
    }

    const std::shared_ptr<Detail::Receiving> receiving_;
    std::string reason_;
    int port_ = 0;
};

}  // namespace Orvu
