#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/TestMessages.h"
#include "messages/core/Forms.h"
#include "messages/core/JsonReader.h"
#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Texts = std::vector<std::string>;

/// A list that owns the times that were read into it.
struct Times {
    std::vector<ServiceTime*> list;

    ~Times()
    {
        for (const ServiceTime* time : list)
            delete time;
    }

    Texts texts() const
    {
        Texts texts;
        for (const ServiceTime* time : list)
            texts.push_back(time->time);
        return texts;
    }
};

TEST(TheReadersVerbs, AppendTheTextsOfAList)
{
    Texts texts = {"before"};
    EXPECT_EQ(faultOf(R"({"a": ["x", 5, null, "", ["y"], true, "z\u0000cut"]})",
                      [&](JsonReader& json) { EXPECT_TRUE(json.required("a", texts)); }),
              kNoFault);
    EXPECT_EQ(texts, (Texts{"before", "x", "", "z"}));
}

TEST(TheReadersVerbs, FindNoTextsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", R"("text")", "true", "[]", "{}"}) {
        Texts texts;
        EXPECT_EQ(faultOf(R"({"a": )" + std::string(value) + "}",
                          [&](JsonReader& json) { EXPECT_TRUE(json.required("a", texts)); }),
                  kNoFault);
        EXPECT_TRUE(texts.empty()) << value;
    }
    Texts texts;
    EXPECT_EQ(faultOf("{}", [&](JsonReader& json) { EXPECT_FALSE(json.required("a", texts)); }), kMissing);
}

TEST(TheReadersVerbs, KeepElementsThatCannotBeRead)
{
    Times times;
    EXPECT_EQ(faultOf(R"({"a": [{"time": "1"}, {}, 5, {"time": "2"}]})",
                      [&](JsonReader& json) { EXPECT_TRUE(json.optional("a", keepingAll(times.list))); }),
              kNoFault);
    EXPECT_EQ(times.texts(), (Texts{"1", "", "", "2"}));
    EXPECT_EQ(faultOf("{}", [&](JsonReader& json) { EXPECT_FALSE(json.optional("a", keepingAll(times.list))); }),
              kNoFault);
    EXPECT_EQ(faultOf("{}", [&](JsonReader& json) { EXPECT_FALSE(json.required("a", keepingAll(times.list))); }),
              kMissing);
}

TEST(TheReadersVerbs, ReadMembersOfAnInnerObject)
{
    int number = 0;
    int behind = 0;
    EXPECT_EQ(
        faultOf(R"({"inner": {"number": 5}, "behind": 6})",
                [&](JsonReader& json) {
                    EXPECT_TRUE(json.object("inner", [&](JsonReader& inner) { inner.required("number", number); }));
                    json.optional("behind", behind);
                }),
        kNoFault);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(behind, 6);
}

TEST(TheReadersVerbs, TakeTheFaultOfAnInnerObjectForTheirs)
{
    int number = 0;
    const auto reads = [&](JsonReader& json) {
        json.object("inner", [&](JsonReader& inner) { inner.required("number", number); });
        json.optional("behind", number);
    };
    EXPECT_EQ(faultOf(R"({"inner": {}, "behind": 6})", reads), kMissing);
    EXPECT_EQ(faultOf(R"({"inner": {"number": "5"}, "behind": 6})", reads), kWrongKind);
    EXPECT_EQ(faultOf(R"({"inner": 5, "behind": 6})", reads), kMissing);
    EXPECT_EQ(number, 0);
}

TEST(TheReadersVerbs, SayThatThereIsNoInnerObject)
{
    const auto nothing = [](JsonReader&) { FAIL() << "there is no object"; };
    EXPECT_EQ(faultOf("{}", [&](JsonReader& json) { EXPECT_FALSE(json.object("inner", nothing)); }), kNoFault);
}

TEST(TheReadersVerbs, KeepThePlaceOfAnInnerObject)
{
    const auto read = [](Place place) {
        int number = 0;
        faultOf(
            R"({"inner": {"a": 2.9999999999999996}})",
            [&](JsonReader& json) { json.object("inner", [&](JsonReader& inner) { inner.optional("a", number); }); },
            place);
        return number;
    };
    EXPECT_EQ(read(Place::OwnText), 2);
    EXPECT_EQ(read(Place::Nested), 3);
}

TEST(TheReadersVerbs, FindAListByItsPlace)
{
    for (const char* text : {R"({"type": 1, "whatever": [{"time": "1"}, {}, {"time": "2"}]})",
                             R"({"x": 0, "TYPE": 1, "HEADER": [{"time": "1"}, {"time": "2"}]})",
                             R"({"type": 1, "type": [{"time": "1"}, {"time": "2"}], "list": [{"time": "3"}]})"}) {
        Times times;
        int type = 0;
        EXPECT_EQ(faultOf(text,
                          [&](JsonReader& json) {
                              json.required("type", type);
                              json.required("type", listAfter(times.list));
                          }),
                  kNoFault);
        EXPECT_EQ(type, 1) << text;
        EXPECT_EQ(times.texts(), (Texts{"1", "2"})) << text;
    }
}

TEST(TheReadersVerbs, FailWithoutAListAtItsPlace)
{
    Times times;
    const auto reads = [&](JsonReader& json) { json.required("type", listAfter(times.list)); };
    EXPECT_EQ(faultOf(R"({"type": 1})", reads), kMissing);
    EXPECT_EQ(faultOf(R"({"list": [{"time": "1"}]})", reads), kMissing);
    EXPECT_EQ(faultOf(R"({"list": [{"time": "1"}], "type": 1})", reads), kMissing);
    EXPECT_EQ(faultOf(R"({"type": 1, "list": 5})", reads), kNoFault);  // of another kind: no items
    EXPECT_TRUE(times.list.empty());
}

