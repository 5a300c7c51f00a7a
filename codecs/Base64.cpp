#include "codecs/Base64.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace Orvu {
namespace Base64 {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned kLineLength = 72;
constexpr unsigned kBytesPerLine = kLineLength / 4 * 3;
constexpr std::uint8_t kStranger = 64;

/// The value of each character; kStranger for those outside the alphabet.
constexpr std::array<std::uint8_t, 256> kValues = [] {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values)
        value = kStranger;
    for (std::uint8_t i = 0; i < 64; ++i)
        values[static_cast<unsigned char>(kAlphabet[i])] = i;
    return values;
}();

std::uint8_t valueOf(char c)
{
    return kValues[static_cast<unsigned char>(c)];
}

/// Writes the characters of up to three bytes, padding included. Returns the place behind them.
char* encodeGroup(const unsigned char* bytes, unsigned length, char* to)
{
    const unsigned second = length > 1 ? bytes[1] : 0;
    const unsigned third = length > 2 ? bytes[2] : 0;
    *to++ = kAlphabet[bytes[0] >> 2];
    *to++ = kAlphabet[(bytes[0] & 3u) << 4 | second >> 4];
    *to++ = length > 1 ? kAlphabet[(second & 15u) << 2 | third >> 6] : '=';
    *to++ = length > 2 ? kAlphabet[third & 63u] : '=';
    return to;
}

char* encodeLine(const unsigned char* bytes, unsigned length, char* to)
{
    for (; length > 3; length -= 3, bytes += 3)
        to = encodeGroup(bytes, 3, to);
    return length > 0 ? encodeGroup(bytes, length, to) : to;
}

}  // namespace

bool is_base64(unsigned char c)
{
    return kValues[c] != kStranger;
}

std::string encode(const unsigned char* bytes, unsigned int length)
{
    std::string text((std::size_t{length} + 2) / 3 * 4, '\0');
    encodeLine(bytes, length, text.data());
    return text;
}

unsigned char* encodeAlloc(const unsigned char* bytes, unsigned int length)
{
    const std::uint64_t characters = std::uint64_t{length} * 4 / 3 + 4;
    const std::uint64_t size = characters + characters / kLineLength + 1;
    if (size > std::numeric_limits<std::size_t>::max()) return nullptr;
    auto* const text = static_cast<unsigned char*>(std::malloc(static_cast<std::size_t>(size)));
    if (!text) return nullptr;
    char* to = reinterpret_cast<char*>(text);
    while (length > 0) {
        const unsigned line = length < kBytesPerLine ? length : kBytesPerLine;
        to = encodeLine(bytes, line, to);
        *to++ = '\n';
        bytes += line;
        length -= line;
    }
    *to = '\0';
    return text;
}

std::string decode(const std::string& text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    std::uint32_t bits = 0;  // the characters of the group so far, six bits each
    unsigned inGroup = 0;
    for (const char c : text) {
        const std::uint8_t value = valueOf(c);
        if (value == kStranger) break;
        bits = bits << 6 | value;
        if (++inGroup < 4) continue;
        bytes += {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8), static_cast<char>(bits)};
        bits = inGroup = 0;
    }
    if (inGroup == 2) bytes += static_cast<char>(bits >> 4);
    if (inGroup == 3) bytes += {static_cast<char>(bits >> 10), static_cast<char>(bits >> 2)};
    return bytes;
}

}  // namespace Base64
}  // namespace Orvu
