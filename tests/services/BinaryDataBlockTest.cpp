#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "codecs/Base64.h"
#include "orvu/BinaryData.h"
#include "support/Messages.h"

using namespace Orvu;

/// \file
/// What becomes of the block of a BinaryData, whose size a peer announces and an application may change: never is more
/// written than the block holds, and never anything that nobody put there. The address sanitizer watches.

namespace OrvuTests {
namespace {

unsigned char* blockOf(std::size_t size, char fill)
{
    auto* const block = static_cast<unsigned char*>(std::malloc(size));
    std::memset(block, fill, size);
    return block;
}

std::string textWith(const std::string& bufferSize, const std::string& buffer)
{
    return R"({"serviceContextId": "", "bufferSize": )" + bufferSize + R"(, "buffer": ")" + buffer + "\"}";
}

/// Data of a PMT, and what it writes for its bytes.
struct Table : BinaryData {
    Table() : BinaryData(DataTypeBinaryPMT) {}

    bool reads(const std::string& announced, const std::string& base64)
    {
        return deserialize(textWith(announced, base64).c_str());
    }

    std::string written()
    {
        const Tree tree = treeOf(textOf(*this));
        return cJSON_GetObjectItem(tree.get(), "buffer")->valuestring;
    }
};

TEST(AReceivedBlock, HasFourTimesTheAnnouncedSizeZeroed)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    EXPECT_EQ(std::memcmp(table.buffer, "\x01\x02\x03\0\0\0\0\0\0\0\0\0", 12), 0);
    std::memset(table.buffer, 7, 12);
}

TEST(AReceivedBlock, TakesUpToFourTimesTheAnnouncedBytes)
{
    Table table;
    EXPECT_TRUE(table.reads("1", "AQIDBA=="));
    EXPECT_EQ(std::memcmp(table.buffer, "\x01\x02\x03\x04", 4), 0);
    const unsigned char* const block = table.buffer;
    EXPECT_FALSE(table.reads("1", "AQIDBAU="));
    EXPECT_EQ(table.buffer, block);
    EXPECT_FALSE(table.reads("0", "AQ=="));
    EXPECT_EQ(table.buffer, block);
    EXPECT_EQ(std::memcmp(table.buffer, "\x01\x02\x03\x04", 4), 0);
}

TEST(AReceivedBlock, IsMadeAlsoOfNoBytes)
{
    Table table;
    EXPECT_TRUE(table.reads("0", ""));
    EXPECT_NE(table.buffer, nullptr);
    EXPECT_EQ(table.written(), "");
}

TEST(AReceivedBlock, HoldsWhatStandsBeforeTheFirstStrangeCharacter)
{
    Table table;
    EXPECT_TRUE(table.reads("3", "AQ ID"));
    EXPECT_EQ(std::memcmp(table.buffer, "\x01\0\0", 3), 0);
    EXPECT_EQ(table.written(), "AQAA");
}

TEST(AReceivedBlock, IsRefusedAbove64MiB)
{
    Table table;
    for (const char* announced : {"67108865", "2147483647", "2147483648", "1e400", "-1", "-2147483648", "-1e400"}) {
        EXPECT_FALSE(table.reads(announced, "AQID")) << announced;
        EXPECT_EQ(table.buffer, nullptr) << announced;
        EXPECT_EQ(table.written(), "") << announced;
    }
    EXPECT_EQ(table.bufferSize, 2147483648u);  // the size stays all the same
}

TEST(AReceivedBlock, MayHave64MiBAnnounced)
{
    Table table;
    ASSERT_TRUE(table.reads("67108864", "AQID"));
    EXPECT_EQ(table.bufferSize, 67108864u);
    EXPECT_EQ(table.buffer[4 * 67108864 - 1], 0);
}

TEST(AReceivedBlock, SendsZerosAfterWhatCame)
{
    Table table;
    ASSERT_TRUE(table.reads("10", "AQID"));
    EXPECT_EQ(table.written(), "AQIDAAAAAAAAAA==");
}

TEST(AReceivedBlock, SendsNoMoreThanWasAnnouncedWhateverCame)
{
    Table table;
    ASSERT_TRUE(table.reads("1", "AQID"));
    EXPECT_EQ(table.written(), "AQ==");
}

TEST(AReceivedBlock, SendsLessForASmallerSize)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    table.bufferSize = 2;
    EXPECT_EQ(table.written(), "AQI=");
    table.bufferSize = 0;
    EXPECT_EQ(table.written(), "");
}

