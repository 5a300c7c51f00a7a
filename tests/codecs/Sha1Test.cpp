#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "codecs/Sha1.h"

using namespace Orvu::Sha1;

namespace {

constexpr char kDigestOfAbc[] = "a9993e364706816aba3e25717850c26c9cd0d89d";
constexpr char kDigestOfNothing[] = "da39a3ee5e6b4b0d3255bfef95601890afd80709";

int input(SHA1Context& context, const std::string& message)
{
    return SHA1Input(&context, reinterpret_cast<const unsigned char*>(message.data()),
                     static_cast<unsigned>(message.size()));
}

std::string hex(const unsigned char* digest)
{
    std::string text;
    for (int i = 0; i < kDigestSize; ++i) {
        char byte[3];
        std::snprintf(byte, sizeof byte, "%02x", digest[i]);
        text += byte;
    }
    return text;
}

std::string result(SHA1Context& context)
{
    unsigned char digest[kDigestSize];
    EXPECT_EQ(SHA1Result(&context, digest), shaSuccess);
    return hex(digest);
}

std::string digestOf(const std::string& message, int times = 1)
{
    SHA1Context context;
    EXPECT_EQ(SHA1Reset(&context), shaSuccess);
    for (int i = 0; i < times; ++i)
        EXPECT_EQ(input(context, message), shaSuccess);
    return result(context);
}

/// One of which `bits` (high and low word) have gone in already.
SHA1Context contextAfter(std::uint32_t high, std::uint32_t low)
{
    SHA1Context context;
    SHA1Reset(&context);
    context.Length_High = high;
    context.Length_Low = low;
    return context;
}

TEST(ASha1Digest, IsTheOneOfTheStandardForItsFourMessages)
{
    EXPECT_EQ(digestOf("abc"), kDigestOfAbc);
    EXPECT_EQ(digestOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
    EXPECT_EQ(digestOf("a", 1000000), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
    EXPECT_EQ(digestOf("0123456701234567012345670123456701234567012345670123456701234567", 10),
              "dea356a2cddd90c7a7ecedc5ebb563934f460452");
}

TEST(ASha1Digest, ExistsForTheEmptyMessage)
{
    EXPECT_EQ(digestOf(""), kDigestOfNothing);
    SHA1Context context;
    SHA1Reset(&context);
    EXPECT_EQ(result(context), kDigestOfNothing);
}

TEST(ASha1Digest, CountsEveryBitOfEveryByte)
{
    EXPECT_EQ(digestOf(std::string("\x00\x7f\x80\xff", 4)), "77648de335db61221e1a03ea826693a174ff0cf0");
    EXPECT_EQ(digestOf(std::string(64, '\0')), "c8d7d0ef0eedfa82d2ea1aa592845b9a6d4b02b7");
}

TEST(ASha1Digest, DoesNotDependOnThePiecesTheMessageComesIn)
{
    std::string message;
    for (int i = 0; i < 200; ++i)
        message += static_cast<char>(i * 7);
    const std::string whole = digestOf(message);
    for (std::size_t size = 1; size <= message.size(); ++size) {
        SHA1Context context;
        SHA1Reset(&context);
        for (std::size_t at = 0; at < message.size(); at += size)
            ASSERT_EQ(input(context, message.substr(at, size)), shaSuccess);
        EXPECT_EQ(result(context), whole) << size;
    }
}

TEST(ASha1Context, GivesTheSameDigestEachTimeItIsAsked)
{
    SHA1Context context;
    SHA1Reset(&context);
    input(context, "abc");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(result(context), kDigestOfAbc);
    EXPECT_EQ(context.Computed, 1);
    EXPECT_EQ(context.Corrupted, 0);
}

TEST(ASha1Context, KeepsNothingOfTheMessageOnceItIsDigested)
{
    SHA1Context context;
    SHA1Reset(&context);
    input(context, std::string(100, 's'));
    result(context);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(context.Message_Block), 64), std::string(64, '\0'));
    EXPECT_EQ(context.Length_Low, 0u);
    EXPECT_EQ(context.Length_High, 0u);
}

TEST(ASha1Context, BeginsAnewWhenItIsReset)
{
    SHA1Context context;
    std::memset(&context, 0xa5, sizeof context);
    for (const char* const before :
         {"", "something else", "and a text that is longer than a block, so that one went in"}) {
        EXPECT_EQ(SHA1Reset(&context), shaSuccess);
        input(context, before);
        EXPECT_EQ(SHA1Reset(&context), shaSuccess);
        input(context, "abc");
        EXPECT_EQ(result(context), kDigestOfAbc);
    }
}

TEST(ASha1Context, TakesNoInputAfterItsResult)
{
    SHA1Context context;
    SHA1Reset(&context);
    result(context);
    unsigned char digest[kDigestSize];
    EXPECT_EQ(input(context, "abc"), shaStateError);
    EXPECT_EQ(context.Corrupted, shaStateError);
    EXPECT_EQ(input(context, "abc"), shaStateError);
    EXPECT_EQ(SHA1Result(&context, digest), shaStateError);
    SHA1Reset(&context);
    EXPECT_EQ(result(context), kDigestOfNothing);
}

TEST(ASha1Context, TakesAnInputOfNoBytesAtAnyTime)
{
    SHA1Context context;
    EXPECT_EQ(SHA1Input(nullptr, nullptr, 0), shaSuccess);
    SHA1Reset(&context);
    EXPECT_EQ(SHA1Input(&context, nullptr, 0), shaSuccess);
    EXPECT_EQ(SHA1Input(nullptr, reinterpret_cast<const unsigned char*>("abc"), 0), shaSuccess);
    EXPECT_EQ(result(context), kDigestOfNothing);
    EXPECT_EQ(SHA1Input(&context, nullptr, 0), shaSuccess);
    EXPECT_EQ(result(context), kDigestOfNothing);
}

TEST(ASha1Context, RefusesNullArguments)
{
    SHA1Context context;
    unsigned char digest[kDigestSize];
    EXPECT_EQ(SHA1Reset(nullptr), shaNull);
    SHA1Reset(&context);
    EXPECT_EQ(SHA1Input(&context, nullptr, 1), shaNull);
    EXPECT_EQ(SHA1Input(nullptr, digest, 1), shaNull);
    EXPECT_EQ(SHA1Result(nullptr, digest), shaNull);
    EXPECT_EQ(SHA1Result(&context, nullptr), shaNull);
    EXPECT_EQ(context.Corrupted, 0);
    EXPECT_EQ(result(context), kDigestOfNothing);
}

TEST(ASha1Context, CarriesItsLengthIntoTheUpperWord)
{
    SHA1Context context = contextAfter(7, 0xfffffff0);
    EXPECT_EQ(input(context, "abc"), shaSuccess);
    EXPECT_EQ(context.Length_High, 8u);
    EXPECT_EQ(context.Length_Low, 8u);
    EXPECT_EQ(context.Corrupted, 0);
}

TEST(ASha1Context, CountsBothWordsOfTheLengthInTheDigest)
{
    SHA1Context low = contextAfter(0, 8);
    SHA1Context high = contextAfter(1, 0);
    SHA1Context both = contextAfter(0x01020304, 0x05060708);
    const std::string digestOfLow = result(low);
    EXPECT_NE(digestOfLow, kDigestOfNothing);
    EXPECT_NE(result(high), digestOfLow);
    SHA1PadMessage(&both);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(both.Message_Block) + 56, 8), "\x01\x02\x03\x04\x05\x06\x07\x08");
}

