#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "messages/core/Append.h"
#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"
#include "messages/core/Vocabulary.h"

namespace Orvu {

/// \file
/// Fields that travel in another form than their own. A form writes itself as one value, or answers false when it has
/// none, which leaves its key out. It reads itself from a value of any kind, and answers false when it leaves its field
/// as it was.

/// Reads a text as the value of a word; false for a value of another kind.
bool readWord(JsonValue value, const WordTable& words, int& field);

/// An enumeration as its word.
template <class Enum>
struct AsWord {
    Enum& field;
    const Vocabulary<Enum>& words;

    void write(JsonWriter& json) const { json.value(words.word(field)); }
    Expected expected() const { return {Expected::Word, &words}; }
    bool read(JsonReader&, JsonValue value) const
    {
        int number = field;
        const bool isRead = readWord(value, words, number);
        field = static_cast<Enum>(number);
        return isRead;
    }
};
template <class Enum>
AsWord<Enum> asWord(Enum& field, const Vocabulary<Enum>& words)
{
    return {field, words};
}

/// A list of enumerations as an array of their words. Reading appends; items that are not texts are skipped.
template <class Enum>
struct AsWords {
    std::vector<Enum>& fields;
    const Vocabulary<Enum>& words;

    void write(JsonWriter& json) const
    {
        json.array(fields, [&](Enum field) { json.value(words.word(field)); });
    }
    Expected expected() const { return {Expected::Words, &words}; }
    bool read(JsonReader&, JsonValue array) const
    {
        for (const JsonValue item : array.items()) {
            int number = 0;
            if (readWord(item, words, number)) append(fields, static_cast<Enum>(number));
        }
        return true;
    }
};
template <class Enum>
AsWords<Enum> asWords(std::vector<Enum>& fields, const Vocabulary<Enum>& words)
{
    return {fields, words};
}

/// A text, or null when it is empty. Null leaves the field alone when it is read, so only writing needs the form.
struct AsNullWhenEmpty {
    const std::string& field;

    void write(JsonWriter& json) const { field.empty() ? json.null() : json.value(field); }
};
inline AsNullWhenEmpty asNullWhenEmpty(const std::string& field)
{
    return {field};
}

/// A value that a pointer holds, which is null, and left out, without one.
template <class Value>
struct IfHeld {
    Value*& field;

    bool write(JsonWriter& json) const
    {
        if (field) json.value(*field);
        return field != nullptr;
    }
    const Expected& expected() const { return JsonReader::expectedFor(Value()); }
    bool read(JsonReader& json, JsonValue value) const
    {
        if (field) return json.read(value, *field);
        auto taken = std::make_unique<Value>();
        const bool isTaken = json.read(value, *taken);
        if (isTaken) field = taken.release();
        return isTaken;
    }
};
template <class Value>
IfHeld<Value> ifHeld(Value*& field)
{
    return {field};
}

/// A child, or a list of children, whose header flags are left as they are. Only for writing.
template <class Message>
struct AsIs {
    Message* child;

    bool write(JsonWriter& json) const { return child && json.value(*child); }
};
template <class Message>
AsIs<Message> asIs(Message* child)
{
    return {child};
}
template <class Message>
struct AllAsIs {
    const std::vector<Message*>& children;

    void write(JsonWriter& json) const { json.array(children); }
};
template <class Message>
AllAsIs<Message> asIs(const std::vector<Message*>& children)
{
    return {children};
}

/// A child as it is; the text that one of an application's class gives is minified before it is parsed. Only for
/// writing.
template <class Message>
struct Minified {
    Message* child;

    bool write(JsonWriter& json) const { return child && json.value(*child, ChildText::Minified); }
};
template <class Message>
Minified<Message> minified(Message* child)
{
    return {child};
}

/// A child in one of the forms above, or null when there is none. Only for writing.
template <class Child>
struct OrNull {
    Child form;

    bool write(JsonWriter& json) const
    {
        if (form.child) return form.write(json);
        json.null();
        return true;
    }
};
template <class Child>
OrNull<Child> orNull(Child form)
{
    return {form};
}

/// A list of children. Reading appends one for each item, also for those that cannot be read.
template <class Message>
struct KeepingAll {
    std::vector<Message*>& children;

    const Expected& expected() const { return kExpectedChildren; }
    bool read(JsonReader&, JsonValue array) const
    {
        readChildren(array, ListOfChildren(children), Unreadable::Kept);
        return true;
    }
};
template <class Message>
KeepingAll<Message> keepingAll(std::vector<Message*>& children)
{
    return {children};
}

/// A child. Reading makes a new one, whatever is held, which is the application's from then on.
template <class Message>
struct Replaced {
    Message*& child;

    const Expected& expected() const { return kExpectedChild; }
    bool read(JsonReader&, JsonValue value) const
    {
        value.takeRoom(contractOf<Message>().size);
        child = new Message;
        readChild(*child, contractOf<Message>(), value);
        return true;
    }
};
template <class Message>
Replaced<Message> replaced(Message*& child)
{
    return {child};
}

/// The list that follows a member, whatever its own key. Without one the read fails.
template <class Field>
struct ListAfter {
    Field field;

    const Expected& expected() const { return kExpectedAnything; }
    bool read(JsonReader& json, JsonValue value) const
    {
        const JsonValue list = value.next();
        if (!list) json.fail(Fault::Missing, "has no list after it");
        json.takenByPlace(list, JsonReader::expectedFor(field));
        return list && json.read(list, field);
    }
};
template <class Field>
ListAfter<Field> listAfter(Field&& field)
{
    return {std::forward<Field>(field)};
}

/// Only asks whether the key is there, whatever its value.
struct OfAnyKind {
    const Expected& expected() const { return kExpectedAnything; }
    bool read(JsonReader&, JsonValue) const { return true; }
};

/// Each item of an array as a number, handed to `handle`, in order. Any other item counts as 0, also `true`: a PID
/// or a tag is a number, while a nibble takes the integer of any item (see AsNibbles). Only for reading.
template <class Handle>
struct EachNumber {
    Handle handle;

    const Expected& expected() const { return kExpectedNumbers; }
    bool read(JsonReader&, JsonValue array) const
    {
        for (const JsonValue item : array.items()) {
            int number = 0;
            if (item.isNumber()) item.integer(number);
            handle(number);
        }
        return true;
    }
};
template <class Handle>
EachNumber<Handle> eachNumber(Handle handle)
{
    return {handle};
}

}  // namespace Orvu
