#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/resource.h>

#include "codecs/Base64.h"
#include "support/Sanitizers.h"

namespace Base64 = Orvu::Base64;

namespace {

struct Release {
    void operator()(unsigned char* text) const { std::free(text); }
};

std::string encodedInLines(const std::string& bytes)
{
    const std::unique_ptr<unsigned char, Release> text(
        Base64::encodeAlloc(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())));
    return text ? reinterpret_cast<char*>(text.get()) : "no text";
}

/// `groups` groups of four characters that stand for three zero bytes each.
std::string zeros(std::size_t groups)
{
    return std::string(groups * 4, 'A');
}

std::string linesForZeros(std::size_t size)
{
    return encodedInLines(std::string(size, '\0'));
}

TEST(Base64InLines, IsEmptyForNoBytes)
{
    EXPECT_EQ(encodedInLines(""), "");
    const std::unique_ptr<unsigned char, Release> text(Base64::encodeAlloc(nullptr, 0));
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(reinterpret_cast<char*>(text.get()), "");
}

TEST(Base64InLines, EndsAShortLineWithALineFeed)
{
    EXPECT_EQ(encodedInLines("M"), "TQ==\n");
    EXPECT_EQ(encodedInLines("Ma"), "TWE=\n");
    EXPECT_EQ(encodedInLines("Man"), "TWFu\n");
}

TEST(Base64InLines, GivesADigestTwentyEightCharactersAndALineFeed)
{
    EXPECT_EQ(encodedInLines("\xb3\x7a\x4f\x2c\xc0\x62\x4f\x16\x90\xf6\x46\x06\xcf\x38\x59\x45\xb2\xbe\xc4\xea"),
              "s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\n");
}

TEST(Base64InLines, FillsALineWithSeventyTwoCharacters)
{
    EXPECT_EQ(linesForZeros(51), zeros(17) + "\n");
    EXPECT_EQ(linesForZeros(52), zeros(17) + "AA==\n");
    EXPECT_EQ(linesForZeros(53), zeros(17) + "AAA=\n");
    EXPECT_EQ(linesForZeros(54), zeros(18) + "\n");
}

TEST(Base64InLines, BeginsANewLineAfterAFullOne)
{
    EXPECT_EQ(linesForZeros(55), zeros(18) + "\nAA==\n");
    EXPECT_EQ(linesForZeros(56), zeros(18) + "\nAAA=\n");
    EXPECT_EQ(linesForZeros(57), zeros(18) + "\nAAAA\n");
    EXPECT_EQ(linesForZeros(107), zeros(18) + "\n" + zeros(17) + "AAA=\n");
    EXPECT_EQ(linesForZeros(108), zeros(18) + "\n" + zeros(18) + "\n");
    EXPECT_EQ(linesForZeros(109), zeros(18) + "\n" + zeros(18) + "\nAA==\n");
    EXPECT_EQ(linesForZeros(162), zeros(18) + "\n" + zeros(18) + "\n" + zeros(18) + "\n");
}

TEST(Base64InLines, IsTheOneLineTextBrokenUp)
{
    std::string bytes;
    for (int size = 1; size <= 1000; ++size) {
        bytes += static_cast<char>(size * 31);
        std::string text = encodedInLines(bytes);
        ASSERT_EQ(text.back(), '\n');
        const std::size_t characters = (bytes.size() + 2) / 3 * 4;
        ASSERT_EQ(text.size(), characters + (characters + 71) / 72) << size;
        text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
        EXPECT_EQ(text, Base64::encode(reinterpret_cast<const unsigned char*>(bytes.data()),
                                       static_cast<unsigned>(bytes.size())));
    }
}

TEST(Base64InLines, HoldsMegabytes)
{
    const std::size_t size = 3 << 20;
    EXPECT_EQ(linesForZeros(size).size(), (size / 3 * 4) + (size / 3 * 4 + 71) / 72);
}

/// Lets this process have no more than a GiB of addresses.
class LittleMemory {
public:
    LittleMemory()
    {
        getrlimit(RLIMIT_AS, &before_);
        const rlimit gibibyte{std::size_t{1} << 30, before_.rlim_max};
        setrlimit(RLIMIT_AS, &gibibyte);
    }
    ~LittleMemory() { setrlimit(RLIMIT_AS, &before_); }

private:
    rlimit before_;
};

TEST(Base64InLines, IsNullWhenThereIsNoMemoryForIt)
{
    if (OrvuTests::kUnderASanitizer) GTEST_SKIP() << "a sanitizer needs terabytes of addresses itself";
    const LittleMemory limit;
    const unsigned char byte = 0;  // not read: the memory comes first
    EXPECT_EQ(Base64::encodeAlloc(&byte, 0xffffffff), nullptr);
}

}  // namespace
