#include <atomic>
#include <gmock/gmock.h>
#include <memory>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";

TEST(ALoadedServer, Serves500ClientsAtOnce)
{
    const Receiver receiver;
    std::vector<RawPeer> peers;
    for (int i = 0; i < 500; ++i)
        peers.push_back(receiver.connect());
    for (RawPeer& peer : peers)
        ASSERT_TRUE(peer.send(frameOf(kRequest)));
    for (RawPeer& peer : peers)
        ASSERT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ALoadedServer, Holds500RequestsInTheirCallbacksAtOnce)
{
    std::mutex mutex;
    std::condition_variable allHere;
    int here = 0;
    const Receiver receiver([&](OrvuRestRequest* request) {
        std::unique_lock<std::mutex> lock(mutex);
        if (++here == 500) allHere.notify_all();
        allHere.wait(lock, [&] { return here == 500; });
        lock.unlock();
        answerWithSuccess(request);
    });
    std::vector<RawPeer> peers;
    for (int i = 0; i < 500; ++i) {
        peers.push_back(receiver.connect());
        ASSERT_TRUE(peers.back().send(frameOf(kRequest)));
    }
    for (RawPeer& peer : peers)
        ASSERT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ALoadedServer, ServesOthersWhile100ConnectionsIdle)
{
    const Receiver receiver;
    std::vector<RawPeer> idle;
    for (int i = 0; i < 100; ++i)
        idle.push_back(receiver.connect());
    for (int i = 0; i < 100; ++i)
        ASSERT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    for (RawPeer& peer : idle) {
        ASSERT_TRUE(peer.send(frameOf(kRequest)));
        ASSERT_THAT(peer.readFrame(), Optional(kSuccess));
    }
}

/// How much of the request a peer has sent when it vanishes.
class APeerThatVanishes : public testing::TestWithParam<std::size_t> {};

TEST_P(APeerThatVanishes, CostsNobodyElseAnything)
{
    LogCapture log;
    const Receiver receiver;
    for (const bool byReset : {true, false}) {
        RawPeer peer = receiver.connect();
        peer.send(frameOf(kRequest).substr(0, GetParam()));
        if (byReset) peer.vanish();
    }
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    for (const std::string& line : linesWith(log, "OrvuRestServerSocket::serverThread: clientSockfd: "))
        EXPECT_NE(line, "OrvuRestServerSocket::serverThread: clientSockfd: -1");
}

INSTANTIATE_TEST_SUITE_P(After, APeerThatVanishes, testing::Values(0, 1, 4, 5, 40, 61));

TEST(APeerThatVanishesDuringItsCallback, LetsTheAnswerFail)
{
    Latch entered;
    Latch vanished;
    std::atomic<int> result{-2};
    {
        const Receiver receiver([&](OrvuRestRequest* received) {
            const std::unique_ptr<OrvuRestRequest> request(received);
            entered.open();
            vanished.wait();
            SuccessResponse answer;
            result = request->sendResponse(&answer);
        });
        RawPeer peer = receiver.connect();
        peer.send(frameOf(kRequest));
        entered.wait();
        peer.vanish();
        vanished.open();
    }
    EXPECT_EQ(result, 0);
}

TEST(APeerThatVanishesDuringItsAnswer, LetsTheAnswerFail)
{
    std::atomic<int> result{0};
    {
        const Receiver receiver([&](OrvuRestRequest* received) {
            const std::unique_ptr<OrvuRestRequest> request(received);
            ServiceTime answer;
            answer.time.assign(32u << 20, 'x');
            result = request->sendResponse(&answer);
        });
        RawPeer peer = receiver.connect();
        peer.send(frameOf(kRequest));
        peer.receive(1000);
        peer.vanish();
    }
    EXPECT_EQ(result, -1);
}

}  // namespace
