#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "orvu/Typed.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "typed/Sides.h"
#include "wire/Latch.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kQuestion = R"({"HEADER":"confirmationScreen","displayName":"phone"})";

/// A peer that has asked and waits.
RawPeer askedBy(int port, const std::string& text)
{
    RawPeer peer = RawPeer::connectedTo(port);
    peer.send(frameOf(text));
    return peer;
}

struct AStoppedReceiver : testing::Test {
    AStoppedReceiver()
    {
        receiver->on([this](const Service&) {
            ++begun;
            entered.open();
            leave.wait();
            ++ended;
            return SuccessResponse();
        });
    }
    ~AStoppedReceiver() override
    {
        leave.open();
        receiver.reset();
        OrvuRestInterface::destroyInstance();
    }

    LogCapture log;
    std::atomic<int> begun{0}, ended{0};
    Latch entered, leave;
    std::unique_ptr<Receiver> receiver = std::make_unique<Receiver>();
};

class AReceiverThatEnds : public AStoppedReceiver, public testing::WithParamInterface<bool> {};

TEST_P(AReceiverThatEnds, HasWaitedForItsHandlers)
{
    ASSERT_TRUE(receiver->listen(0));
    const int port = receiver->port();
    std::thread asking([port] { answerTo(port, headerOnly("currentService")); });
    entered.wait();
    std::thread leaving([this] { leave.open(); });
    if (GetParam())
        receiver.reset();
    else
        receiver->stop();
    EXPECT_EQ(ended, 1);
    leaving.join();
    asking.join();
    EXPECT_EQ(begun, 1);
}

INSTANTIATE_TEST_SUITE_P(By, AReceiverThatEnds, testing::Bool(),
                         [](const auto& end) { return end.param ? "ItsDestructor" : "stop"; });

TEST_F(AStoppedReceiver, BeginsNoHandlerForARequestThatWasAccepted)
{
    ASSERT_TRUE(receiver->listen(0));
    const std::string frame = frameOf(headerOnly("currentService"));
    RawPeer late = RawPeer::connectedTo(receiver->port());
    late.send(frame.substr(0, 6));
    EXPECT_THAT(answerTo(receiver->port(), headerOnly("success")), Optional(headerOnly("resourceNotFound")));
    receiver->stop();  // the first to connect was accepted before the second
    late.send(frame.substr(6));
    EXPECT_THAT(late.readFrame(), Optional(headerOnly("platformUnavailable")));
    EXPECT_EQ(begun, 0);
}

TEST(ReceiversThatComeAndGo, LeaveNoHandlerBehind)
{
    const LogCapture log;
    const PortLease lease;
    std::atomic<bool> isOver{false};
    std::vector<std::thread> peers;
    for (int i = 0; i < 4; ++i)
        peers.emplace_back([&] {
            Client tv("127.0.0.1", lease.port());
            while (!isOver)
                tv.ask<Service>();
        });
    for (int turn = 0; turn < 30; ++turn) {
        std::atomic<int> inside{0}, served{0};
        {
            Receiver receiver;
            receiver.on([&](const Service&) {
                ++inside;
                ++served;
                std::this_thread::yield();
                --inside;
                return SuccessResponse();
            });
            EXPECT_TRUE(eventually([&] { return receiver.listen(lease.port()); })) << receiver.reason();
            EXPECT_TRUE(eventually([&] { return served > 3; }));
        }
        const int before = served;
        EXPECT_EQ(inside, 0);
        std::this_thread::yield();
        EXPECT_EQ(served, before);
    }
    isOver = true;
    for (std::thread& peer : peers)
        peer.join();
    OrvuRestInterface::destroyInstance();
}

struct AHandler : testing::Test {
    ~AHandler() override
    {
        receiver.reset();
        OrvuRestInterface::destroyInstance();
    }

    LogCapture log;
    std::unique_ptr<Receiver> receiver = std::make_unique<Receiver>();
};

TEST_F(AHandler, MayDestroyItsOwnReceiver)
{
    receiver->on([this, kept = std::string("what it holds lives until it returns")](const Service&) {
        receiver.reset();
        return serviceNamed(kept);
    });
    ASSERT_TRUE(receiver->listen(0));
    EXPECT_THAT(answerTo(receiver->port(), headerOnly("currentService")),
                Optional(testing::HasSubstr("what it holds lives until it returns")));
    EXPECT_EQ(receiver, nullptr);
    Receiver next;
    EXPECT_TRUE(next.listen(0)) << next.reason();
}

