#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

/// \file
/// What holds for every list of children that a message carries. A test program includes this file once and
/// instantiates AListOfChildren with its messages' lists.

namespace OrvuTests {

/// How the rules reach one list of one message.
struct ChildList {
    std::string name;
    std::string key;
    std::function<std::unique_ptr<Orvu::Serializable>()> make;
    std::function<std::vector<Orvu::Serializable*>(Orvu::Serializable&)> children;
    std::function<void(Orvu::Serializable&)> addNull;
    std::function<void(Orvu::Serializable&)> addNullDirectly;  ///< Into the public field.
    std::function<void(Orvu::Serializable&)> addPlain;
    std::function<void(Orvu::Serializable&)> addForwarding;
    std::function<void(Orvu::Serializable&)> addSilent;
    std::function<void(Orvu::Serializable&, const std::string&)> addSaying;
    std::function<void(Orvu::Serializable&, int&)> addCounted;

    std::string goodElement = "{}";  ///< An element that can be read.
    std::string badElement;          ///< One that cannot; "" when every element can.
    std::string others;              ///< Members that must stand beside the list, a comma behind each.
    std::string inside;              ///< The object in which the list stands; "" when it stands in the message itself.
    bool isRequired = true;
    bool needsOne = false;       ///< Whether it cannot be read as long as the list is empty.
    bool leavesHeaders = false;  ///< Whether the children's header flags stay as they are.
};

/// The list in `field` of a message, filled by `add`, which stands under `key`.
template <class Message, class Child>
ChildList childList(const std::string& name, const std::string& key, std::vector<Child*> Message::*field,
                    void (Message::*add)(Child*))
{
    const auto adds = [add](auto make) {
        return [add, make](Orvu::Serializable& message) { (static_cast<Message&>(message).*add)(make()); };
    };
    ChildList list;
    list.name = name;
    list.key = key;
    list.make = [] { return std::make_unique<Message>(); };
    list.children = [field](Orvu::Serializable& message) {
        const auto& held = static_cast<Message&>(message).*field;
        return std::vector<Orvu::Serializable*>(held.begin(), held.end());
    };
    list.addNull = adds([]() -> Child* { return nullptr; });
    list.addNullDirectly = [field](Orvu::Serializable& message) {
        (static_cast<Message&>(message).*field).push_back(nullptr);
    };
    list.addPlain = adds([] { return new Child; });
    list.addForwarding = adds([] { return new Forwarding<Child>; });
    list.addSilent = adds([] { return new Silent<Child>; });
    list.addSaying = [add](Orvu::Serializable& message, const std::string& text) {
        (static_cast<Message&>(message).*add)(new Saying<Child>(text));
    };
    list.addCounted = [add](Orvu::Serializable& message, int& destroyed) {
        (static_cast<Message&>(message).*add)(new Counted<Child>(destroyed));
    };
    return list;
}

/// The same list where not every element can be read.
inline ChildList needing(ChildList list, const std::string& goodElement, const std::string& badElement)
{
    list.goodElement = goodElement;
    list.badElement = badElement;
    return list;
}

/// The same list where other members must stand beside it.
inline ChildList beside(ChildList list, const std::string& others)
{
    list.others = others;
    return list;
}

/// The same list where it stands in an object of the message.
inline ChildList inside(const std::string& object, ChildList list)
{
    list.inside = object;
    return list;
}

/// The same list where the children's header flags stay as they are.
inline ChildList leavingHeaders(ChildList list)
{
    list.leavesHeaders = true;
    return list;
}

/// The same list where it must not stay empty.
inline ChildList needingOne(ChildList list)
{
    list.needsOne = true;
    return list;
}

inline ChildList optionalList(ChildList list)
{
    list.isRequired = false;
    return list;
}

inline std::ostream& operator<<(std::ostream& out, const ChildList& list)
{
    return out << list.name;
}

inline std::string listName(const testing::TestParamInfo<ChildList>& info)
{
    return info.param.name;
}

class AListOfChildren : public testing::TestWithParam<ChildList> {
protected:
    static const ChildList& list() { return GetParam(); }

    static std::string with(const std::string& value) { return withMembers('"' + list().key + "\": " + value); }

    /// A text with these members and those that must stand beside them.
    static std::string withMembers(const std::string& members)
    {
        const std::string object = "{" + list().others + members + "}";
        return list().inside.empty() ? object : "{\"" + list().inside + "\": " + object + "}";
    }

    static std::size_t countIn(Orvu::Serializable& message) { return list().children(message).size(); }

    /// What the message writes under the list's key, compact.
    static std::string writtenList(Orvu::Serializable& message)
    {
        const Tree tree = treeOf(textOf(message));
        const std::string& inside = list().inside;
        const cJSON* const object =
            inside.empty() ? tree.get() : cJSON_GetObjectItemCaseSensitive(tree.get(), inside.c_str());
        char* const text = cJSON_PrintUnformatted(cJSON_GetObjectItemCaseSensitive(object, list().key.c_str()));
        const std::string copy = text ? text : "(missing)";
        cJSON_free(text);
        return copy;
    }

    /// The header flag of a message, also of one whose class writes no header.
    static bool headerFlagOf(const Orvu::Serializable& child)
    {
        class WithTheFlagOf : public Orvu::Service {
        public:
            explicit WithTheFlagOf(const Orvu::Serializable& other) { copyHeaderFlag(other); }
        };
        WithTheFlagOf service(child);
        return textOf(service).find("HEADER") != std::string::npos;
    }