TEST(ASha1Context, TakesTheLongestMessageThatThereCanBe)
{
    SHA1Context context = contextAfter(0xffffffff, 0xfffffff0);
    EXPECT_EQ(input(context, "a"), shaSuccess);
    EXPECT_EQ(context.Length_Low, 0xfffffff8u);
    EXPECT_EQ(context.Corrupted, 0);
}

TEST(ASha1Context, IsCorruptedByALongerMessage)
{
    SHA1Context context = contextAfter(0xffffffff, 0xfffffff0);
    unsigned char digest[kDigestSize];
    EXPECT_EQ(input(context, "abcdef"),
              shaSuccess);  // the call that goes beyond does not tell, as in the standard's code
    EXPECT_EQ(context.Corrupted, 1);
    EXPECT_EQ(context.Message_Block_Index, 2);  // what followed was not taken
    EXPECT_EQ(input(context, "a"), 1);
    EXPECT_EQ(SHA1Result(&context, digest), 1);
    EXPECT_EQ(context.Computed, 0);
}

TEST(ASha1Context, IsPaddedIntoTheLastBlockOrIntoOneMore)
{
    for (const int size : {0, 1, 54, 55, 56, 57, 62, 63}) {
        SHA1Context whole;
        SHA1Context steps;
        SHA1Reset(&whole);
        SHA1Reset(&steps);
        input(whole, std::string(static_cast<std::size_t>(size), 'x'));
        input(steps, std::string(static_cast<std::size_t>(size), 'x'));
        ASSERT_EQ(steps.Message_Block_Index, size);
        SHA1PadMessage(&steps);
        EXPECT_EQ(steps.Message_Block_Index, 0);
        result(whole);
        EXPECT_EQ(std::memcmp(whole.Intermediate_Hash, steps.Intermediate_Hash, sizeof whole.Intermediate_Hash), 0)
            << size;
    }
    EXPECT_EQ(digestOf(std::string(55, 'x')), "cef734ba81a024479e09eb5a75b6ddae62e6abf1");
    EXPECT_EQ(digestOf(std::string(56, 'x')), "901305367c259952f4e7af8323f480d59f81335b");
}

TEST(ASha1Context, ProcessesAFullBlockAtOnce)
{
    SHA1Context context;
    SHA1Reset(&context);
    input(context, std::string(63, 'x'));
    EXPECT_EQ(context.Message_Block_Index, 63);
    EXPECT_EQ(context.Intermediate_Hash[0], 0x67452301u);
    input(context, "x");
    EXPECT_EQ(context.Message_Block_Index, 0);
    EXPECT_NE(context.Intermediate_Hash[0], 0x67452301u);
    EXPECT_EQ(context.Length_Low, 512u);
}

}  // namespace
