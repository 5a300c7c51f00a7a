#include <atomic>
#include <chrono>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Sanitizers.h"
#include "transport/OrvuRestServerSocket.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kAccepted = "OrvuRestServerSocket::workerThread: clientSockfd: ";
const std::string kFrame = frameOf(R"({"HEADER":"serviceTime","time":"now"})");

/// How much of a request has arrived when everything is destroyed.
class ARequestThatIsStillComing : public testing::TestWithParam<std::size_t> {};

TEST_P(ARequestThatIsStillComing, IsDroppedAtOnce)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(kFrame.substr(0, GetParam()));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    const auto begin = std::chrono::steady_clock::now();
    OrvuRestInterface::destroyInstance();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_EQ(receiver.calls(), 0);
    EXPECT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 1));
}

TEST_P(ARequestThatIsStillComing, IsDroppedWhenOnlyTheServerIsDestroyed)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(kFrame.substr(0, GetParam()));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    OrvuRestServerSocket::destroyInstance();
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_EQ(receiver.calls(), 0);
}

INSTANTIATE_TEST_SUITE_P(UpTo, ARequestThatIsStillComing, testing::Values(0, 1, 3, 4, 5, kFrame.size() - 1));

TEST(ARequestThatIsDropped, LogsIt)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(kFrame.substr(0, 10));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    OrvuRestInterface::destroyInstance();
    EXPECT_TRUE(
        waitForLines(log, "OrvuRestServerSocket::workerThread: ERROR request dropped, the server goes away. (", 1));
}

TEST(ARequestInItsCallback, IsAnsweredAfterEverythingWasDestroyed)
{
    Latch entered;
    Latch destroyed;
    Receiver receiver([&](OrvuRestRequest* request) {
        entered.open();
        destroyed.wait();
        EXPECT_EQ(request->getData()->getDataType(), DataTypeServiceTime);
        answerWithSuccess(request);
    });
    RawPeer peer = receiver.connect();
    peer.send(kFrame);
    entered.wait();
    OrvuRestInterface::destroyInstance();
    destroyed.open();
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARequestInItsCallback, MayDestroyEverythingAndAnswerThen)
{
    Receiver receiver([](OrvuRestRequest* request) {
        OrvuRestInterface::destroyInstance();
        answerWithSuccess(request);
    });
    RawPeer peer = receiver.connect();
    peer.send(kFrame);
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARequestInItsCallback, MayDestroyEverythingWhileOthersAreStillComing)
{
    LogCapture log;
    Receiver receiver([](OrvuRestRequest* request) {
        OrvuRestInterface::destroyInstance();
        answerWithSuccess(request);
    });
    RawPeer coming = receiver.connect();
    coming.send(kFrame.substr(0, 10));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    RawPeer whole = receiver.connect();
    whole.send(kFrame);
    EXPECT_THAT(whole.readFrame(), Optional(kSuccess));
    EXPECT_EQ(coming.readToEnd(), "");
    EXPECT_EQ(receiver.calls(), 1);
}

TEST(ARequestThatIsBeingAnswered, IsAnsweredWholeAfterEverythingWasDestroyed)
{
    constexpr std::size_t kMoreThanTheSystemKeeps = 32u << 20;
    std::atomic<bool> answered{false};
    Receiver receiver([&](OrvuRestRequest* request) {
        ServiceTime answer;
        answer.time.assign(kMoreThanTheSystemKeeps, 'x');
        request->sendResponse(&answer);
        answered = true;
        delete request;
    });
    RawPeer peer = receiver.connect();
    peer.send(kFrame);
    const std::string begin = peer.receive(1000);
    OrvuRestInterface::destroyInstance();
    EXPECT_FALSE(answered);
    const std::string answer = begin + peer.readToEnd();
    EXPECT_EQ(answer, frameOf(answer.substr(4)));
    EXPECT_GT(answer.size(), kMoreThanTheSystemKeeps);
}

/// A request of some MiB whose reading takes a while: it holds many services.
const std::string& longFrame()
{
    static const std::string kLong = [] {
        std::string text = R"({"HEADER":"serviceList","serviceList":[)";
        for (int i = 0; i < 40000; ++i)
            text += (i == 0 ? "" : ",") + (R"({"serviceContextId":"1.2.01","serviceId":)" + std::to_string(i)) +
                    R"(,"serviceName":"a name that is no short one"})";
        return frameOf(text + "]}");
    }();
    return kLong;
}

const std::string kDropped = "OrvuRestServerSocket::workerThread: ERROR request dropped, the server goes away. (";

/// Sends requests to a server that is destroyed a little later each round, at the latest when one of them has been
/// read: how many of `peers` were dropped. No callback may begin after that.
std::size_t destroyedWhileReading(int peers, int round)
{
    LogCapture log;
    Receiver receiver;
    std::vector<RawPeer> sending;
    for (int i = 0; i < peers; ++i) {
        sending.push_back(receiver.connect());
        EXPECT_TRUE(sending.back().send(longFrame()));
    }
    // Looks for the first call, and does not yield: beside busy programs a turn of others takes milliseconds.
    for (int looks = 0; looks < round * 1000 && receiver.calls() == 0; ++looks) {
    }
    OrvuRestInterface::destroyInstance();
    const int calls = receiver.calls();
    std::size_t answered = 0;
    for (RawPeer& peer : sending) {
        const std::string answer = peer.readToEnd();
        EXPECT_THAT(answer, testing::AnyOf("", frameOf(kSuccess)));
        if (!answer.empty()) ++answered;
    }
    EXPECT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", linesWith(log, kAccepted).size()));
    EXPECT_EQ(receiver.calls(), calls);
    EXPECT_EQ(answered, static_cast<std::size_t>(calls));
    return linesWith(log, kDropped).size();
}

