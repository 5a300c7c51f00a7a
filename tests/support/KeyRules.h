#pragma once

#include <cctype>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Messages.h"

/// \file
/// What holds for every key of every message that is read by its own text. A test program includes this file once and
/// instantiates AMessage with what its messages' keys are:
///
///     INSTANTIATE_TEST_SUITE_P(Services, AMessage, testing::Values(
///         keysOf<ServiceTime>("ServiceTime", {required(text("time", &ServiceTime::time))})), nameOf);

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
};

/// The keys of a message, but for those of its children.
struct MessageKeys {
    std::string name;
    std::function<std::unique_ptr<Orvu::Serializable>()> make;
    std::vector<Key> keys;
};

template <class Message>
Key text(const std::string& name, std::string Message::*field)
{
    return {name,
            R"("Canal 1")",
            R"("Zwölf")",
            {{R"("")", R"("")"},
             {R"("\u0041\/\u00e9")", R"("A/é")"},
             {R"("before\u0000behind")", R"("before")"},
             {"\"\x01\xff\"", "\"\x01\xff\""}},
            {"null", "true", "7", R"(["a"])", R"({"a": "b"})"},
            [field](Orvu::Serializable& message) { return '"' + static_cast<Message&>(message).*field + '"'; }};
}

template <class Message>
Key number(const std::string& name, int Message::*field)
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
            [field](Orvu::Serializable& message) { return std::to_string(static_cast<Message&>(message).*field); }};
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

inline Key required(Key key)
{
    key.isRequired = true;
    return key;
}

/// The keys of a message class, made as the factory makes it: with empty texts where it takes texts.
template <class Message>
MessageKeys keysOf(const std::string& name, std::vector<Key> keys)
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
    return {name, make, std::move(keys)};
}

inline std::ostream& operator<<(std::ostream& out, const MessageKeys& message)
{
    return out << message.name;
}

inline std::string nameOf(const testing::TestParamInfo<MessageKeys>& info)
{
    return info.param.name;
}

class AMessage : public testing::TestWithParam<MessageKeys> {
protected:
    const std::vector<Key>& keys() const { return GetParam().keys; }

    /// A message whose fields all have the other values.
    std::unique_ptr<Orvu::Serializable> filled() const
    {
        std::unique_ptr<Orvu::Serializable> message = GetParam().make();
        EXPECT_TRUE(message->deserialize(object(&Key::otherValue).c_str()));
        expectOthers(*message);
        return message;
    }

    bool requiresKeys() const
    {
        for (const Key& key : keys()) {
            if (key.isRequired) return true;
        }
        return false;
    }

    /// All keys with one of their values.
    std::string object(std::string Key::*value) const
    {
        std::string members;
        for (const Key& key : keys())
            members += (members.empty() ? "" : ", ") + member(key.name, key.*value);
        return "{" + members + "}";
    }

    /// Just what must stand there beside `key`, then `members`.
    std::string objectFor(const Key& key, const std::string& members) const
    {
        std::string others;
        for (const Key& other : keys()) {
            if (other.isRequired && other.name != key.name) others += member(other.name, other.otherValue) + ", ";
        }
        return "{" + others + (members.empty() ? R"("stranger": 1)" : members) + "}";
    }

    static std::string member(const std::string& name, const std::string& value) { return '"' + name + "\": " + value; }

    void expectValues(Orvu::Serializable& message) const
    {
        for (const Key& key : keys())
            EXPECT_EQ(key.field(message), key.value) << key.name;
    }

    void expectOthers(Orvu::Serializable& message) const
    {
        for (const Key& key : keys())
            EXPECT_EQ(key.field(message), key.otherValue) << key.name;
    }
};

inline std::string inOtherLetterCase(std::string name)
{
    for (char& c : name)
        c = static_cast<char>(std::islower(static_cast<unsigned char>(c)) ? std::toupper(c) : std::tolower(c));
    return name;
}

TEST_P(AMessage, ReadsEachOfItsKeys)
{
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(object(&Key::value).c_str()));
    expectValues(*message);
}

TEST_P(AMessage, ReadsItsKeysInAnyOrderAmongStrangers)
{
    std::string members = R"("HEADER": "whatever")";
    for (auto key = keys().rbegin(); key != keys().rend(); ++key)
        members += R"(, "stranger": {"a": 1}, )" + member(key->name, key->value);
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(("{" + members + "}").c_str()));
    expectValues(*message);
}

