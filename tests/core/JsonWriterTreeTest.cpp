#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "core/RandomJson.h"
#include "messages/core/CJsonBridge.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::string writtenTree(const cJSON& tree, PrintStyle style)
{
    JsonPrinter json(style);
    printTree(json, tree);
    return taken(json.take());
}

/// That a tree is written as cJSON prints it, in both styles.
void expectAsCJson(const Tree& tree)
{
    EXPECT_EQ(writtenTree(*tree, PrintStyle::Formatted), taken(cJSON_Print(tree.get())));
    EXPECT_EQ(writtenTree(*tree, PrintStyle::Compact), taken(cJSON_PrintUnformatted(tree.get())));
    EXPECT_EQ(taken(printed(*tree)), taken(cJSON_Print(tree.get())));
}

TEST(AWrittenTree, ReadsAsCJsonPrintsIt)
{
    for (unsigned seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE(seed);
        expectAsCJson(RandomJson(seed).tree(6));
        if (testing::Test::HasFailure()) return;
    }
}

TEST(AWrittenTree, EscapesEachByteOfTextsAndKeysAsCJsonDoes)
{
    for (int byte = 1; byte <= 255; ++byte) {
        const std::string around[] = {std::string(1, static_cast<char>(byte)),
                                      "a" + std::string(2, static_cast<char>(byte)),
                                      std::string(1, static_cast<char>(byte)) + "b"};
        for (const std::string& text : around) {
            const Tree object(cJSON_CreateObject());
            cJSON_AddStringToObject(object.get(), text.c_str(), text.c_str());
            expectAsCJson(object);
        }
    }
}

TEST(AWrittenTree, HoldsRawTextsAsTheyAre)
{
    const Tree object(cJSON_CreateObject());
    cJSON_AddRawToObject(object.get(), "raw", R"({ "x":  "\u0041" })");
    expectAsCJson(object);
    EXPECT_EQ(writtenTree(*object, PrintStyle::Compact), R"({"raw":{ "x":  "\u0041" }})");
}

TEST(AWrittenTree, HasNoTextWhenAValueIsOfNoKind)
{
    const Tree array(cJSON_CreateArray());
    cJSON* const value = cJSON_CreateNull();
    cJSON_AddItemToArray(array.get(), value);
    for (const int kind : {cJSON_Invalid, cJSON_Raw}) {  // a raw value without its text is none either
        value->type = kind;
        EXPECT_EQ(cJSON_Print(array.get()), nullptr);
        EXPECT_EQ(printed(*array), nullptr);
    }
}

TEST(AWrittenTree, HoldsEveryKindOfValue)
{
    const Tree tree = treeOf(R"({"text":"a\"\\\/\b\f\n\r\t\u0001\u007f","whole":-7,"fraction":2.5,"yes":true,"no":false,
                                 "nothing":null,"array":[1,[],{}],"object":{"":{}}})");
    EXPECT_EQ(
        writtenTree(*tree, PrintStyle::Compact),
        "{\"text\":\"a\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\x7f\",\"whole\":-7,\"fraction\":2.5,\"yes\":true,\"no\":false,"
        "\"nothing\":null,\"array\":[1,[],{}],\"object\":{\"\":{}}}");
    EXPECT_EQ(writtenTree(*tree, PrintStyle::Formatted),
              "{\n"
              "\t\"text\":\t\"a\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\x7f\",\n"
              "\t\"whole\":\t-7,\n"
              "\t\"fraction\":\t2.5,\n"
              "\t\"yes\":\ttrue,\n"
              "\t\"no\":\tfalse,\n"
              "\t\"nothing\":\tnull,\n"
              "\t\"array\":\t[1, [], {\n"
              "\t\t}],\n"
              "\t\"object\":\t{\n"
              "\t\t\"\":\t{\n"
              "\t\t}\n"
              "\t}\n"
              "}");
    expectAsCJson(tree);
}

TEST(AWrittenTree, MayBeASingleValue)
{
    for (const char* text : {"5", "-2.5", "\"a\"", "\"\"", "true", "false", "null", "[]", "[[], []]"}) {
        EXPECT_EQ(writtenTree(*treeOf(text), PrintStyle::Formatted), text);
        expectAsCJson(treeOf(text));
    }
    EXPECT_EQ(writtenTree(*treeOf("{}"), PrintStyle::Formatted), "{\n}");
    EXPECT_EQ(writtenTree(*treeOf("{}"), PrintStyle::Compact), "{}");
}

TEST(AWrittenTree, HasNumbersAsCJsonPrintsThem)
{
    using Limits = std::numeric_limits<double>;
    const double numbers[] = {0.0,
                              -0.0,
                              1.0,
                              -1.0,
                              INT_MAX,
                              INT_MIN,
                              2147483648.0,
                              -2147483649.0,
                              4294967295.0,
                              0.1,
                              1.0 / 3,
                              1e15,
                              1e16,
                              1e17,
                              1e308,
                              -1e308,
                              Limits::max(),
                              Limits::min(),
                              Limits::denorm_min(),
                              2.9999999999999996,
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::quiet_NaN()};
    for (const double number : numbers) {
        SCOPED_TRACE(number);
        expectAsCJson(Tree(cJSON_CreateNumber(number)));
    }
}

TEST(AWrittenTree, HasNullForNumbersThatJsonDoesNotKnow)
{
    const Tree array(cJSON_CreateArray());
    cJSON_AddItemToArray(array.get(), cJSON_CreateNumber(std::numeric_limits<double>::infinity()));
    cJSON_AddItemToArray(array.get(), cJSON_CreateNumber(std::nan("")));
    EXPECT_EQ(writtenTree(*array, PrintStyle::Compact), "[null,null]");
}

TEST(AWrittenTree, HasEmptyTextsWhereTheTreeHasNone)
{
    const Tree object(cJSON_CreateObject());
    cJSON_AddItemToArray(object.get(), cJSON_CreateStringReference(nullptr));  // a member without a key
    EXPECT_EQ(writtenTree(*object, PrintStyle::Compact), R"({"":""})");
    expectAsCJson(object);
}

TEST(AWrittenTree, GrowsWithItsTexts)
{
    const Tree array(cJSON_CreateArray());
    for (std::size_t size = 500; size < 520; ++size)  // around the capacity that the text starts with
        cJSON_AddItemToArray(array.get(), cJSON_CreateString(std::string(size, 'a').c_str()));
    cJSON_AddItemToArray(array.get(), cJSON_CreateString(std::string(1 << 20, '\n').c_str()));
    expectAsCJson(array);
}

}  // namespace
}  // namespace OrvuTests
