#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

using Words = std::vector<std::string>;

const std::string kOtherPorts = "a WebSocket port (try --websocket) or a port for requests (try orvu ask)\n";

std::string orvuSays(int port, const std::string& what)
{
    return "orvu: 127.0.0.1:" + std::to_string(port) + " " + what + "\n";
}

class APublishersName : public testing::TestWithParam<Words> {};

TEST_P(APublishersName, MayBeGivenInManyWays)
{
    RawListener publisher;
    Words arguments = {"watch"};
    for (const std::string& word : GetParam())
        arguments.push_back(word == "PORT" ? std::to_string(publisher.port()) : word);
    Process watcher(orvu(arguments));
    publisher.accept().send("[1]");
    EXPECT_EQ(watcher.wait().out, "[1]\n");
}

INSTANTIATE_TEST_SUITE_P(Watch, APublishersName,
                         testing::Values(Words{"PORT"}, Words{"127.0.0.1", "PORT"}, Words{"localhost", "PORT"},
                                         Words{"--port", "PORT"}, Words{"localhost", "--port", "PORT"},
                                         Words{"--host", "localhost", "PORT"},
                                         Words{"--port", "PORT", "--host", "127.0.0.1"}));

using Refusal = std::pair<Words, const char*>;

class APublishersNameWithAFault : public testing::TestWithParam<Refusal> {};

TEST_P(APublishersNameWithAFault, IsRefused)
{
    Words arguments = {"watch"};
    arguments.insert(arguments.end(), GetParam().first.begin(), GetParam().first.end());
    const Ended ended = run(orvu(arguments));
    EXPECT_EQ(ended.code, 64);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, std::string("orvu: PORT: ") + GetParam().second + "\nRun with --help for more information.\n");
}

INSTANTIATE_TEST_SUITE_P(
    Watch, APublishersNameWithAFault,
    testing::Values(Refusal{{}, "missing; write orvu watch PORT, or orvu watch HOST PORT"},
                    Refusal{{"localhost"}, "missing; write orvu watch PORT, or orvu watch HOST PORT"},
                    Refusal{{"65536"}, "missing; write orvu watch PORT, or orvu watch HOST PORT"},
                    Refusal{{"0"}, "0 is not a port to connect to"},
                    Refusal{{"9000", "9001"}, "9000 is not a host, and the port is already given"},
                    Refusal{{"9000", "--port", "9001"}, "9000 is not a host, and the port is already given"}));

using Unreachable = std::pair<const char*, const char*>;

class APublisherOutOfReach : public testing::TestWithParam<Unreachable> {};

TEST_P(APublisherOutOfReach, IsSaidToBeSoWithTheReason)
{
    const Ended ended = run(orvu({"watch", "--host", GetParam().first, "--port", "9000"}));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              std::string("orvu: cannot connect to ") + GetParam().first + ":9000: " + GetParam().second + "\n");
}

INSTANTIATE_TEST_SUITE_P(Watch, APublisherOutOfReach,
                         testing::Values(Unreachable{"no-such-host.invalid", "cannot resolve no-such-host.invalid"},
                                         Unreachable{"::1", "orvu uses IPv4 only, and ::1 has no IPv4 address"},
                                         Unreachable{"", "the host is empty"}));

TEST(ASilentPublisher, IsGuessedAboutOverTcp)
{
    RawListener publisher;
    Process watcher(watching(publisher.port(), "tcp"));
    RawPeer connection = publisher.accept();
    const std::string guess = "orvu: nothing came for 5 s: perhaps nothing is pushed yet, or this is " + kOtherPorts;
    ASSERT_TRUE(watcher.waitForError(guess));
    connection.send("[1]");
    ASSERT_TRUE(watcher.waitForOutput("[1]\n"));
    connection.close();
    EXPECT_EQ(watcher.wait().err, watchingLine(publisher.port()) + guess + closedLine(publisher.port()));
}

TEST(ASilentPublisher, IsGuessedAboutOverAWebSocket)
{
    RawListener publisher;
    Process watcher(watching(publisher.port(), "websocket"));
    RawPeer connection = attachedFrom(publisher);
    const std::string guess = "orvu: nothing came for 5 s: perhaps nothing is pushed yet\n";
    ASSERT_TRUE(watcher.waitForError(guess));
    connection.close();
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, watchingLine(publisher.port()) + guess +
                             orvuSays(publisher.port(), "closed the connection and sent nothing"));
}

TEST(APublisherThatClosesAtOnce, IsSaidToHaveSentNothing)
{
    RawListener publisher;
    Process watcher(watching(publisher.port(), "tcp"));
    publisher.accept().close();
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, watchingLine(publisher.port()) + "orvu: 127.0.0.1:" + std::to_string(publisher.port()) +
                             " closed the connection and sent nothing; perhaps it is " + kOtherPorts);
}