TEST_P(AMessage, FindsItsKeysInAnyLetterCase)
{
    std::string members = R"("header": "whatever")";
    for (const Key& key : keys())
        members += ", " + member(inOtherLetterCase(key.name), key.value);
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(("{" + members + "}").c_str()));
    expectValues(*message);
}

TEST_P(AMessage, ReadsEachFormOfAValue)
{
    for (const Key& key : keys()) {
        for (const auto& [value, field] : key.forms) {
            const auto message = filled();
            EXPECT_TRUE(message->deserialize(objectFor(key, member(key.name, value)).c_str())) << key.name << value;
            EXPECT_EQ(key.field(*message), field) << key.name << ": " << value;
        }
    }
}

TEST_P(AMessage, TakesTheFirstOfEqualKeys)
{
    for (const Key& key : keys()) {
        const std::string first = member(inOtherLetterCase(key.name), key.value);
        const auto message = filled();
        EXPECT_TRUE(message->deserialize(objectFor(key, first + ", " + member(key.name, key.otherValue)).c_str()));
        EXPECT_EQ(key.field(*message), key.value) << key.name;
    }
}

TEST_P(AMessage, TakesNoSecondKeyWhereTheFirstIsOfAnotherKind)
{
    for (const Key& key : keys()) {
        const auto message = filled();
        const std::string members = member(key.name, "null") + ", " + member(key.name, key.value);
        EXPECT_EQ(message->deserialize(objectFor(key, members).c_str()), !key.isRequired) << key.name;
        EXPECT_EQ(key.field(*message), key.otherValue) << key.name;
    }
}

TEST_P(AMessage, LeavesTheFieldOfAMissingKey)
{
    for (const Key& key : keys()) {
        const auto message = filled();
        EXPECT_EQ(message->deserialize(objectFor(key, "").c_str()), !key.isRequired) << key.name;
        expectOthers(*message);
    }
}

TEST_P(AMessage, LeavesTheFieldOfAKeyOfAnotherKind)
{
    for (const Key& key : keys()) {
        for (const std::string& value : key.wrongKinds) {
            const auto message = filled();
            EXPECT_EQ(message->deserialize(objectFor(key, member(key.name, value)).c_str()), !key.isRequired)
                << key.name << ": " << value;
            expectOthers(*message);
        }
    }
}

TEST_P(AMessage, ReadsNothingFromWhatIsNoJson)
{
    const std::string cut = object(&Key::value).substr(0, object(&Key::value).size() - 1);
    const auto message = filled();
    EXPECT_FALSE(message->deserialize(nullptr));
    for (const std::string& text : {std::string(), std::string(" "), std::string("text"), std::string("{"), cut})
        EXPECT_FALSE(message->deserialize(text.c_str())) << text;
    expectOthers(*message);
}

TEST_P(AMessage, FindsNoKeysInWhatIsNoObject)
{
    const std::string inArray = "[" + object(&Key::value) + "]";
    const auto message = filled();
    for (const std::string& text : {inArray, std::string("[]"), std::string("5"), std::string(R"("text")"),
                                    std::string("true"), std::string("null"), std::string("{}")}) {
        EXPECT_EQ(message->deserialize(text.c_str()), !requiresKeys()) << text;
    }
    expectOthers(*message);
}

TEST_P(AMessage, IgnoresWhatFollowsItsText)
{
    for (const std::string& more : {std::string(" and more"), std::string("}"), object(&Key::otherValue)}) {
        const auto message = filled();
        EXPECT_TRUE(message->deserialize((" \n" + object(&Key::value) + more).c_str())) << more;
        expectValues(*message);
    }
}

TEST_P(AMessage, ReadsTheSameFromAParsedItem)
{
    const auto message = filled();
    EXPECT_TRUE(message->deserializeObject(treeOf(object(&Key::value)).get()));
    expectValues(*message);
}

TEST_P(AMessage, GivesNoReasons)
{
    const auto message = filled();
    unsigned char error = 77;
    EXPECT_FALSE(message->deserialize(object(&Key::value).c_str(), error));
    EXPECT_FALSE(message->deserialize(nullptr, error));
    EXPECT_EQ(error, 77);
    expectOthers(*message);
}

TEST_P(AMessage, IsReadFromWhatItWrote)
{
    const auto message = filled();
    const auto other = GetParam().make();
    EXPECT_TRUE(other->deserialize(textOf(*message).c_str()));
    expectOthers(*other);
}

}  // namespace OrvuTests
