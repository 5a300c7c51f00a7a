#pragma once

#include <algorithm>
#include <cctype>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvu/Serializable.h"

/// \file
/// The keys of messages, for the rules in support/KeyRules.h.

namespace OrvuTests {

/// One key: JSON values for it, and the field that it fills, shown as JSON too.
struct Key {
    std::string name;
    std::string value;                                       ///< Makes the field read as the same text.
    std::string otherValue;                                  ///< Likewise.
    std::vector<std::pair<std::string, std::string>> forms;  ///< Values, each with what the field reads as afterwards.
    std::vector<std::string> wrongKinds;                     ///< Values that count as if the key were missing.
    std::function<std::string(Orvu::Serializable&)> field;
    bool isRequired = false;
    bool isWritten = true;
    std::vector<std::pair<std::string, std::string>> refused = {};  ///< Like `forms`, of values that fail the read.
};

/// The keys of a message, except those of its children and lists.
struct MessageKeys {
    std::string name;
    std::function<std::unique_ptr<Orvu::Serializable>()> make;
    std::vector<Key> keys;
    std::vector<std::string> lists;  ///< Lists that are required, too.
    std::string inside;         ///< The object in which all of them stand; "" when they stand in the message itself.
    std::string list = "[]";    ///< A value with which each of the lists can be read.
    bool isWritten = true;      ///< Whether it has a text at all.
    bool needsObject = false;   ///< Whether a text that is not an object fails the read.
    bool givesReasons = false;  ///< Whether its error-reporting reader reads, and gives 1 for what is not JSON.
};

inline std::string inOtherLetterCase(std::string name)
{
    for (char& c : name)
        c = static_cast<char>(std::islower(static_cast<unsigned char>(c)) ? std::toupper(c) : std::tolower(c));
    return name;
}

/// A key that is read as a text; `field` shows what became of it.
inline Key textShownBy(const std::string& name, std::function<std::string(Orvu::Serializable&)> field)
{
    return {name,
            R"("Canal 1")",
            R"("Zwölf")",
            {{R"("")", R"("")"},
             {R"("\u0041\/\u00e9")", R"("A/é")"},
             {R"("before\u0000behind")", R"("before")"},
             {"\"\x01\xff\"", "\"\x01\xff\""}},
            {"null", "true", "7", R"(["a"])", R"({"a": "b"})"},
            std::move(field)};
}

inline std::string inQuotes(const std::string& text)
{
    return '"' + text + '"';
}

template <class Message>
Key text(const std::string& name, std::string Message::*field)
{
    return textShownBy(
        name, [field](Orvu::Serializable& message) { return inQuotes(static_cast<Message&>(message).*field); });
}

/// A key that is read as a number; `field` shows what became of it.
inline Key numberShownBy(const std::string& name, std::function<std::string(Orvu::Serializable&)> field)
{
    return {name,
            "17",
            "-4",
            {{"0", "0"},
             {"true", "1"},
             {"false", "0"},
             {"2.9", "2"},
             {"-2.9", "-2"},
             {"2.9999999999999996", "2"},
             {"2147483647", "2147483647"},
             {"2147483648", "2147483647"},
             {"-2147483648", "-2147483648"},
             {"-2147483649", "-2147483648"},
             {"1e400", "2147483647"},
             {"-1e400", "-2147483648"}},
            {"null", R"("5")", "[5]", R"({"a": 5})"},
            std::move(field)};
}

template <class Message>
Key number(const std::string& name, int Message::*field)
{
    return numberShownBy(
        name, [field](Orvu::Serializable& message) { return std::to_string(static_cast<Message&>(message).*field); });
}

/// The same key where a message has use for it only from 0 on.
inline Key fromZero(Key key)
{
    key.otherValue = "4";
    return key;
}

/// A key that is read as a boolean; `field` shows what became of it.
inline Key booleanShownBy(const std::string& name, std::function<std::string(Orvu::Serializable&)> field)
{
    return {name,
            "true",
            "false",
            {{"0", "false"}, {"1", "true"}, {"-1", "true"}, {"256", "true"}, {"0.9", "false"}, {"1e400", "true"}},
            {"null", R"("true")", "[true]", R"({"a": true})"},
            std::move(field)};
}

template <class Message>
Key boolean(const std::string& name, bool Message::*field)
{
    return booleanShownBy(name, [field](Orvu::Serializable& message) {
        return static_cast<Message&>(message).*field ? "true" : "false";
    });
}

/// A key that is read as one of a few words; `field` shows the word that became of it. `otherWord` is any other
/// text.
inline Key wordShownBy(const std::string& name, const std::string& value, const std::string& otherValue,
                       const std::string& otherWord, std::function<std::string(Orvu::Serializable&)> field)
{
    const std::string none = inQuotes(otherWord);
    return {name,
            inQuotes(value),
            inQuotes(otherValue),
            {{R"("")", none},
             {inQuotes(inOtherLetterCase(value)), none},
             {inQuotes(" " + value), none},
             {inQuotes(value + "s"), none},
             {inQuotes(value.substr(1)), none},
             {inQuotes(value + "\\u0000s"), inQuotes(value)}},
            {"null", "true", "2", "[" + inQuotes(value) + "]", R"({"a": "b"})"},
            [field](Orvu::Serializable& message) { return inQuotes(field(message)); }};
}

inline Key required(Key key)
{
    key.isRequired = true;
    return key;
}

inline Key neverWritten(Key key)
{
    key.isWritten = false;
    return key;
}

/// The same key where values of these kinds fail the read and leave the field as it was.
inline Key refusing(Key key, const std::vector<std::string>& values)
{
    for (const std::string& value : values)
        key.refused.emplace_back(value, key.otherValue);
    const auto isRefused = [&](const std::string& kind) {
        return std::find(values.begin(), values.end(), kind) != values.end();
    };
    key.wrongKinds.erase(std::remove_if(key.wrongKinds.begin(), key.wrongKinds.end(), isRefused), key.wrongKinds.end());
    return key;
}

/// The same key where only its two words are accepted: any other is taken, too, but fails the read.
inline Key refusingOtherWords(Key key)
{
    const auto isAccepted = [&](const auto& form) { return form.second == key.value; };
    const auto others = std::stable_partition(key.forms.begin(), key.forms.end(), isAccepted);
    key.refused.assign(others, key.forms.end());
    key.forms.erase(others, key.forms.end());
    return key;
}

/// The keys of a message class, made as the factory makes it: with empty texts where it takes texts.
template <class Message>
MessageKeys keysOf(const std::string& name, std::vector<Key> keys, std::vector<std::string> lists = {},
                   const std::string& inside = "")
{
    const auto make = []() -> std::unique_ptr<Orvu::Serializable> {
        if constexpr (std::is_default_constructible_v<Message>) {
            return std::make_unique<Message>();
        } else if constexpr (std::is_constructible_v<Message, const char*>) {
            return std::make_unique<Message>("");
        } else {
            return std::make_unique<Message>("", "");
        }
    };
    return {name, make, std::move(keys), std::move(lists), inside};
}

/// The same message where a text that is not an object fails the read.
inline MessageKeys needingAnObject(MessageKeys message)
{
    message.needsObject = true;
    return message;
}

/// The same message where the error-reporting reader reads, and says why it could not.
inline MessageKeys givingReasons(MessageKeys message)
{
    message.givesReasons = true;
    return message;
}

/// The same message where it has no text.
inline MessageKeys neverWritten(MessageKeys message)
{
    message.isWritten = false;
    return message;
}

inline std::ostream& operator<<(std::ostream& out, const MessageKeys& message)
{
    return out << message.name;
}

inline std::string nameOf(const testing::TestParamInfo<MessageKeys>& info)
{
    return info.param.name;
}

}  // namespace OrvuTests
