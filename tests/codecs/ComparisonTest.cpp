#include <cstdlib>
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <openssl/sha.h>
#include <random>
#include <string>

#include "codecs/Base64.h"
#include "codecs/Sha1.h"

using namespace Orvu;

namespace {

constexpr std::size_t kLongest = 300;
constexpr int kPerLength = 8;

const unsigned char* raw(const std::string& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

unsigned sizeOf(const std::string& bytes)
{
    return static_cast<unsigned>(bytes.size());
}

std::string ourDigest(const std::string& message)
{
    std::string digest(Sha1::kDigestSize, '\0');
    Sha1::SHA1Context context;
    Sha1::SHA1Reset(&context);
    EXPECT_EQ(Sha1::SHA1Input(&context, raw(message), sizeOf(message)), Sha1::shaSuccess);
    EXPECT_EQ(Sha1::SHA1Result(&context, reinterpret_cast<unsigned char*>(digest.data())), Sha1::shaSuccess);
    return digest;
}

std::string theirDigest(const std::string& message)
{
    std::string digest(SHA_DIGEST_LENGTH, '\0');
    SHA1(raw(message), message.size(), reinterpret_cast<unsigned char*>(digest.data()));
    return digest;
}

std::string theirBase64(const std::string& bytes)
{
    std::string text(bytes.size() / 3 * 4 + 5, '\0');  // with its NUL
    text.resize(static_cast<std::size_t>(
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), raw(bytes), static_cast<int>(bytes.size()))));
    return text;
}

/// OpenSSL counts the padding as zero bytes.
std::string theirBytes(const std::string& text)
{
    std::string bytes(text.size() / 4 * 3, '\0');
    EXPECT_EQ(EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), raw(text), static_cast<int>(text.size())),
              static_cast<int>(bytes.size()));
    bytes.resize(bytes.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '=')));
    return bytes;
}

/// Random bytes of every length, several times each.
template <class Check>
void forRandomBytes(Check check)
{
    std::mt19937 random(20240229);
    for (std::size_t size = 0; size <= kLongest; ++size) {
        for (int i = 0; i < kPerLength; ++i) {
            std::string bytes(size, '\0');
            for (char& byte : bytes)
                byte = static_cast<char>(random());
            check(bytes);
        }
    }
}

TEST(OurSha1, AgreesWithThatOfOpenSsl)
{
    forRandomBytes([](const std::string& message) { EXPECT_EQ(ourDigest(message), theirDigest(message)); });
}

TEST(OurBase64Encoding, AgreesWithThatOfOpenSsl)
{
    forRandomBytes(
        [](const std::string& bytes) { EXPECT_EQ(Base64::encode(raw(bytes), sizeOf(bytes)), theirBase64(bytes)); });
}

TEST(OurBase64Decoding, AgreesWithThatOfOpenSsl)
{
    forRandomBytes([](const std::string& bytes) {
        const std::string text = theirBase64(bytes);
        EXPECT_EQ(theirBytes(text), bytes);
        EXPECT_EQ(Base64::decode(text), bytes);
    });
}

}  // namespace
