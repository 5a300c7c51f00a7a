#include <climits>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "core/TestMessages.h"
#include "messages/core/CJsonBridge.h"
#include "messages/core/CheckedText.h"
#include "messages/core/JsonValue.h"
#include "support/FailingMemory.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// What a text of one string reads as.
std::string decoded(const std::string& json)
{
    const CheckedText text(json.c_str());
    EXPECT_TRUE(text) << json;
    return text.value().text();
}

std::optional<int> integerIn(const char* json, Place place)
{
    const CheckedText text(json);
    EXPECT_TRUE(text) << json;
    int value = 0;
    const JsonValue own = text.value();
    if (!(place == Place::Nested ? own.nested() : own).integer(value)) return std::nullopt;
    return value;
}

std::optional<int> integerOf(const char* json)
{
    return integerIn(json, Place::OwnText);
}

std::optional<int> nestedIntegerOf(const char* json)
{
    return integerIn(json, Place::Nested);
}

std::vector<std::string> sourcesOfItems(JsonValue value)
{
    std::vector<std::string> sources;
    for (const JsonValue item : value.items())
        sources.emplace_back(item.source());
    return sources;
}

std::vector<std::string> sourcesOfItems(const std::string& json)
{
    const CheckedText text(json.c_str());
    EXPECT_TRUE(text) << json;
    return sourcesOfItems(text.value());
}

std::vector<std::string> sourcesOfMembers(const std::string& json)
{
    const CheckedText text(json.c_str());
    EXPECT_TRUE(text) << json;
    std::vector<std::string> sources;
    for (const JsonMember& member : text.value().members())
        sources.push_back(std::string(member.key.source()) + "=" + std::string(member.value.source()));
    return sources;
}

using Texts = std::vector<std::string>;

TEST(AView, KnowsTheKindOfItsValue)
{
    const CheckedText text(R"(["a", -1, true, false, null, {}, []])");
    std::string kinds;
    for (const JsonValue item : text.value().items()) {
        if (item.isText()) kinds += "text ";
        if (item.isNumber()) kinds += "number ";
        if (item.isBoolean()) kinds += "boolean ";
        if (item.isNull()) kinds += "null ";
        if (item.isObject()) kinds += "object ";
        if (item.isArray()) kinds += "array ";
    }
    EXPECT_EQ(kinds, "text number boolean boolean null object array ");
}

TEST(AView, IsOfNoKindWithoutAValue)
{
    const JsonValue none = CheckedText("[").value();
    EXPECT_FALSE(none);
    EXPECT_FALSE(none.isText() || none.isNumber() || none.isBoolean() || none.isNull() || none.isObject() ||
                 none.isArray());
    EXPECT_EQ(none.text(), "");
    EXPECT_FALSE(none.equals(""));
    EXPECT_EQ(none.source(), "");
    EXPECT_FALSE(none.next());
    EXPECT_EQ(sourcesOfItems(none), Texts{});
    int value = 7;
    EXPECT_FALSE(none.integer(value));
    EXPECT_EQ(value, 7);
}

TEST(AText, IsDecoded)
{
    EXPECT_EQ(decoded(R"("")"), "");
    EXPECT_EQ(decoded(R"("plain")"), "plain");
    EXPECT_EQ(decoded(R"("\"\\\/\b\f\n\r\t")"), "\"\\/\b\f\n\r\t");
    EXPECT_EQ(decoded("\"\x01\xFF\n\""), "\x01\xFF\n");
}

TEST(AText, HasItsUnicodeEscapesAsUtf8)
{
    EXPECT_EQ(decoded(R"("\u0001\u0041\u007F")"),
              "\x01"
              "A\x7F");
    EXPECT_EQ(decoded(R"("\u0080\u00e9\u07FF")"), "\u0080\u00e9\u07FF");
    EXPECT_EQ(decoded(R"("\u0800\u20ac\uFFFF")"), "\u0800\u20ac\uFFFF");
    EXPECT_EQ(decoded(R"("\uD800\uDC00\ud83d\ude00\uDBFF\uDFFF")"), "\U00010000\U0001F600\U0010FFFF");
}

