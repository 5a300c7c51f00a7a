#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/Keys.h"
#include "support/Messages.h"

/// \file
/// What holds for every key of every message that is read by its own text. A test of a family instantiates AMessage
/// with what its messages' keys are; the rules themselves are in KeyRules.cpp, which orvu_message_tests() links:
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

    /// A value of another kind than `key` takes, and what the field reads as afterwards.
    static std::pair<std::string, std::string> anotherKind(const Key& key)
    {
        return key.wrongKinds.empty() ? key.refused.front() : std::pair{key.wrongKinds.front(), key.otherValue};
    }

    /// All keys with one of their values.
    std::string object(std::string Key::*value) const
    {
        std::string members;
        for (const Key& key : keys())
            members += (members.empty() ? "" : ", ") + member(key.name, key.*value);
        return whole(members);
    }

    /// Only what is required besides `key`, then `members`.
    std::string objectFor(const Key& key, const std::string& members) const
    {
        std::string others;
        for (const Key& other : keys()) {
            if (other.isRequired && other.name != key.name) others += member(other.name, other.otherValue) + ", ";
        }
        return whole(others + (members.empty() ? R"("nonsense": 1)" : members));
    }

    /// A text with these members and the required ones, whose names may be spelt in another way.
    std::string whole(
        std::string members, std::string (*spelt)(std::string) = [](std::string name) { return name; }) const
    {
        for (const std::string& list : GetParam().lists)
            members += (members.empty() ? "" : ", ") + member(spelt(list), GetParam().list);
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

}  // namespace OrvuTests
