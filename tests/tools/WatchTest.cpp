#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

std::string watchInShell(int port, const std::string& rest)
{
    return "exec " + orvuInShell("watch 127.0.0.1 " + std::to_string(port) + " " + rest);
}

/// A value whose text has about `size` bytes.
std::string valueOf(std::size_t size)
{
    return "{\"text\":\"" + std::string(size, 'x') + "\"}";
}

class EachChannel : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Watch, EachChannel, testing::Values("tcp", "websocket"));

TEST_P(EachChannel, IsShownAsOneValueALine)
{
    Publisher publisher(GetParam());
    Process watcher(watching(publisher.port(), GetParam()));
    publisher.waitFor(watcher);
    publisher.push(R"({ "HEADER": "serviceTime",  "time": "20:30" })");
    publisher.push(R"([1, 2.50, "a  b"] "text")");
    EXPECT_EQ(publisher.endInput().code, 0);
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, watchingLine(publisher.port()) + closedLine(publisher.port()));
    EXPECT_EQ(shownAfterwards(ended.out),
              "{\"HEADER\":\"serviceTime\",\"time\":\"20:30\"}\n"
              "[1,2.50,\"a  b\"]\n"
              "\"text\"\n");
}

TEST_P(EachChannel, IsCheckedWhenAsked)
{
    Publisher publisher(GetParam());
    std::vector<std::string> words = watching(publisher.port(), GetParam());
    words.insert(words.end(), {"--check", "--time"});
    Process watcher(words);
    publisher.waitFor(watcher);
    publisher.push(R"({"HEADER":"serviceTime","times":"20:30"})");
    publisher.endInput();
    EXPECT_THAT(watcher.wait().err,
                testing::HasSubstr("orvu: not read: serviceTime: time: required, missing; there is \"times\"\n"
                                   "orvu: serviceTime: times: not read; the nearest is \"time\"\n"));
}

TEST_P(EachChannel, IsShownAtOnce)
{
    Publisher publisher(GetParam());
    Process watcher(watching(publisher.port(), GetParam()));
    publisher.waitFor(watcher);
    for (const char* line : {"{\"n\":1}", "{\"n\":2}", "{\"n\":3}"}) {
        publisher.push(line);
        EXPECT_TRUE(watcher.waitForOutput(std::string(line) + "\n"));
    }
}

TEST_P(EachChannel, CarriesLongValues)
{
    Publisher publisher(GetParam());
    Process watcher(watching(publisher.port(), GetParam()));
    publisher.waitFor(watcher);
    std::string expected;
    for (const std::size_t size : {10u, 125u, 126u, 1000u, 65535u, 65536u, 200000u, 3000000u}) {
        publisher.push(valueOf(size));
        expected += valueOf(size) + "\n";
        ASSERT_TRUE(watcher.waitForOutput(valueOf(size)));  // a WebSocket's message is dropped where there is no room
    }
    publisher.endInput();
    EXPECT_TRUE(shownAfterwards(watcher.wait().out) == expected);
}

TEST_P(EachChannel, IsShownAsItComesWhenItIsToBeRaw)
{
    const std::string bytes("[ 1 ] \0\xff\t x", 11);
    Publisher publisher(GetParam());
    Process watcher(watching(publisher.port(), GetParam(), {"--raw"}));
    publisher.waitFor(watcher);
    publisher.push(bytes);
    publisher.push("[ 2 ]");
    publisher.endInput();
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, testing::EndsWith("[]" + bytes + "[ 2 ]"));
}

TEST_P(EachChannel, IsLeftAtCtrlC)
{
    Publisher publisher(GetParam());
    Process watcher(watching(publisher.port(), GetParam()));
    publisher.waitFor(watcher);
    watcher.signal(SIGINT);
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, watchingLine(publisher.port()));
    EXPECT_EQ(shownAfterwards(ended.out), "");
    EXPECT_EQ(publisher.interrupt().code, 0);
}

TEST_P(EachChannel, CannotBeWatchedWhereNobodyListens)
{
    const PortLease port;
    const Ended ended = run(watching(port.port(), GetParam()));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              "orvu: cannot connect to 127.0.0.1:" + std::to_string(port.port()) + ": refused, nobody listens there\n");
}

TEST_P(EachChannel, MayBeWatchedByTheReadersOfAPipe)
{
    Publisher publisher(GetParam());
    const std::string option = std::string(GetParam()) == "websocket" ? "--websocket" : "";
    Process pipeline(
        {"/bin/sh", "-c", orvuInShell("watch 127.0.0.1 " + publisher.portText() + " " + option) + " | head -1"});
    publisher.waitFor(pipeline);
    const Ended ended = pipeline.wait();  // though nothing more is pushed
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "[]\n");
    EXPECT_EQ(ended.err, watchingLine(publisher.port()));
}

class AnEndingSignalForAWatcher : public testing::TestWithParam<int> {};

TEST_P(AnEndingSignalForAWatcher, EndsItCleanly)
{
    RawListener publisher;
    Process watcher(watching(publisher.port(), "tcp"));
    RawPeer connection = publisher.accept();
    ASSERT_TRUE(watcher.waitForError(watchingLine(publisher.port())));
    watcher.signal(GetParam());
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, watchingLine(publisher.port()));
    EXPECT_EQ(connection.readToEnd(), "");
}

INSTANTIATE_TEST_SUITE_P(Watch, AnEndingSignalForAWatcher, testing::Values(SIGINT, SIGTERM, SIGHUP));

/// A watcher over TCP and the publisher's end of its connection.
class AWatcher : public testing::Test {
protected:
    RawListener publisher_;
    Process watcher_{watching(publisher_.port(), "tcp")};
    RawPeer connection_ = publisher_.accept();
};

