#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvu/Position.h"
#include "support/KeyRules.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Values = std::vector<int>;

Values valuesOf(const Position& position)
{
    return {position.x, position.y, position.w, position.h};
}

constexpr const char* kDefaultText = "{\n\t\"x\":\t0,\n\t\"y\":\t0,\n\t\"w\":\t1280,\n\t\"h\":\t720\n}";

/// A number of pixels, or a percentage of the display, half of which is `half`.
Key coordinate(const std::string& name, int Position::*field, const std::string& half)
{
    Key key = number(name, field);
    const auto isBoolean = [](const auto& form) { return form.first == "true" || form.first == "false"; };
    key.forms.erase(std::remove_if(key.forms.begin(), key.forms.end(), isBoolean), key.forms.end());
    key.forms.emplace_back(R"("50%")", half);
    key.wrongKinds = {};
    for (const char* value : {"null", "true", "false", "[50]", R"({"x": 1})", R"("640")", R"("100")", R"("%")", R"("")",
                              R"("ab")", R"("50\u0000%")"})
        key.refused.emplace_back(value, "-1");
    return key;
}

INSTANTIATE_TEST_SUITE_P(Core, AMessage,
                         testing::Values(givingReasons(keysOf<Position>(
                             "Position",
                             {coordinate("x", &Position::x, "640"), coordinate("y", &Position::y, "360"),
                              coordinate("w", &Position::w, "640"), coordinate("h", &Position::h, "360")}))),
                         nameOf);

TEST(APosition, StartsAsTheWholeVirtualDisplay)
{
    const Position position;
    EXPECT_EQ(position.getDataType(), 19u);
    EXPECT_EQ(valuesOf(position), (Values{0, 0, 1280, 720}));
}

TEST(APosition, TakesItsValues)
{
    const Position made(1, -2, 3, INT_MIN);
    EXPECT_EQ(made.getDataType(), 19u);
    EXPECT_EQ(valuesOf(made), (Values{1, -2, 3, INT_MIN}));
    Position set;
    set.setValues(5, 6, 7, INT_MAX);
    EXPECT_EQ(valuesOf(set), (Values{5, 6, 7, INT_MAX}));
}

TEST(APosition, CopiesTheValuesOfAnother)
{
    Position other(1, 2, 3, 4);
    Position position;
    position.copyValues(&other);
    EXPECT_EQ(valuesOf(position), (Values{1, 2, 3, 4}));
    position.copyValues(nullptr);
    position.copyValues(&position);
    EXPECT_EQ(valuesOf(position), (Values{1, 2, 3, 4}));
}

TEST(APosition, KnowsTheVirtualDisplay)
{
    int width = 0;
    int height = 0;
    Position(1, 2, 3, 4).getVirtualDisplay(&width, &height);
    EXPECT_EQ(width, 1280);
    EXPECT_EQ(height, 720);
    Position().getVirtualDisplay(nullptr, &height);
    Position().getVirtualDisplay(&width, nullptr);
}

struct Rectangle {
    int x, y, w, h;
    bool isValid;
};

TEST(APosition, IsValidOnTheVirtualDisplayOnly)
{
    for (const Rectangle& r : std::vector<Rectangle>{{0, 0, 1280, 720, true},
                                                     {1, 0, 1280, 720, false},
                                                     {0, 1, 1280, 720, false},
                                                     {1279, 719, 1, 1, true},
                                                     {1280, 0, 1, 1, false},
                                                     {0, 720, 1, 1, false},
                                                     {-1, 0, 10, 10, false},
                                                     {0, -1, 10, 10, false},
                                                     {0, 0, 0, 10, false},
                                                     {0, 0, 10, 0, false},
                                                     {0, 0, -1, 10, false},
                                                     {0, 0, 10, -1, false},
                                                     {0, 0, 1281, 10, false},
                                                     {0, 0, 10, 721, false}}) {
        EXPECT_EQ(Position(r.x, r.y, r.w, r.h).isValid(), r.isValid) << r.x << ' ' << r.y << ' ' << r.w << ' ' << r.h;
    }
}

