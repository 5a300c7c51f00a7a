#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// \file
/// What is missing, superfluous or wrong in the text of a message. For people and their tools: deserialize() says only
/// whether it worked.

/// One thing that the library finds when it reads a text.
struct Finding {
    /// How much it matters.
    enum Kind : unsigned char {
        Fault,      ///< The text is not read because of it. The first one is where reading stops.
        PartFault,  ///< A part is not read because of it: it is left out of its list, or stays as far as it was read.
        Ignored,    ///< A value without effect, or with another one than it seems: the key takes no such kind or word.
        NotRead,    ///< A key that the type does not read, or does not read in this text.
    };
    Kind kind = Fault;       ///< How much it matters.
    std::size_t offset = 0;  ///< Where it is in the text, in bytes from 0.
    unsigned line = 1;       ///< The same as a line of the text, from 1.
    unsigned column = 1;     ///< And as a character of that line (UTF-8), from 1.
    std::string path;        ///< The same as a place in the JSON, such as "schedule[2].name"; empty for the whole text.
    std::string message;     ///< What is wrong, such as "a number where a text is required".
};

/// What the library finds when it reads a text as a message.
struct Explanation {
    DataType type = DataTypeUnknown;  ///< What it was read as.
    bool isRead = false;              ///< Whether the library makes a message of it.
    std::vector<Finding> findings;    ///< Faults first, then in the order of the text; 200 at most.
    std::size_t further = 0;          ///< How many findings more there are.
};

/// Explains a text as a received one, by the type that its "HEADER" names. `text` ends with a NUL; null counts as
/// empty. It takes a few times as long as reading the message. Throws std::bad_alloc. Any thread.
ORVU_EXPORT Explanation explain(const char* text);

/// The same by a type, whatever the "HEADER", also for types that are never received by themselves.
ORVU_EXPORT Explanation explain(const char* text, DataType type);

/// A finding in one line: "line 3, column 5: schedule: required, missing". Throws std::bad_alloc. Any thread.
ORVU_EXPORT std::string toString(const Finding& finding);

/// A key that a type reads.
struct KeyDescription {
    /// What the key may hold.
    enum Kind : unsigned char {
        Anything,      ///< No matter what, or what only the type itself knows.
        Nothing,       ///< The key may be there, and has no effect.
        Text,          ///< A text.
        Number,        ///< An integer of 32 bits; a boolean serves as 0 or 1.
        Boolean,       ///< A number serves, too: 0 is false.
        NumberOrText,  ///< Either; what the text may say depends on the key.
        Word,          ///< A text that is one of `words`; any other reads as unknown.
        Object,        ///< With the keys `keys`.
        Texts,         ///< A list of texts.
        Numbers,       ///< A list of numbers.
        Words,         ///< A list of words.
        Objects,       ///< A list of objects, each with the keys `keys`.
    };
    std::string key;                   ///< Empty for the list that follows the key before, whatever its own key.
    Kind kind = Anything;              ///< What the key may hold.
    bool isRequired = false;           ///< Whether a text without it is refused; in a part, whether the part is.
    std::vector<std::string> words;    ///< Those that are read back.
    std::vector<KeyDescription> keys;  ///< Left empty where a type holds itself.
};

/// The keys that a type reads, in the order in which it asks for them; a key that may hold two kinds comes twice. None
/// for a type without a class and for those that read nothing. Throws std::bad_alloc. Any thread.
ORVU_EXPORT std::vector<KeyDescription> keysOf(DataType type);

}  // namespace Orvu