TEST(TheReadersVerbs, IgnoreWhatHasNoEffect)
{
    int number = 0;
    EXPECT_EQ(faultOf(R"({"a": 1, "b": 2})",
                      [&](JsonReader& json) {
                          json.ignored("a");
                          json.optional("b", number);
                      }),
              kNoFault);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(faultOf("{}", [](JsonReader& json) { json.ignored("a"); }), kNoFault);
}

TEST(TheReadersVerbs, AskForTheSameKeySeveralTimesInARow)
{
    for (const char* text : {R"({"a": 1, "b": 2})", R"({"b": 2, "a": 1})", R"({"a": 1, "a": 3, "b": 2, "b": 4})",
                             R"({"x": 0, "A": 1, "b": 2})", R"({"HEADER": "x", "a": 1, "header": "y", "b": 2})"}) {
        int numbers[4] = {};
        faultOf(text, [&](JsonReader& json) {
            json.optional("a", numbers[0]);
            json.optional("a", numbers[1]);
            json.optional("b", numbers[2]);
            json.optional("b", numbers[3]);
        });
        EXPECT_EQ((std::vector<int>(numbers, numbers + 4)), (std::vector<int>{1, 1, 2, 2})) << text;
    }
}

TEST(TheReadersVerbs, KeepTheFirstOfSeveralFaults)
{
    EXPECT_EQ(faultOf("{}",
                      [](JsonReader& json) {
                          json.fail(OwnCode{101});
                          json.fail(Fault::Missing);
                      }),
              101);
}

enum Colour : int { Unknown, Red, Green };
constexpr Word kColourWords[] = {{Unknown, "unknown", WrittenOnly}, {Red, "red"}, {Green, "green", WrittenOnly}};
constexpr Vocabulary<Colour> kColours = vocabulary(kColourWords, Unknown);

Colour colourOf(const std::string& value)
{
    Colour colour = Green;
    faultOf(R"({"a": )" + value + "}", [&](JsonReader& json) { json.optional("a", asWord(colour, kColours)); });
    return colour;
}

TEST(TheForms, ReadWords)
{
    EXPECT_EQ(colourOf(R"("red")"), Red);
    EXPECT_EQ(colourOf(R"("Red")"), Unknown);
    EXPECT_EQ(colourOf(R"("green")"), Unknown);  // written, but not read back
    EXPECT_EQ(colourOf(R"("")"), Unknown);
    EXPECT_EQ(colourOf("5"), Green);
    EXPECT_EQ(colourOf("null"), Green);
}

TEST(TheForms, ReadListsOfWordsTextsAndNumbers)
{
    std::vector<Colour> colours = {Green};
    Texts texts;
    std::vector<int> numbers;
    const int fault =
        faultOf(R"({"colours": ["red", 5, "blue"], "texts": ["x", 1, "y"], "numbers": [1, "2", true, 3.9, null]})",
                [&](JsonReader& json) {
                    json.required("colours", asWords(colours, kColours));
                    json.required("texts", texts);
                    json.required("numbers", eachNumber([&](int number) { numbers.push_back(number); }));
                });
    EXPECT_EQ(fault, kNoFault);
    EXPECT_EQ(colours, (std::vector<Colour>{Green, Red, Unknown}));
    EXPECT_EQ(texts, (Texts{"x", "y"}));
    EXPECT_EQ(numbers, (std::vector<int>{1, 0, 0, 3, 0}));
}

TEST(TheForms, ReadWhatAPointerHolds)
{
    int* number = nullptr;
    const auto reads = [&](JsonReader& json) {
        EXPECT_EQ(json.optional("a", ifHeld(number)), json.optional("b", OfAnyKind()));
    };
    faultOf(R"({"a": "text"})", reads);
    EXPECT_EQ(number, nullptr);
    faultOf(R"({"a": 5, "b": null})", reads);
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(*number, 5);
    const int* const held = number;
    faultOf(R"({"a": 6, "b": 1})", reads);
    EXPECT_EQ(number, held);
    EXPECT_EQ(*number, 6);
    delete number;
}

TEST(TheForms, AskForAKeyOfAnyKind)
{
    for (const char* value : {"null", "5", R"("text")", "true", "[]", "{}"}) {
        faultOf(R"({"a": )" + std::string(value) + "}",
                [&](JsonReader& json) { EXPECT_TRUE(json.optional("a", OfAnyKind())) << value; });
    }
    faultOf("{}", [](JsonReader& json) { EXPECT_FALSE(json.optional("a", OfAnyKind())); });
}

TEST(ReadingWithReasons, GivesTheCodeOfTheFirstFault)
{
    int number = 0;
    Scripted message([&](JsonReader& json) { json.required("a", number); });
    const auto codeFor = [&](const char* text) {
        unsigned char error = 77;
        const bool success = readText(message, contractOf<Scripted>().read, text, error);
        EXPECT_EQ(success, error == 77);
        return error;
    };
    EXPECT_EQ(codeFor(R"({"a": 1})"), 77);
    EXPECT_EQ(codeFor("{}"), 1);
    EXPECT_EQ(codeFor(R"({"a": "1"})"), 2);
    EXPECT_EQ(codeFor(nullptr), 1);
    EXPECT_EQ(codeFor("no JSON"), 1);
}

}  // namespace
}  // namespace OrvuTests
