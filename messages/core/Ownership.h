#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace Orvu {

/// Puts `element` at `place` and takes it, also when out of memory: it is deleted then. Null is ignored.
template <class Message>
void takeAt(std::vector<Message*>& owned, typename std::vector<Message*>::const_iterator place, Message* element)
{
    std::unique_ptr<Message> guard(element);
    if (!element) return;
    try {
        owned.insert(place, element);
        guard.release();
    } catch (...) {  // the caller has handed the element over: nobody else would delete it
    }
}

/// Appends `element` and takes it, also when out of memory: it is deleted then. Null is ignored.
template <class Message>
void take(std::vector<Message*>& owned, Message* element)
{
    takeAt(owned, owned.end(), element);
}

/// Calls `add`, which adds a value to a message. When memory runs out, nothing is added and nothing is thrown.
template <class Add>
void addIfMemoryAllows(Add add)
{
    try {
        add();
    } catch (...) {  // the application has nobody to tell
    }
}

/// Appends a value to a list of the application's; nothing is added when out of memory.
template <class Value>
void addValue(std::vector<Value>& values, Value value)
{
    addIfMemoryAllows([&] { values.push_back(value); });
}

/// Stores a value in a field that is null without one.
template <class Value>
void hold(Value*& field, Value value)
{
    if (field) {
        *field = std::move(value);
    } else {
        field = new Value(std::move(value));
    }
}

/// Deletes every element; null ones, which an application may have put there, too.
template <class Message>
void deleteAll(const std::vector<Message*>& owned)
{
    for (Message* element : owned)
        delete element;
}

}  // namespace Orvu
