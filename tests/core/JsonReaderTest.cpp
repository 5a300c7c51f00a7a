#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/TestMessages.h"
#include "messages/core/JsonReader.h"
#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr int kUntouched = 4711;

/// What "a" of {"a": value} reads as; kUntouched when it is not taken.
int integerAt(Place place, const std::string& value)
{
    int field = kUntouched;
    faultOf(R"({"a": )" + value + "}", [&](JsonReader& json) { json.optional("a", field); }, place);
    return field;
}

TEST(AJsonReader, TakesTextsIntegersAndBooleans)
{
    std::string text;
    int number = 0;
    bool yes = false;
    EXPECT_EQ(faultOf(R"({"text": "a", "number": -5, "yes": true})",
                      [&](JsonReader& json) {
                          EXPECT_TRUE(json.optional("text", text));
                          EXPECT_TRUE(json.required("number", number));
                          EXPECT_TRUE(json.optional("yes", yes));
                      }),
              kNoFault);
    EXPECT_EQ(text, "a");
    EXPECT_EQ(number, -5);
    EXPECT_TRUE(yes);
}

TEST(AJsonReader, LeavesAFieldWhoseMemberIsMissing)
{
    std::string text = "before";
    int number = kUntouched;
    bool yes = true;
    EXPECT_EQ(faultOf("{}",
                      [&](JsonReader& json) {
                          EXPECT_FALSE(json.optional("text", text));
                          EXPECT_FALSE(json.optional("number", number));
                          EXPECT_FALSE(json.optional("yes", yes));
                      }),
              kNoFault);
    EXPECT_EQ(text, "before");
    EXPECT_EQ(number, kUntouched);
    EXPECT_TRUE(yes);
}

TEST(AJsonReader, FaultsWhereARequiredMemberIsMissing)
{
    int number = kUntouched;
    EXPECT_EQ(faultOf(R"({"b": 1})", [&](JsonReader& json) { EXPECT_FALSE(json.required("a", number)); }), kMissing);
    EXPECT_EQ(number, kUntouched);
}

TEST(AJsonReader, FaultsWhereARequiredMemberIsOfAnotherKind)
{
    int number = kUntouched;
    for (const char* text : {R"({"a": "1"})", R"({"a": null})", R"({"b": 1, "a": []})", R"({"a": {}, "a": 1})"}) {
        EXPECT_EQ(faultOf(text, [&](JsonReader& json) { EXPECT_FALSE(json.required("a", number)); }), kWrongKind)
            << text;
    }
    EXPECT_EQ(number, kUntouched);
}

TEST(AJsonReader, DoesNothingAfterItsFirstFault)
{
    int before = 0;
    int behind = 0;
    std::vector<Service*> list;
    Service* child = nullptr;
    EXPECT_EQ(faultOf(R"({"before": 1, "behind": 2, "list": [{}], "child": {}, "text": 5})",
                      [&](JsonReader& json) {
                          std::string text;
                          EXPECT_TRUE(json.optional("before", before));
                          EXPECT_FALSE(json.required("missing", behind));
                          EXPECT_FALSE(json.optional("behind", behind));
                          EXPECT_FALSE(json.required("behind", behind));
                          EXPECT_FALSE(json.alternative("other", "behind", behind));
                          EXPECT_FALSE(json.optional("list", list));
                          EXPECT_FALSE(json.optional("child", child));
                          EXPECT_FALSE(json.required("text", text));  // of another kind, but not the first fault
                      }),
              kMissing);
    EXPECT_EQ(before, 1);
    EXPECT_EQ(behind, 0);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(child, nullptr);
}

TEST(AJsonReader, FindsNoMembersInWhatIsNotAnObject)
{
    for (const char* text : {"5", "null", "true", R"("a")", "[]", "[1]", R"([{"a": 1}])"}) {
        int number = kUntouched;
        EXPECT_EQ(faultOf(text, [&](JsonReader& json) { json.required("a", number); }), kMissing) << text;
        EXPECT_EQ(number, kUntouched);
    }
}

TEST(AJsonReader, TakesTheFirstOfTwoNamesThatServes)
{
    const auto read = [](const char* text) {
        int field = kUntouched;
        faultOf(text, [&](JsonReader& json) { json.alternative("a", "b", field); });
        return field;
    };
    EXPECT_EQ(read(R"({"a": 1, "b": 2})"), 1);
    EXPECT_EQ(read(R"({"b": 2, "a": 1})"), 1);
    EXPECT_EQ(read(R"({"b": 2})"), 2);
    EXPECT_EQ(read(R"({"a": "1", "b": 2})"), 2);
    EXPECT_EQ(read(R"({"a": "1", "b": "2"})"), kUntouched);
    EXPECT_EQ(read("{}"), kUntouched);
}

