#include <climits>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "orvu/ServiceComponents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AHexadecimalText, HasAtLeastTwoDigits)
{
    EXPECT_EQ(taken(convertIntToStringHex(0)), "0x00");
    EXPECT_EQ(taken(convertIntToStringHex(5)), "0x05");
    EXPECT_EQ(taken(convertIntToStringHex(0x10)), "0x10");
    EXPECT_EQ(taken(convertIntToStringHex(0xff)), "0xff");
    EXPECT_EQ(taken(convertIntToStringHex(0x100)), "0x100");
    EXPECT_EQ(taken(convertIntToStringHex(0xabcdef)), "0xabcdef");
    EXPECT_EQ(taken(convertIntToStringHex(INT_MAX)), "0x7fffffff");
}

TEST(AHexadecimalText, ShowsANegativeValueAsItsTwosComplement)
{
    EXPECT_EQ(taken(convertIntToStringHex(-1)), "0xffffffff");
    EXPECT_EQ(taken(convertIntToStringHex(INT_MIN)), "0x80000000");
}

TEST(ANumberText, IsDecimalOrHexadecimal)
{
    EXPECT_EQ(validateStringNumber("0"), 0);
    EXPECT_EQ(validateStringNumber("12"), 12);
    EXPECT_EQ(validateStringNumber("0012"), 12);
    EXPECT_EQ(validateStringNumber("0x1f"), 31);
    EXPECT_EQ(validateStringNumber("0x000000001f"), 31);
    EXPECT_EQ(validateStringNumber("2147483647"), INT_MAX);
    EXPECT_EQ(validateStringNumber("0x7fffffff"), INT_MAX);
}

TEST(ANumberText, MayHaveWhiteSpaceAroundItAndAnyLetterCase)
{
    EXPECT_EQ(validateStringNumber(" 0X1F "), 31);
    EXPECT_EQ(validateStringNumber("\t\n\v\f\r 0xaBcD\t\n\v\f\r "), 0xabcd);
    EXPECT_EQ(validateStringNumber("\n7\n"), 7);
}

TEST(ANumberText, IsMalformedWithAnythingElseInIt)
{
    for (const char* text : {"1a",
                             "-5",
                             "+5",
                             "5.",
                             "1 2",
                             "0x-5",
                             "0x+5",
                             "0x 5",
                             "0xg",
                             "0x0x5",
                             "x5",
                             "1x5",
                             "00x5",
                             "#5",
                             "-",
                             "a",
                             "0b1",
                             "5,",
                             "\xb2",
                             "\xa0"
                             "5"})
        EXPECT_EQ(validateStringNumber(text), -1) << text;
    EXPECT_EQ(validateStringNumber(std::string("5\0", 2)), -1);
    EXPECT_EQ(validateStringNumber(std::string("\0", 1) + "5"), -1);
}

TEST(ANumberText, IsNoneWithoutDigits)
{
    for (const char* text : {"", " ", "\t\n\v\f\r ", "0x", " 0X "})
        EXPECT_THROW(validateStringNumber(text), std::invalid_argument) << text;
}

TEST(ANumberText, IsOutOfRangeAbove32Bits)
{
    for (const char* text : {"2147483648", "0x80000000", "0xffffffff", "99999999999999999999", "0xfffffffffffffffff"})
        EXPECT_THROW(validateStringNumber(text), std::out_of_range) << text;
}

/// Characters 9 to 13 and 32, and no other.
bool isWhiteSpace(int c)
{
    return (c >= 9 && c <= 13) || c == 32;
}

TEST(Trimming, TakesWhiteSpaceOffOneEnd)
{
    for (int c = 0; c < 256; ++c) {
        const std::string outside(3, static_cast<char>(c));
        const std::string text = outside + "a b" + outside;
        std::string right = text;
        rtrim(right);
        EXPECT_EQ(right, isWhiteSpace(c) ? outside + "a b" : text) << c;
        std::string left = text;
        ltrim(left);
        EXPECT_EQ(left, isWhiteSpace(c) ? "a b" + outside : text) << c;
    }
}

TEST(Trimming, LeavesNothingOfWhiteSpace)
{
    for (const char* text : {"", " ", " \t\n\v\f\r "}) {
        std::string right = text;
        rtrim(right);
        EXPECT_EQ(right, "");
        std::string left = text;
        ltrim(left);
        EXPECT_EQ(left, "");
    }
}

}  // namespace
}  // namespace OrvuTests
