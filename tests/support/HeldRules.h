#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include "support/Children.h"
#include "support/Messages.h"

/// \file
/// What holds for every child that a message holds in a pointer of its own. A test program includes this file once and
/// instantiates AHeldChildOf with its messages' children.

namespace OrvuTests {

/// How the rules reach one child of one message.
struct HeldChildOf {
    std::string name;
    std::string key;
    std::function<std::unique_ptr<Orvu::Serializable>()> make;
    std::function<Orvu::Serializable*(Orvu::Serializable&)> child;
    std::function<void(Orvu::Serializable&)> remove;
    std::function<void(Orvu::Serializable&)> holdSilent;
    std::function<void(Orvu::Serializable&, const std::string&)> holdSaying;
    std::function<std::string*(Orvu::Serializable&)> holdListening;  ///< Where the child keeps what it hears.
    std::function<void(Orvu::Serializable&, int&)> holdCounted;

    std::string others;          ///< Members that are required besides it, each followed by a comma.
    std::string inside;          ///< The object in which the child stands; "" when it stands in the message itself.
    bool isReplaced = false;     ///< Whether each read makes a new child, and leaves the one before to the caller.
    bool mustBeWritten = false;  ///< Whether the message has no text when the child has none.
};

/// The child in `field` of a message, which stands under `key`.
template <class Message, class Child>
HeldChildOf heldChild(const std::string& name, const std::string& key, Child* Message::*field)
{
    const auto hold = [field](Orvu::Serializable& message, Child* child) {
        delete std::exchange(static_cast<Message&>(message).*field, child);
    };
    HeldChildOf held;
    held.name = name;
    held.key = key;
    held.make = [] { return std::make_unique<Message>(); };
    held.child = [field](Orvu::Serializable& message) { return static_cast<Message&>(message).*field; };
    held.remove = [hold](Orvu::Serializable& message) { hold(message, nullptr); };
    held.holdSilent = [hold](Orvu::Serializable& message) { hold(message, new Silent<Child>); };
    held.holdSaying = [hold](Orvu::Serializable& message, const std::string& text) {
        hold(message, new Saying<Child>(text));
    };
    held.holdListening = [hold](Orvu::Serializable& message) {
        auto* const child = new Listening<Child>(false);
        hold(message, child);
        return &child->heard;
    };
    held.holdCounted = [hold](Orvu::Serializable& message, int& destroyed) {
        hold(message, new Counted<Child>(destroyed));
    };
    return held;
}

/// The same child where other members are required besides it, or all of them are in an object.
inline HeldChildOf beside(HeldChildOf held, const std::string& others, const std::string& inside = "")
{
    held.others = others;
    held.inside = inside;
    return held;
}

inline HeldChildOf replaced(HeldChildOf held)
{
    held.isReplaced = true;
    return held;
}

inline HeldChildOf mustBeWritten(HeldChildOf held)
{
    held.mustBeWritten = true;
    return held;
}

inline std::ostream& operator<<(std::ostream& out, const HeldChildOf& held)
{
    return out << held.name;
}

inline std::string heldName(const testing::TestParamInfo<HeldChildOf>& info)
{
    return info.param.name;
}

class AHeldChildOf : public testing::TestWithParam<HeldChildOf> {
protected:
    static const HeldChildOf& held() { return GetParam(); }

    Orvu::Serializable* child() { return held().child(*message); }

    /// Whether the message can be read with the child as `value`; without it when that is "".
    bool reads(const std::string& value)
    {
        const std::string member = value.empty() ? R"("unknown": 1)" : '"' + held().key + "\": " + value;
        const std::string object = "{" + held().others + member + "}";
        return message->deserialize(
            (held().inside.empty() ? object : "{\"" + held().inside + "\": " + object + "}").c_str());
    }

    /// What the message writes under the child's key, compact; "" when it leaves the key out.
    std::string written()
    {
        const Tree tree = treeOf(textOf(*message));
        const std::string& inside = held().inside;
        const cJSON* const object =
            inside.empty() ? tree.get() : cJSON_GetObjectItemCaseSensitive(tree.get(), inside.c_str());
        cJSON* const member = cJSON_GetObjectItemCaseSensitive(object, held().key.c_str());
        return member ? taken(cJSON_PrintUnformatted(member)) : "";
    }

    void expectLeftOut()
    {
        if (held().mustBeWritten) {
            EXPECT_EQ(textOf(*message), "(null)");
        } else {
            EXPECT_EQ(written(), "");
        }
    }

    const std::unique_ptr<Orvu::Serializable> message = GetParam().make();
};

TEST_P(AHeldChildOf, CarriesNoHeaderOfTheLibrarysOwn)
{
    ASSERT_TRUE(reads("{}"));
    EXPECT_EQ(written().find("HEADER"), std::string::npos);
}

TEST_P(AHeldChildOf, IsLeftOutWithoutAJsonText)
{
    held().holdSilent(*message);
    expectLeftOut();
    for (const char* text : {"", "{", "no JSON"}) {
        held().holdSaying(*message, text);
        expectLeftOut();
    }
}

TEST_P(AHeldChildOf, SaysWhatAnApplicationsClassWrites)
{
    for (const auto& [said, carried] :
         {std::pair{R"({"HEADER": "mine", "a": [1.5]})", R"({"HEADER":"mine","a":[1.5]})"},
          {"[ 1 ]", "[1]"},
          {"null", "null"},
          {"5 and more", "5"}}) {
        held().holdSaying(*message, said);
        EXPECT_EQ(written(), carried);
    }
}

TEST_P(AHeldChildOf, IsMadeOfAValueOfAnyKindWhenThereIsNone)
{
    for (const char* value : {"{}", "null", "5", "true", R"("text")", "[]"}) {
        held().remove(*message);
        EXPECT_TRUE(reads(""));
        EXPECT_EQ(child(), nullptr);
        EXPECT_TRUE(reads(value)) << value;
        EXPECT_NE(child(), nullptr) << value;
    }
}

TEST_P(AHeldChildOf, IsReadIntoUnlessItIsReplaced)
{
    EXPECT_TRUE(reads("{}"));
    const std::unique_ptr<Orvu::Serializable> before(held().isReplaced ? child() : nullptr);
    Orvu::Serializable* const first = child();
    EXPECT_TRUE(reads("{}"));
    EXPECT_EQ(child() != first, held().isReplaced);
}

TEST_P(AHeldChildOf, ReadsForItselfWhereItsClassIsAnApplications)
{
    if (held().isReplaced) return;
    const std::string* const heard = held().holdListening(*message);
    EXPECT_TRUE(reads(R"({"w": 5})"));
    EXPECT_EQ(*heard, "{\n\t\"w\":\t5\n}");
}

TEST_P(AHeldChildOf, IsDeletedWithItsMessage)
{
    int destroyed = 0;
    {
        const auto owner = held().make();
        held().holdCounted(*owner, destroyed);
    }
    EXPECT_EQ(destroyed, 1);
}

}  // namespace OrvuTests
