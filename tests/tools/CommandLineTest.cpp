#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::vector<std::string> kCommands = {"serve", "ask", "send", "push", "watch", "types", "check"};

TEST(TheTool, HelpsOnEveryLevel)
{
    const Ended top = run(orvu({"--help"}));
    EXPECT_EQ(top.code, 0);
    EXPECT_EQ(top.err, "");
    EXPECT_THAT(top.out, HasSubstr("Exit codes"));
    for (const std::string& command : kCommands) {
        EXPECT_THAT(top.out, HasSubstr("\n  " + command + " "));
        const Ended help = run(orvu({command, "--help"}));
        EXPECT_EQ(help.code, 0) << command;
        EXPECT_EQ(help.err, "") << command;
        EXPECT_THAT(help.out, HasSubstr("Usage: orvu " + command)) << command;
        EXPECT_THAT(help.out, HasSubstr("--log")) << command;
        EXPECT_THAT(help.out, HasSubstr("Exit codes:\n  0   ")) << command;
        EXPECT_THAT(help.out, HasSubstr("\n  64  ")) << command;
        EXPECT_THAT(help.out, HasSubstr("\n  74  ")) << command;
    }
}

TEST(TheTool, PrintsItsVersion)
{
    const Ended ended = run(orvu({"--version"}));
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, testing::MatchesRegex("orvu [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

class WrongArguments : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(WrongArguments, AreRefused)
{
    const Ended ended = run(orvu(GetParam()));
    EXPECT_EQ(ended.code, 64);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("orvu: "));
    EXPECT_THAT(ended.err, HasSubstr("\nRun with --help for more information.\n"));
}

using Words = std::vector<std::string>;
INSTANTIATE_TEST_SUITE_P(
    TheTool, WrongArguments,
    testing::Values(Words{}, Words{"fetch"}, Words{"--loud"}, Words{"types", "--more"}, Words{"types", "check", "-"},
                    Words{"types", "--log", "paper"}, Words{"--log", "paper", "types"}, Words{"ask"}, Words{"new"},
                    Words{"ask", "serviceList", "--port", "0"}, Words{"ask", "serviceList", "--port", "65536"},
                    Words{"ask", "serviceList", "--port", "web"}, Words{"ask", "serviceList", "--host"}, Words{"send"},
                    Words{"send", "-", "--port", "-1"}, Words{"check"}, Words{"serve"}, Words{"serve", "9000"},
                    Words{"serve", "--port", "9000"}, Words{"serve", "-1", "--answers", "/"},
                    Words{"serve", "65536", "--answers", "/"}, Words{"serve", "web", "--answers", "/"},
                    Words{"serve", "9000", "--answers"}, Words{"serve", "9000", "--answers", "/", "--listen"},
                    Words{"push"}, Words{"push", "tcp"}, Words{"push", "--ports", "9000-9010"},
                    Words{"push", "udp", "--ports", "9000-9010"}, Words{"push", "TCP", "--ports", "9000-9010"},
                    Words{"push", "tcp", "--ports"}, Words{"push", "tcp", "--ports", "9000", "--port", "9000"},
                    Words{"push", "tcp", "--ports", "9010-9000"}, Words{"push", "tcp", "--ports", "0-9000"},
                    Words{"push", "tcp", "--ports", "9000-65536"}, Words{"push", "tcp", "--ports", "9000-"},
                    Words{"push", "tcp", "--ports", "-9000"}, Words{"push", "tcp", "--ports", "a-b"},
                    Words{"push", "tcp", "--ports", "9000-9010-9020"}, Words{"push", "tcp", "--ports", " 9000-9010"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--file"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--every"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--every", "0"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--every", "-1"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--every", "1.5"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--every", "86400001"},
                    Words{"push", "tcp", "--ports", "9000-9010", "--listen"},
                    Words{"push", "tcp", "--ports", "9000-9010", "more"}, Words{"watch"}, Words{"watch", "localhost"},
                    Words{"watch", "localhost", "0"}, Words{"watch", "localhost", "65536"},
                    Words{"watch", "localhost", "web"}, Words{"watch", "localhost", "9000", "more"},
                    Words{"watch", "localhost", "9000", "--every", "1"}, Words{"watch", "9000", "--port", "0"},
                    Words{"watch", "--raw", "--time", "9000"}, Words{"watch", "localhost", "9000", "--port", "9000"},
                    Words{"serve", "9000", "--port", "9000", "--answers", "/"},
                    Words{"serve", "9000", "--answers", "/", "--delay", "-1"},
                    Words{"serve", "9000", "--answers", "/", "--close", "-1"},
                    Words{"serve", "9000", "--answers", "/", "--close", "101"},
                    Words{"serve", "9000", "--answers", "/", "--cut", "half"},
                    Words{"serve", "9000", "--answers", "/", "--cut", "51", "--close", "50"},
                    Words{"serve", "9000", "--answers", "/", "--seed", "x"}));

using Unknown = std::pair<Words, const char*>;

class AnUnknownArgument : public testing::TestWithParam<Unknown> {};

TEST_P(AnUnknownArgument, IsNamedWithTheOneThatIsMeant)
{
    const Ended ended = run(orvu(GetParam().first));
    EXPECT_EQ(ended.code, 64);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, std::string("orvu: ") + GetParam().second + "\nRun with --help for more information.\n");
}

