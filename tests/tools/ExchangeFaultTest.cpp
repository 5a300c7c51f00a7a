#include <cerrno>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "tools/orvu/ExchangeFault.h"
#include "tools/orvu/JsonTrees.h"

namespace OrvuTests {
namespace {

using namespace Orvu;
using OrvuTool::faultOfExchange;

/// What one exchange with tv.local:7575 came to, and the line that tells it.
struct Exchange {
    std::string line;
    ExchangePhase phase;
    int error = 0;
    std::string text{};
    std::uint32_t announced = 0;
    std::uint64_t received = 0;
    std::uint64_t sent = 28;
};

void PrintTo(const Exchange& exchange, std::ostream* out)
{
    *out << exchange.line;
}

class AFaultOfAnExchange : public testing::TestWithParam<Exchange> {};

TEST_P(AFaultOfAnExchange, IsToldInOneLine)
{
    std::string text = GetParam().text;
    ExchangeReport report;
    report.receivedText = &text;
    report.phase = GetParam().phase;
    report.errorNumber = GetParam().error;
    report.announcedBytes = GetParam().announced;
    report.receivedBytes = GetParam().received;
    report.sentBytes = GetParam().sent;
    report.mayHaveArrived = report.sentBytes > 0;
    EXPECT_EQ(faultOfExchange(report, "tv.local", 7575), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Before, AFaultOfAnExchange,
    testing::Values(
        Exchange{"nothing to send: the request has no text", ExchangePhaseNothingToSend},
        Exchange{"out of memory", ExchangePhaseNothingToSend, ENOMEM},
        Exchange{"no host is named", ExchangePhaseNoPeer},
        Exchange{"cannot resolve tv.local", ExchangePhaseNotResolved},
        Exchange{"cannot resolve tv.local", ExchangePhaseNotResolved, EAGAIN},
        Exchange{"tv.local: IPv4 only", ExchangePhaseNotResolved, EAFNOSUPPORT},
        Exchange{"cannot connect to tv.local:7575: Connection refused", ExchangePhaseNotConnected, ECONNREFUSED},
        Exchange{"cannot connect to tv.local:7575: No route to host", ExchangePhaseNotConnected, EHOSTUNREACH},
        Exchange{"cannot connect to tv.local:7575: nothing happened for 5 s", ExchangePhaseNotConnected, ETIMEDOUT}));

INSTANTIATE_TEST_SUITE_P(WhileSending, AFaultOfAnExchange,
                         testing::Values(Exchange{"the request was not sent: Broken pipe", ExchangePhaseNotSent, EPIPE,
                                                  "", 0, 0, 0},
                                         Exchange{"only 28 bytes of the request were sent: Connection reset by peer",
                                                  ExchangePhaseNotSent, ECONNRESET},
                                         Exchange{"only 28 bytes of the request were sent: nothing happened for 5 s",
                                                  ExchangePhaseNotSent, ETIMEDOUT}));

const char* const kClosed = "closed without an answer: nothing listens to requests here?";

INSTANTIATE_TEST_SUITE_P(
    OfTheAnswer, AFaultOfAnExchange,
    testing::Values(
        Exchange{"no answer within 5 s", ExchangePhaseNoAnswer, ETIMEDOUT}, Exchange{kClosed, ExchangePhaseNoAnswer},
        Exchange{kClosed, ExchangePhaseNoAnswer, ECONNRESET},
        Exchange{"no answer: No route to host", ExchangePhaseNoAnswer, EHOSTUNREACH},
        Exchange{"answered, but cut: 3 of the first 4 bytes came (the server closed the connection)",
                 ExchangePhaseAnswerCut, 0, "", 0, 3},
        Exchange{"answered, but cut: 0 of 24 bytes came (nothing happened for 5 s)", ExchangePhaseAnswerCut, ETIMEDOUT,
                 "", 24, 4},
        Exchange{R"(answered, but cut: 6 of 24 bytes came (Connection reset by peer); what came: "{\"HEAD")",
                 ExchangePhaseAnswerCut, ECONNRESET, "{\"HEAD", 24, 10},
        Exchange{R"(answered, but too long: 67108865 bytes are announced, the most is 64 MiB; what came: "{\n")",
                 ExchangePhaseAnswerTooLong, 0, "{\n", 67108865, 6},
        Exchange{"answered, but not understood: it has no text", ExchangePhaseAnswerNotUnderstood, 0, "", 0, 4},
        Exchange{"answered, but not understood: line 1, column 1: is not JSON from here on: \"no JSON\"; what came: "
                 "\"no JSON\"",
                 ExchangePhaseAnswerNotUnderstood, 0, "no JSON", 7, 11},
        Exchange{"answered, but not understood: line 1, column 1: HEADER: required, missing: nothing names the type; "
                 "what came: \"{}\"",
                 ExchangePhaseAnswerNotUnderstood, 0, "{}", 2, 6},
        Exchange{"out of memory", ExchangePhaseAnswerNotUnderstood, ENOMEM, "", 24, 28},
        Exchange{"", ExchangePhaseAnswered, 0, "{}", 2, 6}, Exchange{"", ExchangePhaseAnswered, ENOMEM, "", 2, 6}));

/// What the line shows of a text.
std::string shownOf(std::string text)
{
    ExchangeReport report;
    report.receivedText = &text;
    report.phase = ExchangePhaseAnswerTooLong;
    const std::string line = faultOfExchange(report, "tv.local", 7575);
    return line.substr(line.rfind(": ") + 2);
}

TEST(WhatCame, IsShownAsFarAsOneLineGoes)
{
    EXPECT_EQ(shownOf(std::string(120, 'x')), "\"" + std::string(120, 'x') + "\"");
    EXPECT_EQ(shownOf(std::string(121, 'x')), "\"" + std::string(120, 'x') + "\" and 1 bytes more");
    EXPECT_EQ(shownOf(std::string(119, 'x') + "é"), "\"" + std::string(119, 'x') + "\" and 2 bytes more");
}

TEST(WhatCame, NeverBreaksTheLine)
{
    EXPECT_EQ(shownOf("a\nb\033[2J"), "\"a\\nb\\u001b[2J\"");
}

std::size_t losses(const std::string& read, const std::string& written)
{
    const OrvuTool::Differences found =
        OrvuTool::differences(OrvuTool::parseText(read).tree.get(), OrvuTool::parseText(written).tree.get());
    return found.lost.size() + found.changed.size();
}

TEST(Losses, AreWhatIsMissingOrChanged)
{
    EXPECT_EQ(losses(R"({"a":1,"b":[1,2],"c":{"d":"x"}})", R"({"a":1,"b":[1,2],"c":{"d":"x"}})"), 0U);
    EXPECT_EQ(losses(R"({"a":1,"b":[1,2],"c":{"d":"x"}})", R"({"a":2,"b":[1],"c":{}})"), 3U);
}

TEST(Losses, AreNotWhatIsAdded)
{
    EXPECT_EQ(losses(R"({"a":[]})", R"({"b":0,"a":[{}],"c":{"d":null}})"), 0U);
    EXPECT_EQ(losses(R"({"a":[],"e":1})", R"({"b":0,"a":[{}],"c":{"d":null}})"), 1U);
}

TEST(Losses, AreNotWhatTakesThePlaceOfANull)
{
    EXPECT_EQ(losses(R"({"a":null,"b":null})", R"({"a":{"c":0}})"), 0U);
    EXPECT_EQ(losses(R"({"a":{"c":0}})", R"({"a":null})"), 1U);
}

}  // namespace
}  // namespace OrvuTests