TEST(APosition, IsNotValidWhereItsSumsWouldOverflow)
{
    EXPECT_FALSE(Position(INT_MAX, 0, 1, 1).isValid());
    EXPECT_FALSE(Position(INT_MAX, 0, INT_MAX, 1).isValid());
    EXPECT_FALSE(Position(0, INT_MAX, 1, 1).isValid());
    EXPECT_FALSE(Position(0, INT_MAX, 1, INT_MAX).isValid());
    EXPECT_FALSE(Position(INT_MIN, INT_MIN, INT_MIN, INT_MIN).isValid());
}

TEST(APosition, WritesItsValuesWithoutAHeader)
{
    Position position;
    EXPECT_EQ(textOf(position), kDefaultText);
    position.serializeHeader(true);
    EXPECT_EQ(textOf(position), kDefaultText);
    position.setValues(INT_MIN, -1, 0, INT_MAX);
    position.serializeHeader(false);
    EXPECT_EQ(textOf(position), "{\n\t\"x\":\t-2147483648,\n\t\"y\":\t-1,\n\t\"w\":\t0,\n\t\"h\":\t2147483647\n}");
}

/// A position that holds 4 1 2 3 before it reads.
struct Reading {
    Position position{4, 1, 2, 3};
    bool success;
    unsigned char error = 77;

    explicit Reading(const std::string& text) : success(position.deserialize(text.c_str()))
    {
        Position other(4, 1, 2, 3);
        EXPECT_EQ(other.deserialize(text.c_str(), error), success) << text;
        EXPECT_EQ(valuesOf(other), valuesOf(position)) << text;
        EXPECT_EQ(error == 77, success) << text;
    }
};

TEST(APosition, ReadsANestedNumberAsItsTextWouldRead)
{
    Position position;
    EXPECT_TRUE(position.deserializeObject(treeOf(R"({"x": 2.9999999999999996})").get()));
    EXPECT_EQ(position.x, 3);
    EXPECT_FALSE(position.deserializeObject(treeOf(R"({"x": 1e400})").get()));  // printed, it is null
    EXPECT_EQ(position.x, -1);
}

TEST(APosition, ReadsPercentagesOfTheVirtualDisplay)
{
    const Reading read(R"({"x": "50%", "y": "50%", "w": "50%", "h": "50%"})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(valuesOf(read.position), (Values{640, 360, 640, 360}));
    Position valid = read.position;
    EXPECT_TRUE(valid.isValid());
}

struct Percentage {
    const char* text;
    int ofWidth, ofHeight;
};

TEST(APosition, CutsPercentagesTowardsZero)
{
    for (const Percentage& percentage : std::vector<Percentage>{{"12.5%", 160, 90},
                                                                {"33.3%", 426, 239},
                                                                {"100%%", 1280, 720},
                                                                {"%100", 1280, 720},
                                                                {"5%0", 640, 360},
                                                                {"0%", 0, 0},
                                                                {"-0%", 0, 0},
                                                                {"-0.01%", 0, 0},
                                                                {" 50 % of it", 640, 360},
                                                                {"+50%", 640, 360},
                                                                {"1e2%", 1280, 720},
                                                                {"0x10%", 204, 115},
                                                                {"200%", 2560, 1440}}) {
        const std::string text = '"' + std::string(percentage.text) + '"';
        const Reading read(R"({"x": )" + text + R"(, "y": )" + text + R"(, "w": )" + text + R"(, "h": )" + text + "}");
        EXPECT_TRUE(read.success) << text;
        EXPECT_EQ(valuesOf(read.position),
                  (Values{percentage.ofWidth, percentage.ofHeight, percentage.ofWidth, percentage.ofHeight}))
            << text;
    }
}

TEST(APosition, FailsOnANegativePercentageAndKeepsIt)
{
    const Reading read(R"({"x": "-10%"})");
    EXPECT_FALSE(read.success);
    EXPECT_EQ(read.error, 2);
    EXPECT_EQ(read.position.x, -128);
}

TEST(APosition, FailsOnAPercentageThatIsNotFiniteOrBeyond32Bits)
{
    for (const char* value :
         {"inf%", "-inf%", "INFINITY%", "nan%", "-nan%", "nan(1)%", "1e300%", "-1e300%", "167772160%", "-167772161%"}) {
        const Reading read(R"({"x": ")" + std::string(value) + "\"}");
        EXPECT_FALSE(read.success) << value;
        EXPECT_EQ(read.error, 2) << value;
        EXPECT_EQ(read.position.x, -1) << value;
    }
    EXPECT_EQ(Reading(R"({"x": "167772159%"})").position.x, 2147483635);
    EXPECT_EQ(Reading(R"({"x": "-167772160%"})").position.x, INT_MIN);
}

