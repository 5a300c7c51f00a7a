#include <algorithm>
#include <atomic>
#include <gmock/gmock.h>
#include <ostream>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace OrvuTests;
using testing::Optional;

/// Who gets the one place of a WebSocket push server, when several connections want it.

namespace {

const std::string kThread = "OrvuRestServerWebSocket::serverThread: ";
const std::string kHandshake = "OrvuRestServerWebSocket::doHanshake: ";
const std::string kAlreadyTaken = kThread + "Already have a client... ignoring connection.";

struct TheWebSocketPlace : testing::Test {
    /// Connections that are in their handshake and send nothing.
    std::vector<RawPeer> silentConnections(std::size_t count)
    {
        std::vector<RawPeer> silent;
        for (std::size_t i = 0; i < count; ++i)
            silent.push_back(RawPeer::connectedTo(server.port()));
        EXPECT_TRUE(waitForLines(log, kHandshake + "doHanshake -->>", count));
        return silent;
    }
    void expectAttached(RawPeer& client)
    {
        EXPECT_TRUE(server.push("hello"));
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, "hello"}));
    }

    RunningWebSocket server;
    LogCapture& log = server.log;
};

TEST_F(TheWebSocketPlace, IsNotHeldBySilentConnections)
{
    const auto begin = Clock::now();
    const std::vector<RawPeer> silent = silentConnections(3);
    RawPeer client = server.attach();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(4));  // before any of them is closed
    expectAttached(client);
}

TEST_F(TheWebSocketPlace, GoesToTheFirstWhoseRequestIsWhole)
{
    RawPeer slow = RawPeer::connectedTo(server.port());
    slow.send(openingRequest().substr(0, 100));
    ASSERT_TRUE(log.waitFor(kHandshake + "doHanshake -->>"));
    RawPeer fast = server.attach();
    slow.send(openingRequest().substr(100));
    EXPECT_EQ(slow.readToEnd(), "");
    EXPECT_EQ(log.count(kAlreadyTaken), 1);
    expectAttached(fast);
}

TEST_F(TheWebSocketPlace, GoesToOneOfManyWhoAskAtOnce)
{
    for (int round = 0; round < 20; ++round) {
        std::vector<RawPeer> peers;
        for (int i = 0; i < 8; ++i)
            peers.push_back(RawPeer::connectedTo(server.port()));
        for (RawPeer& peer : peers)
            peer.send(openingRequest());
        int attached = 0;
        for (RawPeer& peer : peers) {
            const std::string answer = peer.receive(kAnswer.size());
            EXPECT_TRUE(answer.empty() || answer == kAnswer);
            if (answer.empty()) continue;
            ++attached;
            expectAttached(peer);
        }
        EXPECT_EQ(attached, 1);
    }
}

TEST_F(TheWebSocketPlace, IsNotTakenByARequestWithoutAKey)
{
    std::vector<RawPeer> peers = silentConnections(2);
    peers[0].send("GET / HTTP/1.1\r\n\r\n");
    EXPECT_EQ(peers[0].readToEnd(), "");
    EXPECT_TRUE(shakesHands(peers[1]));
    expectAttached(peers[1]);
}

TEST_F(TheWebSocketPlace, IsAwaitedByEightOfWhomANinthEndsTheOneThatHasWaitedLongest)
{
    const auto begin = Clock::now();
    std::vector<RawPeer> silent = silentConnections(8);
    RawPeer ninth = RawPeer::connectedTo(server.port());
    EXPECT_EQ(silent[0].readToEnd(), "");
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(4));
    ASSERT_TRUE(waitForLines(log, kHandshake + "doHanshake -->>", 9));
    EXPECT_EQ(log.count(kThread + "Handshake fail! Ignoring client."), 1);
    for (std::size_t i = 1; i < silent.size(); ++i)
        EXPECT_FALSE(hasBytes(silent[i])) << i;
    EXPECT_TRUE(shakesHands(silent[1]));
    expectAttached(silent[1]);
}

/// A request that would be answered, had it been judged at its time.
TEST_F(TheWebSocketPlace, IsNotGivenToTheOneThatIsEnded)
{
    RawPeer first = RawPeer::connectedTo(server.port());
    first.send("GET / HTTP/1.1\r\nSec-WebSocket-Key: " + kKey + "\r\n");
    ASSERT_TRUE(log.waitFor(kHandshake + "doHanshake -->>"));
    std::vector<RawPeer> others = silentConnections(8);
    EXPECT_EQ(first.readToEnd(), "");
    EXPECT_TRUE(log.waitFor(kThread + "Handshake fail! Ignoring client."));
    EXPECT_THAT(linesWith(log, kHandshake + "Handshaked"), testing::IsEmpty());
    EXPECT_TRUE(shakesHands(others.back()));
    expectAttached(others.back());
}