TEST_F(AWatcher, TellsValuesApartWhereverTheyAreCut)
{
    connection_.sendByteByByte("{\"a\": \"é \\\" }\"} [1]\r\n{\"b\":{}}12 tr");
    ASSERT_TRUE(watcher_.waitForOutput("12\n"));
    connection_.send("ue{\"c\"");
    ASSERT_TRUE(watcher_.waitForOutput("true\n"));
    connection_.send(":3}");
    ASSERT_TRUE(watcher_.waitForOutput("{\"c\":3}\n"));
    connection_.close();
    EXPECT_EQ(watcher_.wait().out, "{\"a\":\"é \\\" }\"}\n[1]\n{\"b\":{}}\n12\ntrue\n{\"c\":3}\n");
}

TEST_F(AWatcher, ShowsWhatIsNotJsonAsItComes)
{
    connection_.send("hello, ");
    ASSERT_TRUE(watcher_.waitForOutput("hello, "));
    connection_.send("world\n\n[ ]");
    connection_.close();
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "hello, world\n[]\n");
}

TEST_F(AWatcher, ShowsWhatItHoldsBackWhenThePublisherEnds)
{
    connection_.send("{\"a\": [1, 2");
    connection_.close();
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "{\"a\": [1, 2\n");
    EXPECT_EQ(ended.err, watchingLine(publisher_.port()) + closedLine(publisher_.port()));
}

TEST_F(AWatcher, ShowsWhatItHoldsBackAtCtrlC)
{
    connection_.send("[1]{\"a\":");
    ASSERT_TRUE(watcher_.waitForOutput("[1]\n"));
    watcher_.signal(SIGINT);
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "[1]\n{\"a\":\n");
}

TEST_F(AWatcher, TakesAPublisherThatVanishesAsOneThatEnds)
{
    connection_.send("[1]");
    ASSERT_TRUE(watcher_.waitForOutput("[1]\n"));
    connection_.vanish();
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, watchingLine(publisher_.port()) + closedLine(publisher_.port()));
}

TEST_F(AWatcher, ShowsAValueAboveTheLimitAsItComes)
{
    const std::string text(66 * 1024 * 1024, 'x');
    connection_.send("[ \"" + text + "\" ][ 2 ]");
    connection_.close();
    const Ended ended = watcher_.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(ended.out == "[ \"" + text + "\" ]\n[2]\n");
}

TEST(Watching, TakesAHostByItsName)
{
    RawListener publisher;
    Process watcher(orvu({"watch", "localhost", std::to_string(publisher.port())}));
    RawPeer connection = publisher.accept();
    connection.send("[1]");
    connection.close();
    EXPECT_EQ(watcher.wait().out, "[1]\n");
}

TEST(Watching, PutsAValueTogetherThatWasPushedInPieces)
{
    Publisher publisher("tcp");
    Process watcher(watching(publisher.port(), "tcp"));
    publisher.waitFor(watcher);
    for (const char* line : {"{", "  \"Canal\":", "  \"Notícias\"", "}"})
        publisher.push(line);
    EXPECT_TRUE(watcher.waitForOutput("{\"Canal\":\"Notícias\"}\n"));
}

TEST(Watching, MayBeDoneByManyOverTcp)
{
    Publisher publisher("tcp");
    Process first(watching(publisher.port(), "tcp"));
    Process second(watching(publisher.port(), "tcp"));
    publisher.waitFor(first);
    publisher.waitFor(second);
    publisher.push("{\"n\":1}");
    publisher.endInput();
    EXPECT_EQ(shownAfterwards(first.wait().out), "{\"n\":1}\n");
    EXPECT_EQ(shownAfterwards(second.wait().out), "{\"n\":1}\n");
}

TEST(Watching, EndsWhenNobodyReadsWhatItShows)
{
    RawListener publisher;
    ProcessOptions unread;
    unread.outputGone = true;
    Process watcher(watching(publisher.port(), "tcp"), unread);
    RawPeer connection = publisher.accept();
    const Ended ended = watcher.wait();  // though nothing is pushed
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, watchingLine(publisher.port()));
}

TEST(Watching, EndsAtCtrlCThoughItsReaderIsStalled)
{
    Pipe output;
    RawListener publisher;
    Process watcher({"/bin/sh", "-c", watchInShell(publisher.port(), ">'" + output.path() + "'")});
    RawPeer connection = publisher.accept();
    connection.send(valueOf(300000));
    ASSERT_TRUE(output.waitUntilFull());
    watcher.signal(SIGINT);
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, watchingLine(publisher.port()));
}

TEST(Watching, SaysWhenItsOutputCannotBeWritten)
{
    for (const auto& [redirection, reason] :
         {std::pair{">/dev/full", "No space left on device"}, std::pair{">&-", "Bad file descriptor"}}) {
        RawListener publisher;
        Process watcher({"/bin/sh", "-c", watchInShell(publisher.port(), redirection)});
        RawPeer connection = publisher.accept();
        connection.send("[1]");
        const Ended ended = watcher.wait();
        EXPECT_EQ(ended.code, 74);
        EXPECT_EQ(ended.err, watchingLine(publisher.port()) + "orvu: standard output: " + reason + "\n");
    }
}

TEST(Watching, LeavesTheLibrarysLinesOutOfStandardError)
{
    RawListener publisher;
    ProcessOptions loud;
    loud.environment = {"ORVU_LOG=stderr"};
    Process watcher(watching(publisher.port(), "tcp"), loud);
    publisher.accept().send("[1]");
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.out, "[1]\n");
    EXPECT_EQ(ended.err, watchingLine(publisher.port()) + closedLine(publisher.port()));
}

}  // namespace
}  // namespace OrvuTests
