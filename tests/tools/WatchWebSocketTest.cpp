#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::MatchesRegex;

std::string fault(const RawListener& server, const std::string& why)
{
    return "orvu: 127.0.0.1:" + std::to_string(server.port()) + " cannot be watched: " + why + "\n";
}

/// A watcher of a WebSocket server that has not accepted it yet.
class AWebSocketWatcher : public testing::Test {
protected:
    RawListener server_;
    Process watcher_{watching(server_.port(), "websocket")};
};

TEST_F(AWebSocketWatcher, AsksAsAClientOfRfc6455)
{
    RawPeer connection = server_.accept();
    const std::string request = openingRequestFrom(connection);
    EXPECT_THAT(request, MatchesRegex("GET / HTTP/1\\.1\r\nHost: 127\\.0\\.0\\.1:" + std::to_string(server_.port()) +
                                      "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                                      "Sec-WebSocket-Key: [A-Za-z0-9+/]{22}==\r\n"
                                      "Sec-WebSocket-Version: 13\r\n\r\n"));
}

TEST_F(AWebSocketWatcher, AsksWithAnotherKeyEachTime)
{
    RawPeer connection = server_.accept();
    Process other(watching(server_.port(), "websocket"));
    RawPeer otherConnection = server_.accept();
    EXPECT_NE(openingRequestFrom(connection), openingRequestFrom(otherConnection));
}

TEST_F(AWebSocketWatcher, ReadsAnswerAndFramesWhereverTheyAreCut)
{
    RawPeer connection = server_.accept();
    const std::string answer = answerTo(openingRequestFrom(connection));
    connection.sendByteByByte(answer +
                              "\x82\x07{\"a\":1}\x82\x02"
                              "12" +
                              std::string("\x82\x7e\x00\x02", 4) + "34" +
                              std::string("\x82\x7f\x00\x00\x00\x00\x00\x00\x00\x09", 10) + "{ \"b\":2 }");
    ASSERT_TRUE(watcher_.waitForOutput("{\"b\":2}\n"));
    connection.close();
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "{\"a\":1}\n12\n34\n{\"b\":2}\n");
    EXPECT_EQ(ended.err, watchingLine(server_.port()) + closedLine(server_.port()));
}

TEST_F(AWebSocketWatcher, ReadsFramesThatComeWithTheAnswer)
{
    RawPeer connection = server_.accept();
    connection.send(answerTo(openingRequestFrom(connection)) + "\x82\x07{\"a\":1}");
    EXPECT_TRUE(watcher_.waitForOutput("{\"a\":1}\n"));
}

TEST_F(AWebSocketWatcher, EndsTheLineOfEachMessage)
{
    RawPeer connection = attachedFrom(server_);
    connection.send("\x81\x05hello\x81\x02to\x81\x06{\"you\"");
    connection.close();
    EXPECT_EQ(watcher_.wait().out, "hello\nto\n{\"you\"\n");
}

TEST_F(AWebSocketWatcher, SaysGoodByeAtCtrlC)
{
    RawPeer connection = attachedFrom(server_);
    connection.send(
        "\x82\x01"
        "1");
    ASSERT_TRUE(watcher_.waitForOutput("1\n"));
    watcher_.signal(SIGINT);
    const std::string goodBye = connection.readToEnd();
    ASSERT_EQ(goodBye.size(), 8u);
    EXPECT_EQ(goodBye.substr(0, 2), "\x88\x82");
    EXPECT_EQ(goodBye[6] ^ goodBye[2], 0x03);  // 1000, in two bytes under the mask
    EXPECT_EQ((goodBye[7] ^ goodBye[3]) & 0xff, 0xe8);
    EXPECT_EQ(watcher_.wait().code, 0);
}

TEST_F(AWebSocketWatcher, AnswersTheServersGoodBye)
{
    RawPeer connection = attachedFrom(server_);
    connection.send(
        "\x82\x01"
        "1\x88\x02\x03\xe8\x82\x01"
        "2");
    EXPECT_THAT(connection.readToEnd(), testing::StartsWith("\x88\x82"));
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "1\n");
    EXPECT_EQ(ended.err, watchingLine(server_.port()) + closedLine(server_.port()));
}

TEST_F(AWebSocketWatcher, EndsAtCtrlCDuringTheHandshake)
{
    RawPeer connection = server_.accept();
    openingRequestFrom(connection);
    watcher_.signal(SIGINT);
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
}

TEST_F(AWebSocketWatcher, SaysWhenAServerClosesTheConnection)
{
    server_.accept().close();
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(
        ended.err,
        fault(server_, "it closes the connection; perhaps another client is attached, or it is not a WebSocket port"));
}

TEST_F(AWebSocketWatcher, SaysWhenAServerAnswersOtherwise)
{
    RawPeer connection = server_.accept();
    openingRequestFrom(connection);
    connection.send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, fault(server_, "it answers \"HTTP/1.1 404 Not Found\""));
}

TEST_F(AWebSocketWatcher, SaysWhenAServerDoesNotConfirmTheKey)
{
    RawPeer connection = server_.accept();
    openingRequestFrom(connection);
    connection.send(answerTo("\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n"));
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, fault(server_, "it does not confirm the key"));
}

TEST_F(AWebSocketWatcher, SaysWhenAServerDoesNotAnswer)
{
    RawPeer connection = server_.accept();
    const Ended ended = watcher_.wait();  // five seconds
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, fault(server_, "it does not answer as a WebSocket"));
}

TEST_F(AWebSocketWatcher, SaysWhenAServerAnswersWithoutEnd)
{
    RawPeer connection = server_.accept();
    while (connection.send(std::string(1000, 'x'))) {
    }
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, fault(server_, "it does not answer as a WebSocket"));
}

TEST_F(AWebSocketWatcher, SaysWhenAServerSendsWhatIsNoFrame)
{
    RawPeer connection = attachedFrom(server_);
    connection.send("\x82\x03[1]\x82\x83\x01\x02\x03\x04[2]");
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "[1]\n");
    EXPECT_EQ(ended.err,
              watchingLine(server_.port()) + fault(server_, "it sends something that is not a WebSocket frame"));
}

TEST(AWebSocketPublisher, RefusesASecondWatcher)
{
    Publisher publisher("websocket");
    Process first(watching(publisher.port(), "websocket"));
    publisher.waitFor(first);
    const Ended second = run(watching(publisher.port(), "websocket"));
    EXPECT_EQ(second.code, 3);
    EXPECT_EQ(second.out, "");
    EXPECT_EQ(second.err,
              "orvu: 127.0.0.1:" + publisher.portText() +
                  " cannot be watched: it closes the connection; perhaps another client is attached, or it is "
                  "not a WebSocket port\n");
    publisher.push("{\"n\":1}");
    EXPECT_TRUE(first.waitForOutput("{\"n\":1}\n"));
}

TEST(AWebSocketPublisher, TakesTheNextWatcherWhenOneHasLeft)
{
    Publisher publisher("websocket");
    Process first(watching(publisher.port(), "websocket"));
    publisher.waitFor(first);
    first.signal(SIGINT);
    EXPECT_EQ(first.wait().code, 0);
    publisher.waitForNoClient();
    Process second(watching(publisher.port(), "websocket"));
    publisher.waitFor(second);
    EXPECT_EQ(publisher.endInput().code, 0);
    EXPECT_EQ(second.wait().code, 0);
}

}  // namespace
}  // namespace OrvuTests
