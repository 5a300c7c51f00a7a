#pragma once

#include <cstdint>
#include <string>

namespace Orvu {

/// The step at which an exchange ended: the one that failed, or the last.
enum ExchangePhase : int {
    ExchangePhaseNothingToSend = 0,  ///< The request is null, wrote no text, or is of a type that cannot be made.
    ExchangePhaseNoPeer = 1,         ///< No host and port were configured.
    ExchangePhaseNotResolved = 2,    ///< The host's name has no IPv4 address, or could not be looked up.
    ExchangePhaseNotConnected = 3,   ///< No connection to the peer: refused, unreachable, not in time.
    ExchangePhaseNotSent = 4,        ///< The request did not go out whole.
    ExchangePhaseNoAnswer = 5,       ///< The request went out whole; not one byte came back.
    ExchangePhaseAnswerCut = 6,      ///< The answer began, but did not come whole.
    ExchangePhaseAnswerTooLong = 7,  ///< The answer was announced as longer than the library takes, and was not read.
    ExchangePhaseAnswerNotUnderstood = 8,  ///< The answer came whole, but no message could be read from it.
    ExchangePhaseAnswered = 9  ///< The returned message is what the peer sent; it may be an error such as NoSignal.
};

/// What happened in one exchange. Hand one to OrvuRestInterface::sendRequest(): what it returns stays the same.
///
///     Orvu::ExchangeReport report;
///     std::unique_ptr<Orvu::Serializable> answer(orvu.sendRequest(&request, report));
///     if (report.phase != Orvu::ExchangePhaseAnswered) ...  // the library made `answer`: the peer did not send it
///
/// `size`, `receivedText` and `group` are yours. The library sets every other field before sendRequest() returns; a
/// field that does not apply is 0. You may use one object for any number of exchanges, one after the other.
struct ExchangeReport {
    /// The size of this structure in bytes. Leave it as it is: a later version of the library may have more fields, and
    /// writes only those that your program knows.
    std::uint32_t size = sizeof(ExchangeReport);

    ExchangePhase phase = ExchangePhaseNothingToSend;  ///< Where the exchange ended.

    /// Null, or a text of yours. It receives the text of the answer as it came, also when that is cut, too long (then
    /// what came together with its length) or not understood. Empty when none came.
    std::string* receivedText = nullptr;

    /// Whether cancelRequests(), with this group or without any, or destroyInstance() ended the exchange.
    bool cancelled = false;

    /// Whether the peer may have the request, or part of it: true from the first byte that the system took. When false,
    /// the request can be sent again without being carried out twice.
    bool mayHaveArrived = false;

    /// The system's error number (errno). 0 without an error, as when the peer closed the connection in good order.
    /// ETIMEDOUT: the peer did nothing for as long as the library waits. ECANCELED: `cancelled` is true. EAFNOSUPPORT:
    /// the host has no IPv4 address. EAGAIN: no name server answered. ENOMEM: out of memory, also when that only kept
    /// `receivedText` from being filled.
    std::int32_t errorNumber = 0;

    /// The length of the answer's text in bytes, as the peer announced it; 0 when it announced none.
    std::uint32_t announcedBytes = 0;

    /// Bytes of the request that the system took, the 4 of its length included.
    std::uint64_t sentBytes = 0;
    /// Bytes of the answer that were read, the 4 of its length included.
    std::uint64_t receivedBytes = 0;

    // Times in microseconds, up to the failure for the step that failed. Writing the request as a text and reading the
    // answer from its text count in none of them.
    std::int64_t resolvingMicroseconds = 0;   ///< Looking the host's name up.
    std::int64_t connectingMicroseconds = 0;  ///< Opening the connection, without resolving.
    std::int64_t sendingMicroseconds = 0;     ///< Until the system had taken the whole request.
    std::int64_t waitingMicroseconds = 0;     ///< From then until the first byte of the answer was read.
    std::int64_t receivingMicroseconds = 0;   ///< From then until its last byte was read.

    /// Null, or any pointer that you choose: OrvuRestInterface::cancelRequests(group) ends the exchanges whose report
    /// carries it. The library only compares it.
    const void* group = nullptr;
};

}  // namespace Orvu
