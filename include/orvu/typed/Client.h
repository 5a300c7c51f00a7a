#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>

#include "orvu/ExchangeReport.h"
#include "orvu/typed/Messages.h"

namespace Orvu {

/// Why there is no message of the wanted type: the type of what came instead, and its name as the text. That is the
/// peer's error, such as "noSignal", or the library's, such as "cannotConnectToServer". When nothing was sent, the type
/// is DataTypeUnknown and the text a sentence. Copies are cheap.
class Reason {
public:
    Reason(DataType type, const char* text) : type_(type), text_(text) {}

    DataType type() const { return type_; }
    /// Never null; the text is static.
    const char* text() const { return text_; }
    /// Whether it is this error, as in `reason.is<Orvu::NoSignalError>()`.
    template <class Message>
    bool is() const
    {
        constexpr DataType type = Detail::typeOfReceived(Detail::typeOfClass<Message>());
        return type_ == type;
    }

    friend bool operator==(const Reason& reason, DataType type) { return reason.type_ == type; }
    friend bool operator==(DataType type, const Reason& reason) { return reason == type; }
    friend bool operator!=(const Reason& reason, DataType type) { return !(reason == type); }
    friend bool operator!=(DataType type, const Reason& reason) { return !(reason == type); }
    friend std::ostream& operator<<(std::ostream& out, const Reason& reason) { return out << reason.text_; }

private:
    DataType type_;
    const char* text_;
};

/// The result of a request: the message that the peer sent, or the reason why there is none.
///
///     if (auto services = tv.ask<Orvu::ServiceList>()) show(services->services);
///     else std::cerr << services.reason() << "\n";
template <class Message>
class Reply {
public:
    /// For Client.
    Reply(std::unique_ptr<Message> message, Reason reason, const ExchangeReport& report)
        : message_(std::move(message)), reason_(reason), report_(report)
    {}

    /// Whether the peer sent a message of the wanted type.
    bool ok() const { return message_ != nullptr; }
    explicit operator bool() const { return ok(); }

    /// The message. Ends the program, with a log line, when there is none: ask ok() before.
    Message& operator*() const
    {
        if (!message_) {
            OrvuRestInterface::log("Orvu::Reply: there is no message: %s", reason_.text());
            std::abort();
        }
        return *message_;
    }
    Message* operator->() const { return &**this; }
    /// Gives the message away; null when there is none. The reply is not ok() afterwards.
    std::unique_ptr<Message> take() { return std::move(message_); }

    /// Why there is no message. Of a reply that is ok, the type of its message.
    Reason reason() const { return reason_; }
    /// The step at which the exchange ended: ExchangePhaseAnswered when the peer sent what came, also as an error.
    ExchangePhase phase() const { return report_.phase; }
    /// Whether the peer may have the request: when false, it can be sent again without being carried out twice.
    bool mayHaveArrived() const { return report_.mayHaveArrived; }
    /// Whether Client::cancel() ended the exchange, or the facade.
    bool isCancelled() const { return report_.cancelled; }
    /// Everything that is known of the exchange: the times of its steps, the system's error number. `receivedText` is
    /// null.
    const ExchangeReport& report() const { return report_; }

private:
    std::unique_ptr<Message> message_;
    Reason reason_;
    ExchangeReport report_;
};

/// Sends requests to one peer; the wanted type selects the request and the answer.
///
/// Any thread may call any function; each request has a connection of its own and blocks as long as
/// OrvuRestInterface::sendRequest() does. There may be any number of clients. Destroy one only when none of its calls
/// runs: cancel() ends them.
class Client {
public:
    /// `host` is a name or dotted IPv4 address. Nothing is sent.
    Client(std::string host, int port) : host_(std::move(host)), port_(port) {}
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// Sends an empty request of the type and returns the answer, which has the same type.
    template <class Message>
    Reply<Message> ask()
    {
        constexpr DataType type = Detail::typeOfClass<Message>();
        if constexpr (std::is_default_constructible_v<Message>) {
            Message request;
            return exchange<Message>(type, &request);
        } else {
            const std::unique_ptr<Serializable> request(Serializable::factory(type));
            return exchange<Message>(type, request.get());
        }
    }
    /// The same for a type whose class has several, such as `ask<Orvu::DataTypeBinaryNIT>()`.
    template <DataType type>
    Reply<BinaryData> ask()
    {
        static_assert(Detail::isOfClass<BinaryData, type>(),
                      "Orvu: only a binary table is asked for by its number: name the class of the message instead");
        BinaryData request(type);
        return exchange<BinaryData>(type, &request);
    }

