#include <chrono>
#include <csignal>
#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

std::string only(const PortLease& lease)
{
    return std::to_string(lease.port()) + "-" + std::to_string(lease.port());
}

/// `text` over and over, at least `size` bytes of it.
std::string repeated(const std::string& text, std::size_t size)
{
    std::string all;
    while (all.size() < size)
        all += text;
    return all;
}

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
    const Ended ended = run(orvu({"push", GetParam(), "--ports", only(port)}), how);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, MatchesRegex("[^\n]*\n3 bytes: no client took it\n3 bytes: no client took it\n"));
    EXPECT_EQ(ended.err, "");
}

TEST_P(EachProtocol, EndsAtOnceWithoutAnInput)
{
    const PortLease port;
    const Ended ended =
        run({"/bin/sh", "-c", orvuInShell("push " + std::string(GetParam()) + " --ports " + only(port) + " <&-")});
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

TEST_P(EachProtocol, SaysWhenNoPortCanBeHad)
{
    const RawListener taken;
    const std::string ports = std::to_string(taken.port()) + "-" + std::to_string(taken.port());
    const Ended ended = run(orvu({"push", GetParam(), "--ports", ports}));
    EXPECT_EQ(ended.code, 69);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: no port of " + ports + " is available\n");
}

TEST_P(EachProtocol, SaysWhenTheOnePortIsNotAvailable)
{
    const RawListener taken;
    for (const char* option : {"--ports", "--port"}) {
        const Ended ended = run(orvu({"push", GetParam(), option, std::to_string(taken.port())}));
        EXPECT_EQ(ended.code, 69);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "orvu: port " + std::to_string(taken.port()) + " is not available\n");
    }
}

TEST_P(EachProtocol, TakesOnePortInsteadOfARange)
{
    for (const char* option : {"--ports", "--port"}) {
        const PortLease port;
        const Ended ended = run(orvu({"push", GetParam(), option, std::to_string(port.port())}));
        EXPECT_EQ(ended.code, 0);
        EXPECT_THAT(ended.out, HasSubstr(":" + std::to_string(port.port()) + ", handle "));
    }
}

TEST_P(EachProtocol, TakesHostAsTheAddressToListenOn)
{
    const PortLease port;
    const Ended ended = run(orvu({"push", GetParam(), "--ports", only(port), "--host", "127.0.0.2"}));
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, HasSubstr(" server on 127.0.0.2:" + std::to_string(port.port()) + ", handle "));
}

TEST_P(EachProtocol, TakesTheFirstPortThatCanBeHad)
{
    std::deque<PortLease> ports(2);
    while (ports.back().port() != ports[ports.size() - 2].port() + 1)
        ports.emplace_back();
    const int taken = ports[ports.size() - 2].port();
    const int listening = boundSocket(taken, true);
    const std::string range = std::to_string(taken) + "-" + std::to_string(taken + 1);
    const Ended ended = run(orvu({"push", GetParam(), "--ports", range}));
    close(listening);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, HasSubstr(":" + std::to_string(taken + 1) + ", handle "));
}

TEST_P(EachProtocol, SaysWhenTheAddressIsNotThisDevices)
{
    const Ended ended = run(orvu({"push", GetParam(), "--ports", "9000-9010", "--listen", "192.0.2.1"}));
    EXPECT_EQ(ended.code, 69);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: no port of 9000-9010 is available on 192.0.2.1\n");
}

TEST_P(EachProtocol, ListensOnOneAddressAloneWhenAsked)
{
    Publisher publisher(GetParam(), {"--listen", "127.0.0.2"});
    EXPECT_THAT(publisher.process().out(),
                StartsWith(publisher.protocol() + " server on 127.0.0.2:" + publisher.portText() + ", handle "));
    EXPECT_LT(connectedTo(publisher.port()), 0);
}

TEST_P(EachProtocol, TellsThePortThatTheSystemChose)
{
    Pipe input;
    Process publisher({"/bin/sh", "-c",
                       "exec " + orvuInShell("push " + std::string(GetParam()) + " --ports 0-0 --listen 127.0.0.1 <'" +
                                             input.path() + "'")});
    ASSERT_TRUE(publisher.waitForOutput("handle"));
    const std::string beginning = std::string(GetParam()) + " server on 127.0.0.1:";
    ASSERT_THAT(publisher.out(), StartsWith(beginning));
    const int client = connectedTo(std::stoi(publisher.out().substr(beginning.size())));
    EXPECT_GE(client, 0);
    close(client);
    input.close();
    EXPECT_EQ(publisher.wait().code, 0);
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

TEST(AFileOfLines, IsPushedOnce)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "one\n\nthree\n");
    ProcessOptions how;
    how.input = "not this\n";
    const Ended ended = run(orvu({"push", "tcp", "--ports", only(port), "--file", file}), how);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, MatchesRegex("[^\n]*\n3 bytes: no client took it\n5 bytes: no client took it\n"));
    EXPECT_EQ(ended.err, "");
}

