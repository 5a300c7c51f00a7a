#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "codecs/Base64.h"

namespace Base64 = Orvu::Base64;

namespace {

std::string encoded(const std::string& bytes)
{
    return Base64::encode(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size()));
}

std::string everyByte()
{
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

/// The bytes of everyByte(), as RFC 4648 writes them.
constexpr char kEveryByte[] =
    "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+"
    "P0BBQkNERUZHSElKS0xNTk9QUVJTVFVWV1hZ"
    "WltcXV5fYGFiY2RlZmdoaWprbG1ub3BxcnN0dXZ3eHl6e3x9fn+"
    "AgYKDhIWGh4iJiouMjY6PkJGSk5SVlpeYmZqbnJ2en6ChoqOkpaanqKmqq6ytrq+wsbKz"
    "tLW2t7i5uru8vb6/wMHCw8TFxsfIycrLzM3Oz9DR0tPU1dbX2Nna29zd3t/g4eLj5OXm5+jp6uvs7e7v8PHy8/T19vf4+fr7/P3+/w==";

const std::pair<std::string, std::string> kVectors[] = {
    {"", ""},
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
    {"Man", "TWFu"},
    {"Ma", "TWE="},
    {"M", "TQ=="},
    {std::string(1, '\0'), "AA=="},
    {std::string(3, '\0'), "AAAA"},
    {"\xff", "/w=="},
    {"\xff\xff", "//8="},
    {"\xfb\xef\xbe", "++++"},
    {"\xff\xff\xff", "////"},
};

TEST(Base64Encoding, WritesTheVectorsOfTheStandard)
{
    for (const auto& [bytes, text] : kVectors)
        EXPECT_EQ(encoded(bytes), text);
}

TEST(Base64Encoding, WritesEveryByteOnOneLine)
{
    EXPECT_EQ(encoded(everyByte()), kEveryByte);
}

TEST(Base64Encoding, WritesNothingForNoBytesWhereverTheyAre)
{
    EXPECT_EQ(Base64::encode(nullptr, 0), "");
}

TEST(Base64Encoding, ReadsNoBytePastItsInput)
{
    EXPECT_EQ(Base64::encode(reinterpret_cast<const unsigned char*>("Many"), 2), "TWE=");
}

TEST(Base64Decoding, ReadsTheVectorsOfTheStandard)
{
    for (const auto& [bytes, text] : kVectors)
        EXPECT_EQ(Base64::decode(text), bytes);
}

TEST(Base64Decoding, ReadsEveryByte)
{
    EXPECT_EQ(Base64::decode(kEveryByte), everyByte());
}

TEST(Base64Decoding, NeedsNoPadding)
{
    EXPECT_EQ(Base64::decode("TWE"), "Ma");
    EXPECT_EQ(Base64::decode("TQ"), "M");
    EXPECT_EQ(Base64::decode("TQ="), "M");
}

TEST(Base64Decoding, MakesNothingOfALoneCharacter)
{
    EXPECT_EQ(Base64::decode("T"), "");
    EXPECT_EQ(Base64::decode("TWFuT"), "Man");
    EXPECT_EQ(Base64::decode("T==="), "");
}

TEST(Base64Decoding, StopsAtTheFirstPadding)
{
    EXPECT_EQ(Base64::decode("="), "");
    EXPECT_EQ(Base64::decode("===="), "");
    EXPECT_EQ(Base64::decode("=TWFu"), "");
    EXPECT_EQ(Base64::decode("TQ==TWFu"), "M");
    EXPECT_EQ(Base64::decode("TWE=TWFu"), "Ma");
    EXPECT_EQ(Base64::decode("TWFu=TWFu"), "Man");
    EXPECT_EQ(Base64::decode("TWFuTW=u"), "ManM");
}

TEST(Base64Decoding, IgnoresTheBitsThatTheLastCharacterHasTooMany)
{
    EXPECT_EQ(Base64::decode("TR=="), "M");
    EXPECT_EQ(Base64::decode("TWF="), "Ma");
}

/// Every character that is not of the alphabet, at every place of a group.
TEST(Base64Decoding, StopsAtEveryOtherCharacter)
{
    const std::string expected[] = {"Man", "Man", "ManM", "ManMa", "ManMan"};
    for (int c = 0; c < 256; ++c) {
        if (Base64::is_base64(static_cast<unsigned char>(c))) continue;
        for (std::size_t place = 0; place <= 4; ++place) {
            std::string text = "TWFuTWFuTWFu";
            text.insert(4 + place, 1, static_cast<char>(c));
            EXPECT_EQ(Base64::decode(text), expected[place]) << c << " at " << place;
        }
    }
}

TEST(Base64Decoding, StopsAtABlankWithinAGroup)
{
    EXPECT_EQ(Base64::decode("TW E="), "M");
    EXPECT_EQ(Base64::decode(" TWE="), "");
}

TEST(Base64Decoding, StopsAtTheEndOfALine)
{
    EXPECT_EQ(Base64::decode("TWFu\nTWFu"), "Man");
    EXPECT_EQ(Base64::decode("TWFu\r\nTWFu"), "Man");
}

TEST(Base64Decoding, StopsAtANul)
{
    EXPECT_EQ(Base64::decode(std::string("TWFu\0TWFu", 9)), "Man");
    EXPECT_EQ(Base64::decode(std::string("TW\0u", 4)), "M");
    EXPECT_EQ(Base64::decode(std::string("\0", 1)), "");
}

TEST(Base64Decoding, DoesNotTakeTheAlphabetOfWebAddresses)
{
    EXPECT_EQ(Base64::decode("--__"), "");
}

TEST(TheBase64Alphabet, HasLettersDigitsPlusAndSlash)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    int members = 0;
    for (int c = 0; c < 256; ++c) {
        const bool isMember = alphabet.find(static_cast<char>(c)) != std::string::npos;
        EXPECT_EQ(Base64::is_base64(static_cast<unsigned char>(c)), isMember) << c;
        members += isMember;
    }
    EXPECT_EQ(members, 64);
}

}  // namespace
