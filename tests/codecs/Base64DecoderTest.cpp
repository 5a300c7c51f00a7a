#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/Base64.h"

namespace Base64 = Orvu::Base64;

namespace {

/// Every character of the alphabet, and a last group of two.
const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/TQ==";

/// Decodes `text`, which comes in pieces of `step` characters, into a block of `room` bytes; `fits` is whether that was
/// enough.
std::string decodedInPieces(const std::string& text, std::size_t step, std::size_t room, bool& fits)
{
    const std::unique_ptr<unsigned char[]> block(new unsigned char[room]);  // the address sanitizer watches its end
    Base64::Decoder decoder(block.get(), room);
    for (std::size_t at = 0; at < text.size(); at += step)
        decoder.add(std::string_view(text).substr(at, step));
    fits = decoder.finish();
    return {reinterpret_cast<const char*>(block.get()), decoder.size()};
}

class ABase64Decoder : public testing::TestWithParam<std::size_t> {};

TEST_P(ABase64Decoder, MakesOfPiecesWhatTheWholeStandsFor)
{
    std::vector<std::string> texts = {
        kAlphabet, "T",     "TW",   "TWE", "TWFuT", "TWF=uTWFu", "TQ==TWFu", "=TWFu", "TWFu\nTWFu",
        "TW Fu",   "TWFu=", "====", "",    "/w==",  "//8=",      "++++",     "////"};
    for (const std::string& text : texts) {
        const std::string whole = Base64::decode(text);
        bool fits = false;
        EXPECT_EQ(decodedInPieces(text, GetParam(), whole.size(), fits), whole)
            << text;  // a block without a byte to spare
        EXPECT_TRUE(fits) << text;
    }
}

TEST_P(ABase64Decoder, SaysWhenTheBlockIsTooSmallAndFillsIt)
{
    for (const std::string& text :
         std::vector<std::string>{"TQ==", "TQ", "TWE=", "TWE", "TWFu", "TWFuTQ==", "TWFuTWE=", "TWFuTWFu", kAlphabet}) {
        const std::string whole = Base64::decode(text);
        for (std::size_t missing = 1; missing <= std::min<std::size_t>(whole.size(), 5); ++missing) {
            const std::size_t room = whole.size() - missing;
            bool fits = true;
            EXPECT_EQ(decodedInPieces(text, GetParam(), room, fits), whole.substr(0, room)) << text;
            EXPECT_FALSE(fits) << text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(InPiecesOf, ABase64Decoder, testing::Values(1, 2, 3, 4, 5, 72, 1000));

TEST(ABase64DecoderOfPieces, MayBeGivenEmptyOnes)
{
    unsigned char block[3];
    Base64::Decoder decoder(block, sizeof block);
    for (const char* piece : {"", "TW", "", "F", "", "u", ""})
        decoder.add(piece);
    EXPECT_TRUE(decoder.finish());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(block), decoder.size()), "Man");
}

}  // namespace
