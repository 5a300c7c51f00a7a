#include <gmock/gmock.h>
#include <random>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"

using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kReader = "OrvuRestServerWebSocket::clientReadThread";
const std::string kSend = "OrvuRestServerWebSocket::send: ";

struct AWebSocketClient : testing::Test {
    /// Sends bytes that the server receives apart from those before and behind.
    void sendAlone(const std::string& bytes)
    {
        ASSERT_TRUE(client.send(bytes));
        ASSERT_TRUE(waitForLines(log, kReader + " <<-- Receive data", ++received));
    }
    /// The server still reads and answers.
    void expectEcho()
    {
        sendAlone(textFrame("still there?"));
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "still there?"}));
    }
    /// The server has let it go, without a word.
    void expectEnd()
    {
        EXPECT_EQ(client.readToEnd(), "");
        EXPECT_TRUE(log.waitFor(kReader + " end"));
        EXPECT_FALSE(server.push("hello"));
    }

    RunningWebSocket server;
    LogCapture& log = server.log;
    RawPeer client = server.attach();
    std::size_t received = 0;
};

std::string headOf(std::size_t size, AWebSocketClient& test)
{
    EXPECT_TRUE(test.server.push(std::string(size, 'x')));
    const std::string head = test.client.receive(size < 126 ? 2 : size < 65536 ? 4 : 10);
    EXPECT_EQ(test.client.receive(size), std::string(size, 'x'));
    return head;
}

TEST_F(AWebSocketClient, GetsEachPushAsOneBinaryFrame)
{
    EXPECT_EQ(headOf(0, *this), std::string("\x82\x00", 2));
    EXPECT_EQ(headOf(1, *this), "\x82\x01");
    EXPECT_EQ(headOf(125, *this), "\x82\x7d");
    EXPECT_EQ(headOf(126, *this), std::string("\x82\x7e\x00\x7e", 4));
    EXPECT_EQ(headOf(127, *this), std::string("\x82\x7e\x00\x7f", 4));
    EXPECT_EQ(headOf(0x1234, *this), "\x82\x7e\x12\x34");
    EXPECT_EQ(headOf(65535, *this), "\x82\x7e\xff\xff");
    EXPECT_EQ(headOf(65536, *this), std::string("\x82\x7f\x00\x00\x00\x00\x00\x01\x00\x00", 10));
    EXPECT_EQ(headOf(0x123456, *this), std::string("\x82\x7f\x00\x00\x00\x00\x00\x12\x34\x56", 10));
}

TEST_F(AWebSocketClient, GetsTheBytesExactlyAsGiven)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    EXPECT_TRUE(server.push(bytes));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, bytes}));
}

TEST_F(AWebSocketClient, IsPushedToWithTwoLogLines)
{
    log.clear();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_TRUE(server.push(std::string(126, 'x')));
    EXPECT_TRUE(server.push(""));
    EXPECT_THAT(linesWith(log, kSend),
                testing::ElementsAre(kSend + "Message size: 5 bytes", kSend + "Sent to client 7 bytes",
                                     kSend + "Message size: 126 bytes", kSend + "Sent to client 130 bytes",
                                     kSend + "Message size: 0 bytes", kSend + "Sent to client 2 bytes"));
}

TEST_F(AWebSocketClient, GetsNothingOutOfNowhere)
{
    EXPECT_FALSE(server.server().send(nullptr, 5));
    EXPECT_TRUE(server.server().send(nullptr, 0));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, ""}));
}

TEST_F(AWebSocketClient, HearsItsTextsAgain)
{
    sendAlone("\x81\x85\x37\xfa\x21\x3d\x7f\x9f\x4d\x51\x58");  // the standard's example of a masked "Hello"
    EXPECT_EQ(client.receive(7), "\x81\x05Hello");
    sendAlone(textFrame("hello"));
    EXPECT_EQ(client.receive(7), "\x81\x05hello");
    sendAlone(textFrame(std::string("one\0two", 7)));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, std::string("one\0two", 7)}));
    sendAlone(textFrame("olá, 世界"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "olá, 世界"}));
}

TEST_F(AWebSocketClient, IsEchoedWithFiveLogLines)
{
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerWebSocket: Waiting new client connection...", 2));
    ASSERT_TRUE(log.waitFor(kReader + ": start"));
    log.clear();
    sendAlone("\x81\x85\x01\x01\x01\x01idmmn");
    EXPECT_THAT(
        log.lines(),
        testing::ElementsAre(kReader + ": -->> Receive data", "receiveframe: \x81\x85\x01\x01\x01\x01idmmn | size: 11",
                             kReader + ": Receive msg: WS_FR_OP_TXT",
                             kReader + ": Received msg: echo back to client: hello", kReader + " <<-- Receive data"));
}

