#include <gmock/gmock.h>
#include <thread>

#include "push/PushServers.h"
#include "support/Sanitizers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kReader = "OrvuRestServerWebSocket::clientReadThread";
const std::string kSend = "OrvuRestServerWebSocket::send: ";

struct AWebSocketClient : testing::Test {
    /// Sends bytes that the server receives apart from those before and after.
    void sendAlone(const std::string& bytes)
    {
        ASSERT_TRUE(client.send(bytes));
        ASSERT_TRUE(waitForLines(log, kReader + " <<-- Receive data", ++received));
    }
    /// The server still reads and answers.
    void expectEcho()
    {
        client.send(textFrame("still there?"));
        expectEcho("still there?");
    }
    void expectEcho(const std::string& text) { EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, text})); }
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

/// A frame with a length of eight bytes, and a key that changes nothing.
std::string longFrame(int first, const std::string& payload)
{
    std::string frame = std::string(1, static_cast<char>(first)) + '\xff';
    for (int shift = 56; shift >= 0; shift -= 8)
        frame += static_cast<char>(std::uint64_t{payload.size()} >> shift);
    return frame + std::string(4, '\0') + payload;
}

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
    for (const std::size_t size : {1, 125, 126, 127, 1000, 2048, 65535}) {
        client.send(textFrame(std::string(size, 'x')));
        expectEcho(std::string(size, 'x'));
    }
    client.send(longFrame(0x81, "hello"));
    expectEcho("hello");
    client.send(longFrame(0x81, std::string(65536, 'x')));
    expectEcho(std::string(65536, 'x'));
}

TEST_F(AWebSocketClient, IsTakenToMaskItsFrames)
{
    sendAlone(std::string("\x81\x05\0\0\0\0hello", 11));  // the mask bit is not looked at
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
    sendAlone(std::string("\x89\x05\0\0\0\0hello", 11) + textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketClient, MaySendSeveralFramesAtOnce)
{
    client.send(textFrame("one") + textFrame("two") + clientFrame(0x89, "ping") + textFrame("") + textFrame("three"));
    for (const char* const text : {"one", "two", "three"})
        expectEcho(text);
    expectEcho();
}

TEST_F(AWebSocketClient, MaySendManyFramesWithoutAPause)
{
    std::string frames;
    for (int i = 0; i < 10000; ++i)
        frames += textFrame(std::to_string(i));
    std::thread sender([&] { client.send(frames); });
    for (int i = 0; i < 10000; ++i)
        ASSERT_THAT(readServerFrame(client), Optional(Frame{0x81, std::to_string(i)}));
    sender.join();
}

TEST_F(AWebSocketClient, IsLoggedFrameByFrame)
{
    ASSERT_TRUE(log.waitFor(kReader + ": start"));
    const std::string one = textFrame("one");
    const std::string ping = clientFrame(0x89, "ping");
    log.clear();
    sendAlone(one + ping + one);
    EXPECT_THAT(linesWith(log, "receiveframe: "),
                testing::ElementsAre("receiveframe: " + one + " | size: 9", "receiveframe: " + ping + " | size: 10",
                                     "receiveframe: " + one + " | size: 9"));
    EXPECT_EQ(log.count(kReader + ": Receive msg: WS_FR_OP_TXT"), 2);
    EXPECT_EQ(log.count(kReader + ": Received msg: echo back to client: one"), 2);
}

TEST_F(AWebSocketClient, HasTwoKilobytesOfAFrameLogged)
{
    const std::string frame = textFrame(std::string(5000, 'x'));
    client.send(frame);
    expectEcho(std::string(5000, 'x'));
    EXPECT_EQ(log.count("receiveframe: " + frame.substr(0, 2048) + " | size: 5008"), 1);
}

TEST_F(AWebSocketClient, MaySendAFrameByteByByte)
{
    for (const std::string& frame :
         {textFrame("hello"), clientFrame(0x82, "binary"), textFrame(std::string(126, 'x')), longFrame(0x81, "hello")})
        ASSERT_TRUE(client.sendByteByByte(frame));
    expectEcho("hello");
    expectEcho(std::string(126, 'x'));
    expectEcho("hello");
}

TEST_F(AWebSocketClient, IsAnsweredOnceItsFrameIsWhole)
{
    const std::string frames[] = {textFrame("hello"), textFrame(std::string(126, 'x')), longFrame(0x81, "hello")};
    for (const std::string& frame : frames) {
        for (const std::size_t cut : {1, 2, 5, 6, 9}) {
            sendAlone(frame.substr(0, cut));
            EXPECT_FALSE(hasBytes(client)) << cut << " of " << frame.size();
            sendAlone(frame.substr(cut));
            expectEcho(frame.size() > 20 ? std::string(126, 'x') : "hello");
        }
    }
}

TEST_F(AWebSocketClient, IsLetGoForATextOfMoreThan64Kilobytes)
{
    client.send(textFrame("one") + longFrame(0x81, std::string(65537, 'x')).substr(0, 14));
    expectEcho("one");
    expectEnd();
    EXPECT_TRUE(
        areInOrder(log.lines(), {"receiveframe: ERROR text too long!", kReader + ": closing...", kReader + " end"}));
}

TEST_F(AWebSocketClient, HasFramesThatAreIgnoredSkippedHoweverLong)
{
    constexpr std::size_t kSize = std::size_t{64} << 20;
    const std::string frame = longFrame(0x82, std::string(kSize, '\x88'));
    resetPeakMemory();
    const std::size_t before = peakMemory();
    client.send(frame);
    client.send(longFrame(0x80, std::string(100000, '\x88')) + longFrame(0x8a, std::string(100000, '\x81')));
    expectEcho();
    if (kUnderASanitizer) return;  // which keeps memory of its own
    EXPECT_LT(peakMemory(), before + kSize / 4);
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

TEST_P(ACloseFrame, CountsAlsoAfterAnotherFrame)
{
    client.send(textFrame("hello") + clientFrame(0x89, "ping") + clientFrame(GetParam(), "") + textFrame("late"));
    EXPECT_EQ(client.readToEnd(), "\x81\x05hello");
    EXPECT_TRUE(log.waitFor(kReader + " end"));
    EXPECT_EQ(log.count(kReader + ": Receive msg: WS_FR_OP_CLSE"), 1);
    EXPECT_FALSE(server.push("hello"));
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
