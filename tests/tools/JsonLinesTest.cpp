#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>

#include "listener/ValueSplitter.h"
#include "tools/orvu/JsonLines.h"

namespace OrvuTests {
namespace {

using Orvu::PushedKind;
using Orvu::PushedMessage;
using Orvu::ValueSplitter;
using OrvuTool::JsonLines;

/// A stream, divided as a listener does and laid out in lines.
class ShownStream : private ValueSplitter::Sink {
public:
    explicit ShownStream(std::size_t longest = ValueSplitter::kLongestValue) : splitter_(*this, longest) {}

    void startLinesWith(const std::string& start) { lines_.startLinesWith(start); }
    void add(std::string_view bytes, std::string& shown)
    {
        std::string room = std::string(bytes) + "#";
        splitter_.add(room.data(), bytes.size());
        EXPECT_EQ(room, std::string(bytes) + "#");
        shown += std::exchange(shown_, "");
    }
    void finish(std::string& shown)
    {
        splitter_.finish();
        shown += std::exchange(shown_, "");
    }

private:
    void value(std::string_view json) override { give(Orvu::PushedValue, json); }
    void text(std::string_view bytes) override { give(Orvu::PushedText, bytes); }
    void endText() override { give(Orvu::PushedTextEnd, ""); }
    void give(PushedKind kind, std::string_view bytes)
    {
        EXPECT_EQ(bytes.data()[bytes.size()], '\0');
        lines_.add(PushedMessage{kind, bytes.data(), bytes.size(), nullptr}, shown_);
    }