TEST_F(TheWebSocketPlace, CostsAFewThreadsAndDescriptorsHoweverManyWantIt)
{
    std::atomic<bool> over{false};
    std::size_t mostThreads = 0;
    std::thread observer([&] {
        while (!over)
            mostThreads = std::max(mostThreads, threadsNamed("self", "orvu-reader").size());
    });
    std::vector<RawPeer> silent;
    for (int i = 0; i < 400; ++i)
        silent.push_back(RawPeer::connectedTo(server.port()));
    ASSERT_TRUE(waitForLines(log, kHandshake + "doHanshake -->>", silent.size()));
    EXPECT_TRUE(eventually([&] { return openSockets().size() == silent.size() + 8 + 1; }));  // and the listening one
    over = true;
    observer.join();
    EXPECT_GT(mostThreads, 0u);
    EXPECT_LE(mostThreads, 10u);  // one of them on its way out
    EXPECT_TRUE(shakesHands(silent.back()));
}

TEST_F(TheWebSocketPlace, IsFreeAgainOnceOneWhoAskedHasGone)
{
    for (int round = 0; round < 100; ++round) {
        RawPeer gone = RawPeer::connectedTo(server.port());
        gone.send(openingRequest());
        gone.vanish();
        RawPeer client = RawPeer::connectedTo(server.port());
        ASSERT_TRUE(shakesHands(client)) << round;
        client.vanish();
    }
}

/// How a client leaves that comes back at once, as a page does that is reloaded.
struct Leaving {
    const char* name;
    void (*leave)(RawPeer& client);
};
void PrintTo(const Leaving& leaving, std::ostream* out)
{
    *out << leaving.name;
}
class AClientThatComesBackAtOnce : public TheWebSocketPlace, public testing::WithParamInterface<Leaving> {};

TEST_P(AClientThatComesBackAtOnce, FindsThePlaceFree)
{
    for (int round = 0; round < 400; ++round) {
        RawPeer client = RawPeer::connectedTo(server.port());
        ASSERT_TRUE(shakesHands(client)) << round;
        GetParam().leave(client);
    }
    EXPECT_EQ(log.count(kAlreadyTaken), 0);
}

INSTANTIATE_TEST_SUITE_P(After, AClientThatComesBackAtOnce,
                         testing::Values(Leaving{"ACloseFrame", [](RawPeer& client) { client.send(kCloseFrame); }},
                                         Leaving{"AnEndOfStream", [](RawPeer& client) { client.close(); }},
                                         Leaving{"AReset", [](RawPeer& client) { client.vanish(); }},
                                         Leaving{"ManyTextsAndACloseFrame",
                                                 [](RawPeer& client) {
                                                     std::string texts;
                                                     for (int i = 0; i < 20; ++i)
                                                         texts += textFrame("hello");
                                                     client.send(texts + kCloseFrame);
                                                 }}),
                         [](const auto& leaving) { return std::string(leaving.param.name); });

/// It has not read the echo, which the reader is sending, and has sent a close frame after it.
TEST_F(TheWebSocketPlace, IsRefusedSoonWhileItsClientsReaderCannotGoOn)
{
    RawPeer stalled = server.attach(connectedWithLittleRoom);
    keepLittleFor(stalled);
    const std::string text(60000, 'x');
    ASSERT_TRUE(stalled.send(textFrame(text) + kCloseFrame));
    EXPECT_EQ(stalled.receive(1), "\x81");  // the echo has begun to go out
    for (int i = 0; i < 3; ++i) {
        const auto begin = Clock::now();
        RawPeer newcomer = RawPeer::connectedTo(server.port());
        newcomer.send(openingRequest());
        EXPECT_EQ(newcomer.readToEnd(), "");
        EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(100));
        EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds(1000));
    }
    EXPECT_EQ(log.count(kAlreadyTaken), 3);
    EXPECT_EQ(stalled.receive(3 + text.size()).substr(3), text);
    EXPECT_EQ(stalled.readToEnd(), "");
    const RawPeer next = server.attach();
}

/// The reader is sending the echo, which its client does not read.
TEST_F(TheWebSocketPlace, IsFreeOnceItsClientHasEndedItsStreamEvenIfTheReaderCannotGoOn)
{
    RawPeer stalled = server.attach(connectedWithLittleRoom);
    keepLittleFor(stalled);
    ASSERT_TRUE(stalled.send(textFrame(std::string(60000, 'x'))));
    EXPECT_EQ(stalled.receive(1), "\x81");  // the echo has begun to go out
    stalled.finishSending();
    const auto begin = Clock::now();
    RawPeer next = server.attach();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(4));  // before the reader gives up
    expectAttached(next);
    EXPECT_EQ(log.count(kAlreadyTaken), 0);
}

}  // namespace