    /// Sends `request`, a message or a unique_ptr to one, and returns the answer, which is to be a `Wanted`. The
    /// request's "HEADER" is switched on.
    template <class Wanted = SuccessResponse, class Request>
    Reply<Wanted> send(Request&& request)
    {
        return Detail::withMessage(std::forward<Request>(request), [this](Serializable* message) {
            return exchange<Wanted>(Detail::typeOfClass<Wanted>(), message);
        });
    }
    /// The same for a type whose class has several.
    template <DataType wanted, class Request>
    Reply<BinaryData> send(Request&& request)
    {
        static_assert(Detail::isOfClass<BinaryData, wanted>(),
                      "Orvu: only a binary table is asked for by its number: name the class of the message instead");
        return Detail::withMessage(std::forward<Request>(request),
                                   [this](Serializable* message) { return exchange<BinaryData>(wanted, message); });
    }

    /// Whether the peer can be reached; takes 5 s at most, and as long as its name takes to resolve.
    bool isReachable() { return facade().isReachable(host_.c_str(), port_, this); }

    /// Tries to reach the peer until it can, with growing pauses from 50 ms to 2 s. False when `timeout` is over, and
    /// when cancel() was called meanwhile. A try that has begun ends by itself, which may take 5 s more.
    bool waitUntilReachable(std::chrono::milliseconds timeout)
    {
        const auto end = std::chrono::steady_clock::now() + std::min<std::chrono::milliseconds>(timeout, kLongest);
        const unsigned begun = cancels();
        for (auto pause = kShortestPause; !isReachable(); pause = std::min(2 * pause, kLongestPause))
            if (!waitUntil(std::min(end, std::chrono::steady_clock::now() + pause), end, begun)) return false;
        return begun == cancels();
    }

    /// Ends the exchanges of this client that are in flight, on whichever thread, and no others; their replies have
    /// isCancelled(). Ends waitUntilReachable(), too. Calls that begin afterwards are not touched.
    void cancel()
    {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            ++cancels_;
            cancelled_.notify_all();
        }
        facade().cancelRequests(this);
    }

private:
    static constexpr std::chrono::milliseconds kShortestPause{50};
    static constexpr std::chrono::milliseconds kLongestPause{2000};
    static constexpr std::chrono::hours kLongest{24 * 365};

    static constexpr const char* kNoHeader = "a message of this type cannot be sent by itself";

    static OrvuRestInterface& facade() { return *OrvuRestInterface::getInstance(); }

    unsigned cancels()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return cancels_;
    }

    /// False at `end`, and when cancel() was called since `begun`.
    bool waitUntil(std::chrono::steady_clock::time_point time, std::chrono::steady_clock::time_point end,
                   unsigned begun)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        const bool isCancelled = cancelled_.wait_until(lock, time, [&] { return cancels_ != begun; });
        return !isCancelled && std::chrono::steady_clock::now() < end;
    }

    template <class Message>
    Reply<Message> exchange(DataType wanted, Serializable* request)
    {
        ExchangeReport report;
        if (!Detail::isReceived(wanted))
            return {nullptr, {DataTypeUnknown, "no message of this type can be received"}, report};
        if (!Detail::isReadyToSend(request, "Orvu::Client"))
            return {nullptr, {DataTypeUnknown, request ? kNoHeader : "there is no request"}, report};
        report.group = this;
        std::unique_ptr<Serializable> answer(facade().sendRequest(host_.c_str(), port_, request, report));
        report.group = nullptr;
        if (!answer) return {nullptr, {DataTypeEmptyData, "out of memory"}, report};
        const DataType type = answer->getDataType();
        const Reason reason(type, Serializable::dataTypeString(type));
        const bool isWanted = report.phase == ExchangePhaseAnswered && type == Detail::typeOfReceived(wanted);
        return {isWanted ? Detail::castTo<Message>(std::move(answer)) : nullptr, reason, report};
    }

    const std::string host_;
    const int port_;
    std::mutex mutex_;  // guards cancels_
    std::condition_variable cancelled_;
    unsigned cancels_ = 0;
};

}  // namespace Orvu
