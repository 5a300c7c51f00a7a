#include <cerrno>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <thread>

#include "orvu/ExchangeReport.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "wire/ClientFixture.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

void answerSuccess(RawPeer& connection)
{
    EXPECT_EQ(connection.readFrame(), kSuccess);
    connection.send(frameOf(kSuccess));
}

struct ARequestWithAPeerOfItsOwn : ARequestClient {
    std::unique_ptr<Serializable> sendTo(const char* host, int port)
    {
        return std::unique_ptr<Serializable>(client().sendRequest(host, port, &request, report));
    }

    SuccessResponse request;
    ExchangeReport report;
};

TEST_F(ARequestWithAPeerOfItsOwn, NeedsNoConfiguredOne)
{
    OrvuRestInterface::destroyInstance();
    const auto answer = whilePeerActs(answerSuccess, [&] { return sendTo("127.0.0.1", peer.port()).release(); });
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
    EXPECT_EQ(report.phase, ExchangePhaseAnswered);
}

TEST_F(ARequestWithAPeerOfItsOwn, LeavesTheConfiguredOneAlone)
{
    const PortLease nobody;
    EXPECT_EQ(sendTo("127.0.0.1", nobody.port())->getDataType(), DataTypeCannotConnectToServer);
    EXPECT_EQ(report.phase, ExchangePhaseNotConnected);
    EXPECT_EQ(report.errorNumber, ECONNREFUSED);
    EXPECT_EQ(send(&request, answerSuccess)->getDataType(), DataTypeSuccess);
}

TEST_F(ARequestWithAPeerOfItsOwn, DoesNotFallBackOnTheConfiguredOne)
{
    struct {
        const char* host;
        int port;
    } const none[] = {{nullptr, peer.port()}, {"", peer.port()}, {"127.0.0.1", 0}};
    for (const auto& [host, port] : none) {
        EXPECT_EQ(sendTo(host, port)->getDataType(), DataTypeCannotConnectToServer);
        EXPECT_EQ(report.phase, ExchangePhaseNoPeer);
    }
}

struct AReachablePeer : ARequestClient {};

TEST_F(AReachablePeer, IsOneWhereSomebodyListens)
{
    const PortLease nobody;
    EXPECT_TRUE(client().isReachable("127.0.0.1", peer.port()));
    EXPECT_TRUE(client().isReachable("localhost", peer.port()));
    EXPECT_FALSE(client().isReachable("127.0.0.1", nobody.port()));
    EXPECT_FALSE(client().isReachable("127.0.0.1", 65536));
    EXPECT_FALSE(client().isReachable("::1", peer.port()));
    EXPECT_FALSE(client().isReachable(nullptr, peer.port()));
}

TEST_F(AReachablePeer, IsNotRemembered)
{
    const RawListener other;
    EXPECT_TRUE(client().isReachable("127.0.0.1", other.port()));
    SuccessResponse request;
    EXPECT_EQ(send(&request, answerSuccess)->getDataType(), DataTypeSuccess);
}

/// An exchange that waits for its answer, on a thread of its own.
class WaitingExchange {
public:
    WaitingExchange(RawListener& peer, const void* group) : peer_(-1)
    {
        report_.group = group;
        thread_ = std::thread([this, port = peer.port()] {
            answer_.reset(OrvuRestInterface::getInstance()->sendRequest("127.0.0.1", port, &screen_, report_));
        });
        peer_ = peer.accept();
        peer_.readFrame();
    }
    ~WaitingExchange()
    {
        if (thread_.joinable()) thread_.join();
    }

    void answer() { peer_.send(frameOf(kSuccess)); }
    /// Once it has ended.
    const ExchangeReport& report()
    {
        thread_.join();
        return report_;
    }

private:
    ConfirmationScreen screen_{"phone"};  // has no time-out
    ExchangeReport report_;
    std::unique_ptr<Serializable> answer_;
    RawPeer peer_;
    std::thread thread_;
};

const int kGroups[2] = {};

struct AGroupOfExchanges : ARequestClient {};

TEST_F(AGroupOfExchanges, IsEndedWithoutTheOthers)
{
    WaitingExchange first(peer, &kGroups[0]);
    WaitingExchange second(peer, &kGroups[0]);
    WaitingExchange other(peer, &kGroups[1]);
    WaitingExchange inNone(peer, nullptr);
    client().cancelRequests(&kGroups[0]);
    for (WaitingExchange* ended : {&first, &second}) {
        const ExchangeReport& report = ended->report();
        EXPECT_EQ(report.phase, ExchangePhaseNoAnswer);
        EXPECT_TRUE(report.cancelled);
        EXPECT_EQ(report.errorNumber, ECANCELED);
        EXPECT_EQ(report.group, &kGroups[0]);
    }
    other.answer();
    inNone.answer();
    EXPECT_EQ(other.report().phase, ExchangePhaseAnswered);
    EXPECT_EQ(inNone.report().phase, ExchangePhaseAnswered);
}

TEST_F(AGroupOfExchanges, IsNotNamedByNull)
{
    WaitingExchange inNone(peer, nullptr);
    client().cancelRequests(nullptr);
    inNone.answer();
    EXPECT_EQ(inNone.report().phase, ExchangePhaseAnswered);
}

TEST_F(AGroupOfExchanges, IsEndedWithAllOthers)
{
    WaitingExchange ended(peer, &kGroups[0]);
    client().cancelRequests();
    EXPECT_TRUE(ended.report().cancelled);
}

TEST_F(AGroupOfExchanges, DoesNotHoldThoseThatBeginLater)
{
    client().cancelRequests(&kGroups[0]);
    WaitingExchange later(peer, &kGroups[0]);
    later.answer();
    EXPECT_EQ(later.report().phase, ExchangePhaseAnswered);
}

TEST_F(AGroupOfExchanges, IsEndedWhileItConnects)
{
    const RawListener full(0);
    ASSERT_TRUE(client().isReachable("127.0.0.1", full.port()));  // takes the place of one not yet accepted
    SuccessResponse request;
    ExchangeReport report;
    report.group = &kGroups[0];
    std::unique_ptr<Serializable> answer;
    bool isReachable = true;
    std::thread asking([&] { answer.reset(client().sendRequest("127.0.0.1", full.port(), &request, report)); });
    std::thread testing([&] { isReachable = client().isReachable("127.0.0.1", full.port(), &kGroups[0]); });
    while (connectionsBeingOpened(full.port()) < 2)
        std::this_thread::yield();
    client().cancelRequests(&kGroups[0]);
    asking.join();
    testing.join();
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    EXPECT_EQ(report.phase, ExchangePhaseNotConnected);
    EXPECT_TRUE(report.cancelled);
    EXPECT_FALSE(isReachable);
}

}  // namespace
