#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "support/Keys.h"
#include "support/Messages.h"

/// \file
/// What holds for every key of every message that is read by its own text. A test program includes this file once and
/// instantiates AMessage with what its messages' keys are:
///
///     INSTANTIATE_TEST_SUITE_P(Services, AMessage, testing::Values(
///         keysOf<ServiceTime>("ServiceTime", {required(text("time", &ServiceTime::time))})), nameOf);

namespace OrvuTests {

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
        if (!GetParam().lists.empty() || !GetParam().inside.empty()) return true;
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
        return whole(members);
    }

    /// Just what must stand there beside `key`, then `members`.
    std::string objectFor(const Key& key, const std::string& members) const
    {
        std::string others;
        for (const Key& other : keys()) {
            if (other.isRequired && other.name != key.name) others += member(other.name, other.otherValue) + ", ";
        }
        return whole(others + (members.empty() ? R"("stranger": 1)" : members));
    }

    /// A text with these members and those that must stand there too, the names of which may be spelt in another way.
    std::string whole(
        std::string members, std::string (*spelt)(std::string) = [](std::string name) { return name; }) const
    {
        for (const std::string& list : GetParam().lists)
            members += (members.empty() ? "" : ", ") + member(spelt(list), "[]");
        members = "{" + members + "}";
        const std::string& inside = GetParam().inside;
        return inside.empty() ? members : R"({"HEADER": "whatever", )" + member(spelt(inside), members) + "}";
    }

    static std::string member(const std::string& name, const std::string& value) { return '"' + name + "\": " + value; }

    void expectValues(Orvu::Serializable& message) const
    {
        for (const Key& key : keys())
            EXPECT_EQ(key.field(message), key.value) << key.name;
    }

    /// That `only` has its value, and each other key the other value.
    void expectOthersBut(const Key& only, Orvu::Serializable& message) const
    {
        for (const Key& key : keys())
            EXPECT_EQ(key.field(message), key.name == only.name ? key.value : key.otherValue)
                << key.name << " beside " << only.name;
    }

    void expectOthers(Orvu::Serializable& message) const
    {
        for (const Key& key : keys())
            EXPECT_EQ(key.field(message), key.otherValue) << key.name;
    }
};

TEST_P(AMessage, ReadsEachOfItsKeys)
{
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(object(&Key::value).c_str()));
    expectValues(*message);
}

TEST_P(AMessage, KeepsTheValueOfEachKeyToItsOwnField)
{
    for (const Key& key : keys()) {
        const auto message = filled();
        EXPECT_TRUE(message->deserialize(objectFor(key, member(key.name, key.value)).c_str())) << key.name;
        expectOthersBut(key, *message);
        const auto other = filled();
        EXPECT_TRUE(other->deserialize(textOf(*message).c_str())) << key.name;
        if (key.isWritten) expectOthersBut(key, *other);
    }
}

TEST_P(AMessage, ReadsItsKeysInAnyOrderAmongStrangers)
{
    std::string members = R"("HEADER": "whatever")";
    for (auto key = keys().rbegin(); key != keys().rend(); ++key)
        members += R"(, "stranger": {"a": 1}, )" + member(key->name, key->value);
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(whole(members).c_str()));
    expectValues(*message);
}

TEST_P(AMessage, FindsItsKeysInAnyLetterCase)
{
    std::string members = R"("header": "whatever")";
    for (const Key& key : keys())
        members += ", " + member(inOtherLetterCase(key.name), key.value);
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(whole(members, inOtherLetterCase).c_str()));
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
    for (const Key& key : keys())
        EXPECT_EQ(key.field(*other), key.isWritten ? key.otherValue : key.field(*GetParam().make())) << key.name;
}

}  // namespace OrvuTests