TEST(AText, EndsAtItsFirstUnicodeZero)
{
    EXPECT_EQ(decoded(R"("a\u0000b")"), "a");
    EXPECT_EQ(decoded(R"("a\u12\"4b")"), "a");
    EXPECT_EQ(decoded(R"("a\u123\\")"), "a");
    EXPECT_EQ(sourcesOfItems(R"(["a\u12\"4b", "\u123\\", 1])"), (Texts{R"("a\u12\"4b")", R"("\u123\\")", "1"}));
}

TEST(AText, IsTakenIntoAStringInPlaceOfWhatThatHeld)
{
    std::string text = "before";
    CheckedText(R"("after")").value().copyTo(text);
    EXPECT_EQ(text, "after");
    CheckedText("1").value().copyTo(text);
    EXPECT_EQ(text, "");
}

TEST(AText, IsComparedExactly)
{
    const CheckedText text(R"("a\u00e9b")");
    EXPECT_TRUE(text.value().equals("a\u00e9b"));
    EXPECT_FALSE(text.value().equals("a\u00e9"));
    EXPECT_FALSE(text.value().equals("a\u00e9bc"));
    EXPECT_FALSE(text.value().equals("A\u00e9b"));
    EXPECT_FALSE(CheckedText("1").value().equals("1"));
}

TEST(AText, GivesWhatNeedsNoDecodingInOneRunOfTheSource)
{
    const char* const json = "\"a text\"";
    const CheckedText text(json);
    TextRuns runs(text.value());
    const std::string_view run = runs.next();
    EXPECT_EQ(run, "a text");
    EXPECT_EQ(run.data(), json + 1);
    EXPECT_TRUE(runs.next().empty());
    EXPECT_TRUE(runs.next().empty());
}

TEST(AText, GivesLongRunsAsTheyAreAndEscapesWithWhatIsBetweenThem)
{
    const CheckedText text(R"("a run of the source\ncd\u00e9\u0000ef")");
    TextRuns runs(text.value());
    for (const char* expected : {"a run of the source", "\ncd\u00e9", "", ""})
        EXPECT_EQ(runs.next(), expected);
}

TEST(AText, GivesManyEscapesInSeveralRuns)
{
    std::string source;
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        source += "\\u00e9";
        expected += "\u00e9";
    }
    source = "\"" + source + "\"";
    const CheckedText text(source.c_str());
    std::string gathered;
    TextRuns runs(text.value());
    for (std::string_view run = runs.next(); !run.empty(); run = runs.next())
        gathered += run;
    EXPECT_EQ(gathered, expected);
}

TEST(ANumber, IsTruncatedTowardsZero)
{
    EXPECT_EQ(integerOf("0"), 0);
    EXPECT_EQ(integerOf("-12"), -12);
    EXPECT_EQ(integerOf("007"), 7);
    EXPECT_EQ(integerOf("2.9"), 2);
    EXPECT_EQ(integerOf("-2.9"), -2);
    EXPECT_EQ(integerOf("-.5"), 0);
    EXPECT_EQ(integerOf("1."), 1);
    EXPECT_EQ(integerOf("12e1"), 120);
    EXPECT_EQ(integerOf("1.25e1"), 12);
}

TEST(ANumber, SaturatesAtTheEndsOf32Bits)
{
    EXPECT_EQ(integerOf("2147483646"), INT_MAX - 1);
    EXPECT_EQ(integerOf("2147483647"), INT_MAX);
    EXPECT_EQ(integerOf("2147483648"), INT_MAX);
    EXPECT_EQ(integerOf("-2147483648"), INT_MIN);
    EXPECT_EQ(integerOf("-2147483649"), INT_MIN);
    EXPECT_EQ(integerOf("999999999999999"), INT_MAX);
    EXPECT_EQ(integerOf("-9999999999999999999999"), INT_MIN);
    EXPECT_EQ(integerOf("1e400"), INT_MAX);
    EXPECT_EQ(integerOf("-1e400"), INT_MIN);
}

