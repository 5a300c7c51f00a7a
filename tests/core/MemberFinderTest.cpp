#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "messages/core/CheckedText.h"
#include "messages/core/MemberFinder.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Texts = std::vector<std::string>;

/// What one finder finds for these keys in their order; "" for what it does not.
Texts found(const std::string& json, const Texts& keys)
{
    const CheckedText text(json.c_str());
    EXPECT_TRUE(text) << json;
    MemberFinder finder(text.value());
    Texts values;
    for (const std::string& key : keys)
        values.emplace_back(finder.find(key.c_str()).source());
    return values;
}

/// An object of so many members "k0" and so on, each with its number.
std::string numbered(int count)
{
    std::string json = "{";
    for (int i = 0; i < count; ++i)
        json += "\"k" + std::to_string(i) + "\": " + std::to_string(i) + ", ";
    return json + "\"end\": true}";
}

TEST(AMemberFinder, FindsMembersInTheirOrder)
{
    EXPECT_EQ(found(R"({"a": 1, "b": [2, {"c": 9}], "c": "3"})", {"a", "b", "c"}),
              (Texts{"1", R"([2, {"c": 9}])", "\"3\""}));
}

TEST(AMemberFinder, FindsMembersInAnyOrder)
{
    EXPECT_EQ(found(R"({"a": 1, "b": 2, "c": 3})", {"c", "b", "a"}), (Texts{"3", "2", "1"}));
    EXPECT_EQ(found(R"({"a": 1, "b": 2, "c": 3})", {"b", "a", "c"}), (Texts{"2", "1", "3"}));
}

TEST(AMemberFinder, FindsNothingUnderOtherKeys)
{
    EXPECT_EQ(found(R"({"a": 1, "b": 2})", {"x", "a", "", "aa", "b", "x", "a"}),
              (Texts{"", "1", "", "", "2", "", "1"}));
    EXPECT_EQ(found("{}", {"a", ""}), (Texts{"", ""}));
}

TEST(AMemberFinder, PassesOverMembersThatNobodyAsksFor)
{
    EXPECT_EQ(found(R"({"HEADER": "x", "a": 1, "other": [], "b": 2})", {"a", "b", "header"}),
              (Texts{"1", "2", "\"x\""}));
}

TEST(AMemberFinder, IgnoresLetterCase)
{
    EXPECT_EQ(found(R"({"ServiceID": 1, "header": 2, "z{@[`": 3})", {"serviceId", "HEADER", "Z{@[`", "z[@[`", "z{`{@"}),
              (Texts{"1", "2", "3", "", ""}));
}

TEST(AMemberFinder, IgnoresTheCaseOfAsciiLettersOnly)
{
    EXPECT_EQ(found("{\"\xC3\xA9\": 1, \"\xE9\": 2}", {"\xC3\x89", "\xC9", "\xC3\xA9", "\xE9"}),
              (Texts{"", "", "1", "2"}));
}

TEST(AMemberFinder, TakesTheFirstOfEqualMembers)
{
    EXPECT_EQ(found(R"({"a": 1, "A": 2, "b": 3, "B": 4})", {"a", "b"}), (Texts{"1", "3"}));
    EXPECT_EQ(found(R"({"b": 1, "a": 2, "b": 3})", {"a", "b"}), (Texts{"2", "1"}));
    EXPECT_EQ(found(R"({"a": 1, "x": 9, "c": 2, "b": 3, "c": 4})", {"a", "b", "c"}), (Texts{"1", "3", "2"}));
}

TEST(AMemberFinder, TakesTheFirstAgainWhenItIsAskedAgain)
{
    EXPECT_EQ(found(R"({"a": 1, "a": 2, "b": 3, "a": 4})", {"a", "a", "b", "a", "A"}),
              (Texts{"1", "1", "3", "1", "1"}));
}

TEST(AMemberFinder, ComparesKeysAfterDecoding)
{
    EXPECT_EQ(found(R"({"\u0061b": 1, "a\"b": 2, "a\\b": 3, "\/": 4})", {"AB", "a\"b", "a\\b", "/", "a\\\"b"}),
              (Texts{"1", "2", "3", "4", ""}));
    EXPECT_EQ(found(R"({"a": 1, "b": 2})", {"\\u0061"}), (Texts{""}));
}

TEST(AMemberFinder, ComparesKeysOfEscapesOnly)
{
    const std::string json = R"({"\ud83d\ude00": 1, "a\ud83d\ude00": 2, "\u0061\u0062\u0063": 3, "\u20ac\u0000": 4})";
    EXPECT_EQ(found(json, {"", "a", "ab", "abc", "abcd", "\xF0", "\u20ac", "a\U0001F600", "\U0001F600"}),
              (Texts{"", "", "", "3", "", "", "4", "2", "1"}));
}

TEST(AMemberFinder, EndsKeysAtTheirFirstUnicodeZero)
{
    EXPECT_EQ(found(R"({"a\u0000b": 1, "a\u12\"4b": 2, "\u123\\": 3, "ab": 4})", {"a", "", "ab"}),
              (Texts{"1", "3", "4"}));
}

TEST(AMemberFinder, FindsAMemberWithAnEmptyKey)
{
    EXPECT_EQ(found(R"({"a": 1, "": 2})", {""}), (Texts{"2"}));
}

TEST(AMemberFinder, FindsKeysOfAnyLength)
{
    for (const int size : {255, 256, 257, 258, 5000}) {
        const std::string key(size, 'k');
        const std::string json = "{\"" + key + "\": 1, \"" + key + "x\": 2, \"\\u006b" + key + "\": 3, \"a\": 4}";
        EXPECT_EQ(found(json, {key, key + "x", key + "K", "a", key + "y"}), (Texts{"1", "2", "3", "4", ""})) << size;
        EXPECT_EQ(found(json, {"a", key + "K", key + "x", key}), (Texts{"4", "3", "2", "1"})) << size;
    }
}

TEST(AMemberFinder, FindsMembersAfterThoseThatItRemembers)
{
    for (const int count : {30, 31, 32, 33, 34, 100, 1000}) {
        const std::string last = std::to_string(count - 1);
        EXPECT_EQ(found(numbered(count), {"k0", "end", "k" + last, "k20", "none", "K" + last, "k1", "End"}),
                  (Texts{"0", "true", last, "20", "", last, "1", "true"}))
            << count;
    }
}

TEST(AMemberFinder, FindsManyMembersInTheirOrder)
{
    Texts keys;
    Texts numbers;
    for (int i = 0; i < 500; ++i) {
        keys.push_back("k" + std::to_string(i));
        numbers.push_back(std::to_string(i));
    }
    EXPECT_EQ(found(numbered(500), keys), numbers);
}

TEST(AMemberFinder, FindsNothingInWhatIsNotAnObject)
{
    for (const char* json : {"[1, \"a\", {\"a\": 2}]", "\"a\"", "1", "null", "[]"})
        EXPECT_EQ(found(json, {"a", "", "1"}), (Texts{"", "", ""}));
    MemberFinder nothing{JsonValue()};
    EXPECT_FALSE(nothing.find("a"));
}

}  // namespace
}  // namespace OrvuTests
