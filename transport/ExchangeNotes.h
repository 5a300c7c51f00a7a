#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <sys/types.h>

#include "orvu/ExchangeReport.h"
#include "transport/Frame.h"
#include "transport/Socket.h"

namespace Orvu {

/// What happens in one exchange, on its way into the report of its caller. Without a report it reads no clock.
class ExchangeNotes {
public:
    ExchangeNotes() = default;
    /// For `wanted`, which is to outlive it. One that is smaller than its first version is left alone, with a log line.
    explicit ExchangeNotes(ExchangeReport& wanted);
    ExchangeNotes(const ExchangeNotes&) = delete;
    ExchangeNotes& operator=(const ExchangeNotes&) = delete;
    /// Fills the caller's report.
    ~ExchangeNotes();

    /// The group that the caller's report carries; null without one.
    const void* group() const { return report_.group; }

    /// An exchange that ends from now on ends in `phase`; the time until the next call is that phase's.
    void enter(ExchangePhase phase);
    void fail(int error) { report_.errorNumber = error; }
    /// Somebody ended the exchange.
    void cancel();
    void sent(std::size_t bytes) { report_.sentBytes = bytes; }
    void announced(std::uint32_t bytes) { report_.announcedBytes = bytes; }
    /// The result of one read, and errno when it is below 0.
    void received(ssize_t result, int error);
    /// What is there of the answer's text.
    void keep(std::string_view text);

private:
    void chargeTime();

    ExchangeReport* wanted_ = nullptr;
    ExchangeReport report_;
    std::chrono::steady_clock::time_point entered_;  // when the phase began; kept for a caller's report alone
};

/// The bytes of an answer, noted as they come.
class NotedSource : public ByteSource {
public:
    NotedSource(int fd, Seconds patience, ExchangeNotes& notes) : socket_(fd, patience), notes_(notes) {}

    ssize_t read(char* to, std::size_t size) override;

private:
    SocketSource socket_;
    ExchangeNotes& notes_;
};

}  // namespace Orvu
