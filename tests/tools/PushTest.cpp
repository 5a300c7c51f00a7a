#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

class EachProtocol : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Push, EachProtocol, testing::Values("tcp", "websocket"));

TEST_P(EachProtocol, TellsItsAddressAndHandle)
{
    Publisher publisher(GetParam());
    EXPECT_THAT(
        publisher.process().out(),
        MatchesRegex(std::string(GetParam()) + " server on [0-9.]+:" + publisher.portText() + ", handle [0-9]+\n"));
}

TEST_P(EachProtocol, TellsWhenNoClientTakesALine)
{
    Publisher publisher(GetParam());
    EXPECT_EQ(publisher.push("{\"a\": 1}"), "8 bytes: no client took it\n");
    EXPECT_EQ(publisher.push("hello"), "5 bytes: no client took it\n");
    const Ended ended = publisher.endInput();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
}

TEST_P(EachProtocol, EndsAtTheEndOfItsInput)
{
    ProcessOptions how;
    how.input = "one\ntwo";
    const PortLease port;
    const Ended ended = run(orvu({"push", GetParam(), "--ports", rangeOf(port.port())}), how);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, MatchesRegex("[^\n]*\n3 bytes: no client took it\n3 bytes: no client took it\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_P(EachProtocol, EndsAtOnceWithoutAnInput)
{
    const PortLease port;
    const Ended ended =
        run({"/bin/sh", "-c",
             orvuInShell("push " + std::string(GetParam()) + " --ports " + rangeOf(port.port()) + " <&-")});
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
}

TEST_P(EachProtocol, ClosesItsClientsAtTheEnd)
{
    Publisher publisher(GetParam());
    RawPeer client =
        publisher.protocol() == "tcp" ? RawPeer::connectedTo(publisher.port()) : attachedTo(publisher.port());
    publisher.waitForClient();
    EXPECT_EQ(publisher.push("last"), "4 bytes pushed\n");
    EXPECT_EQ(publisher.endInput().code, 0);
    const std::string received = client.readToEnd();
    EXPECT_EQ(received.substr(received.size() - 4), "last");
}

class AnEndingSignalForAPublisher : public testing::TestWithParam<int> {};

TEST_P(AnEndingSignalForAPublisher, EndsItCleanly)
{
    Publisher publisher("tcp");
    RawPeer client = RawPeer::connectedTo(publisher.port());
    publisher.waitForClient();
    publisher.process().signal(GetParam());
    const Ended ended = publisher.process().wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_THAT(client.readToEnd(), StartsWith("[]"));
    EXPECT_LT(connectedTo(publisher.port()), 0);
}

INSTANTIATE_TEST_SUITE_P(Push, AnEndingSignalForAPublisher, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(APublisherOverTcp, PushesLinesWithoutTheirLineFeeds)
{
    Publisher publisher("tcp");
    RawPeer client = RawPeer::connectedTo(publisher.port());
    publisher.waitForClient();
    publisher.say(std::string("one\n\n two \r\n\0\xff\nlast", 19));
    EXPECT_EQ(publisher.endInput().code, 0);
    std::string received = client.readToEnd();
    while (received.compare(0, 2, "[]") == 0)
        received.erase(0, 2);
    EXPECT_EQ(received, std::string("one two \r\0\xfflast", 15));
    EXPECT_THAT(publisher.process().out(),
                testing::EndsWith("3 bytes pushed\n6 bytes pushed\n2 bytes pushed\n4 bytes pushed\n"));
}

TEST(APublisherOverTcp, PushesALongLine)
{
    const std::string line = repeated("long ", 3000000);
    Publisher publisher("tcp");
    Process reader({"/bin/sh", "-c", orvuInShell("watch --raw 127.0.0.1 " + publisher.portText())});
    publisher.waitForClient();
    EXPECT_EQ(publisher.push(line), std::to_string(line.size()) + " bytes pushed\n");
    publisher.endInput();
    const std::string received = reader.wait().out;
    EXPECT_TRUE(received.substr(received.size() - line.size()) == line);
}

TEST(APublisherOverTcp, ServesOthersBesideAStalledClient)
{
    const std::string line = repeated("[1, 2, 3]", 32000000);  // more than the system keeps for a client
    Publisher publisher("tcp");
    const RawPeer stalled = RawPeer::connectedTo(publisher.port());
    publisher.waitForClient();
    EXPECT_EQ(publisher.push(line), std::to_string(line.size()) + " bytes: no client took it\n");
    Process watcher(watching(publisher.port(), "tcp", {"--raw"}));
    publisher.waitFor(watcher);
    EXPECT_EQ(publisher.push(line), std::to_string(line.size()) + " bytes pushed\n");
    EXPECT_EQ(publisher.interrupt().code, 0);
    const std::string received = watcher.wait().out;
    EXPECT_TRUE(received.substr(received.size() - line.size()) == line);
}

TEST(APublisherOverWebSocket, PushesEachLineAsOneFrame)
{
    Publisher publisher("websocket");
    RawPeer client = attachedTo(publisher.port());
    EXPECT_EQ(publisher.push("{\"a\": 1}"), "8 bytes pushed\n");
    EXPECT_EQ(publisher.push("two"), "3 bytes pushed\n");
    EXPECT_EQ(publisher.push(std::string(126, 'x')), "126 bytes pushed\n");
    publisher.endInput();
    EXPECT_EQ(client.readToEnd(),
              "\x82\x08{\"a\": 1}\x82\x03two" + std::string("\x82\x7e\x00\x7e", 4) + std::string(126, 'x'));
}

TEST(APublisher, GoesOnWhenNobodyReadsItsLines)
{
    const Folder folder;
    const PortLease port;
    ProcessOptions unread;
    unread.outputGone = true;
    Process publisher(
        orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", folder.write("lines", "line"), "--every", "1"}),
        unread);
    ASSERT_TRUE(waitUntilListening(port.port()));
    RawPeer client = RawPeer::connectedTo(port.port());
    EXPECT_EQ(client.receive(16), "linelinelineline");
    publisher.signal(SIGINT);
    const Ended ended = publisher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
}

TEST(APublisher, EndsWhenItsOutputIsStalled)
{
    Pipe output;
    const PortLease port;
    const Folder folder;
    const std::string file = folder.write("lines", repeated("x\n", 10000));
    Process publisher({"/bin/sh", "-c",
                       "exec " + orvuInShell("push tcp --ports " + rangeOf(port.port()) + " --file '" + file + "' >'" +
                                             output.path() + "'")});
    ASSERT_TRUE(output.waitUntilFull());
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(APublisher, SaysWhenItsOutputIsFull)
{
    const PortLease port;
    const Ended ended = run(
        {"/bin/sh", "-c", "echo line | " + orvuInShell("push tcp --ports " + rangeOf(port.port()) + " >/dev/full")});
    EXPECT_EQ(ended.code, 74);
    EXPECT_EQ(ended.err, "orvu: standard output: No space left on device\n");
}

TEST(APublisher, SaysWhenALineIsTooLong)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "one\n" + std::string(65 * 1024 * 1024, 'x'));
    const Ended ended = run(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", file}));
    EXPECT_EQ(ended.code, 66);
    EXPECT_THAT(ended.out, MatchesRegex("[^\n]*\n3 bytes: no client took it\n"));
    EXPECT_EQ(ended.err, "orvu: " + file + ": a line is longer than 64 MiB\n");
}

TEST(APublisher, KeepsTheLibrarysLinesToItselfUnlessAsked)
{
    Publisher publisher("tcp", {"--log", "stderr"});
    publisher.push("one");
    const Ended ended = publisher.endInput();
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.err, HasSubstr("I/OrVU: OrvuRestInterface::createServer: protocol: tcp\n"));
    EXPECT_THAT(ended.err, HasSubstr("I/OrVU: OrvuRestServerTcpSocket::send: Send to client: one\n"));
    EXPECT_THAT(ended.out, Not(HasSubstr("OrVU")));
}

}  // namespace
}  // namespace OrvuTests