INSTANTIATE_TEST_SUITE_P(
    TheTool, AnUnknownArgument,
    testing::Values(
        Unknown{{"wacth", "9000"}, "wacth: no such command; did you mean \"watch\"?"},
        Unknown{{"Types"}, "Types: no such command; did you mean \"types\"?"}, Unknown{{"foo"}, "foo: no such command"},
        Unknown{{"--versoin"}, "--versoin: no such option; did you mean \"--version\"?"},
        Unknown{{"--loud", "types"}, "--loud: no such option"},
        Unknown{{"types", "--jsn"}, "--jsn: types has no such option; did you mean \"--json\"?"},
        Unknown{{"ask", "--prot=9000", "serviceList"}, "--prot: ask has no such option; did you mean \"--port\"?"},
        Unknown{{"push", "tcp", "--prots", "9000"}, "--prots: push has no such option; did you mean \"--ports\"?"},
        Unknown{{"ask", "serviceList", "--loud"}, "--loud: ask has no such option"},
        Unknown{{"types", "check", "-"}, "-: types does not take this argument"}));

class WhatIsNoAddress : public testing::TestWithParam<const char*> {};

TEST_P(WhatIsNoAddress, IsRefusedAsTheOneToListenOn)
{
    for (const Words& words :
         {Words{"serve", "9000", "--answers", "/"}, Words{"push", "tcp", "--ports", "9000-9010"}}) {
        Words listening = words;
        listening.insert(listening.end(), {"--listen", GetParam()});
        const Ended ended = run(orvu(listening));
        EXPECT_EQ(ended.code, 64);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, std::string("orvu: --listen: ") + GetParam() +
                                 " is not an IPv4 address, such as 127.0.0.1\n"
                                 "Run with --help for more information.\n");
    }
}

INSTANTIATE_TEST_SUITE_P(TheTool, WhatIsNoAddress,
                         testing::Values("", "localhost", "1.2.3", "256.0.0.1", " 127.0.0.1", "127.0.0.1:9000", "::1"));

TEST(TheTool, EndsQuietlyWhenNobodyReadsItsOutput)
{
    ProcessOptions unread;
    unread.outputGone = true;
    for (const Words& words : {Words{"types"}, Words{"types", "--json"}, Words{"--help"}, Words{"--version"}}) {
        const Ended ended = run(orvu(words), unread);
        EXPECT_EQ(ended.code, 0);
        EXPECT_EQ(ended.err, "");
    }
}

TEST(TheTool, KeepsTheExitCodeOfItsFindingsWhenNobodyReadsThem)
{
    ProcessOptions unread;
    unread.outputGone = true;
    unread.input = "no JSON";
    EXPECT_EQ(run(orvu({"check", "-"}), unread).code, 2);
}

TEST(TheTool, SaysWhenItsOutputIsClosed)
{
    const Ended ended = run({"/bin/sh", "-c", orvuInShell("types >&-")});
    EXPECT_EQ(ended.code, 74);
    EXPECT_EQ(ended.err, "orvu: standard output: Bad file descriptor\n");
}

TEST(TheTool, SaysWhenItsOutputIsFull)
{
    const Ended ended = run({"/bin/sh", "-c", orvuInShell("--help >/dev/full")});
    EXPECT_EQ(ended.code, 74);
    EXPECT_EQ(ended.err, "orvu: standard output: No space left on device\n");
}

TEST(TheTool, WorksWithoutAnyStandardDescriptor)
{
    ServingTool receiver;
    receiver.answers().write("currentService.json", headerOnly("noSignal"));
    const std::string asking = "ask currentService --port " + receiver.portText() + " <&- >&- 2>&-";
    EXPECT_EQ(run({"/bin/sh", "-c", orvuInShell(asking)}).code, 74);
    ASSERT_TRUE(receiver.process().waitForOutput("currentService -> noSignal"));
}

TEST(TheTool, LeavesStandardErrorToTheLibraryOnlyWhenAsked)
{
    EXPECT_EQ(run(orvu({"types"})).err, "");
    EXPECT_EQ(run(orvu({"--log", "none", "types"})).err, "");
    for (const Words& words : {Words{"--log", "stderr", "types"}, Words{"types", "--log", "stderr"}}) {
        const Ended ended = run(orvu(words));
        EXPECT_EQ(ended.code, 0);
        EXPECT_THAT(ended.err, StartsWith("I/OrVU: factory: dataType: unknown\n"));
        EXPECT_EQ(ended.out, run(orvu({"types"})).out);
    }
}

}  // namespace
}  // namespace OrvuTests
