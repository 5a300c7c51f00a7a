#pragma once

#include "messages/core/JsonValue.h"

namespace Orvu {

struct Contract;
class WordTable;

/// What a contract expects under a key.
struct Expected {
    enum Kind : unsigned char {
        Anything,
        Nothing,  ///< The key is asked for, and whatever it holds has no effect.
        Text,
        Number,   ///< A number or a boolean.
        Boolean,  ///< The same.
        NumberOrText,
        Word,
        Object,    ///< Whose members this message reads by itself.
        Child,     ///< An object that is read as a message of its own.
        Children,  ///< A list of such objects.
        Texts,
        Words,
        Numbers,
    };
    Kind kind;
    const WordTable* words = nullptr;  ///< Of Word and Words.
};

inline constexpr Expected kExpectedAnything{Expected::Anything};
inline constexpr Expected kExpectedNothing{Expected::Nothing};
inline constexpr Expected kExpectedText{Expected::Text};
inline constexpr Expected kExpectedNumber{Expected::Number};
inline constexpr Expected kExpectedBoolean{Expected::Boolean};
inline constexpr Expected kExpectedNumberOrText{Expected::NumberOrText};
inline constexpr Expected kExpectedObject{Expected::Object};
inline constexpr Expected kExpectedChild{Expected::Child};
inline constexpr Expected kExpectedChildren{Expected::Children};
inline constexpr Expected kExpectedTexts{Expected::Texts};
inline constexpr Expected kExpectedNumbers{Expected::Numbers};

/// Sees what contracts ask of a text while they read it, to explain it afterwards. A text has one only when a caller
/// wants an explanation: CheckedText::witness().
///
/// Each object that is read is begun and ended, the inner ones between what is asked of the outer ones. An exception
/// leaves those that it passes without their end.
class ReadingWitness {
public:
    /// Whether contracts go on asking after their fault, so that all they would ask for can be seen.
    enum class AfterFault { Stops, GoesOn };

    explicit ReadingWitness(AfterFault afterFault) : afterFault(afterFault) {}

    const AfterFault afterFault;

    /// A contract begins to read a value; null for an object whose members belong to the message around it.
    virtual void begin(JsonValue value, const Contract* contract) = 0;
    /// It has asked for a key, and has found a value or none.
    virtual void asked(const char* key, const Expected& expected, JsonValue found) = 0;
    /// It has taken a value by its place, right after the key that it asked for last; or there was none.
    virtual void took(JsonValue value, const Expected& expected) = 0;
    /// It has failed at what it asked for last; it may fail again, but the first fault is the one that counts. `why`
    /// says what is wrong with the value, in words that follow it, such as "is outside 0 to 100"; null when it is the
    /// kind, or that there is none.
    virtual void failed(const char* why) = 0;
    virtual void end() = 0;

protected:
    ~ReadingWitness() = default;
};

}  // namespace Orvu
