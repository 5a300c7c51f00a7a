#include "transport/ExchangeNotes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "log/Log.h"

namespace Orvu {
namespace {

/// The size of the first version: no report is smaller.
constexpr std::uint32_t kSmallestReport = offsetof(ExchangeReport, receivingMicroseconds) + sizeof(std::int64_t);

/// Whether a caller's report of `size` bytes has the field `group`, which came later.
constexpr bool hasGroup(std::uint32_t size)
{
    return size >= offsetof(ExchangeReport, group) + sizeof(ExchangeReport::group);
}
static_assert(!hasGroup(kSmallestReport) && hasGroup(sizeof(ExchangeReport)));

/// Where the time of a phase goes; null for those that have none.
std::int64_t ExchangeReport::*timeOf(ExchangePhase phase)
{
    switch (phase) {
        case ExchangePhaseNotResolved:
            return &ExchangeReport::resolvingMicroseconds;
        case ExchangePhaseNotConnected:
            return &ExchangeReport::connectingMicroseconds;
        case ExchangePhaseNotSent:
            return &ExchangeReport::sendingMicroseconds;
        case ExchangePhaseNoAnswer:
            return &ExchangeReport::waitingMicroseconds;
        case ExchangePhaseAnswerCut:
            return &ExchangeReport::receivingMicroseconds;
        default:
            return nullptr;
    }
}

}  // namespace

ExchangeNotes::ExchangeNotes(ExchangeReport& wanted)
{
    if (wanted.size < kSmallestReport) {
        logLine("OrvuRestClientSocket::sendRequest: ERROR a report of %u bytes is too small!", wanted.size);
        return;
    }
    wanted_ = &wanted;
    report_.receivedText = wanted.receivedText;
    if (report_.receivedText) report_.receivedText->clear();
    if (hasGroup(wanted.size)) report_.group = wanted.group;
}

ExchangeNotes::~ExchangeNotes()
{
    if (!wanted_) return;
    chargeTime();
    report_.mayHaveArrived = report_.sentBytes > 0;
    report_.size = wanted_->size;
    std::memcpy(static_cast<void*>(wanted_), &report_, std::min<std::size_t>(report_.size, sizeof report_));
}

void ExchangeNotes::enter(ExchangePhase phase)
{
    if (wanted_) chargeTime();
    report_.phase = phase;
}

void ExchangeNotes::chargeTime()
{
    const auto now = std::chrono::steady_clock::now();
    if (const auto time = timeOf(report_.phase))
        report_.*time += std::chrono::duration_cast<std::chrono::microseconds>(now - entered_).count();
    entered_ = now;
}

void ExchangeNotes::cancel()
{
    report_.cancelled = true;
    fail(ECANCELED);
}

void ExchangeNotes::received(ssize_t result, int error)
{
    if (result < 0) return fail(withTimeOut(error));
    if (result > 0 && report_.receivedBytes == 0) enter(ExchangePhaseAnswerCut);
    report_.receivedBytes += static_cast<std::size_t>(result);
}

void ExchangeNotes::keep(std::string_view text)
{
    if (!report_.receivedText) return;
    try {
        report_.receivedText->assign(text);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestClientSocket::send: ERROR out of memory for the received text!");
        fail(ENOMEM);
    }
}

ssize_t NotedSource::read(char* to, std::size_t size)
{
    const ssize_t got = socket_.read(to, size);
    notes_.received(got, errno);
    return got;
}

}  // namespace Orvu