TEST(ANumber, MayBeFollowedByAnythingAtTheTop)
{
    EXPECT_EQ(integerOf("12abc"), 12);
    EXPECT_EQ(integerOf("12-3"), 12);
    EXPECT_EQ(integerOf("1e"), 1);
    EXPECT_EQ(integerOf("0x10"), 0);
    EXPECT_EQ(integerOf("1.5.2"), 1);
}

TEST(ANestedNumber, CountsAsItsPrintedTextWouldRead)
{
    for (const char* number :
         {"2.9999999999999996", "0.99999999999999999", "-0", "-0.0", "1e9", "2147483648", "-2147483649", "4294967295",
          "999999999999999", "9999999999999999", "2147483646.9999999", "1e-400", "5e-1"}) {
        const JsonTree tree = parseJson(number);
        const JsonTree again = parseJson(JsonText(cJSON_PrintUnformatted(tree.get())).get());
        EXPECT_EQ(nestedIntegerOf(number), again->valueint) << number;
    }
    EXPECT_EQ(nestedIntegerOf("15"), 15);
}

TEST(ANestedNumber, IsNoneWhenItPrintsAsNull)
{
    EXPECT_EQ(nestedIntegerOf("1e400"), std::nullopt);
    EXPECT_EQ(nestedIntegerOf("-1e400"), std::nullopt);
    EXPECT_EQ(nestedIntegerOf(std::string(400, '9').c_str()), std::nullopt);
}

TEST(ABoolean, IsAnInteger)
{
    EXPECT_EQ(integerOf("true"), 1);
    EXPECT_EQ(integerOf("false"), 0);
    EXPECT_EQ(nestedIntegerOf("true"), 1);
    EXPECT_EQ(nestedIntegerOf("false"), 0);
}

TEST(AValueOfAnotherKind, IsNoInteger)
{
    for (const char* value : {"null", "\"1\"", "[1]", "{}"}) {
        EXPECT_EQ(integerOf(value), std::nullopt);
        EXPECT_EQ(nestedIntegerOf(value), std::nullopt);
    }
}

TEST(AContainer, GivesItsItemsInOrder)
{
    EXPECT_EQ(sourcesOfItems(" [ 1 , \"a\",[2,[3]] , {\"b\" : 4}, true,null,false ,-1.5e3] "),
              (Texts{"1", "\"a\"", "[2,[3]]", "{\"b\" : 4}", "true", "null", "false", "-1.5e3"}));
    EXPECT_EQ(sourcesOfItems("[[],[[]],[]]"), (Texts{"[]", "[[]]", "[]"}));
    EXPECT_EQ(sourcesOfItems("[ ]"), Texts{});
}

TEST(AContainer, GivesTheValuesOfAnObjectAsItems)
{
    EXPECT_EQ(sourcesOfItems("{ \"a\" : 1 ,\"b\":{\"c\":[]},\"a\":2}"), (Texts{"1", "{\"c\":[]}", "2"}));
    EXPECT_EQ(sourcesOfItems("{}"), Texts{});
}

TEST(AContainer, HasNoItemsWhenItIsNone)
{
    for (const char* value : {"\"[1]\"", "1", "true", "null"})
        EXPECT_EQ(sourcesOfItems(value), Texts{});
}