TEST(AReceivedBlock, SendsWhatAnApplicationAddedWithinItsRoom)
{
    Table table;
    ASSERT_TRUE(table.reads("2", "AQI="));
    table.buffer[2] = 3;
    table.bufferSize = 3;
    EXPECT_EQ(table.written(), "AQID");
    table.bufferSize = 8;
    EXPECT_EQ(table.written(), "AQIDAAAAAAA=");
}

TEST(AReceivedBlock, StaysAfterAFailedReadAndSendsWhatItHasRoomFor)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    const unsigned char* const block = table.buffer;
    const std::string whole = "AQIDAAAAAAAAAAAA";  // twelve bytes
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 1000})"));
    EXPECT_EQ(table.written(), whole);
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 5, "buffer": 5})"));
    EXPECT_EQ(table.written(), "AQIDAAA=");
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 4294967295, "buffer": "AAAA"})"));
    EXPECT_EQ(table.written(), whole);
    EXPECT_FALSE(table.reads("0", "AAAA"));
    EXPECT_EQ(table.written(), "");
    EXPECT_EQ(table.buffer, block);
}

TEST(AReceivedBlock, SendsWhatAFailedReadSaysWithinItsRoom)
{
    Table table;
    ASSERT_TRUE(table.reads("1", "AQIDBA=="));
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 3})"));
    EXPECT_EQ(table.written(), "AQID");
}

TEST(AReceivedBlock, SendsTheSizeThatTheApplicationSetsAfterAFailedRead)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 1000})"));
    table.bufferSize = 4;
    EXPECT_EQ(table.written(), "AQIDAA==");
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 1000})"));
    EXPECT_EQ(table.written(), "AQIDAA==");
}

TEST(AReceivedBlock, IsReplacedByTheNextAndTheCallersThen)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    unsigned char* const first = table.buffer;
    ASSERT_TRUE(table.reads("1", "BA=="));
    EXPECT_NE(table.buffer, first);
    EXPECT_EQ(first[2], 3);
    std::free(first);
    EXPECT_EQ(table.written(), "BA==");
}

TEST(AReceivedBlock, MayBeReplacedByTheApplication)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    unsigned char* const received = table.buffer;
    table.buffer = blockOf(6, 'a');
    table.bufferSize = 6;
    EXPECT_EQ(table.written(), "YWFhYWFh");
    std::free(received);
}

// Writing into the received block looks the same as an own block in its place: no test depends on the allocator.
TEST(AReceivedBlock, MayBeReplacedByTheApplicationInItsOldPlace)
{
    Table table;
    ASSERT_TRUE(table.reads("12", "AQID"));
    std::memset(table.buffer, 'a', 12);
    EXPECT_EQ(table.written(), "YWFhYWFhYWFhYWFh");
    table.bufferSize = 6;
    EXPECT_EQ(table.written(), "YWFhYWFh");
}

// Blocks of some sizes lie in the received one's place then, whatever the allocator.
TEST(AReceivedBlock, MayBeReplacedByALargerOneInItsOldPlace)
{
    for (unsigned size = 8; size < 200000; size = size * 5 / 4 + 1) {
        Table table;
        ASSERT_TRUE(table.reads(std::to_string(size), std::string(size / 3 * 4, 'A')));
        std::free(table.buffer);
        table.bufferSize = size * 5;
        table.buffer = blockOf(table.bufferSize, 'a');
        EXPECT_EQ(table.written().size(), (table.bufferSize + 2) / 3 * 4) << size;
    }
}

TEST(AReceivedBlock, MayBeTakenAway)
{
    Table table;
    ASSERT_TRUE(table.reads("3", "AQID"));
    std::free(table.buffer);
    table.buffer = nullptr;
    EXPECT_EQ(table.written(), "");
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 1000})"));
    EXPECT_EQ(table.written(), "");
    ASSERT_TRUE(table.reads("1", "BA=="));
    EXPECT_EQ(table.written(), "BA==");
}

/// More than 256 characters, with every one of the alphabet.
std::string longBase64()
{
    std::string bytes;
    for (int i = 0; i < 400; ++i)
        bytes += static_cast<char>(i * 37 % 256);
    return Base64::encode(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size()));
}

/// The text with the character at `place` in another spelling of JSON.
std::string respelt(const std::string& text, std::size_t place)
{
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(text[place]));
    const std::string slash = "\\/";
    return text.substr(0, place) + (text[place] == '/' ? slash : escape) + text.substr(place + 1);
}

std::string bytesOf(const BinaryData& data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data.buffer), size};
}

TEST(AReceivedBlock, HoldsWhatEscapesSpell)
{
    Table table;
    ASSERT_TRUE(table.reads("6", R"(\u0041Q\u0049D\/\/\/\u002b)"));
    EXPECT_EQ(bytesOf(table, 6), "\x01\x02\x03\xFF\xFF\xFE");
    EXPECT_EQ(table.written(), "AQID///+");
}