TEST(ARequestPort, IsGuessedWhenItIsWatched)
{
    ServingTool receiver;
    const Ended ended = run(watching(receiver.port(), "tcp"));
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("a port for requests (try orvu ask)\n"));
    EXPECT_THAT(ended.err, HasSubstr(" closed the connection and sent nothing"));
}

TEST(ARequestPort, CannotBeWatchedAsAWebSocket)
{
    ServingTool receiver;
    const Ended ended = run(watching(receiver.port(), "websocket"));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, orvuSays(receiver.port(),
                                  "cannot be watched: it closes the connection; perhaps another "
                                  "client is attached, or it is not a WebSocket port"));
}

class EachTimedChannel : public testing::TestWithParam<const char*> {};

TEST_P(EachTimedChannel, ShowsTheTimeBeforeEachValue)
{
    const std::string time = "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} ";
    Publisher publisher(GetParam());
    Process watcher(watching(publisher.port(), GetParam(), {"--time"}));
    publisher.waitFor(watcher);
    publisher.push("{ \"n\": 1 }");
    publisher.push("[2]");
    publisher.push("hello");
    publisher.endInput();
    EXPECT_THAT(watcher.wait().out,
                MatchesRegex("(" + time + "\\[]\n)+" + time + "\\{\"n\":1}\n" + time + "\\[2]\n" + time + "hello\n"));
}

INSTANTIATE_TEST_SUITE_P(Watch, EachTimedChannel, testing::Values("tcp", "websocket"));

TEST(WatchingAgain, ConnectsAnewWhenThePublisherEnds)
{
    RawListener publisher;
    Process watcher(watching(publisher.port(), "tcp", {"--again"}));
    publisher.accept().send("{\"cut\":");
    publisher.accept().send("[2]");
    RawPeer third = publisher.accept();
    ASSERT_TRUE(watcher.waitForOutput("[2]\n"));
    watcher.signal(SIGINT);
    const Ended ended = watcher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "{\"cut\":\n[2]\n");
    const std::string again = orvuSays(publisher.port(), "closed the connection; trying again in 1 s");
    const std::string watches = watchingLine(publisher.port());
    EXPECT_THAT(ended.err, testing::AnyOf(watches + again + watches + again + watches,
                                          watches + again + watches + again));  // the third was not taken yet
}

TEST(WatchingAgain, PausesLongerAfterEachFailure)
{
    const PortLease port;
    Process watcher(watching(port.port(), "tcp", {"--again"}));
    const std::string refused =
        "orvu: cannot connect to 127.0.0.1:" + std::to_string(port.port()) + ": refused, nobody listens there; ";
    ASSERT_TRUE(watcher.waitForError("trying again in 2 s\n"));
    EXPECT_EQ(watcher.err(), refused + "trying again in 1 s\n" + refused + "trying again in 2 s\n");
    watcher.signal(SIGTERM);
    EXPECT_EQ(watcher.wait().code, 0);
}

TEST(WatchingAgain, FindsAPublisherThatComesLater)
{
    const PortLease port;
    Process watcher(watching(port.port(), "tcp", {"--again"}));
    ASSERT_TRUE(watcher.waitForError("trying again in 1 s\n"));
    const int listening = boundSocket(port.port(), true);
    ASSERT_GE(listening, 0);
    RawPeer connection(accept4(listening, nullptr, nullptr, SOCK_CLOEXEC));
    close(listening);
    connection.send("[1]");
    EXPECT_TRUE(watcher.waitForOutput("[1]\n"));
}

TEST(WatchingAgain, WaitsForAWebSocketThatSomebodyElseWatches)
{
    RawListener publisher;
    Process watcher(watching(publisher.port(), "websocket", {"--again"}));
    publisher.accept().close();
    RawPeer connection = attachedFrom(publisher);
    connection.send("\x82\x03[1]");
    EXPECT_TRUE(watcher.waitForOutput("[1]\n"));
    EXPECT_THAT(watcher.err(), HasSubstr("or it is not a WebSocket port; trying again in 1 s\n"));
}

TEST(WatchingAgain, EndsWhenNobodyReadsWhatItShows)
{
    const PortLease port;
    ProcessOptions unread;
    unread.outputGone = true;
    Process watcher(watching(port.port(), "tcp", {"--again"}), unread);
    EXPECT_EQ(watcher.wait().code, 0);
}

TEST(WatchingAgain, EndsWhenItsOutputCannotBeWritten)
{
    RawListener publisher;
    Process watcher(
        {"/bin/sh", "-c", "exec " + orvuInShell("watch --again " + std::to_string(publisher.port()) + " >/dev/full")});
    publisher.accept().send("[1");
    EXPECT_EQ(watcher.wait().code, 74);
}

}  // namespace
}  // namespace OrvuTests
