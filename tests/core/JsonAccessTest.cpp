#include <gtest/gtest.h>
#include <string>

#include "orvu/JsonAccess.h"
#include "support/Messages.h"

namespace OrvuTests {

// Names as a program in C would ask the linker for.
cJSON* namedGetStringItem(const cJSON* object, const char* key) __asm__("cJSON_GetStringItem");
cJSON* namedGetNumberItem(const cJSON* object, const char* key) __asm__("cJSON_GetNumberItem");
cJSON* namedGetNumberItemError(const cJSON* object, const char* key,
                               unsigned char* error) __asm__("cJSON_GetNumberItemError");

namespace {

constexpr const char* kEveryKind = R"({"text": "a", "empty": "", "number": 5, "fraction": 2.5, "yes": true, "no": false,
                                       "nothing": null, "array": [1], "object": {"a": 1}})";

class TheAccessors : public testing::Test {
protected:
    cJSON* member(const char* key) { return cJSON_GetObjectItem(tree_.get(), key); }
    cJSON* object() { return tree_.get(); }

    /// The code of cJSON_GetNumberItemError for a member that it does not give; 42 when it leaves the code alone.
    int reasonFor(const char* key)
    {
        unsigned char error = 42;
        EXPECT_EQ(cJSON_GetNumberItemError(object(), key, &error), nullptr) << key;
        return error;
    }

private:
    Tree tree_ = treeOf(kEveryKind);
};

TEST_F(TheAccessors, GiveTextsAsTexts)
{
    EXPECT_EQ(cJSON_GetStringItem(object(), "text"), member("text"));
    EXPECT_EQ(cJSON_GetStringItem(object(), "empty"), member("empty"));
}

TEST_F(TheAccessors, GiveNothingElseAsAText)
{
    for (const char* key : {"number", "fraction", "yes", "no", "nothing", "array", "object", "missing", ""})
        EXPECT_EQ(cJSON_GetStringItem(object(), key), nullptr) << key;
}

TEST_F(TheAccessors, GiveNumbersAsNumbers)
{
    EXPECT_EQ(cJSON_GetNumberItem(object(), "number"), member("number"));
    EXPECT_EQ(cJSON_GetNumberItem(object(), "fraction"), member("fraction"));
}

TEST_F(TheAccessors, GiveBooleansAsNumbers)
{
    ASSERT_EQ(cJSON_GetNumberItem(object(), "yes"), member("yes"));
    ASSERT_EQ(cJSON_GetNumberItem(object(), "no"), member("no"));
    EXPECT_EQ(cJSON_GetNumberItem(object(), "yes")->valueint, 1);
    EXPECT_EQ(cJSON_GetNumberItem(object(), "no")->valueint, 0);
}

TEST_F(TheAccessors, GiveNothingElseAsANumber)
{
    for (const char* key : {"text", "empty", "nothing", "array", "object", "missing", ""})
        EXPECT_EQ(cJSON_GetNumberItem(object(), key), nullptr) << key;
}

TEST_F(TheAccessors, GiveNumbersAndLeaveTheReasonAlone)
{
    for (const unsigned char before : {0, 1, 2, 42}) {
        unsigned char error = before;
        EXPECT_EQ(cJSON_GetNumberItemError(object(), "number", &error), member("number"));
        EXPECT_EQ(cJSON_GetNumberItemError(object(), "fraction", &error), member("fraction"));
        EXPECT_EQ(error, before);
    }
}

TEST_F(TheAccessors, GiveOneAsTheReasonForAMissingNumber)
{
    EXPECT_EQ(reasonFor("missing"), 1);
    EXPECT_EQ(reasonFor(""), 1);
}

TEST_F(TheAccessors, GiveTwoAsTheReasonForAnotherKind)
{
    for (const char* key : {"text", "empty", "yes", "no", "nothing", "array", "object"})
        EXPECT_EQ(reasonFor(key), 2) << key;
}

TEST_F(TheAccessors, FindMembersInAnyLetterCase)
{
    unsigned char error = 0;
    EXPECT_EQ(cJSON_GetStringItem(object(), "TEXT"), member("text"));
    EXPECT_EQ(cJSON_GetNumberItem(object(), "Number"), member("number"));
    EXPECT_EQ(cJSON_GetNumberItemError(object(), "nUMBER", &error), member("number"));
}

TEST_F(TheAccessors, FindTheFirstOfEqualMembers)
{
    unsigned char error = 0;
    const Tree tree = treeOf(R"({"A": 1, "a": "text", "a": 2})");
    EXPECT_EQ(cJSON_GetStringItem(tree.get(), "a"), nullptr);
    EXPECT_EQ(cJSON_GetNumberItem(tree.get(), "a"), tree->child);
    EXPECT_EQ(cJSON_GetNumberItemError(tree.get(), "a", &error), tree->child);
}

TEST_F(TheAccessors, FindNothingWithoutAnObjectOrAKey)
{
    unsigned char error = 0;
    EXPECT_EQ(cJSON_GetStringItem(nullptr, "text"), nullptr);
    EXPECT_EQ(cJSON_GetNumberItem(nullptr, "number"), nullptr);
    EXPECT_EQ(cJSON_GetNumberItemError(nullptr, "number", &error), nullptr);
    EXPECT_EQ(error, 1);
    EXPECT_EQ(cJSON_GetStringItem(object(), nullptr), nullptr);
    EXPECT_EQ(cJSON_GetNumberItem(object(), nullptr), nullptr);
    EXPECT_EQ(reasonFor(nullptr), 1);
}

TEST_F(TheAccessors, FindNothingInWhatIsNotAnObject)
{
    for (const char* text : {"[5]", "5", "\"number\"", "true", "null", "{}", R"([{"number": 5}])"}) {
        const Tree tree = treeOf(text);
        unsigned char error = 0;
        EXPECT_EQ(cJSON_GetStringItem(tree.get(), "number"), nullptr) << text;
        EXPECT_EQ(cJSON_GetNumberItem(tree.get(), "number"), nullptr) << text;
        EXPECT_EQ(cJSON_GetNumberItemError(tree.get(), "number", &error), nullptr) << text;
        EXPECT_EQ(error, 1) << text;
    }
}

TEST_F(TheAccessors, CarryTheirPlainNames)
{
    unsigned char error = 0;
    EXPECT_EQ(namedGetStringItem(object(), "text"), member("text"));
    EXPECT_EQ(namedGetNumberItem(object(), "number"), member("number"));
    EXPECT_EQ(namedGetNumberItemError(object(), "number", &error), member("number"));
}

}  // namespace
}  // namespace OrvuTests