TEST(APosition, StopsAtTheFirstKeyThatCannotBeRead)
{
    const Reading read(R"({"h": 40, "x": 10, "y": "bad", "w": 30})");
    EXPECT_FALSE(read.success);
    EXPECT_EQ(read.error, 2);
    EXPECT_EQ(valuesOf(read.position), (Values{10, -1, 2, 3}));
}

template <class Exception>
void expectThrown(const std::string& text)
{
    Position position(4, 1, 2, 3);
    unsigned char error = 77;
    EXPECT_THROW(position.deserialize(text.c_str()), Exception) << text;
    EXPECT_THROW(position.deserialize(text.c_str(), error), Exception) << text;
    EXPECT_EQ(valuesOf(position), (Values{10, 1, 2, 3})) << text;
    EXPECT_EQ(error, 77) << text;
}

TEST(APosition, LetsTheExceptionOfAPercentageWithoutANumberPass)
{
    for (const char* value : {"ab%", "%%", " %", "-%", ".%", "x10%"})
        expectThrown<std::invalid_argument>(R"({"x": 10, "y": ")" + std::string(value) + "\"}");
}

TEST(APosition, LetsTheExceptionOfAPercentageBeyondADoublePass)
{
    for (const char* value : {"1e400%", "-1e400%", "1e-400%"})
        expectThrown<std::out_of_range>(R"({"x": 10, "y": ")" + std::string(value) + "\"}");
}

TEST(APosition, GivesReasonsForAParsedItemToo)
{
    Position position;
    unsigned char error = 77;
    EXPECT_TRUE(position.deserializeObject(treeOf(R"({"x": 10})").get(), error));
    EXPECT_EQ(error, 77);
    EXPECT_FALSE(position.deserializeObject(treeOf(R"({"x": null})").get(), error));
    EXPECT_EQ(error, 2);
    EXPECT_FALSE(position.deserializeObject(nullptr, error));
    EXPECT_EQ(error, 1);
}

/// What the conversion alone gives.
int converted(std::string text, int total)
{
    int result = 4711;
    Position().convertPercentage(text.data(), &result, total);
    return result;
}

TEST(APercentage, IsConvertedToPixelsOfAnyTotal)
{
    EXPECT_EQ(converted("50%", 1280), 640);
    EXPECT_EQ(converted("12.5%", 720), 90);
    EXPECT_EQ(converted("33.3%", 1280), 426);
    EXPECT_EQ(converted("-10%", 1280), -128);
    EXPECT_EQ(converted("50%", 0), 0);
    EXPECT_EQ(converted("50%", -10), -5);
    EXPECT_EQ(converted("100%", INT_MAX), INT_MAX);
    EXPECT_EQ(converted("100%", INT_MIN), INT_MIN);
    EXPECT_EQ(converted("101%", INT_MAX), -1);
}

TEST(APercentage, IsMalformedWithoutItsSign)
{
    int result = 4711;
    Position().convertPercentage(nullptr, &result, 1280);
    EXPECT_EQ(result, -1);
    for (const char* text : {"", "%", "5", "50", "ab", "inf"})
        EXPECT_EQ(converted(text, 1280), -1) << text;
    EXPECT_THROW(converted("ab%", 1280), std::invalid_argument);
    EXPECT_THROW(converted("1e400%", 1280), std::out_of_range);
}

TEST(APercentage, LeavesItsTextAlone)
{
    char text[] = "%5%0%";
    int result = 0;
    Position().convertPercentage(text, &result, 1280);
    EXPECT_STREQ(text, "%5%0%");
    EXPECT_EQ(result, 640);
}

}  // namespace
}  // namespace OrvuTests