TEST(ARequestThatIsBeingRead, ReachesNoCallbackAfterEverythingWasDestroyed)
{
    std::size_t dropped = 0;
    const int step = kIsSlow ? 4 : 1;
    for (int round = 0; round < 40 && !testing::Test::HasFailure(); round += step)
        dropped += destroyedWhileReading(3, round);
    EXPECT_GT(dropped, 0U);
}

/// A step on the way of a request, and the line that is logged when it begins.
struct Step {
    const char* name;
    std::string line;
    std::string sent = kFrame;
    std::string answer = frameOf(kSuccess);
};

class ARequestOnItsWay : public testing::TestWithParam<Step> {};

TEST_P(ARequestOnItsWay, IsAnsweredWholeOrNotAtAllAndLeavesNothing)
{
    for (int round = 0; round < 20; ++round) {
        LogCapture log;
        {
            Receiver receiver;
            RawPeer peer = receiver.connect();
            peer.send(GetParam().sent);
            ASSERT_TRUE(waitForLines(log, GetParam().line, 1));
            OrvuRestInterface::destroyInstance();
            ASSERT_THAT(peer.readToEnd(), testing::AnyOf("", GetParam().answer)) << round;
        }
        ASSERT_THAT(openSockets(), testing::IsEmpty()) << round;
    }
}

const std::string kWorker = "OrvuRestServerSocket::workerThread";
INSTANTIATE_TEST_SUITE_P(
    That, ARequestOnItsWay,
    testing::Values(Step{"IsAccepted", "OrvuRestServerSocket::serverThread: clientSockfd: "},
                    Step{"IsRead", kWorker + ": clientSockfd: "},
                    Step{"EntersItsCallback", "OrvuRestInterface::notifyCallback"},
                    Step{"IsAnswered", "OrvuRestRequest::sendResponse: -- init"},
                    Step{"WasAnswered", "OrvuRestRequest::sendResponse: -- end"},
                    Step{"IsDeleted", "OrvuRestRequest::~OrvuRestRequest: -- init"},
                    Step{"WasClosed", kWorker + " -- end"},
                    Step{"IsAnsweredByTheLibrary", kWorker + ": Server received empty request data", lengthBytes(1),
                         frameOf(kEmptyData)},
                    Step{"IsClosedWithoutAWord", kWorker + ": Buffer size == 0.", lengthBytes(0), ""}),
    [](const auto& step) { return step.param.name; });

TEST(TheFacade, IsDestroyedBeforeTheClientAndTheServer)
{
    LogCapture log;
    const Receiver receiver;
    ASSERT_TRUE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", receiver.port()));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 1));
    log.clear();
    OrvuRestInterface::destroyInstance();
    EXPECT_TRUE(areInOrder(
        log.lines(),
        {"OrvuRestClientSocket::destroyInstance: -- init", "OrvuRestClientSocket::~OrvuRestClientSocket: -- init",
         "OrvuRestClientSocket::~OrvuRestClientSocket: -- end", "OrvuRestClientSocket::destroyInstance: -- end",
         "OrvuRestServerSocket::stop: Stopping server"}));
}

TEST(TheFacade, TakesTheServerAndTheClientAlongAlsoWithoutItself)
{
    LogCapture log;
    OrvuRestInterface::destroyInstance();
    ASSERT_NE(OrvuRestServerSocket::getInstance(), nullptr);
    log.clear();
    OrvuRestInterface::destroyInstance();
    EXPECT_THAT(log.lines(), testing::ElementsAre("OrvuRestClientSocket::destroyInstance: -- init",
                                                  "OrvuRestClientSocket::destroyInstance: -- end",
                                                  "OrvuRestServerSocket::stop: Stopping server"));
}

TEST(TheFacade, CountsAsOneWithoutACallbackWhenItIsGone)
{
    LogCapture log;
    const Receiver receiver;
    OrvuRestInterface::destroyInstance();
    PortLease lease;
    ASSERT_TRUE(OrvuRestServerSocket::getInstance()->configure(lease.port()));  // a server without a facade
    ASSERT_TRUE(OrvuRestServerSocket::getInstance()->start());
    RawPeer peer = RawPeer::connectedTo(lease.port());
    peer.send(kFrame);
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_THAT(log.lines(), testing::Contains("Register a callback to receive requests!"));
}

TEST(TheFacade, CanBeDestroyedByManyThreadsWhileRequestsCome)
{
    std::atomic<bool> over{false};
    for (int round = 0; round < 20; ++round) {
        Receiver receiver;
        std::vector<std::thread> threads;
        threads.reserve(8);
        std::atomic<int> asked{0};
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                try {
                    for (;;) {
                        const std::optional<std::string> answer = receiver.ask(kSuccess);
                        EXPECT_TRUE(!answer || *answer == kSuccess);
                        ++asked;
                    }
                } catch (const std::runtime_error&) {
                    over = true;  // nobody listens any more
                }
            });
        while (asked < 20)
            std::this_thread::yield();
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([] { OrvuRestInterface::destroyInstance(); });
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_TRUE(over);
}

TEST(TheFacade, GivesThePortBackAtOnceWhenItIsDestroyed)
{
    for (int round = 0; round < 20; ++round) {
        const Receiver receiver;
        const RawPeer idle = receiver.connect();
        OrvuRestInterface::destroyInstance();
        ASSERT_TRUE(canListenOn(receiver.port())) << round;
    }
}

TEST(TheFacade, CanBeDestroyedAndMadeAgain)
{
    for (int round = 0; round < 20; ++round) {
        const Receiver receiver;
        ASSERT_THAT(receiver.ask(kSuccess), Optional(kSuccess)) << round;
    }
}

}  // namespace
