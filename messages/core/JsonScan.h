#pragma once

#include <cstddef>
#include <cstdint>

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

/// White space: every byte from 1 to 32.
inline bool isWhite(char c)
{
    return static_cast<unsigned char>(c - 1) < ' ';
}

/// Behind the white space, if there is any; `end` is the end of the whole text.
const char* afterWhite(const char* at, const char* end);

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

/// The first quote or backslash, or `end`.
const char* plainEnd(const char* at, const char* end);

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