    ValueSplitter splitter_;
    JsonLines lines_;
    std::string shown_;
};

/// What is shown of `stream` when it comes in pieces of `size` bytes.
std::string shownInPieces(const std::string& stream, std::size_t size,
                          std::size_t longest = ValueSplitter::kLongestValue)
{
    ShownStream lines(longest);
    std::string shown;
    for (std::size_t at = 0; at < stream.size(); at += size)
        lines.add(std::string_view(stream).substr(at, size), shown);
    lines.finish(shown);
    return shown;
}

/// What is shown of `stream`, which is to be the same however it is cut.
std::string shownOf(const std::string& stream)
{
    const std::string shown = shownInPieces(stream, stream.size() + 1);
    for (const std::size_t size : {1, 2, 3, 7})
        EXPECT_EQ(shownInPieces(stream, size), shown) << "in pieces of " << size;
    return shown;
}

std::string repeated(const std::string& text, std::size_t times)
{
    std::string all;
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST(AStreamOfJson, IsShownAsOneValueALine)
{
    EXPECT_EQ(shownOf(R"({"a":1}{"b":[2,3]}[][{}])"),
              "{\"a\":1}\n"
              "{\"b\":[2,3]}\n"
              "[]\n"
              "[{}]\n");
}

TEST(AStreamOfJson, HasItsWhiteSpaceLeftOut)
{
    EXPECT_EQ(shownOf(" \r\n\t{ \"a\" :\n [ 1 ,\t2 ] }\r\n\r\n { }\n"),
              "{\"a\":[1,2]}\n"
              "{}\n");
}

TEST(AStreamOfJson, KeepsItsTextsAsTheyAre)
{
    EXPECT_EQ(shownOf(R"({"a b":"c  d","q":"say \"hi\" \\"}{"\\":"{[ é \u00e9 \/"})"),
              "{\"a b\":\"c  d\",\"q\":\"say \\\"hi\\\" \\\\\"}\n"
              "{\"\\\\\":\"{[ é \\u00e9 \\/\"}\n");
}

TEST(AStreamOfJson, KeepsItsNumbersAsTheyAre)
{
    EXPECT_EQ(shownOf("[0,-0,1.50,12345678901234567890,-2e400,1E+2,1.0e-07]"),
              "[0,-0,1.50,12345678901234567890,-2e400,1E+2,1.0e-07]\n");
}

TEST(AStreamOfJson, MayHoldValuesOfAllKinds)
{
    EXPECT_EQ(shownOf("\"text\"\"more\"true false\nnull -1.5e3 7[]12{\"a\":null}0\"x\""),
              "\"text\"\n"
              "\"more\"\n"
              "true\n"
              "false\n"
              "null\n"
              "-1.5e3\n"
              "7\n"
              "[]\n"
              "12\n"
              "{\"a\":null}\n"
              "0\n"
              "\"x\"\n");
}

TEST(AStreamOfJson, IsShownAsSoonAsAValueIsWhole)
{
    ShownStream lines;
    std::string shown;
    lines.add("{\"a\":1", shown);
    EXPECT_EQ(shown, "");
    lines.add("}", shown);
    EXPECT_EQ(shown, "{\"a\":1}\n");
}

TEST(AStreamOfJson, HoldsANumberOrAWordBackUntilSomethingFollows)
{
    ShownStream lines;
    std::string shown;
    lines.add("12", shown);
    EXPECT_EQ(shown, "");
    lines.add("3 true", shown);
    EXPECT_EQ(shown, "123\n");
    lines.add("[", shown);
    EXPECT_EQ(shown, "123\ntrue\n");
}

TEST(AStreamOfJson, ShowsNothingOfNothing)
{
    EXPECT_EQ(shownOf(""), "");
    EXPECT_EQ(shownOf(" \n\t\r\n "), "");
}

TEST(AStreamOfJson, NestsAThousandLevels)
{
    const std::string deepest = repeated("[", 1000) + repeated("]", 1000);
    EXPECT_EQ(shownOf(deepest), deepest + "\n");
    EXPECT_EQ(shownOf("[" + deepest + "]"), repeated("[", 1000) + "\n[]\n" + repeated("]", 1000) + "\n");
}

TEST(AMessage, EndsAValueThatNothingElseEnds)
{
    ShownStream lines;
    std::string shown;
    for (const char* message : {"12", "34", "nu", "ll", "{\"a\":", "1}", "text", "", " ", "[1] "}) {
        lines.add(message, shown);
        lines.finish(shown);
    }
    EXPECT_EQ(shown, "12\n34\nnu\nll\n{\"a\":\n1}\ntext\n[1]\n");
}

TEST(WhatIsNotJson, IsShownAsItStands)
{
    EXPECT_EQ(shownOf("hello  world\n"), "hello  world\n");
    EXPECT_EQ(shownOf("  indented\r\n\ttwice"), "  indented\r\n\ttwice\n");
    EXPECT_EQ(shownOf("2026-03-14 20:30:00\n"), "2026-03-14 20:30:00\n");
    EXPECT_EQ(shownOf("truly nice\n12:30\n"), "truly nice\n12:30\n");
    EXPECT_EQ(shownOf(std::string("\0\x01\xff\n", 4)), std::string("\0\x01\xff\n", 4));
}

TEST(WhatIsNotJson, IsShownWhileItComes)
{
    ShownStream lines;
    std::string shown;
    lines.add("he", shown);
    EXPECT_EQ(shown, "he");
    lines.add("llo", shown);
    EXPECT_EQ(shown, "hello");
}

TEST(WhatIsNotJson, EndsWhereAValueMayBegin)
{
    EXPECT_EQ(shownOf("hello {\"a\": 1} [2] there\n"), "hello \n{\"a\":1}\n[2]\n there\n");
    EXPECT_EQ(shownOf("hello\n12\nthere 13\n14"), "hello\n12\nthere 13\n14\n");
}

TEST(WhatIsNotJson, IsFollowedByTheNextValueOfACutStream)
{
    EXPECT_EQ(shownOf(R"({"name":"Can{"name":"A"}{"name":"B"})"),
              "{\"name\":\"Can{\"name\":\"A\"}\n{\"name\":\"B\"}\n");
    EXPECT_EQ(shownOf(R"({"a":1,{"b":2}{"c":3})"), "{\"a\":1,\n{\"b\":2}\n{\"c\":3}\n");
    EXPECT_EQ(shownOf("{{\"b\":2}"), "{\n{\"b\":2}\n");
}

TEST(WhatIsNotJson, IsShownWhenTheStreamEndsInTheMiddleOfAValue)
{
    EXPECT_EQ(shownOf("{\"a\": [1, 2"), "{\"a\": [1, 2\n");
    EXPECT_EQ(shownOf("[1]\n  \"te"), "[1]\n  \"te\n");
    EXPECT_EQ(shownOf("-"), "-\n");
}

class AMalformedText : public testing::TestWithParam<const char*> {};

TEST_P(AMalformedText, IsShownAsItStands)
{
    EXPECT_EQ(shownOf(GetParam()), std::string(GetParam()) + "\n");
}

INSTANTIATE_TEST_SUITE_P(WatchedStream, AMalformedText,
                         testing::Values("{a:1}", "{1:2}", "{\"a\"}", "{\"a\" 1}", "{\"a\":}", "{\"a\":1,}", "{,}",
                                         "{\"a\":1 \"b\":2}", "{]", "[}", "[1,]", "[,1]", "[1 2]", "[1}", "]", "}", ",",
                                         ":", "[01]", "[1.]", "[.5]", "[-]", "[- 1]", "[+1]", "[1e]", "[1e+]", "[1.e1]",
                                         "[0x1]", "[1.2.3]", "[tru]", "[True]", "[nulll]", "[NaN]", "['a']", "\"\\x\"",
                                         "\"\\u12g4\"", "\"\\u12\"", "\"a\tb\"", "01", "1.", "-a", "1-2", "1,2", "nil",
                                         "[\"a\" : 1]", "truefalse", "12true"));

TEST(AValueAboveTheLimit, IsShownAsItComes)
{
    const std::string stream = "[1, 2][ \"345678\"]{ }";  // the second value has 11 bytes
    EXPECT_EQ(shownInPieces(stream, 1, 11), "[1,2]\n[\"345678\"]\n{}\n");
    EXPECT_EQ(shownInPieces(stream, 1, 10), "[1,2]\n[ \"345678\"]\n{}\n");
}

TEST(AValueAboveTheLimit, IsNotHeldBack)
{
    ShownStream lines(10);
    std::string shown;
    lines.add("[ 12345678", shown);
    EXPECT_EQ(shown, "");
    lines.add("9", shown);
    EXPECT_EQ(shown, "[ 123456789");
    lines.add(",\n {", shown);
    EXPECT_EQ(shown, "[ 123456789,\n {");
    lines.add("}][ ]", shown);
    EXPECT_EQ(shown, "[ 123456789,\n {}]\n[]\n");
}

TEST(AValueAboveTheLimit, MayTurnOutNotToBeJson)
{
    EXPECT_EQ(shownInPieces("[ 123456789, x] [ ]", 1, 10), "[ 123456789, x] \n[]\n");
}

TEST(Blanks, AboveTheLimitAreNotHeldBack)
{
    EXPECT_EQ(shownInPieces(std::string(11, ' ') + "1\n[ ]", 1, 10), std::string(11, ' ') + "1\n[]\n");
}

std::string withoutWhiteSpace(std::string text)
{
    const auto isWhite = [](char byte) { return byte == ' ' || byte == '\n'; };
    text.erase(std::remove_if(text.begin(), text.end(), isWhite), text.end());
    return text;
}

TEST(AnyStream, LosesNothingButWhiteSpace)
{
    std::mt19937 random(1);
    const std::string alphabet = "{}[]\"\\:,-.0123eEtrufalsn \nx";
    for (int round = 0; round < 3000; ++round) {
        std::string stream;
        for (unsigned length = random() % 60; stream.size() < length;)
            stream += alphabet[random() % alphabet.size()];
        const std::string shown = shownOf(stream);
        ASSERT_EQ(withoutWhiteSpace(shown), withoutWhiteSpace(stream)) << stream;
        ASSERT_TRUE(shown.empty() || shown.back() == '\n') << stream;
    }
}

TEST(JsonLinesWithABeginning, PutItBeforeEachLine)
{
    ShownStream lines(16);
    std::string shown;
    lines.startLinesWith("1> ");
    lines.add("{ }[1] hello", shown);
    lines.startLinesWith("2> ");
    lines.add(", world\n[\"", shown);
    lines.startLinesWith("3> ");
    lines.add("a\"]", shown);
    lines.add("\"longer than sixteen bytes\" 1", shown);
    lines.finish(shown);
    EXPECT_EQ(shown,
              "1> {}\n"
              "1> [1]\n"
              "1>  hello, world\n"
              "3> [\"a\"]\n"
              "3> \"longer than sixteen bytes\"\n"
              "3> 1\n");
}

}  // namespace
}  // namespace OrvuTests
