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
/// What holds for every list of children that a message carries. A test of a family instantiates AListOfChildren with
/// its messages' lists; the rules themselves are in ListRules.cpp, which orvu_message_tests() links.

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
    std::string others;              ///< Members that are required besides the list, each followed by a comma.
    std::string inside;              ///< The object that holds the list; "" when the message itself does.
    bool isRequired = true;
    bool needsOne = false;       ///< Whether it cannot be read as long as the list is empty.
    bool leavesHeaders = false;  ///< Whether the children's header flags stay as they are.
};

/// The list in `field` of a message, filled by `add`, with the key `key`. `makeChild` makes a child that it takes;
/// an application's classes derive from `Base`, whose objects it takes as well.
template <class Base, class Message, class Child>
ChildList childListOf(const std::string& name, const std::string& key, std::vector<Child*> Message::*field,
                      void (Message::*add)(Child*), Child* (*makeChild)())
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
    list.addPlain = adds(makeChild);
    list.addForwarding = adds([] { return new Forwarding<Base>; });
    list.addSilent = adds([] { return new Silent<Base>; });
    list.addSaying = [add](Orvu::Serializable& message, const std::string& text) {
        (static_cast<Message&>(message).*add)(new Saying<Base>(text));
    };
    list.addCounted = [add](Orvu::Serializable& message, int& destroyed) {
        (static_cast<Message&>(message).*add)(new Counted<Base>(destroyed));
    };
    return list;
}

/// The same, of children that the list takes as they are made.
template <class Message, class Child>
ChildList childList(const std::string& name, const std::string& key, std::vector<Child*> Message::*field,
                    void (Message::*add)(Child*))
{
    Child* (*const makeChild)() = [] { return new Child; };
    return childListOf<Child>(name, key, field, add, makeChild);
}

/// The same list where not every element can be read.
inline ChildList needing(ChildList list, const std::string& goodElement, const std::string& badElement)
{
    list.goodElement = goodElement;
    list.badElement = badElement;
    return list;
}

/// The same list where other members are required besides it.
inline ChildList beside(ChildList list, const std::string& others)
{
    list.others = others;
    return list;
}

/// The same list inside an object of the message.
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

    /// A text with these members and the required ones.
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

}  // namespace OrvuTests
