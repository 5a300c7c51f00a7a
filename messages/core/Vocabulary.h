#pragma once

#include <cstddef>
#include <string_view>

namespace Orvu {

/// Whether a word of the wire is understood when a peer sends it.
enum Readability : bool { WrittenOnly = false, ReadBack = true };

/// A value of an enumeration and its word on the wire.
template <class Enum>
struct Word {
    Enum value;
    const char* text;
    Readability readability = ReadBack;
};

/// The words of an enumeration, one table for both directions.
template <class Enum>
struct Vocabulary {
    const Word<Enum>* words;
    std::size_t count;
    Enum stranger;  ///< What any other text reads as.

    /// The word of a value; "" for one outside the table. Never null.
    const char* word(Enum value) const
    {
        const auto index = static_cast<std::size_t>(static_cast<unsigned>(value));
        return index < count ? words[index].text : "";
    }

    /// The value of a word that is read back, compared exactly.
    Enum value(std::string_view text) const
    {
        const char first = text.empty() ? '\0' : text.front();  // spares most of the comparisons
        for (std::size_t i = 0; i < count; ++i) {
            const bool mayBe = words[i].readability == ReadBack && *words[i].text == first;
            if (mayBe && text == words[i].text) return words[i].value;
        }
        return stranger;
    }
};

/// The vocabulary of a table whose rows stand at their values; any other table does not compile.
template <class Enum, std::size_t Count>
constexpr Vocabulary<Enum> vocabulary(const Word<Enum> (&words)[Count], Enum stranger)
{
    for (std::size_t i = 0; i < Count; ++i) {
        if (words[i].value != static_cast<Enum>(i)) throw "a word does not stand at its value";
    }
    return {words, Count, stranger};
}

}  // namespace Orvu
