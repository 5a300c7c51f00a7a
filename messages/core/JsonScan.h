#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Orvu {

/// \file
/// Steps through the bytes of a JSON text. A text ends with a NUL, at which each of them stops.

constexpr std::ptrdiff_t kUnicodeSize = 6;  // \u and four digits

inline bool isDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

inline bool isExponent(char c)
{
    return c == 'e' || c == 'E';
}

/// White space: every byte from 1 to 32.
inline bool isWhite(char c)
{
    return static_cast<unsigned char>(c - 1) < ' ';
}

/// The first byte after the white space, if there is any; `end` is the end of the whole text.
const char* afterWhite(const char* at, const char* end);

inline const char* afterDigits(const char* at)
{
    while (isDigit(*at))
        ++at;
    return at;
}

/// The first byte after all characters that numbers consist of, whatever their order.
inline const char* afterNumberCharacters(const char* at)
{
    while (isDigit(*at) || *at == '.' || isExponent(*at) || *at == '-' || *at == '+')
        ++at;
    return at;
}

/// The first quote or backslash, or `end`.
const char* plainEnd(const char* at, const char* end);

/// The quote that ends a string, `at` being in it: the first that no backslash covers. `end` without one.
const char* closingQuote(const char* at, const char* end);

/// The characters of escapes of two bytes by the second of them; NUL for any other.
struct ShortEscapes {
    constexpr ShortEscapes() : characters()
    {
        set('"', '"');
        set('\\', '\\');
        set('/', '/');
        set('b', '\b');
        set('f', '\f');
        set('n', '\n');
        set('r', '\r');
        set('t', '\t');
    }
    constexpr void set(char c, char character) { characters[static_cast<unsigned char>(c)] = character; }
    constexpr char operator[](char c) const { return characters[static_cast<unsigned char>(c)]; }

    char characters[256];
};
inline constexpr ShortEscapes kShortEscapes;

inline const char* afterShortEscapes(const char* at)
{
    while (*at == '\\' && kShortEscapes[at[1]] != '\0')
        at += 2;
    return at;
}

/// The values of hexadecimal digits; -1 for other characters.
struct HexDigits {
    constexpr HexDigits() : values()
    {
        for (int c = 0; c < 256; ++c)
            values[c] = static_cast<signed char>(c >= '0' && c <= '9'   ? c - '0'
                                                 : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                                        : -1);
    }
    constexpr int operator[](char c) const { return values[static_cast<unsigned char>(c)]; }

    signed char values[256];
};
inline constexpr HexDigits kHexDigits;

/// The value of two hexadecimal digits; negative when one of them is not.
inline int hexPair(const char* at)
{
    return (16 * kHexDigits[at[0]]) | kHexDigits[at[1]];
}

/// Hands over the characters of the `\u` escapes that follow each other here. Returns the first one that is not such an
/// escape, is U+0000 or a surrogate, or is cut by the `end`.
template <class Take>
const char* takeUnicodes(const char* at, const char* end, Take take)
{
    constexpr std::size_t kSizeToLowDigits = 4;
    const char* last = nullptr;  // most letters of a script have the same high digits
    int high = 0;
    for (; end - at >= kUnicodeSize; at += kUnicodeSize) {
        if (!last || std::memcmp(at, last, kSizeToLowDigits) != 0) {
            if (at[0] != '\\' || at[1] != 'u') break;
            high = 0x100 * hexPair(at + 2);
            if (high < 0 || (high >= 0xD800 && high < 0xE000)) break;
            last = at;
        }
        const int character = high | hexPair(at + kSizeToLowDigits);
        if (character <= 0) break;
        take(static_cast<std::uint32_t>(character));
    }
    return at;
}

/// What a backslash begins.
struct Escape {
    unsigned size = 0;  ///< In bytes of the text; 0 for what is not an escape.
    std::uint32_t character = 0;
};

/// The escape at `at`. A `\u` takes its bytes from those before `end`: four that are not hexadecimal count as U+0000.
Escape escapeAt(const char* at, const char* end);

}  // namespace Orvu
