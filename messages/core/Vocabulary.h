#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace Orvu {

/// Whether a word of the wire is understood when a peer sends it.
enum Readability : bool { WrittenOnly = false, ReadBack = true };

/// A value of an enumeration and its word on the wire. The row holds the word itself: a pointer to it would have to be
/// relocated when the library is loaded, and relocated memory is not shared between processes.
struct Word {
    short value;
    char text[27];
    Readability readability = ReadBack;
};

/// The words of an enumeration whatever its type, one table for both directions.
class WordTable {
public:
    constexpr WordTable(const Word* words, std::size_t count, int otherwise)
        : words_(words), count_(count), otherwise_(otherwise)
    {}

    /// The word of a value; "" for one outside the table. Never null.
    const char* word(int value) const;
    /// The value of a word that is read back, compared exactly.
    int value(std::string_view text) const;
    /// The words that are read back.
    std::vector<std::string_view> words() const;

private:
    const Word* words_;
    std::size_t count_;
    int otherwise_;  // what any other text reads as
};

/// The words of an enumeration.
template <class Enum>
class Vocabulary : public WordTable {
public:
    using WordTable::WordTable;
    const char* word(Enum value) const { return WordTable::word(value); }
    Enum value(std::string_view text) const { return static_cast<Enum>(WordTable::value(text)); }
};

/// The vocabulary of a table in which each row has the value of its index; any other table does not compile.
template <class Enum, std::size_t Count>
constexpr Vocabulary<Enum> vocabulary(const Word (&words)[Count], Enum otherwise)
{
    for (std::size_t i = 0; i < Count; ++i) {
        if (words[i].value != static_cast<int>(i)) throw "a word is not at its value";
    }
    return {words, Count, otherwise};
}

}  // namespace Orvu
