#include <atomic>
#include <chrono>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "support/Observed.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";
constexpr int kWithoutEnd = 60 * 1000;

OrvuRestInterface& facade()
{
    return *OrvuRestInterface::getInstance();
}

/// The type of what answers a screen that waits for its user without end.
DataType askTheUser()
{
    ConfirmationScreen screen("phone");
    screen.dispose = false;
    const std::unique_ptr<Serializable> answer(facade().sendRequest(&screen));
    return answer ? answer->getDataType() : DataTypeUnknown;
}

struct CancelledRequests : testing::Test {
    CancelledRequests() { facade().configureClient("127.0.0.1", receiver.port()); }
    ~CancelledRequests() override { decided.open(); }

    LogCapture log;
    std::atomic<int> asked{0};
    Latch decided;
    Receiver receiver{[this](OrvuRestRequest* request) {
        ++asked;
        if (request->getData()->getDataType() == DataTypeConfirmationScreen) decided.wait();
        answerWithSuccess(request);
    }};
};

TEST_F(CancelledRequests, EndAsWhenTheClientGoesAway)
{
    std::atomic<int> ended{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            EXPECT_EQ(askTheUser(), DataTypeEmptyData);
            ++ended;
        });
    ASSERT_TRUE(eventually([this] { return asked == 3; }));
    facade().cancelRequests();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(ended, 3);
}

TEST_F(CancelledRequests, DoNotTouchThoseThatBeginAfterwards)
{
    facade().cancelRequests();
    const std::unique_ptr<Serializable> answer(facade().sendRequest(DataTypeServiceTime));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
}

TEST_F(CancelledRequests, LetAThreadEndThatTestsAFlagBeforeEachRequest)
{
    std::atomic<bool> ending{false};
    std::atomic<bool> hasEnded{false};
    std::thread asking([&] {
        while (!ending)
            askTheUser();
        hasEnded = true;
    });
    ASSERT_TRUE(eventually([this] { return asked > 0; }));
    ending = true;
    EXPECT_TRUE(eventually([&] {
        facade().cancelRequests();
        return hasEnded.load();
    }));
    asking.join();
}

TEST(AnExchangeThatIsCancelledWhileItConnects, SaysWhyItEnded)
{
    LogCapture log;
    const RawListener listener(0);
    const RawPeer waiting = RawPeer::connectedTo(listener.port());  // takes the place of one not yet accepted
    std::thread asking([&] { EXPECT_FALSE(facade().configureClient("127.0.0.1", listener.port())); });
    ASSERT_TRUE(waitForLines(log, "OrvuRestClientSocket::connectSocket: -- init", 1));
    EXPECT_TRUE(eventually([&] {
        facade().cancelRequests();
        return log.count("OrvuRestClientSocket::connectSocket: ERROR dropped, the exchange was cancelled") == 1;
    }));
    asking.join();
    for (const std::string& line : log.lines())
        EXPECT_EQ(line.find("ERROR connecting"), std::string::npos) << line;
}

TEST(DestroyingTheFacade, WaitsForTheCallbacksThatHaveBegun)
{
    Latch entered;
    Latch released;
    std::atomic<bool> ended{false};
    const Receiver receiver([&](OrvuRestRequest* request) {
        entered.open();
        released.wait();
        answerWithSuccess(request);
        ended = true;
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kRequest));
    entered.wait();
    EXPECT_FALSE(OrvuRestInterface::destroyInstance(0));
    EXPECT_FALSE(OrvuRestInterface::destroyInstance(-1));
    EXPECT_FALSE(OrvuRestInterface::destroyInstance(20));
    std::thread user([&] { released.open(); });
    EXPECT_TRUE(OrvuRestInterface::destroyInstance(kWithoutEnd));
    EXPECT_TRUE(ended);
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
    user.join();
}

TEST(DestroyingTheFacade, HasNothingToWaitForWithoutACallback)
{
    EXPECT_TRUE(OrvuRestInterface::destroyInstance(kWithoutEnd));
    const Receiver receiver;
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    EXPECT_TRUE(OrvuRestInterface::destroyInstance(kWithoutEnd));
}

TEST(DestroyingTheFacade, DoesNotWaitForTheCallbackThatDoesIt)
{
    std::atomic<bool> allEnded{false};
    const Receiver receiver([&](OrvuRestRequest* request) {
        allEnded = OrvuRestInterface::destroyInstance(kWithoutEnd);
        answerWithSuccess(request);
    });
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    EXPECT_TRUE(allEnded);
}

TEST(DestroyingTheFacade, DoesNotWaitForTheRequestThatACallbackKept)
{
    OrvuRestRequest* kept = nullptr;
    Latch entered;
    const Receiver receiver([&](OrvuRestRequest* request) {
        kept = request;
        entered.open();
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kRequest));
    entered.wait();
    EXPECT_TRUE(OrvuRestInterface::destroyInstance(kWithoutEnd));
    answerWithSuccess(kept);
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

/// A request whose callback has kept it.
struct AKeptRequest : testing::Test {
    AKeptRequest()
    {
        peer.send(frameOf(kRequest));
        entered.wait();
    }

    Latch entered;
    std::unique_ptr<OrvuRestRequest> request;
    Receiver receiver{[this](OrvuRestRequest* received) {
        request.reset(received);
        entered.open();
    }};
    RawPeer peer = receiver.connect();
    SuccessResponse success;
};

TEST_F(AKeptRequest, HasItsPeerAsLongAsItWaits)
{
    EXPECT_FALSE(request->isPeerGone());
    peer.send("more than it should");
    EXPECT_FALSE(request->isPeerGone());
    EXPECT_GT(request->sendResponse(&success), 0);
}

TEST_F(AKeptRequest, HasNoPeerOnceItIsAnswered)
{
    request->sendResponse(&success);
    EXPECT_TRUE(request->isPeerGone());
}

TEST_F(AKeptRequest, HasNoPeerAnyMoreWhenItWentAway)
{
    peer.close();
    EXPECT_TRUE(eventually([this] { return request->isPeerGone(); }));
}

TEST_F(AKeptRequest, HasNoPeerAnyMoreWhenItVanished)
{
    peer.vanish();
    EXPECT_TRUE(eventually([this] { return request->isPeerGone(); }));
    EXPECT_EQ(request->sendResponse(&success), 0);
}

TEST_F(AKeptRequest, CountsAPeerAsGoneThatSaidItSendsNothingMore)
{
    peer.finishSending();
    EXPECT_TRUE(eventually([this] { return request->isPeerGone(); }));
    EXPECT_GT(request->sendResponse(&success), 0);  // it can still be answered
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARequestWithoutAConnection, HasNoPeer)
{
    EXPECT_TRUE(OrvuRestRequest(-1, nullptr).isPeerGone());
}

/// Takes its time to be written.
class SlowAnswer : public SuccessResponse {
public:
    char* serialize() override
    {
        entered.open();
        released.wait();
        return SuccessResponse::serialize();
    }

    Latch entered;
    Latch released;
};

TEST_F(AKeptRequest, NeverWaitsForTheAnswerThatAnotherThreadIsSending)
{
    SlowAnswer answer;
    std::thread answering([&] { request->sendResponse(&answer); });
    answer.entered.wait();
    EXPECT_FALSE(request->isPeerGone());
    answer.released.open();
    answering.join();
    EXPECT_TRUE(request->isPeerGone());
}

}  // namespace
