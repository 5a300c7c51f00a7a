#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"

using namespace OrvuTests;

namespace {

const std::string kThread = "OrvuRestServerWebSocket::serverThread: ";
const std::string kHandshake = "OrvuRestServerWebSocket::doHanshake: ";
const std::string kRefused = kThread + "Handshake fail! Ignoring client.";

struct AWebSocketHandshake : testing::Test {
    /// What a client gets that sends just `request`, until the server closes.
    std::string answerTo(const std::string& request)
    {
        RawPeer peer = RawPeer::connectedTo(server.port());
        peer.send(request);
        return peer.readToEnd();
    }
    void expectService()
    {
        RawPeer client = server.attach();
        EXPECT_TRUE(server.push("hello"));
        EXPECT_EQ(client.receive(7), "\x82\x05hello");
    }

    RunningWebSocket server;
    LogCapture& log = server.log;
};

/// The key line, `size` bytes of another header line before or after it.
std::string padded(const std::string& before, std::size_t size, const std::string& behind)
{
    return "GET / HTTP/1.1\r\n" + before + "X-Padding: " + std::string(size - 13, 'x') + "\r\n" + behind + "\r\n";
}

const std::string kKeyLine = "Sec-WebSocket-Key: " + kKey + "\r\n";

TEST_F(AWebSocketHandshake, IsAnsweredAsTheStandardSays)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send(openingRequest());
    EXPECT_EQ(peer.receive(129),
              "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n");
    server.destroy();
    EXPECT_EQ(peer.readToEnd(), "");
}

TEST_F(AWebSocketHandshake, IsLogged)
{
    const RawPeer client = server.attach();
    ASSERT_TRUE(log.waitFor("OrvuRestServerWebSocket::clientReadThread: start"));
    EXPECT_TRUE(areInOrder(log.lines(),
                           {kThread + "Server loop start!", "OrvuRestServerWebSocket: Waiting new client connection...",
                            kThread + "Accepted new client connection.", kHandshake + "doHanshake -->>",
                            kHandshake +
                                "Handshaked, response: \n"
                                "------------------------------------\n" +
                                kAnswer + "------------------------------------\n",
                            kHandshake + "doHanshake <<--", "OrvuRestServerWebSocket::clientReadThread: start"}));
    EXPECT_TRUE(waitForLines(log, "OrvuRestServerWebSocket: Waiting new client connection...", 2));
}

TEST_F(AWebSocketHandshake, NeedsNothingButTheKey)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send(kKeyLine + "\r\n");
    EXPECT_EQ(peer.receive(kAnswer.size()), kAnswer);
}

TEST_F(AWebSocketHandshake, ReadsARequestThatComesByteByByte)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    ASSERT_TRUE(peer.sendByteByByte(openingRequest()));
    EXPECT_EQ(peer.receive(kAnswer.size()), kAnswer);
}

TEST_F(AWebSocketHandshake, WaitsForTheBlankLineOnly)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send(openingRequest().substr(0, openingRequest().size() - 2));
    ASSERT_TRUE(log.waitFor(kHandshake + "doHanshake -->>"));
    EXPECT_FALSE(hasBytes(peer));
    peer.send("\r\n");
    EXPECT_EQ(peer.receive(kAnswer.size()), kAnswer);
}

TEST_F(AWebSocketHandshake, JudgesWhatHasComeWhenTheClientEndsItsStream)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send("GET / HTTP/1.1\r\n" + kKeyLine);
    peer.finishSending();
    EXPECT_EQ(peer.readToEnd(), kAnswer);  // a client that has gone away again then
}

TEST_F(AWebSocketHandshake, FailsWithoutAKey)
{
    EXPECT_EQ(answerTo("GET / HTTP/1.1\r\nUpgrade: websocket\r\n\r\n"), "");
    EXPECT_TRUE(areInOrder(log.lines(),
                           {kThread + "Accepted new client connection.", kHandshake + "doHanshake -->>", kRefused}));
    EXPECT_EQ(log.count(kHandshake + "doHanshake <<--"), 0);
    expectService();
}

TEST_F(AWebSocketHandshake, FailsWithAKeyOfAnotherLength)
{
    const std::string keys[] = {"", "x", kKey.substr(1), kKey + "=", kKey + kKey, std::string(1000, 'k')};
    for (const std::string& key : keys)
        EXPECT_EQ(answerTo("GET / HTTP/1.1\r\nSec-WebSocket-Key: " + key + "\r\n\r\n"), "") << key;
    EXPECT_EQ(log.count(kRefused), static_cast<int>(std::size(keys)));
    expectService();
}

