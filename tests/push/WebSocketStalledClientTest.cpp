#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"

using namespace OrvuTests;
using std::chrono::seconds;
using testing::Optional;

/// A client that reads slowly, or not at all. Some tests here take as long as a frame that began is waited for: 5 s.

namespace {

const std::string kSent = "OrvuRestServerWebSocket::send: Sent to client ";

struct AStalledWebSocketClient : testing::Test {
    void expectService()
    {
        ASSERT_TRUE(log.waitFor("OrvuRestServerWebSocket::clientReadThread end"));
        RawPeer next = server.attach();
        EXPECT_TRUE(server.push("hello"));
        EXPECT_THAT(readServerFrame(next), Optional(Frame{0x82, "hello"}));
    }

    RunningWebSocket server;
    LogCapture& log = server.log;
    RawPeer client = server.attach(connectedWithLittleRoom);
};

std::string frameOfTooMuch()
{
    return Kind<OrvuRestServerWebSocket>::head(tooMuch().size()) + tooMuch();
}

TEST_F(AStalledWebSocketClient, IsLetGoWhenItDoesNotTakeAFrameThatBegan)
{
    const auto begin = Clock::now();
    EXPECT_TRUE(server.push(tooMuch()));  // a failed write counts as sent
    const auto wait = Clock::now() - begin;
    EXPECT_GE(wait, seconds(5));
    EXPECT_LT(wait, seconds(7));
    EXPECT_EQ(log.count(kSent + "-1 bytes"), 1);
    EXPECT_FALSE(server.push("more"));
    const std::string received = client.readToEnd();
    EXPECT_LT(received.size(), tooMuch().size());
    EXPECT_TRUE(frameOfTooMuch().compare(0, received.size(), received) == 0);
    expectService();
}

TEST_F(AStalledWebSocketClient, IsLetGoWhenItReadsAByteASecond)
{
    std::atomic<bool> over{false};
    std::string received;
    std::thread reader([&] {
        while (!over) {
            received += client.receive(1);
            std::this_thread::sleep_for(seconds(1));
        }
    });
    const auto begin = Clock::now();
    EXPECT_TRUE(server.push(tooMuch()));
    EXPECT_LT(Clock::now() - begin, seconds(7));
    EXPECT_FALSE(server.push("more"));
    over = true;
    reader.join();
    received += client.readToEnd();
    EXPECT_LT(received.size(), tooMuch().size());
    EXPECT_TRUE(frameOfTooMuch().compare(0, received.size(), received) == 0);
    expectService();
}

TEST_F(AStalledWebSocketClient, GetsAFrameOfMegabytesWholeWhenItReadsOnAfterAWhile)
{
    std::thread pusher([this] { EXPECT_TRUE(server.push(tooMuch())); });
    std::string received = client.receive(1);
    std::this_thread::sleep_for(seconds(2));
    received += client.receive(frameOfTooMuch().size() - 1);
    pusher.join();
    EXPECT_TRUE(received == frameOfTooMuch());
    EXPECT_EQ(log.count(kSent + std::to_string(frameOfTooMuch().size()) + " bytes"), 1);
    EXPECT_TRUE(server.push("more"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, "more"}));
}

/// Frames of all sizes are pushed to it until some are dropped or it is let go; what it reads are whole frames in
/// order, but for the last one.
TEST_F(AStalledWebSocketClient, NeverFindsItsStreamGoingOnInTheMiddleOfAFrame)
{
    constexpr int kDropped = 50;
    int pushed = 0;
    while (pushed < 1000000 && log.count(kSent + "0 bytes") == 0 && log.count(kSent + "-1 bytes") < kDropped) {
        for (int i = 0; i < 100; ++i, ++pushed)
            server.push(std::to_string(pushed) + std::string(static_cast<std::size_t>(pushed * 37 % 5000), '.'));
    }
    ASSERT_GT(log.count(kSent + "0 bytes") + log.count(kSent + "-1 bytes"), 0);
    std::thread pusher([&] {
        for (int i = 0; i < 100; ++i, ++pushed)
            server.push(std::to_string(pushed) + std::string(static_cast<std::size_t>(pushed * 37 % 5000), '.'));
        server.server().stop();
    });
    std::string received = client.readToEnd();
    pusher.join();
    int last = -1;
    for (const Frame& frame : takeFrames(received)) {
        ASSERT_EQ(frame.first, 0x82);
        const int number = std::stoi(frame.payload);
        ASSERT_GT(number, last);
        ASSERT_EQ(frame.payload.size(), std::to_string(number).size() + static_cast<std::size_t>(number * 37 % 5000));
        last = number;
    }
    EXPECT_GT(last, 100);
    EXPECT_LT(received.size(), 5010u);  // of a frame that was cut because the client was let go
}

}  // namespace