TEST(AnObject, GivesItsMembersInOrder)
{
    EXPECT_EQ(sourcesOfMembers("{ \"a\" : 1 ,\"\":{\"c\":[]},\"\\u0061\" :\n2}"),
              (Texts{"\"a\"=1", "\"\"={\"c\":[]}", "\"\\u0061\"=2"}));
    EXPECT_EQ(sourcesOfMembers("{}"), Texts{});
    EXPECT_EQ(sourcesOfMembers("[1,\"a\"]"), Texts{});
    EXPECT_EQ(sourcesOfMembers("1"), Texts{});
}

TEST(AView, GivesWhatFollowsIt)
{
    const CheckedText object("{\"a\":1, \"b\" : \"2\" ,\"c\":[]}, 5");
    EXPECT_FALSE(object.value().next());  // what comes after the value of the text is not looked at
    JsonValue value = *object.value().items().begin();
    EXPECT_EQ((value = value.next()).source(), "\"2\"");
    EXPECT_EQ((value = value.next()).source(), "[]");
    EXPECT_FALSE(value.next());

    const CheckedText array("[ [1], \"a\" ,\"b\",{\"c\":2}]");
    value = *array.value().items().begin();
    EXPECT_EQ((value = value.next()).source(), "\"a\"");
    EXPECT_EQ((value = value.next()).source(), "\"b\"");
    EXPECT_EQ((value = value.next()).source(), "{\"c\":2}");
    EXPECT_FALSE(value.next());
}

TEST(AView, StepsOverTextsOfAnyLength)
{
    for (const int size : {0, 1, 7, 8, 9, 255, 256, 257, 258, 5000}) {
        const std::string text = "\"" + std::string(size, 'a') + "\"";
        EXPECT_EQ(sourcesOfItems("[" + text + ",[" + text + "]," + text + ",{}," + text + ",1]"),
                  (Texts{text, "[" + text + "]", text, "{}", text, "1"}));
        EXPECT_EQ(sourcesOfMembers("{" + text + ":" + text + "," + text + ":[" + text + "],\"b\":{}}"),
                  (Texts{text + "=" + text, text + "=[" + text + "]", "\"b\"={}"}));
    }
}

// The index tells a long text from an object or array whose number happens to be the place of the text.
TEST(AView, StepsOverAShortTextBeforeAContainer)
{
    for (int before = 0; before < 20; ++before)
        EXPECT_EQ(sourcesOfItems(std::string(before, ' ') + "[\"\",[],\"a\",[[[]]],\"b\",1]"),
                  (Texts{"\"\"", "[]", "\"a\"", "[[[]]]", "\"b\"", "1"}));
}

TEST(AView, IsTheJsonOfItsValue)
{
    const CheckedText text(" {\"a\": [1, \"\\n\"]} x");
    EXPECT_EQ(text.value().source(), "{\"a\": [1, \"\\n\"]}");
    const JsonTree tree = treeInCJson(text.value().source());
    EXPECT_STREQ(JsonText(cJSON_PrintUnformatted(tree.get())).get(), "{\"a\":[1,\"\\n\"]}");
}

TEST(WithoutMemory, ARareNumberThrows)
{
    for (const std::string& json : {std::string("2.5"), "1." + std::string(300, '5')}) {
        const CheckedText text(json.c_str());
        const auto read = [&] {
            int value = 0;
            try {
                return text.value().nested().integer(value) ? value : -1;
            } catch (const std::bad_alloc&) {
                return -2;
            }
        };
        const int expected = read();
        EXPECT_GT(withMemoryRefused(read, [&](int value, bool refused) { EXPECT_EQ(value, refused ? -2 : expected); }),
                  0);
    }
}

TEST(WithoutMemory, ATreeThrows)
{
    const auto make = [] {
        try {
            return treeInCJson("[[1, 2], \"a text that is longer than a short string\"]") ? 1 : 0;
        } catch (const std::bad_alloc&) {
            return -1;
        }
    };
    EXPECT_GT(withMemoryRefused(make, [](int made, bool refused) { EXPECT_EQ(made, refused ? -1 : 1); }), 3);
}

}  // namespace
}  // namespace OrvuTests