TEST_F(AWebSocketHandshake, FailsWhenTheKeyComesAfterALineOfNineThousandBytes)
{
    EXPECT_EQ(answerTo(padded("", 9000, kKeyLine)), "");
    EXPECT_TRUE(log.waitFor(kRefused));
    expectService();
}

TEST_F(AWebSocketHandshake, ReadsEightKilobytes)
{
    const std::string fits = padded("", 8192 - 18 - kKeyLine.size(), kKeyLine);
    const std::string tooLong = padded("", 8192 - 18 - kKeyLine.size() + 3, kKeyLine);  // cuts the key's last byte
    ASSERT_EQ(fits.size(), 8192u);
    EXPECT_EQ(answerTo(tooLong), "");
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send(fits);
    EXPECT_EQ(peer.receive(kAnswer.size()), kAnswer);
}

TEST_F(AWebSocketHandshake, TakesTheRestOfALongRequestForNoFrame)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send(padded(kKeyLine, 9000, "") + textFrame("hello"));  // whose x would be a close frame
    EXPECT_EQ(peer.receive(kAnswer.size() + 7), kAnswer + "\x81\x05hello");
}

TEST_F(AWebSocketHandshake, LosesNoFrameThatComesWithTheRequest)
{
    const std::string frames = textFrame("one") + textFrame("two");
    const std::string echoes = "\x81\x03one\x81\x03two";
    for (std::size_t size = 0; size <= frames.size(); ++size) {
        RawPeer peer = RawPeer::connectedTo(server.port());
        peer.send(openingRequest() + frames.substr(0, size));
        EXPECT_EQ(peer.receive(kAnswer.size()), kAnswer);
        peer.send(frames.substr(size) + kCloseFrame);
        EXPECT_EQ(peer.readToEnd(), echoes) << size;
    }
}

TEST_F(AWebSocketHandshake, MayBeFollowedByACloseFrameAtOnce)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    peer.send(openingRequest() + kCloseFrame);
    EXPECT_EQ(peer.readToEnd(), kAnswer);
    expectService();
}

TEST_F(AWebSocketHandshake, FailsWithoutAWord)
{
    RawPeer::connectedTo(server.port()).close();
    EXPECT_TRUE(log.waitFor(kRefused));
    RawPeer::connectedTo(server.port()).vanish();
    EXPECT_TRUE(waitForLines(log, kRefused, 2));
    expectService();
}

TEST_F(AWebSocketHandshake, FailsForThoseThatLeaveInItsMiddle)
{
    for (const bool abruptly : {false, true}) {
        RawPeer peer = RawPeer::connectedTo(server.port());
        peer.send(openingRequest().substr(0, 60));
        abruptly ? peer.vanish() : peer.close();
    }
    EXPECT_TRUE(waitForLines(log, kRefused, 2));
    expectService();
}

TEST_F(AWebSocketHandshake, IsRefusedToAllButTheFirst)
{
    RawPeer first = server.attach();
    EXPECT_EQ(answerTo(""), "");
    EXPECT_EQ(answerTo(openingRequest()), "");
    EXPECT_EQ(log.count(kThread + "Already have a client... ignoring connection."), 2);
    EXPECT_EQ(log.count(kHandshake + "doHanshake -->>"), 1);
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(first.receive(7), "\x82\x05hello");
}

TEST_F(AWebSocketHandshake, JudgesWhatHasComeAfterFiveSeconds)
{
    RawPeer peer = RawPeer::connectedTo(server.port());
    const auto begin = Clock::now();
    peer.send("GET / HTTP/1.1\r\n" + kKeyLine);
    EXPECT_EQ(peer.receive(kAnswer.size()), kAnswer);
    EXPECT_GE(Clock::now() - begin, std::chrono::seconds(5));
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(7));
    peer.send("Host: x\r\n\r\n" + textFrame("hello"));
    EXPECT_EQ(peer.receive(7), "\x81\x05hello");
}

/// What a connection does that never says what it wants.
class ASilentConnection : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(That, ASilentConnection, testing::Values(false, true),
                         [](const auto& drips) { return drips.param ? "SendsAByteNowAndThen" : "SendsNothing"; });

TEST_P(ASilentConnection, IsClosedAfterFiveSeconds)
{
    RunningWebSocket server;
    const auto begin = Clock::now();
    RawPeer silent = RawPeer::connectedTo(server.port());
    std::atomic<bool> over{false};
    std::thread dripping([&] {
        while (GetParam() && !over && silent.send("x"))
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
    });
    EXPECT_EQ(silent.readToEnd(), "");
    const auto wait = Clock::now() - begin;
    EXPECT_GE(wait, std::chrono::seconds(5));
    EXPECT_LT(wait, std::chrono::seconds(7));
    over = true;
    dripping.join();
    EXPECT_EQ(server.log.count(kRefused), 1);
}

}  // namespace
