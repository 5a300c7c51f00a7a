#include <atomic>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kThread = "OrvuRestServerWebSocket::serverThread: ";
const std::string kReader = "OrvuRestServerWebSocket::clientReadThread";
const std::string kSend = "OrvuRestServerWebSocket::send: ";

struct AWebSocketPushServer : testing::Test {
    bool waitForEnds(std::size_t count) { return waitForLines(log, kReader + " end", count); }

    RunningWebSocket server;
    LogCapture& log = server.log;
};

int optionOf(int fd, int level, int option)
{
    int value = -1;
    socklen_t size = sizeof value;
    getsockopt(fd, level, option, &value, &size);
    return value;
}

TEST_F(AWebSocketPushServer, PushesNothingButEmptyMessagesToNobody)
{
    EXPECT_FALSE(server.push("hello"));
    EXPECT_TRUE(server.push(""));
    EXPECT_THAT(linesWith(log, kSend),
                testing::ElementsAre(kSend + "Message size: 5 bytes", kSend + "Sent to client 0 bytes",
                                     kSend + "Message size: 0 bytes", kSend + "Sent to client 0 bytes"));
}

TEST_F(AWebSocketPushServer, PushesToAClientAsSoonAsItHasItsAnswer)
{
    for (int round = 0; round < 100; ++round) {
        RawPeer client = server.attach();
        ASSERT_TRUE(server.push("hello")) << round;
        ASSERT_THAT(readServerFrame(client), Optional(Frame{0x82, "hello"}));
        client.send(kCloseFrame);
        ASSERT_EQ(client.readToEnd(), "");
    }
}

TEST_F(AWebSocketPushServer, AnswersBeforeItPushes)
{
    std::atomic<bool> over{false};
    std::thread pusher([&] {
        while (!over)
            server.push("hello");
    });
    for (int round = 0; round < 50; ++round) {
        RawPeer client = server.attach();
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, "hello"})) << round;
        client.send(kCloseFrame);
        std::string rest = client.readToEnd();
        for (const Frame& frame : takeFrames(rest))
            EXPECT_EQ(frame, (Frame{0x82, "hello"})) << round;
        EXPECT_EQ(rest, "") << round;
    }
    over = true;
    pusher.join();
}

TEST_F(AWebSocketPushServer, TakesTheNextClientAfterACloseFrame)
{
    RawPeer first = server.attach();
    first.send(kCloseFrame);
    EXPECT_EQ(first.readToEnd(), "");
    RawPeer second = server.attach();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_THAT(readServerFrame(second), Optional(Frame{0x82, "hello"}));
}

TEST_F(AWebSocketPushServer, TakesTheNextClientAfterAnEndOfStream)
{
    server.attach().close();
    ASSERT_TRUE(waitForEnds(1));
    RawPeer second = server.attach();
    second.finishSending();
    EXPECT_EQ(second.readToEnd(), "");
    RawPeer third = server.attach();
    EXPECT_TRUE(areInOrder(log.lines(), {kReader + ": start", kReader + ": closing...", kReader + " end"}));
    EXPECT_EQ(log.count(kReader + ": -->> Receive data"), 0);
}

TEST_F(AWebSocketPushServer, TakesTheNextClientAfterAReset)
{
    server.attach().vanish();
    ASSERT_TRUE(waitForEnds(1));
    EXPECT_FALSE(server.push("hello"));
    const RawPeer second = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST_F(AWebSocketPushServer, TakesTheNextClientWhenOneLeavesDuringAPush)
{
    RawPeer client = server.attach(connectedWithLittleRoom);
    std::thread pusher([this] { EXPECT_TRUE(server.push(tooMuch())); });  // a failed write counts as sent
    EXPECT_EQ(client.receive(1), "\x82");
    client.vanish();
    pusher.join();
    EXPECT_EQ(log.count(kSend + "Sent to client -1 bytes"), 1);
    ASSERT_TRUE(waitForEnds(1));
    RawPeer second = server.attach();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_THAT(readServerFrame(second), Optional(Frame{0x82, "hello"}));
}

TEST_F(AWebSocketPushServer, TakesACloseFrameDuringAPush)
{
    RawPeer client = server.attach(connectedWithLittleRoom);
    const auto begin = Clock::now();
    std::thread pusher([this] { server.push(tooMuch()); });
    EXPECT_EQ(client.receive(1), "\x82");
    client.send(kCloseFrame);
    pusher.join();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
    ASSERT_TRUE(waitForEnds(1));
    const RawPeer second = server.attach();
}

TEST_F(AWebSocketPushServer, FindsClientsThatVanishedWithinTwoMinutes)
{
    const RawPeer client = server.attach();
    const int socket = otherEndOf(client);
    EXPECT_EQ(optionOf(socket, SOL_SOCKET, SO_KEEPALIVE), 1);
    const int idle = optionOf(socket, IPPROTO_TCP, TCP_KEEPIDLE);
    const int interval = optionOf(socket, IPPROTO_TCP, TCP_KEEPINTVL);
    const int probes = optionOf(socket, IPPROTO_TCP, TCP_KEEPCNT);
    EXPECT_GT(idle, 0);
    EXPECT_GT(interval, 0);
    EXPECT_GT(probes, 1);
    EXPECT_LE(idle + interval * probes, 120);
    EXPECT_EQ(optionOf(socket, IPPROTO_TCP, TCP_USER_TIMEOUT), 120000);
}

TEST_F(AWebSocketPushServer, LetsAClientGoForWhichThereIsNoThread)
{
    {
        const NoThreadsLeft none;
        RawPeer client = RawPeer::connectedTo(server.port());
        client.send(openingRequest());
        EXPECT_EQ(client.readToEnd(), "");
    }
    EXPECT_TRUE(log.waitFor(kThread + "Could not create the client thread!"));
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::doHanshake: doHanshake -->>"), 0);
    EXPECT_FALSE(server.push("hello"));
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST_F(AWebSocketPushServer, HasAReaderForOneClientOnly)
{
    for (int round = 0; round < 10; ++round) {
        RawPeer client = server.attach();
        client.send(kCloseFrame);
        EXPECT_EQ(client.readToEnd(), "");
    }
    const RawPeer last = server.attach();
    EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-reader").size() == 1; }));
    EXPECT_TRUE(eventually([] { return openSockets().size() == 3; }));  // the listening one, the two ends of the last
}

}  // namespace
