#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Orvu {

/// \file
/// Steps through the bytes of a JSON text. A text ends with a NUL, at which each of them stops.

inline bool isDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

inline bool isExponent(char c)
{
    return c == 'e' || c == 'E';
}

/// Behind the white space: every byte from 1 to 32.
inline const char* afterWhite(const char* at)
{
    while (static_cast<unsigned char>(*at - 1) < ' ')
        ++at;
    return at;
}

inline const char* afterDigits(const char* at)
{
    while (isDigit(*at))
        ++at;
    return at;
}

/// Behind all characters that numbers consist of, whatever their order.
inline const char* afterNumberCharacters(const char* at)
{
    while (isDigit(*at) || *at == '.' || isExponent(*at) || *at == '-' || *at == '+')
        ++at;
    return at;
}

/// A word of memory with a bit set in each of its bytes that equals `byte`. Bytes behind the first of them in a little-
/// endian word may be marked, too.
inline std::size_t bytesEqualTo(std::size_t word, char byte)
{
    constexpr std::size_t kOnes = ~std::size_t{0} / 255;
    const std::size_t zeros = word ^ (kOnes * static_cast<unsigned char>(byte));
    return (zeros - kOnes) & ~zeros & (kOnes << 7);
}

/// The first quote or backslash, or `end`.
inline const char* plainEnd(const char* at, const char* end)
{
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    std::size_t word;
    for (; static_cast<std::size_t>(end - at) >= sizeof word; at += sizeof word) {
        std::memcpy(&word, at, sizeof word);
        const std::size_t marks = bytesEqualTo(word, '"') | bytesEqualTo(word, '\\');
        if (marks != 0) return at + __builtin_ctzll(marks) / 8;
    }
#endif
    while (at != end && *at != '"' && *at != '\\')
        ++at;
    return at;
}

/// The quote that ends a string, `at` being in it: the first that no backslash covers. `end` without one.
const char* closingQuote(const char* at, const char* end);

/// What a backslash begins.
struct Escape {
    unsigned size = 0;  ///< In bytes of the text; 0 for what is no escape.
    std::uint32_t character = 0;
};

/// The escape at `at`. A `\u` takes its bytes from those before `end`: four that are not hexadecimal count as U+0000.
Escape escapeAt(const char* at, const char* end);

}  // namespace Orvu
