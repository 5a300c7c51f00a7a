#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "messages/core/Contract.h"
#include "messages/core/Json.h"

namespace Orvu {

/// The two styles of cJSON: cJSON_Print's and cJSON_PrintUnformatted's.
enum class PrintStyle { Formatted, Compact };

/// Writes JSON straight into one growing text, byte for byte as cJSON would print the same tree.
///
/// The verbs in which messages state what they write add a member to the object that is being written, in the order of
/// their calls. A failure (memory, or more than kMaxDepth levels) makes every further call do nothing and take() null.
class JsonWriter {
public:
    explicit JsonWriter(PrintStyle style) : formatted_(style == PrintStyle::Formatted) {}
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;
    ~JsonWriter() { std::free(text_); }

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

    /// A field in the form in which it travels (see Forms.h).
    template <class Form>
    auto put(const char* key, const Form& form) -> decltype(form.write(*this))
    {
        member(key);
        form.write(*this);
    }

    template <class Value>
    void putIf(bool condition, const char* key, const Value& value)
    {
        if (condition) put(key, value);
    }

    /// A child under `key`. Its header flag goes off, for good. Null, or a child without a JSON text, leaves the key out.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    void put(const char* key, Message* child)
    {
        if (child) child->serializeHeader(false);
        putAsIs(key, child);
    }
    /// The same with the child's header flag left alone.
    template <class Message>
    void putAsIs(const char* key, Message* child)
    {
        if (child) embedMember(key, *child, contractOf<Message>());
    }
    /// The same, but without a child the key is written with null.
    template <class Message>
    void putAsIsOrNull(const char* key, Message* child)
    {
        child ? putAsIs(key, child) : putNull(key);
    }
    /// The same, but the text that a child of an application's class gives is minified before it is parsed: comments may
    /// stand in it.
    template <class Message>
    void putMinifiedOrNull(const char* key, Message* child)
    {
        if (!child) return putNull(key);
        embedMember(key, *child, contractOf<Message>(), TextOfChild::Minified);
    }
    /// The same, but a child without a JSON text leaves this message without one.
    template <class Message>
    void putOrGiveUp(const char* key, Message* child)
    {
        if (child && !embedMember(key, *child, contractOf<Message>())) gaveUp_ = true;
    }
    void putNull(const char* key);

    /// An array of children. Their header flags go off, for good; null ones and those without a JSON text are skipped.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    void list(const char* key, const std::vector<Message*>& children)
    {
        for (Message* child : children) {
            if (child) child->serializeHeader(false);
        }
        listAsIs(key, children);
    }
    /// The same with the children's header flags left alone.
    template <class Message>
    void listAsIs(const char* key, const std::vector<Message*>& children)
    {
        member(key);
        beginArray();
        for (Message* child : children) {
            if (child) embedElement(*child, contractOf<Message>());
        }
        endArray();
    }
    /// An array of texts, or of numbers.
    template <class Values>
    void list(const char* key, const Values& values)
    {
        member(key);
        array(values, [this](const auto& each) { this->value(each); });
    }

    void emptyList(const char* key);

    /// An object that `members` writes with the verbs above.
    template <class Members>
    void object(const char* key, Members members)
    {
        member(key);
        object(members);
    }

    /// An array of objects whose members `members` writes, one for each pointer that is not null.
    template <class Range, class Members>
    void objects(const char* key, const Range& range, Members members)
    {
        member(key);
        array(range, [&](const auto& one) { object([&] { members(one); }); });
    }

    /// One value, for the forms in which fields travel.
    void value(const char* text) { string(text); }
    void value(const std::string& text) { string(text.c_str()); }
    void value(int number) { integer(number); }
    void value(unsigned short number) { integer(static_cast<int>(number)); }
    void null() { append("null", 4); }
    /// An object that `members` writes with the verbs above.
    template <class Members>
    void object(Members members)
    {
        beginObject();
        members();
        endObject();
    }
    /// An array, one value for each element, which `each` writes; null pointers are skipped.
    template <class Range, class Each>
    void array(const Range& range, Each each)
    {
        beginArray();
        for (const auto& one : range) {
            if constexpr (std::is_pointer_v<std::decay_t<decltype(one)>>) {
                if (!one) continue;
            }
            element();
            each(one);
        }
        endArray();
    }

    /// The message as one object, by its contract. Not a member: this is where a text begins.
    void message(Serializable& message, const Contract& contract);
    /// A parsed value, as cJSON prints it. Not a member: this is where a text begins.
    void tree(const cJSON& value);

    /// The finished text, NUL-terminated, made by `malloc`, the caller's from then on; null after a failure.
    char* take();

private:
    struct Mark {
        std::size_t size;
        bool first;
    };
    Mark here() const { return {size_, first_}; }
    void backTo(Mark mark);

    // False when the child has no JSON text; nothing is written then.
    enum class TextOfChild { AsIs, Minified };
    bool embedMember(const char* key, Serializable& child, const Contract& contract,
                     TextOfChild how = TextOfChild::AsIs);
    bool embedElement(Serializable& child, const Contract& contract);
    bool embed(Serializable& child, const Contract& contract, Mark mark, TextOfChild how = TextOfChild::AsIs);

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void member(const char* key);
    void newMember();
    void colon();
    void element();
    void objectTree(const cJSON& object);
    void arrayTree(const cJSON& array);

    void string(const char* value);
    void escaped(unsigned char c);
    void integer(int value);
    void integer(unsigned value);
    void number(const cJSON& value);

    void enter(char bracket);
    void append(char byte);
    void append(const char* bytes, std::size_t size);
    void indent();
    char* room(std::size_t size);
    bool grow(std::size_t size);
    bool fail() { return !(failed_ = true); }

    const bool formatted_;
    bool failed_ = false;
    bool gaveUp_ = false;  // the message that is being written is to have no text
    bool first_ = true;    // nothing stands yet in the innermost object or array
    int depth_ = 0;        // objects and arrays begun and not ended
    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// The formatted text of a parsed value, as cJSON_Print gives it, but made by `malloc` whatever cJSON's hooks are. Null for
/// more than kMaxDepth levels and when memory cannot be had.
char* printed(const cJSON& value);

}  // namespace Orvu