TEST_F(AHandler, MayStopItsReceiverBesideOthersThatDo)
{
    std::atomic<int> inside{0};
    receiver->on([&](const Service&) {
        ++inside;
        while (inside < 3)
            std::this_thread::yield();
        receiver->stop();
        return SuccessResponse();
    });
    ASSERT_TRUE(receiver->listen(0));
    const int port = receiver->port();
    std::vector<std::thread> asking;
    for (int i = 0; i < 3; ++i)
        asking.emplace_back(
            [port] { EXPECT_THAT(answerTo(port, headerOnly("currentService")), Optional(headerOnly("success"))); });
    for (std::thread& thread : asking)
        thread.join();
    receiver->stop();
    EXPECT_EQ(receiver->port(), 0);
}

TEST_F(AHandler, IsDestroyedWithItsReceiver)
{
    const auto kept = std::make_shared<int>(1);
    receiver->on([kept](const Service&) { return SuccessResponse(); });
    ASSERT_TRUE(receiver->listen(0));
    answerTo(receiver->port(), headerOnly("currentService"));
    receiver.reset();
    EXPECT_EQ(kept.use_count(), 1);
}

struct ADeferredRequest : AHandler {
    ADeferredRequest()
    {
        receiver->on([this](Request<ConfirmationScreen> request) {
            kept = std::make_unique<Request<ConfirmationScreen>>(std::move(request));
            isKept.open();
        });
    }

    std::unique_ptr<Request<ConfirmationScreen>> kept;
    Latch isKept;
};

TEST_F(ADeferredRequest, IsAnsweredOnAnotherThread)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    EXPECT_EQ((*kept)->displayName, "phone");
    EXPECT_FALSE(kept->isPeerGone());
    EXPECT_TRUE(kept->answer(SuccessResponse()));
    EXPECT_THAT(peer.readFrame(), Optional(headerOnly("success")));
    EXPECT_EQ((*kept)->displayName, "phone");
}

TEST_F(ADeferredRequest, OutlivesItsReceiver)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    receiver.reset();
    OrvuRestInterface::destroyInstance();
    EXPECT_EQ((*kept)->displayName, "phone");
    EXPECT_TRUE(kept->answer(std::make_unique<NoSignalError>()));
    EXPECT_THAT(peer.readFrame(), Optional(headerOnly("noSignal")));
}

TEST_F(ADeferredRequest, IsAnsweredWhenItIsDropped)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    kept.reset();
    EXPECT_THAT(peer.readFrame(), Optional(headerOnly("platformUnavailable")));
}

TEST_F(ADeferredRequest, IsAnsweredWhenAnotherTakesItsPlace)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    Request<ConfirmationScreen> other = std::move(*kept);
    EXPECT_TRUE(kept->isPeerGone());
    EXPECT_FALSE(kept->answer(SuccessResponse()));
    other = std::move(*kept);
    EXPECT_THAT(peer.readFrame(), Optional(headerOnly("platformUnavailable")));
}

TEST_F(ADeferredRequest, IsAnsweredOnce)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    EXPECT_TRUE(kept->answer(Answer(SuccessResponse())));
    EXPECT_FALSE(kept->answer(NoSignalError()));
    kept.reset();
    EXPECT_EQ(peer.readToEnd(), frameOf(headerOnly("success")));
}

TEST_F(ADeferredRequest, SaysWhenNobodyWaitsAnyMore)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    peer.vanish();
    EXPECT_TRUE(eventually([&] { return kept->isPeerGone(); }));
    EXPECT_FALSE(kept->answer(SuccessResponse()));
}

TEST_F(ADeferredRequest, TakesAMessageThatIsNotItsOwn)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    const Service constant;
    EXPECT_TRUE(kept->answer(constant));
    EXPECT_THAT(peer.readFrame(), Optional(testing::HasSubstr("currentService")));
}

TEST_F(ADeferredRequest, EndsTheProgramWhenItIsUsedAfterItWasMoved)
{
    ASSERT_TRUE(receiver->listen(0));
    RawPeer peer = askedBy(receiver->port(), kQuestion);
    isKept.wait();
    const Request<ConfirmationScreen> other = std::move(*kept);
    EXPECT_DEATH((void)(*kept)->displayName, "Orvu::Request: this request was moved away");
}

}  // namespace
