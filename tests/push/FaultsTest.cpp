#include <gmock/gmock.h>
#include <thread>

#include "push/Faults.h"
#include "push/PushServers.h"
#include "wire/Sockets.h"

using namespace OrvuTests;
using testing::Optional;

/// What the system does rarely: it takes a few bytes of a frame, has no memory, or a minute passes.

namespace {

const std::string kReader = "OrvuRestServerWebSocket::clientReadThread";

struct AWebSocketServerInTrouble : testing::Test {
    ~AWebSocketServerInTrouble() override
    {
        mostThatIsSent = 0;
        libraryHasNoMemory = false;
    }
    bool waitFor(const std::string& line, int count)
    {
        return eventually([&] { return log.count(line) >= count; });
    }

    RunningWebSocket server;
    LogCapture& log = server.log;
};

TEST_F(AWebSocketServerInTrouble, LogsEachMinuteInWhichNothingComes)
{
    minutesThatPass = 3;
    RawPeer client = server.attach();
    EXPECT_TRUE(waitFor(kReader + ": waiting...", 3));
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
    EXPECT_EQ(log.count(kReader + ": waiting..."), 3);
}

TEST_F(AWebSocketServerInTrouble, LetsAClientGoForWhichItCannotWait)
{
    minutesThatFail = 1;
    RawPeer client = server.attach();
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(waitFor(kReader + " end", 1));
    EXPECT_EQ(log.count(kReader + ": closing..."), 1);
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST_F(AWebSocketServerInTrouble, DropsAFrameOfWhichNothingCouldBeSent)
{
    RawPeer client = server.attach();
    sendsThatFindNoRoom = 1;
    EXPECT_TRUE(server.push("dropped"));  // a failed write counts as sent
    EXPECT_TRUE(server.push("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, "hello"}));
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::send: Sent to client -1 bytes"), 1);
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::send: Sent to client 7 bytes"), 1);
}

TEST_F(AWebSocketServerInTrouble, DropsAnEchoOfWhichNothingCouldBeSent)
{
    RawPeer client = server.attach();
    sendsThatFindNoRoom = 1;
    client.send(textFrame("dropped"));
    ASSERT_TRUE(waitFor(kReader + " <<-- Receive data", 1));
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketServerInTrouble, SendsWholeFramesHoweverLittleTheSystemTakesAtOnce)
{
    for (const std::size_t most : {1, 2, 3, 5, 100}) {
        mostThatIsSent = most;
        RawPeer client = server.attach();
        for (const std::size_t size : {0, 1, 125, 126, 1000}) {
            const std::string message(size, 'x');
            EXPECT_TRUE(server.push(message));
            EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, message})) << most << " of " << size;
        }
        client.send(textFrame("hello"));
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
        client.send(kCloseFrame);
        EXPECT_EQ(client.readToEnd(), "");
    }
}

TEST_F(AWebSocketServerInTrouble, DropsOrFinishesAFrameThatFindsNoRoomAtTimes)
{
    constexpr int kPushes = 30;
    RawPeer client = server.attach();
    mostThatIsSent = 100;
    sendsUntilOneFindsNoRoom = 4;
    for (int i = 0; i < kPushes; ++i)
        EXPECT_TRUE(server.push(std::string(1000, static_cast<char>('A' + i))));
    sendsUntilOneFindsNoRoom = 0;
    const int dropped = log.count("OrvuRestServerWebSocket::send: Sent to client -1 bytes");
    EXPECT_EQ(dropped + log.count("OrvuRestServerWebSocket::send: Sent to client 1004 bytes"), kPushes);
    EXPECT_GT(dropped, 0);
    EXPECT_LT(dropped, kPushes);
    server.server().stop();
    std::string received = client.readToEnd();
    const std::vector<Frame> frames = takeFrames(received);
    EXPECT_EQ(received, "");
    EXPECT_EQ(frames.size(), static_cast<std::size_t>(kPushes - dropped));
    for (const Frame& frame : frames)
        EXPECT_EQ(frame, (Frame{0x82, std::string(1000, frame.payload[0])}));
}

TEST_F(AWebSocketServerInTrouble, IgnoresAFrameThatCameBeforeItsClientWasLetGo)
{
    RawPeer client = server.attach();
    awaitedShutdown = otherEndOf(client);
    client.send(textFrame("hello"));
    ASSERT_TRUE(eventually([] { return isHeldUp.load(); }));
    server.server().stop();
    EXPECT_EQ(log.count("receiveframe: Invalid frame!"), 1);
    EXPECT_EQ(log.count(kReader + ": Receive msg: WS_FR_OP_TXT"), 0);
    EXPECT_EQ(log.count(kReader + " end"), 1);
    EXPECT_EQ(client.readToEnd(), "");
}

TEST_F(AWebSocketServerInTrouble, IgnoresATextForWhichItHasNoMemory)
{
    RawPeer client = server.attach();
    ASSERT_TRUE(waitFor(kReader + ": start", 1));
    libraryHasNoMemory = true;
    client.send(textFrame(std::string(100, 'x')));
    ASSERT_TRUE(waitFor(kReader + " <<-- Receive data", 1));
    libraryHasNoMemory = false;
    EXPECT_EQ(log.count("receiveframe: ERROR out of memory!"), 1);
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketServerInTrouble, TurnsClientsAwayForWhichItHasNoMemory)
{
    libraryHasNoMemory = true;
    RawPeer client = RawPeer::connectedTo(server.port());
    client.send(openingRequest());
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(waitFor("OrvuRestServerWebSocket::serverThread: ERROR out of memory!", 1));
    libraryHasNoMemory = false;
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST(ATcpServerInTrouble, TurnsClientsAwayForWhichItHasNoMemory)
{
    RunningTcp server;
    libraryHasNoMemory = true;
    RawPeer client = RawPeer::connectedTo(server.port());
    EXPECT_EQ(client.readToEnd(), "");
    libraryHasNoMemory = false;
    EXPECT_EQ(server.log.count("OrvuRestServerTcpSocket::serverThread: ERROR out of memory!"), 1);
    RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(another.receive(5), "hello");
}

TEST(ATcpServerInTrouble, PushesAllBytesHoweverFewTheSystemTakesAtOnce)
{
    RunningTcp server;
    RawPeer first = server.attach();
    RawPeer second = server.attach();
    mostThatIsSent = 1;
    EXPECT_TRUE(server.push("hello"));
    mostThatIsSent = 0;
    EXPECT_EQ(first.receive(5), "hello");
    EXPECT_EQ(second.receive(5), "hello");
}

// The descriptor of the client that is gone becomes free when the push ends: one that has only ended its own sending stays.
TEST(ATcpServerInTrouble, WaitsForThePushThatHoldsAClientThatIsGone)
{
    RunningTcp server;
    RawPeer silent = server.attach();
    silent.finishSending();
    server.attach().vanish();
    RawPeer stalled = server.attach(connectedWithLittleRoom);
    keepLittleFor(stalled);
    RawPeer last = unconnected();
    const std::string most(std::size_t{256} << 10, 'x');
    std::thread pushing([&] { server.push(most); });
    EXPECT_TRUE(eventually([&] { return hasBytes(stalled); }));
    {
        const NoDescriptorsLeft none;
        acceptsWithoutDescriptor = 0;
        connectTo(server.port(), last);
        EXPECT_TRUE(eventually([] { return acceptsWithoutDescriptor > 0; }));
        stalled.vanish();
        pushing.join();
        EXPECT_TRUE(eventually([&] { return server.push("x") && hasBytes(last); }));
    }
    server.push("hello");
    server.server().stop();
    EXPECT_THAT(silent.readToEnd(), testing::EndsWith("xhello"));
    EXPECT_THAT(last.readToEnd(), testing::EndsWith("xhello"));
}

TEST(ATcpServer, TakesNobodyWhoComesInWhileItStops)
{
    RunningTcp server;
    RawPeer first = server.attach();
    awaitedShutdown = otherEndOf(first);
    RawPeer last = RawPeer::connectedTo(server.port());
    ASSERT_TRUE(eventually([] { return isHeldUp.load(); }));
    server.server().stop();
    EXPECT_EQ(awaitedShutdown, -1);
    EXPECT_EQ(otherEndOf(first), -1);
    EXPECT_EQ(otherEndOf(last), -1);
}

TEST(ATcpServer, OffersAPushInTheOrderOfAcceptance)
{
    RunningTcp server;
    std::vector<RawPeer> clients;
    std::vector<int> accepted;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(server.attach());
        accepted.push_back(otherEndOf(clients.back()));
    }
    std::vector<int> order;
    sentTo = &order;
    EXPECT_TRUE(server.push("hello"));
    sentTo = nullptr;
    EXPECT_EQ(order, accepted);
}

}  // namespace
