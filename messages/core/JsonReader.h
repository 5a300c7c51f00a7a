#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "messages/core/Children.h"
#include "messages/core/Contract.h"
#include "messages/core/JsonValue.h"
#include "messages/core/MemberFinder.h"

namespace Orvu {

/// Why a message could not be read, as the error-reporting readers number it.
enum class Fault : unsigned char {
    Missing = 1,    ///< A member that is required, or a text that can be read at all.
    WrongKind = 2,  ///< A member's value.
};

/// A code that a message adds for a reason of its own.
enum class OwnCode : unsigned char {};

/// Reads the members of one object into the fields of a message: the verbs in which contracts state what they read.
///
/// They do nothing once the message has its first fault; what was read before stays. A contract names each key once, or
/// several times in a row. A value that is not an object has no members.
class JsonReader {
public:
    explicit JsonReader(JsonValue value) : value_(value), members_(value) {}

    /// Takes the member into `field` when it is there and of the field's kind; a number or a boolean serves an `int`
    /// and a `bool` (non-zero is true). Returns whether it was taken; the field stays as it was otherwise.
    bool optional(const char* key, std::string& field);
    bool optional(const char* key, int& field);
    bool optional(const char* key, unsigned& field);
    bool optional(const char* key, bool& field);
    /// The same for a list, a child, or a field in another form (see Forms.h).
    template <class Field>
    bool optional(const char* key, Field&& field)
    {
        const JsonValue value = member(key);
        return value && read(value, field);
    }

    /// The same, but a member that is missing or of another kind fails the read here.
    template <class Field>
    bool required(const char* key, Field&& field)
    {
        return optional(key, std::forward<Field>(field)) || missing(key);
    }

    /// The first of two names that can be taken.
    template <class Field>
    bool alternative(const char* key, const char* otherKey, Field& field)
    {
        return optional(key, field) || optional(otherKey, field);
    }

    /// Peers send it; it has no effect, on purpose.
    void ignored(const char* key) { member(key); }

    /// Reads the members of what is under `key` with a reader of their own, whose fault becomes this message's.
    template <class Members>
    bool object(const char* key, Members members)
    {
        const JsonValue value = member(key);
        if (!value) return false;
        JsonReader inner(value);
        members(inner);
        fail(inner.error_);
        return true;
    }

    /// Fails the read here, unless it has failed before.
    void fail(Fault fault) { fail(static_cast<unsigned char>(fault)); }
    void fail(OwnCode code) { fail(static_cast<unsigned char>(code)); }

    bool failed() const { return error_ != 0; }
    unsigned char error() const { return error_; }  ///< The code of the first fault; 0 without one.

    /// What is being read.
    JsonValue value() const { return value_; }

    /// Puts a text into a field, which may hold the whole text that is being read.
    void assign(std::string& field, std::string text);

    // One value into a field, for the forms in which fields travel.

    bool read(JsonValue value, std::string& field);
    bool read(JsonValue value, int& field) { return value.integer(field); }
    bool read(JsonValue value, unsigned& field);
    bool read(JsonValue value, bool& field);

    /// Appends every text of an array; other items are skipped.
    bool read(JsonValue array, std::vector<std::string>& texts);

    /// Into the child, which is made when there is none, whatever the value's kind. The child's faults are its own.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    bool read(JsonValue value, Message*& child)
    {
        const Contract& contract = contractOf<Message>();
        if (!child) {
            value.takeRoom(contract.size);
            child = new Message;
        }
        readChild(*child, contract, value);
        return true;
    }

    /// Appends a child for each item; those that cannot be read are dropped.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    bool read(JsonValue array, std::vector<Message*>& children)
    {
        readChildren(array, ListOfChildren(children), Unreadable::Dropped);
        return true;
    }

    template <class Form>
    auto read(JsonValue value, const Form& form) -> decltype(form.read(*this, value))
    {
        return form.read(*this, value);
    }

private:
    JsonValue member(const char* key) { return failed() ? JsonValue() : members_.find(key); }
    bool missing(const char* key);
    void fail(unsigned char code)
    {
        if (!failed()) error_ = code;
    }

    const JsonValue value_;
    MemberFinder members_;
    unsigned char error_ = 0;
};

}  // namespace Orvu
