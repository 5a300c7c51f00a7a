#include "messages/core/JsonScan.h"

#include <cstring>

namespace Orvu {
namespace {

/// The code of four hexadecimal digits; 0 when one of them is not hexadecimal.
std::uint32_t codeAt(const char* digits)
{
    const int high = hexPair(digits);
    const int low = hexPair(digits + 2);
    return high >= 0 && low >= 0 ? static_cast<std::uint32_t>(0x100 * high + low) : 0;
}

bool isHighSurrogate(std::uint32_t code)
{
    return code >> 10 == 0xD800 >> 10;
}

bool isLowSurrogate(std::uint32_t code)
{
    return code >> 10 == 0xDC00 >> 10;
}

Escape unicodeAt(const char* at, const char* end)
{
    if (end - at < kUnicodeSize) return {};
    const std::uint32_t code = codeAt(at + 2);
    if (isLowSurrogate(code)) return {};
    if (!isHighSurrogate(code)) return {kUnicodeSize, code};
    const char* const second = at + kUnicodeSize;
    if (end - second < kUnicodeSize || second[0] != '\\' || second[1] != 'u') return {};
    const std::uint32_t low = codeAt(second + 2);
    if (!isLowSurrogate(low)) return {};
    return {2 * kUnicodeSize, 0x10000 + ((code & 0x3FF) << 10 | (low & 0x3FF))};
}

constexpr std::ptrdiff_t kWordSize = sizeof(std::size_t);
constexpr std::size_t kOnes = ~std::size_t{0} / 255;  // in each byte of a word

std::size_t wordAt(const char* at)
{
    std::size_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

/// The first of the bytes that are marked. In a big-endian word none is skipped: they are looked at one by one.
std::size_t firstMarked([[maybe_unused]] std::size_t marks)
{
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    return static_cast<std::size_t>(__builtin_ctzll(marks)) / 8;
#else
    return 0;
#endif
}

/// A word of memory with bits set in each of its bytes that is not white. When there is one, white bytes above it, in
/// the order of their values, may be marked, too.
std::size_t bytesNotWhite(std::size_t word)
{
    return (word - kOnes) & (kOnes * 0xE0);
}

/// A word of memory with a bit set in each of its bytes that equals `byte`. Bytes after the first of them in a little-
/// endian word may be marked, too.
[[maybe_unused]] std::size_t bytesEqualTo(std::size_t word, char byte)
{
    const std::size_t zeros = word ^ (kOnes * static_cast<unsigned char>(byte));
    return (zeros - kOnes) & ~zeros & (kOnes << 7);
}

}  // namespace

const char* afterWhite(const char* at, const char* end)
{
    for (; end - at >= kWordSize; at += kWordSize) {
        const std::size_t marks = bytesNotWhite(wordAt(at));
        if (marks == 0) continue;
        at += firstMarked(marks);
        break;
    }
    while (isWhite(*at))
        ++at;
    return at;
}

const char* plainEnd(const char* at, const char* end)
{
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    for (; end - at >= kWordSize; at += kWordSize) {
        const std::size_t word = wordAt(at);
        const std::size_t marks = bytesEqualTo(word, '"') | bytesEqualTo(word, '\\');
        if (marks != 0) return at + firstMarked(marks);
    }
#endif
    while (at != end && *at != '"' && *at != '\\')
        ++at;
    return at;
}

const char* closingQuote(const char* at, const char* end)
{
    for (;;) {
        at = plainEnd(at, end);
        if (*at == '"') return at;
        if (end - at < 2) return end;
        at += 2;
    }
}

Escape escapeAt(const char* at, const char* end)
{
    if (at[1] == 'u') return unicodeAt(at, end);
    const char character = kShortEscapes[at[1]];
    return {character != '\0' ? 2u : 0u, static_cast<unsigned char>(character)};
}

}  // namespace Orvu
