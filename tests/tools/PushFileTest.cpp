#include <chrono>
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

TEST(AFileOfLines, IsPushedOnce)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "one\n\nthree\n");
    ProcessOptions how;
    how.input = "not this\n";
    const Ended ended = run(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", file}), how);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, MatchesRegex("[^\n]*\n3 bytes: no client took it\n5 bytes: no client took it\n"));
    EXPECT_EQ(ended.err, "");
}

TEST(AFileOfLines, IsWaitedForWhenItIsAPipe)
{
    Pipe lines;
    const PortLease port;
    Process publisher(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", lines.path()}));
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
    Process publisher(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", lines.path()}));
    ASSERT_TRUE(publisher.waitForOutput("handle"));
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(AFileOfLines, IsNotOpenedAsAServerWhenItCannotBeRead)
{
    const Folder folder;
    const PortLease port;
    const Ended missing = run(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", folder.file("none")}));
    EXPECT_EQ(missing.code, 66);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err, "orvu: " + folder.file("none") + ": No such file or directory\n");
    const Ended directory =
        run(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", folder.path(), "--every", "1"}));
    EXPECT_EQ(directory.code, 66);
    EXPECT_EQ(directory.out, "");
    EXPECT_EQ(directory.err, "orvu: " + folder.path() + ": Is a directory\n");
}

TEST(Repetition, PushesTheLinesOverAndOver)
{
    const Folder folder;
    const PortLease port;
    const std::string file = folder.write("lines", "one\n\ntwo\nthree\n");
    Process publisher(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", file, "--every", "1"}));
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
    Process publisher({"/bin/sh", "-c",
                       "exec " + orvuInShell("push websocket --ports " + rangeOf(port.port()) + " --every 1 <'" +
                                             lines.path() + "'")});
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
        orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", folder.write("lines", "x"), "--every", "100"}));
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
    Process publisher(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--file", file, "--every", "86400000"}));
    ASSERT_TRUE(publisher.waitForOutput("1 bytes"));
    publisher.signal(SIGINT);
    EXPECT_EQ(publisher.wait().code, 0);
}

TEST(Repetition, NeedsALine)
{
    const PortLease port;
    ProcessOptions how;
    how.input = "\n\n";
    const Ended ended = run(orvu({"push", "tcp", "--ports", rangeOf(port.port()), "--every", "1000"}), how);
    EXPECT_EQ(ended.code, 66);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: standard input: holds no line to push\n");
}

}  // namespace
}  // namespace OrvuTests