TEST(AJsonReader, CountsABooleanAsANumber)
{
    for (const Place place : {Place::OwnText, Place::Nested}) {
        EXPECT_EQ(integerAt(place, "true"), 1);
        EXPECT_EQ(integerAt(place, "false"), 0);
    }
}

TEST(AJsonReader, CutsAFraction)
{
    for (const Place place : {Place::OwnText, Place::Nested}) {
        EXPECT_EQ(integerAt(place, "2.9"), 2);
        EXPECT_EQ(integerAt(place, "-2.9"), -2);
        EXPECT_EQ(integerAt(place, "0.5"), 0);
        EXPECT_EQ(integerAt(place, "-0.0"), 0);
        EXPECT_EQ(integerAt(place, "5e-324"), 0);
        EXPECT_EQ(integerAt(place, "1.5e3"), 1500);
    }
}

TEST(AJsonReader, SaturatesNumbersAtTheEndsOf32Bits)
{
    for (const Place place : {Place::OwnText, Place::Nested}) {
        EXPECT_EQ(integerAt(place, "2147483646"), 2147483646);
        EXPECT_EQ(integerAt(place, "2147483647"), 2147483647);
        EXPECT_EQ(integerAt(place, "2147483648"), 2147483647);
        EXPECT_EQ(integerAt(place, "-2147483648"), -2147483647 - 1);
        EXPECT_EQ(integerAt(place, "-2147483649"), -2147483647 - 1);
        EXPECT_EQ(integerAt(place, "1e308"), 2147483647);
        EXPECT_EQ(integerAt(place, "-1e308"), -2147483647 - 1);
    }
}

TEST(AJsonReader, TakesANestedNumberForWhatItsPrintedTextReads)
{
    EXPECT_EQ(integerAt(Place::OwnText, "2.9999999999999996"), 2);
    EXPECT_EQ(integerAt(Place::Nested, "2.9999999999999996"), 3);
    EXPECT_EQ(integerAt(Place::OwnText, "-2.9999999999999996"), -2);
    EXPECT_EQ(integerAt(Place::Nested, "-2.9999999999999996"), -3);
    EXPECT_EQ(integerAt(Place::Nested, "2.999999999999"), 2);
}

TEST(AJsonReader, TakesANestedInfinityForNull)
{
    EXPECT_EQ(integerAt(Place::OwnText, "1e400"), 2147483647);
    EXPECT_EQ(integerAt(Place::OwnText, "-1e400"), -2147483647 - 1);
    EXPECT_EQ(integerAt(Place::Nested, "1e400"), kUntouched);
    EXPECT_EQ(integerAt(Place::Nested, "-1e400"), kUntouched);
    int number = 0;
    const auto reads = [&](JsonReader& json) { json.required("a", number); };
    EXPECT_EQ(faultOf(R"({"a": 1e400})", reads, Place::OwnText), kNoFault);
    EXPECT_EQ(faultOf(R"({"a": 1e400})", reads, Place::Nested), kWrongKind);
}

TEST(AJsonReader, TakesAnyNumberButZeroForTrue)
{
    const auto read = [](const std::string& value, Place place) {
        bool field = value == "0";
        faultOf(R"({"a": )" + value + "}", [&](JsonReader& json) { json.optional("a", field); }, place);
        return field;
    };
    for (const Place place : {Place::OwnText, Place::Nested}) {
        for (const char* value : {"true", "1", "-1", "2147483648", "1.5"})
            EXPECT_TRUE(read(value, place)) << value;
        for (const char* value : {"false", "0", "0.9", "-0.9"})
            EXPECT_FALSE(read(value, place)) << value;
    }
}

TEST(AJsonReader, AppendsAListsElements)
{
    std::vector<Service*> list = {new Service};
    EXPECT_EQ(faultOf(R"({"list": [{"serviceName": "A"}, null, 5, [], {"serviceName": "B"}]})",
                      [&](JsonReader& json) { EXPECT_TRUE(json.required("list", list)); }),
              kNoFault);
    std::vector<std::string> names;
    for (const Service* service : list) {
        names.push_back(service->serviceName);
        delete service;
    }
    EXPECT_EQ(names, (std::vector<std::string>{"", "A", "", "", "", "B"}));
}

TEST(AJsonReader, DropsAListsElementsThatFault)
{
    std::vector<ServiceTime*> list;
    EXPECT_EQ(faultOf(R"({"list": [{"time": "1"}, {}, null, {"time": 2}, {"time": "3"}]})",
                      [&](JsonReader& json) { json.required("list", list); }),
              kNoFault);
    std::vector<std::string> times;
    for (const ServiceTime* time : list) {
        times.push_back(time->time);
        delete time;
    }
    EXPECT_EQ(times, (std::vector<std::string>{"1", "3"}));
}

}  // namespace
}  // namespace OrvuTests
