#pragma once

#include <memory>
#include <vector>

#include "messages/core/Append.h"
#include "messages/core/Contract.h"
#include "messages/core/JsonValue.h"

namespace Orvu {

/// \file
/// The two roads of a child. One whose class is exactly that of the contract is written into its holder's text, and
/// read from it, by the contract. One of a class that an application derived goes through its virtual functions and a
/// text of its own.

/// Whether the text that a child of an application's class gives is minified before it is parsed: comments may be in
/// it.
enum class ChildText { Plain, Minified };

/// Writes the child as one value. False when it has no JSON text.
bool writeChild(JsonWriter& json, Serializable& child, const Contract& contract, ChildText text);

/// Reads the child from one value. False when it cannot be read.
bool readChild(Serializable& child, const Contract& contract, JsonValue value);
/// The same; a child of an application's class is read by its error-reporting reader.
bool readChild(Serializable& child, const Contract& contract, JsonValue value, unsigned char& error);

/// A list of children for the core, which does not know their class. Each has a function for what differs.
class ListOfChildren {
public:
    template <class Message>
    explicit ListOfChildren(std::vector<Message*>& children)
        : contract(contractOf<Message>()), children_(&children), add_(addTo<Message>), dropLast_(dropLastOf<Message>)
    {}

    const Contract& contract;

    Serializable& add() { return add_(children_); }
    void dropLast() { dropLast_(children_); }

private:
    template <class Message>
    static std::vector<Message*>& list(void* children)
    {
        return *static_cast<std::vector<Message*>*>(children);
    }
    template <class Message>
    static Serializable& addTo(void* children)
    {
        auto child = std::make_unique<Message>();
        append(list<Message>(children), child.get());
        return *child.release();
    }
    template <class Message>
    static void dropLastOf(void* children)
    {
        delete list<Message>(children).back();
        list<Message>(children).pop_back();
    }

    void* const children_;
    Serializable& (*const add_)(void*);
    void (*const dropLast_)(void*);
};

enum class Unreadable { Dropped, Kept };

/// Appends a child for each item of an array.
void readChildren(JsonValue array, ListOfChildren children, Unreadable unreadable);

}  // namespace Orvu