TEST(AReceivedBlock, HoldsTheSameWhereverAnEscapeCutsItsText)
{
    const std::string base64 = longBase64();
    const std::string bytes = Base64::decode(base64);
    ASSERT_EQ(bytes.size(), 400u);
    ASSERT_NE(base64.find('/'), std::string::npos);
    for (std::size_t place = 0; place < base64.find('='); ++place) {
        Table table;
        ASSERT_TRUE(table.reads("400", respelt(base64, place))) << place;
        ASSERT_EQ(bytesOf(table, 400), bytes) << place;
        ASSERT_EQ(table.written(), base64) << place;
    }
}

TEST(AReceivedBlock, HoldsTheSameWhenItsTextIsNothingButEscapes)
{
    std::string base64 = longBase64();
    for (std::size_t left = base64.size(); left > 0; --left)
        base64 = respelt(base64, left - 1);
    Table table;
    ASSERT_TRUE(table.reads("400", base64));
    EXPECT_EQ(bytesOf(table, 400), Base64::decode(longBase64()));
}

TEST(AReceivedBlock, HoldsWhatStandsBeforeTheEndWhereverThatIs)
{
    const std::string base64 = longBase64().substr(0, 300);
    for (std::size_t place = 0; place <= base64.size(); ++place) {
        const std::string expected = Base64::decode(base64.substr(0, place));
        for (const char* end : {"", "=", " ", "\\n", "\\u0000", "\\u0100", "\\u003d"}) {
            const std::string behind = *end ? base64.substr(place) : "";
            Table table;
            ASSERT_TRUE(table.reads("400", base64.substr(0, place) + end + behind)) << place << end;
            ASSERT_EQ(bytesOf(table, 400), expected + std::string(400 - expected.size(), '\0')) << place << end;
        }
    }
}

TEST(AReceivedBlock, TakesNotAByteTooMuchWhereverAnEscapeCutsItsText)
{
    const std::string fits = "AQIDBAUGBwg=";      // eight bytes
    const std::string tooLarge = "AQIDBAUGBwgJ";  // nine
    for (std::size_t place = 0; place < fits.size() - 1; ++place) {
        Table table;
        EXPECT_TRUE(table.reads("2", respelt(fits, place))) << place;
        const unsigned char* const block = table.buffer;
        EXPECT_FALSE(table.reads("2", respelt(tooLarge, place))) << place;
        EXPECT_EQ(table.buffer, block) << place;
        EXPECT_EQ(bytesOf(table, 8), "\x01\x02\x03\x04\x05\x06\x07\x08") << place;
    }
}

/// A table whose six bytes an application has put there.
struct OwnTable : Table {
    OwnTable()
    {
        buffer = blockOf(6, 'a');
        bufferSize = 6;
    }
};

TEST(ABlockOfTheApplication, IsSentUpToTheSizeThatItSays)
{
    OwnTable table;
    EXPECT_EQ(table.written(), "YWFhYWFh");
    table.bufferSize = 3;
    EXPECT_EQ(table.written(), "YWFh");
    table.bufferSize = 6;
    EXPECT_EQ(table.written(), "YWFhYWFh");
}

TEST(ABlockOfTheApplication, IsNotSentBeyondItsSizeAfterAFailedRead)
{
    OwnTable table;
    for (const char* text : {R"({"serviceContextId": "", "bufferSize": 1000})",
                             R"({"serviceContextId": "", "bufferSize": 2000, "buffer": null})",
                             R"({"serviceContextId": "", "bufferSize": 4294967295, "buffer": "AAAA"})"}) {
        EXPECT_FALSE(table.deserialize(text)) << text;
        EXPECT_EQ(table.written(), "YWFhYWFh") << text;
    }
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 2})"));
    EXPECT_EQ(table.written(), "YWE=");
}

TEST(ABlockOfTheApplication, IsSentUpToASizeThatIsSetAfterAFailedRead)
{
    OwnTable table;
    table.bufferSize = 3;
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 1000})"));
    EXPECT_EQ(table.written(), "YWFh");
    table.bufferSize = 6;
    EXPECT_EQ(table.written(), "YWFhYWFh");
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 2000})"));
    EXPECT_EQ(table.written(), "YWFhYWFh");
}

TEST(ABlockOfTheApplication, IsReplacedByAReadAndTheCallersThen)
{
    OwnTable table;
    unsigned char* const own = table.buffer;
    ASSERT_TRUE(table.reads("3", "AQID"));
    EXPECT_NE(table.buffer, own);
    std::free(own);
    EXPECT_EQ(table.written(), "AQID");
}

}  // namespace
}  // namespace OrvuTests