TEST(AFileOfLines, IsWaitedForWhenItIsAPipe)
{
    Pipe lines;
    const PortLease port;
    Process publisher(orvu({"push", "tcp", "--ports", only(port), "--file", lines.path()}));
    ASSERT_TRUE(publisher.waitForOutput("handle"));
    lines.write("one\n");
    ASSERT_TRUE(publisher.waitForOutput("3 bytes"));
    lines.write("three\n");
    ASSERT_TRUE(publisher.waitForOutput("5 bytes"));
    lines.close();
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(AFileOfLines, ThatNobodyWritesIsLeftAtASignal)
{
    Pipe lines;
    lines.close();
    const PortLease port;
    Process publisher(orvu({"push", "tcp", "--ports", only(port), "--file", lines.path()}));
    ASSERT_TRUE(publisher.waitForOutput("handle"));
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(AFileOfLines, IsNotOpenedAsAServerWhenItCannotBeRead)
{
    const Folder folder;
    const PortLease port;
    const Ended missing = run(orvu({"push", "tcp", "--ports", only(port), "--file", folder.file("none")}));
    EXPECT_EQ(missing.code, 66);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err, "orvu: " + folder.file("none") + ": No such file or directory\n");
    const Ended directory = run(orvu({"push", "tcp", "--ports", only(port), "--file", folder.path(), "--every", "1"}));
    EXPECT_EQ(directory.code, 66);
    EXPECT_EQ(directory.out, "");
    EXPECT_EQ(directory.err, "orvu: " + folder.path() + ": Is a directory\n");
}

TEST(Repetition, PushesTheLinesOverAndOver)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "one\n\ntwo\nthree\n");
    Process publisher(orvu({"push", "tcp", "--ports", only(port), "--file", file, "--every", "1"}));
    ASSERT_TRUE(publisher.waitForOutput("handle"));
    RawPeer client = RawPeer::connectedTo(port.port());
    EXPECT_THAT(repeated("onetwothree", 60), HasSubstr(client.receive(40)));
    publisher.signal(SIGINT);
    const Ended ended = publisher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
}

TEST(Repetition, ReadsTheWholeInputFirst)
{
    Pipe lines;
    const PortLease port;
    Process publisher(
        {"/bin/sh", "-c",
         "exec " + orvuInShell("push websocket --ports " + only(port) + " --every 1 <'" + lines.path() + "'")});
    lines.write("one\nthree\n" + std::string(200000, '\n'));  // more than fits in: it is being read when this ends
    lines.close();
    const std::string twice = "3 bytes: no client took it\n5 bytes: no client took it\n";
    ASSERT_TRUE(publisher.waitForOutput("\n" + twice + twice));
    publisher.signal(SIGTERM);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(Repetition, KeepsItsPause)
{
    const Folder folder;
    const PortLease port;
    const auto begin = std::chrono::steady_clock::now();
    Process publisher(
        orvu({"push", "tcp", "--ports", only(port), "--file", folder.write("lines", "x"), "--every", "100"}));
    ASSERT_TRUE(publisher.waitForOutput(repeated("1 bytes: no client took it\n", 5 * 27)));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(400));
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(Repetition, IsLeftAtASignalWhileItPauses)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "x");
    Process publisher(orvu({"push", "tcp", "--ports", only(port), "--file", file, "--every", "86400000"}));
    ASSERT_TRUE(publisher.waitForOutput("1 bytes"));
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(Repetition, NeedsALine)
{
    const PortLease port;
    ProcessOptions how;
    how.input = "\n\n";
    const Ended ended = run(orvu({"push", "tcp", "--ports", only(port), "--every", "1000"}), how);
    EXPECT_EQ(ended.code, 66);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: standard input: holds no line to push\n");
}

TEST(APublisher, GoesOnWhenNobodyReadsItsLines)
{
    const Folder folder;
    const PortLease port;
    ProcessOptions unread;
    unread.outputGone = true;
    Process publisher(
        orvu({"push", "tcp", "--ports", only(port), "--file", folder.write("lines", "line"), "--every", "1"}), unread);
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
    Process publisher(
        {"/bin/sh", "-c",
         "exec " + orvuInShell("push tcp --ports " + only(port) + " --file '" + file + "' >'" + output.path() + "'")});
    ASSERT_TRUE(output.waitUntilFull());
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(APublisher, SaysWhenItsOutputIsFull)
{
    const PortLease port;
    const Ended ended =
        run({"/bin/sh", "-c", "echo line | " + orvuInShell("push tcp --ports " + only(port) + " >/dev/full")});
    EXPECT_EQ(ended.code, 74);
    EXPECT_EQ(ended.err, "orvu: standard output: No space left on device\n");
}

TEST(APublisher, SaysWhenALineIsTooLong)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "one\n" + std::string(65 * 1024 * 1024, 'x'));
    const Ended ended = run(orvu({"push", "tcp", "--ports", only(port), "--file", file}));
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