TEST_F(AWebSocketClient, MaySendALengthInEachForm)
{
    for (const std::size_t size : {1, 125, 126, 127, 1000, 2040}) {
        sendAlone(textFrame(std::string(size, 'x')));
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, std::string(size, 'x')}));
    }
    sendAlone(std::string("\x81\xff\0\0\0\0\0\0\0\5\0\0\0\0hello", 19));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketClient, IsReadUpToTheEndOfWhatCameWhateverTheLengthSays)
{
    sendAlone(std::string("\x81\x82\0\0\0\0hello", 11));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
    sendAlone(std::string("\x81\xfd\0\0\0\0hello", 11));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketClient, IsTakenToMaskItsFrames)
{
    sendAlone(std::string("\x81\x09\0\0\0\0hello", 11));  // the mask bit is not looked at
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketClient, IsNotAnsweredOnFramesThatAreTooShort)
{
    for (const std::string& start : {std::string("\x81"), std::string("\x81\x85"), std::string("\x81\x85\x37"),
                                     std::string("\x81\x85\x37\xfa\x21"), std::string("\x81\xfe\0\xff\x37\xfa\x21", 7),
                                     std::string("\x81\xff\0\0\0\0\0\0\0\5\x37\xfa\x21", 13)})
        sendAlone(start);
    expectEcho();
}

TEST_F(AWebSocketClient, IsNotAnsweredOnAnEmptyText)
{
    log.clear();
    sendAlone(textFrame(""));
    EXPECT_EQ(log.count(kReader + ": Receive msg: WS_FR_OP_TXT"), 1);
    EXPECT_THAT(linesWith(log, kReader + ": Received msg"), testing::IsEmpty());
    expectEcho();
}

/// All first bytes but those of close frames, and of the text frame that is echoed.
TEST_F(AWebSocketClient, IsNotAnsweredOnAnyOtherFrame)
{
    for (int first = 0; first < 256; ++first) {
        if ((first & 0x0f) == 8 || first == 0x81) continue;
        sendAlone(clientFrame(first, "hello"));
    }
    EXPECT_EQ(log.count(kReader + ": Receive msg: WS_FR_OP_TXT"), 15);  // those that are no final frame of its own
    expectEcho();
}

TEST_F(AWebSocketClient, SurvivesAFrameLongerThanWhatIsReceivedAtOnce)
{
    const std::string frame = std::string("\x81\xfe\x13\x88\0\0\0\0", 8) + "x" + std::string(4999, '\0');
    ASSERT_TRUE(client.send(frame));
    ASSERT_TRUE(eventually([this] {
        std::size_t size = 0;
        for (const std::string& line : linesWith(log, "receiveframe: "))
            size += std::stoul(line.substr(line.rfind(' ')));
        return size == 5008;
    }));
    const std::optional<Frame> echo = readServerFrame(client);
    ASSERT_TRUE(echo);
    EXPECT_EQ(echo->first, 0x81);
    EXPECT_LE(echo->payload.size(), 2040u);
    EXPECT_EQ(echo->payload, ("x" + std::string(4999, '\0')).substr(0, echo->payload.size()));
    received = linesWith(log, kReader + ": -->> Receive data").size();
    expectEcho();
}

class ACloseFrame : public AWebSocketClient, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(BeginningWith, ACloseFrame,
                         testing::Values(0x88, 0x08, 0x18, 0x28, 0x48, 0x78, 0x98, 0xc8, 0xf8));

TEST_P(ACloseFrame, EndsTheConnectionWithoutOneInReturn)
{
    client.send(clientFrame(GetParam(), "\x03\xe8"));
    expectEnd();
    EXPECT_TRUE(areInOrder(
        log.lines(), {kReader + ": -->> Receive data", kReader + ": Receive msg: WS_FR_OP_CLSE", kReader + " end"}));
    EXPECT_EQ(log.count(kReader + " <<-- Receive data"), 0);
}

TEST_P(ACloseFrame, MayBeOneByte)
{
    client.send(std::string(1, static_cast<char>(GetParam())));
    expectEnd();
}

TEST_F(AWebSocketClient, NeverGetsPushesAndEchoesMixed)
{
    constexpr int kPushes = 200;
    constexpr int kTexts = 200;
    std::vector<std::thread> pushers;
    pushers.reserve(3);
    for (int i = 0; i < 3; ++i)
        pushers.emplace_back([this, i] {
            for (int j = 0; j < kPushes; ++j)
                EXPECT_TRUE(
                    server.push(std::string(static_cast<std::size_t>(7 + 997 * j), static_cast<char>('a' + i))));
        });
    std::thread talker([this] {
        for (int i = 0; i < kTexts; ++i)
            sendAlone(textFrame(std::string(static_cast<std::size_t>(1 + 9 * i), 'T')));
    });
    int pushes = 0;
    std::size_t texts = 0;
    while (pushes < 3 * kPushes || texts < kTexts) {
        const std::optional<Frame> frame = readServerFrame(client);
        ASSERT_TRUE(frame);
        ASSERT_EQ(frame->payload, std::string(frame->payload.size(), frame->payload[0]));
        if (frame->first == 0x81) {
            ASSERT_EQ(frame->payload.size(), 1 + 9 * texts++);
        } else {
            ASSERT_EQ(frame->first, 0x82);
            ++pushes;
        }
    }
    for (std::thread& pusher : pushers)
        pusher.join();
    talker.join();
}

}  // namespace
