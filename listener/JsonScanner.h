#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Orvu {

/// Recognises one JSON value (RFC 8259), byte by byte. Bytes above 127 are not looked at.
class JsonScanner {
public:
    enum class Verdict {
        More,    ///< The byte belongs to the value, or is white space before it, and more must or may follow.
        Whole,   ///< The byte ends the value.
        Before,  ///< The value was whole without the byte: a number or a word, which nothing else ends.
        Wrong    ///< With the byte it is not JSON, or nests deeper than kMostLevels.
    };
    static constexpr std::size_t kMostLevels = 1000;  ///< As the library's own parser.

    /// After anything but More, restart() comes first. Throws std::bad_alloc.
    Verdict take(char byte);

    /// How many of the next bytes change nothing: those of a string up to its next quote, backslash or control
    /// character.
    std::size_t plainBytes(std::string_view bytes) const;

    /// Begins with the next value.
    void restart();

    /// Whether the value is whole if nothing follows: a number or a word.
    bool isWhole() const;

private:
    // In four groups, which the scanner distinguishes by their order: between the parts, in a string, a word, a number.
    enum class State {
        Value,
        FirstItem,
        FirstKey,
        Key,
        Colon,
        AfterItem,

        String,
        Escape,
        HexDigits,

        Word,
        AfterWord,

        Minus,
        Zero,
        Digits,
        Point,
        Fraction,
        E,
        ESign,
        Exponent,
        NoNumber
    };

    static State nextOfNumber(State state, char byte);
    static bool endsNumber(State state);

    Verdict takeBetween(char byte);
    Verdict takeInString(char byte);
    Verdict takeInWord(char byte);
    Verdict takeInNumber(char byte);
    Verdict takeAfterScalar(char byte) const;
    Verdict begin(char byte);
    Verdict beginWord(const char* rest);
    Verdict open(char closing, State inside);
    Verdict close();
    Verdict endString();
    Verdict go(State state);

    State state_ = State::Value;
    std::string open_;            // the brackets that will close what is open, the innermost last
    bool isKey_ = false;          // the string is one
    int hexDigits_ = 0;           // still to come
    const char* word_ = nullptr;  // what of the word is still to come
};

}  // namespace Orvu