    const std::unique_ptr<Orvu::Serializable> message = GetParam().make();
};

TEST_P(AListOfChildren, StartsEmptyAndIgnoresNull)
{
    list().addNull(*message);
    EXPECT_EQ(countIn(*message), 0u);
}

TEST_P(AListOfChildren, SwitchesTheHeadersOfItsChildrenOffForGood)
{
    list().addPlain(*message);
    Orvu::Serializable* const child = list().children(*message)[0];
    const std::string inList = writtenList(*message);
    const Tree alone = treeOf(textOf(*child));
    char* const compact = cJSON_PrintUnformatted(alone.get());
    EXPECT_EQ(inList, "[" + std::string(compact) + "]");
    EXPECT_EQ(headerFlagOf(*child), list().leavesHeaders);
    cJSON_free(compact);
}

TEST_P(AListOfChildren, SwitchesTheHeaderOffAlsoOfAChildThatItSkips)
{
    list().addSilent(*message);
    textOf(*message);
    EXPECT_EQ(headerFlagOf(*list().children(*message)[0]), list().leavesHeaders);
}

TEST_P(AListOfChildren, WritesAnApplicationsClassAsItWritesItsOwn)
{
    list().addPlain(*message);
    list().addPlain(*message);
    const auto other = list().make();
    list().addForwarding(*other);
    list().addForwarding(*other);
    EXPECT_EQ(textOf(*message), textOf(*other));
}

TEST_P(AListOfChildren, SkipsChildrenWithoutAJsonText)
{
    list().addSilent(*message);
    list().addSaying(*message, "{}");
    list().addSaying(*message, "no JSON");
    list().addSaying(*message, "");
    list().addNullDirectly(*message);
    list().addSaying(*message, R"({"HEADER":"mine"})");
    list().addSilent(*message);
    EXPECT_EQ(writtenList(*message), R"([{},{"HEADER":"mine"}])");
}

TEST_P(AListOfChildren, CarriesWhateverJsonAChildWrites)
{
    list().addSaying(*message, "[1, null]");
    list().addSaying(*message, "7 and more");
    EXPECT_EQ(writtenList(*message), "[[1,null],7]");
}

TEST_P(AListOfChildren, OwnsItsChildren)
{
    int destroyed = 0;
    {
        const auto owner = list().make();
        list().addCounted(*owner, destroyed);
        list().addCounted(*owner, destroyed);
        list().addNullDirectly(*owner);
    }
    EXPECT_EQ(destroyed, 2);
}

TEST_P(AListOfChildren, AppendsWhatItReads)
{
    const std::string two = with("[" + list().goodElement + ", " + list().goodElement + "]");
    EXPECT_TRUE(message->deserialize(two.c_str()));
    EXPECT_EQ(countIn(*message), 2u);
    for (const Orvu::Serializable* const child : list().children(*message))
        EXPECT_TRUE(headerFlagOf(*child));
    list().addNullDirectly(*message);
    EXPECT_TRUE(message->deserialize(two.c_str()));
    EXPECT_EQ(countIn(*message), 5u);
}

TEST_P(AListOfChildren, HoldsNothingOfAValueOfAnotherKind)
{
    for (const char* value : {"null", "true", "5", R"("text")", "[]", "{}"}) {
        EXPECT_EQ(message->deserialize(with(value).c_str()), !list().needsOne) << value;
        EXPECT_EQ(countIn(*message), 0u) << value;
    }
}

TEST_P(AListOfChildren, ReadsTheMembersOfAnObjectAsWell)
{
    const std::string members = R"({"a": )" + list().goodElement + R"(, "b": )" + list().goodElement + "}";
    EXPECT_TRUE(message->deserialize(with(members).c_str()));
    EXPECT_EQ(countIn(*message), 2u);
}

TEST_P(AListOfChildren, TakesElementsOfAnyKindThatCanBeRead)
{
    const std::string kinds = R"([null, true, 5, "text", [], {}])";
    message->deserialize(with(kinds).c_str());
    EXPECT_EQ(countIn(*message), list().badElement.empty() ? 6u : 0u);
}

TEST_P(AListOfChildren, DropsElementsThatCannotBeRead)
{
    if (list().badElement.empty()) return;
    const std::string mixed = "[" + list().badElement + ", " + list().goodElement + ", " + list().badElement + "]";
    EXPECT_TRUE(message->deserialize(with(mixed).c_str()));
    EXPECT_EQ(countIn(*message), 1u);
}

TEST_P(AListOfChildren, FindsItsKeyInAnyLetterCaseAndTakesTheFirst)
{
    std::string key = list().key;
    for (char& c : key)
        c = static_cast<char>(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c) : std::toupper(c));
    const std::string& good = list().goodElement;
    const std::string both = '"' + key + "\": [" + good + "], \"" + list().key + "\": [" + good + ", " + good + "]";
    EXPECT_TRUE(message->deserialize(withMembers(both).c_str()));
    EXPECT_EQ(countIn(*message), 1u);
}

TEST_P(AListOfChildren, IsMissedOnlyWhereItIsRequired)
{
    EXPECT_EQ(message->deserialize(withMembers("\"stranger\": []").c_str()), !list().isRequired);
    EXPECT_EQ(countIn(*message), 0u);
}

TEST_P(AListOfChildren, CarriesManyChildren)
{
    for (int i = 0; i < 2000; ++i)
        list().addPlain(*message);
    std::string many = "[";
    for (int i = 0; i < 2000; ++i)
        many += (i == 0 ? "" : ",") + list().goodElement;
    const auto other = list().make();
    EXPECT_TRUE(other->deserialize(with(many + "]").c_str()));
    EXPECT_EQ(countIn(*other), 2000u);
    EXPECT_NE(textOf(*message), "(null)");
}

}  // namespace OrvuTests
