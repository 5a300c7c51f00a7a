#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <gmock/gmock.h>
#include <memory>
#include <netdb.h>
#include <optional>
#include <string>
#include <thread>

#include "orvu/ExchangeReport.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "support/SystemCalls.h"
#include "wire/ClientFixture.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;
using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace {

struct AReportedFault : ARequestClient {
    /// The report of an exchange with a peer that sends as much of its answer, and waits.
    ExchangeReport reportOf(std::size_t bytes)
    {
        ExchangeReport report;
        SuccessResponse request;
        send(&request, report, [&](RawPeer& connection) {
            connection.readFrame();
            connection.send(frameOf(kSuccess).substr(0, bytes));
            connection.readToEnd();
        });
        return report;
    }

    /// The report of an exchange that never reaches a peer.
    ExchangeReport reportWithoutAPeer()
    {
        ExchangeReport report;
        SuccessResponse request;
        const std::unique_ptr<Serializable> answer(client().sendRequest(&request, report));
        EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
        return report;
    }
};

TEST_F(AReportedFault, OfAPeerThatIsSilentIsATimeOut)
{
    const Instead waiting(calls.poll, [](pollfd*, nfds_t, int) -> std::optional<int> { return 0; });
    const ExchangeReport report = reportOf(0);
    EXPECT_EQ(report.phase, ExchangePhaseNoAnswer);
    EXPECT_EQ(report.errorNumber, ETIMEDOUT);
    EXPECT_FALSE(report.cancelled);
}

TEST_F(AReportedFault, OfAWaitThatWasInterruptedBeforeIsATimeOut)
{
    int times = 0;
    const Instead waiting(calls.poll, [&](pollfd*, nfds_t, int) -> std::optional<int> {
        errno = EINTR;
        return ++times == 1 ? -1 : 0;
    });
    EXPECT_EQ(reportOf(0).errorNumber, ETIMEDOUT);
    EXPECT_EQ(times, 2);
}

TEST_F(AReportedFault, OfAPeerThatFallsSilentInItsAnswerIsATimeOut)
{
    for (const std::size_t bytes : {3, 4, 20}) {
        int times = 0;
        const Instead waiting(calls.poll, [&](pollfd*, nfds_t, int) -> std::optional<int> {
            return ++times == 1 ? std::nullopt : std::optional<int>(0);
        });
        const ExchangeReport report = reportOf(bytes);
        EXPECT_EQ(report.phase, ExchangePhaseAnswerCut) << bytes;
        EXPECT_EQ(report.errorNumber, ETIMEDOUT);
        EXPECT_EQ(report.receivedBytes, bytes);
    }
}

TEST_F(AReportedFault, OfAWaitThatFailsHasTheSystemsError)
{
    const FailingCall waiting(calls.poll, 1, ENOMEM);
    const ExchangeReport report = reportOf(0);
    EXPECT_EQ(report.phase, ExchangePhaseNoAnswer);
    EXPECT_EQ(report.errorNumber, ENOMEM);
}

TEST_F(AReportedFault, OfAReadHasTheSystemsError)
{
    const FailingCall reading(calls.recv, 1, EHOSTUNREACH);
    const ExchangeReport report = reportOf(frameOf(kSuccess).size());
    EXPECT_EQ(report.phase, ExchangePhaseNoAnswer);
    EXPECT_EQ(report.errorNumber, EHOSTUNREACH);
}

TEST_F(AReportedFault, OfAConnectionHasTheSystemsError)
{
    for (const int error : {EHOSTUNREACH, ENETUNREACH, ETIMEDOUT}) {
        const FailingCall connecting(calls.connect, 1, error);
        const ExchangeReport report = reportWithoutAPeer();
        EXPECT_EQ(report.phase, ExchangePhaseNotConnected);
        EXPECT_EQ(report.errorNumber, error);
    }
}

TEST_F(AReportedFault, OfAConnectionThatIsNotOpenInTimeIsATimeOut)
{
    const FailingCall connecting(calls.connect, 1, EINPROGRESS);
    EXPECT_EQ(reportWithoutAPeer().errorNumber, ETIMEDOUT);
}

TEST_F(AReportedFault, OfAnInterruptedConnectionThatIsNotOpenInTimeIsATimeOut)
{
    const FailingCall connecting(calls.connect, 1, EINTR);
    const Instead waiting(calls.poll, [](pollfd*, nfds_t, int) -> std::optional<int> { return 0; });
    EXPECT_EQ(reportWithoutAPeer().errorNumber, ETIMEDOUT);
}

TEST_F(AReportedFault, OfASocketOptionHasTheSystemsError)
{
    for (const int nth : {1, 2}) {
        const FailingCall setting(calls.setsockopt, nth, ENOBUFS);
        const ExchangeReport report = reportWithoutAPeer();
        EXPECT_EQ(report.phase, ExchangePhaseNotConnected);
        EXPECT_EQ(report.errorNumber, ENOBUFS);
    }
}

TEST_F(AReportedFault, OfARequestThatIsTakenInPartSaysThatItMayHaveArrived)
{
    const FailingCall sending(calls.send, 1, kShort);
    int times = 0;
    const Instead refusing(calls.send, [&](int, const msghdr*, int) -> std::optional<ssize_t> {
        if (++times == 1) return std::nullopt;
        errno = ENETDOWN;
        return -1;
    });
    ExchangeReport report;
    SuccessResponse request;
    send(&request, report, [](RawPeer& connection) { EXPECT_EQ(connection.readToEnd().size(), 1U); });
    EXPECT_EQ(report.phase, ExchangePhaseNotSent);
    EXPECT_EQ(report.errorNumber, ENETDOWN);
    EXPECT_EQ(report.sentBytes, 1U);
    EXPECT_TRUE(report.mayHaveArrived);
}

/// Why the system finds no address for a name, and what the report makes of it.
class ALookup : public AReportedFault, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(ALookup, SaysWhyItFoundNothing)
{
    const auto [reason, error] = GetParam();
    const Instead looking(
        calls.gethostbyname_r,
        [reason = reason](const char*, hostent*, char*, std::size_t, hostent** found, int* why) -> std::optional<int> {
            *found = nullptr;
            *why = reason;
            errno = EMFILE;
            return 0;
        });
    client().configureClient("tv.example", peer.port());
    const ExchangeReport report = reportWithoutAPeer();
    EXPECT_EQ(report.phase, ExchangePhaseNotResolved);
    EXPECT_EQ(report.errorNumber, error);
    EXPECT_FALSE(report.mayHaveArrived);
}

INSTANTIATE_TEST_SUITE_P(For, ALookup,
                         testing::Values(std::pair(HOST_NOT_FOUND, 0), std::pair(NO_RECOVERY, 0),
                                         std::pair(NO_DATA, EAFNOSUPPORT), std::pair(TRY_AGAIN, EAGAIN),
                                         std::pair(NETDB_INTERNAL, EMFILE)));

constexpr milliseconds kWhile(3);
constexpr std::int64_t kWhileMicroseconds = microseconds(kWhile).count();

/// Each call of a kind takes a while longer.
template <class Signature>
Instead slow(SystemCall<Signature>& call)
{
    return Instead(call, [](auto...) {
        std::this_thread::sleep_for(kWhile);
        return std::nullopt;
    });
}

TEST_F(AReportedFault, HasTheTimeOfEachStep)
{
    const Instead looking(
        calls.gethostbyname_r,
        [](const char*, hostent* host, char* buffer, std::size_t, hostent** found, int*) -> std::optional<int> {
            std::this_thread::sleep_for(kWhile);
            auto* const list = reinterpret_cast<char**>(buffer);
            list[0] = reinterpret_cast<char*>(list + 2);
            list[1] = nullptr;
            inet_pton(AF_INET, "127.0.0.1", list[0]);
            *host = {};
            host->h_addrtype = AF_INET;
            host->h_addr_list = list;
            *found = host;
            return 0;
        });
    ASSERT_TRUE(client().configureClient("tv.example", peer.port()));
    peer.accept();
    const Instead connecting = slow(calls.connect);
    const Instead sending = slow(calls.send);
    const Instead waiting = slow(calls.poll);
    int reads = 0;
    const Instead receiving(calls.recv, [&](int fd, void* to, std::size_t, int flags) -> std::optional<ssize_t> {
        if (++reads == 1) return calls.recv.real(fd, to, 4, flags);  // the length; the text takes another read
        std::this_thread::sleep_for(kWhile);
        return std::nullopt;
    });
    const auto begin = std::chrono::steady_clock::now();
    ExchangeReport report;
    SuccessResponse request;
    send(&request, report, [](RawPeer& connection) {
        connection.readFrame();
        connection.send(frameOf(kSuccess));
    });
    const auto all = std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - begin);
    EXPECT_EQ(report.phase, ExchangePhaseAnswered);
    EXPECT_GE(report.resolvingMicroseconds, kWhileMicroseconds);
    EXPECT_GE(report.connectingMicroseconds, kWhileMicroseconds);
    EXPECT_GE(report.sendingMicroseconds, kWhileMicroseconds);
    EXPECT_GE(report.waitingMicroseconds, kWhileMicroseconds);
    EXPECT_GE(report.receivingMicroseconds, kWhileMicroseconds);
    EXPECT_LE(report.resolvingMicroseconds + report.connectingMicroseconds + report.sendingMicroseconds +
                  report.waitingMicroseconds + report.receivingMicroseconds,
              all.count());
}

}  // namespace
