#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "messages/core/Children.h"
#include "messages/core/Contract.h"
#include "messages/core/JsonPrinter.h"

namespace Orvu {

/// Writes a message straight to text: the verbs in which contracts state what they write, each of which adds a member
/// to the object that is being written, in the order of their calls.
class JsonWriter {
public:
    explicit JsonWriter(PrintStyle style) : json_(style) {}

    /// "HEADER", whatever the message's header flag says.
    void header(const Serializable& message);
    /// "HEADER" while the message's header flag is set.
    void headerIfSet(const Serializable& message);

    void put(const char* key, const char* value);
    /// Ends at its first NUL, as in cJSON.
    void put(const char* key, const std::string& value) { put(key, value.c_str()); }
    void put(const char* key, int value);
    void put(const char* key, unsigned value);
    void put(const char* key, bool value);
    /// A number of another kind, or an enumeration, must say as what it travels.
    template <class Value, class = std::enable_if_t<std::is_arithmetic_v<Value> || std::is_enum_v<Value>>>
    void put(const char* key, Value value) = delete;

    /// A field in the form in which it travels (see Forms.h). A form that answers false has no value: the key is left
    /// out.
    template <class Form>
    auto put(const char* key, const Form& form) -> std::void_t<decltype(form.write(*this))>
    {
        const JsonPrinter::Mark mark = json_.here();
        json_.key(key);
        if (!hasValue([&] { return form.write(*this); })) json_.backTo(mark);
    }

    /// A child under `key`. Its header flag goes off, for good. Null, or a child without a JSON text, leaves the key
    /// out.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    void put(const char* key, Message* child)
    {
        if (child) putChild(key, *child, contractOf<Message>());
    }

    template <class Value>
    void putIf(bool condition, const char* key, const Value& value)
    {
        if (condition) put(key, value);
    }

    /// An array of children. Their header flags go off, for good; null ones and those without a JSON text are skipped.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    void list(const char* key, const std::vector<Message*>& children)
    {
        json_.key(key);
        json_.beginArray();
        for (Message* child : children) {
            if (child) child->serializeHeader(false);
            element(child, contractOf<Message>());
        }
        json_.endArray();
    }
    /// An array of texts, or of numbers.
    template <class Values>
    void list(const char* key, const Values& values)
    {
        json_.key(key);
        array(values);
    }

    /// An object that `members` writes with the verbs above.
    template <class Members>
    void object(const char* key, Members members)
    {
        json_.key(key);
        object(members);
    }

    /// The message that is being written is to have no text, whatever else it writes.
    void giveUp() { gaveUp_ = true; }

    // Values, for the forms in which fields travel.

    void value(const char* text) { json_.text(text); }
    void value(const std::string& text) { json_.text(text.c_str()); }
    void value(int number) { json_.number(number); }
    void value(unsigned short number) { json_.number(static_cast<int>(number)); }
    void value(bool flag) { json_.boolean(flag); }
    void null() { json_.null(); }
    /// A child with its header flag as it is. False when it has no JSON text: there is no value then.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    bool value(Message& child, ChildText text = ChildText::Plain)
    {
        return writeChild(*this, child, contractOf<Message>(), text);
    }
    template <class Members>
    void object(Members members)
    {
        json_.beginObject();
        members();
        json_.endObject();
    }
    /// An array with one value for each element, which `each` writes; null pointers are skipped.
    template <class Range, class Each>
    void array(const Range& range, Each each)
    {
        json_.beginArray();
        for (const auto& one : range) {
            if constexpr (std::is_pointer_v<std::decay_t<decltype(one)>>) {
                if (!one) continue;
            }
            json_.element();
            each(one);
        }
        json_.endArray();
    }
    /// An array of texts, or of numbers.
    template <class Range>
    void array(const Range& range)
    {
        array(range, [this](const auto& one) { this->value(one); });
    }
    /// An array of children with their header flags as they are; null ones and those without a JSON text are skipped.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    void array(const std::vector<Message*>& children)
    {
        json_.beginArray();
        for (Message* child : children)
            element(child, contractOf<Message>());
        json_.endArray();
    }

    /// A message as one object, by its contract. False when it gave up; what it wrote is to be dropped then.
    bool message(Serializable& message, const Contract& contract);
    bool gaveUp() const { return gaveUp_; }
    /// Where values go that are printed by others.
    JsonPrinter& printer() { return json_; }

    /// The finished text, NUL-terminated, made by `malloc`, the caller's from then on; null after a failure.
    char* take() { return gaveUp_ ? nullptr : json_.take(); }

private:
    void putChild(const char* key, Serializable& child, const Contract& contract);
    void element(Serializable* child, const Contract& contract);

    template <class Write>
    static bool hasValue(Write write)
    {
        if constexpr (std::is_void_v<decltype(write())>) {
            write();
            return true;
        } else {
            return write();
        }
    }

    JsonPrinter json_;
    bool gaveUp_ = false;
};

}  // namespace Orvu
