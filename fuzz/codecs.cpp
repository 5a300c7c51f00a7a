#include <algorithm>
#include <cstring>
#include <openssl/evp.h>
#include <openssl/sha.h>
#include <string>

#include "codecs/Base64.h"
#include "codecs/Sha1.h"
#include "fuzz/Fuzz.h"
#include "messages/core/Json.h"

using namespace Orvu;

/// \file
/// Base64 and SHA-1 beside those of OpenSSL, on any bytes.

namespace OrvuFuzz {
namespace {

const unsigned char* raw(const std::string& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

std::string theirBase64(const std::string& bytes)
{
    std::string text(bytes.size() / 3 * 4 + 5, '\0');  // with its NUL
    text.resize(static_cast<std::size_t>(
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), raw(bytes), static_cast<int>(bytes.size()))));
    return text;
}

/// `characters` are all of the alphabet. OpenSSL wants whole groups, and counts their padding as zero bytes.
std::string theirBytes(std::string characters)
{
    if (characters.size() % 4 == 1) characters.pop_back();  // no byte: six bits are too few
    const std::size_t size = characters.size() * 3 / 4;
    characters.resize((characters.size() + 3) / 4 * 4, '=');
    std::string bytes(characters.size() / 4 * 3, '\0');
    require(EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), raw(characters),
                            static_cast<int>(characters.size())) == static_cast<int>(bytes.size()),
            "OpenSSL decodes the characters of the alphabet");
    return bytes.substr(0, size);
}

std::string withoutLineEnds(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
    return text;
}

void checkBase64(const std::string& input)
{
    const unsigned size = static_cast<unsigned>(input.size());
    const std::string text = Base64::encode(raw(input), size);
    const JsonText lines(reinterpret_cast<char*>(Base64::encodeAlloc(raw(input), size)));
    require(text == theirBase64(input), "bytes are encoded as OpenSSL does");
    require(Base64::decode(text) == input, "what was encoded is decoded again");
    require(withoutLineEnds(lines.get()) == text, "lines hold the same characters");

    const auto end = std::find_if_not(input.begin(), input.end(), [](char c) { return Base64::is_base64(c); });
    require(Base64::decode(input) == theirBytes(std::string(input.begin(), end)),
            "characters are decoded as OpenSSL does");
}

/// The message comes in two parts, as long as the first byte says.
void checkSha1(const std::string& input)
{
    unsigned char ours[Sha1::kDigestSize];
    unsigned char theirs[SHA_DIGEST_LENGTH];
    const std::size_t first = input.empty() ? 0 : std::min<std::size_t>(raw(input)[0], input.size());
    Sha1::SHA1Context context;
    Sha1::SHA1Reset(&context);
    Sha1::SHA1Input(&context, raw(input), static_cast<unsigned>(first));
    Sha1::SHA1Input(&context, raw(input) + first, static_cast<unsigned>(input.size() - first));
    require(Sha1::SHA1Result(&context, ours) == Sha1::shaSuccess, "every message has a digest");
    SHA1(raw(input), input.size(), theirs);
    require(std::memcmp(ours, theirs, sizeof ours) == 0, "a digest is that of OpenSSL");
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string input = OrvuFuzz::textOf(bytes, size);
    OrvuFuzz::checkBase64(input);
    OrvuFuzz::checkSha1(input);
    return 0;
}
