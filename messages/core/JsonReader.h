#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "messages/core/Children.h"
#include "messages/core/Contract.h"
#include "messages/core/JsonValue.h"
#include "messages/core/MemberFinder.h"
#include "messages/core/ReadingWitness.h"

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
    explicit JsonReader(JsonValue value) : value_(value), members_(value), isSpecial_(value.witness() != nullptr) {}

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
        const JsonValue value = member(key, expectedFor(field));
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
    void ignored(const char* key) { member(key, kExpectedNothing); }

    /// Reads the members of what is under `key` with a reader of their own, whose fault becomes this message's.
    template <class Members>
    bool object(const char* key, Members members)
    {
        const JsonValue value = member(key, kExpectedObject);
        if (!value) return false;
        JsonReader inner(value);
        inner.begin(nullptr);
        members(inner);
        inner.end();
        if (inner.failed()) take(inner.error_);
        return true;
    }

    /// Fails the read here, unless it has failed before. `why` says what is wrong with the value that was asked for
    /// last, in words that follow it, such as "is outside 0 to 100".
    void fail(Fault fault, const char* why = nullptr) { fail(static_cast<unsigned char>(fault), why); }
    void fail(OwnCode code, const char* why = nullptr) { fail(static_cast<unsigned char>(code), why); }

    bool failed() const { return error_ != 0; }
    unsigned char error() const { return error_; }  ///< The code of the first fault; 0 without one.

    /// What is being read.
    JsonValue value() const { return value_; }

    /// Whoever reads a value by a contract says when, for those who explain the text.
    void begin(const Contract* contract)
    {
        if (isSpecial_) beginSeen(contract);
    }
    void end()
    {
        if (isSpecial_) endSeen();
    }

    /// Says that a value was taken by its place, or that there was none, for those who explain the text.
    void takenByPlace(JsonValue value, const Expected& expected) const
    {
        if (isSpecial_) seeTaken(value, expected);
    }

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

    // What a field or a form expects under its key.

    static const Expected& expectedFor(const std::string&) { return kExpectedText; }
    static const Expected& expectedFor(int) { return kExpectedNumber; }
    static const Expected& expectedFor(unsigned) { return kExpectedNumber; }
    static const Expected& expectedFor(bool) { return kExpectedBoolean; }
    static const Expected& expectedFor(const std::vector<std::string>&) { return kExpectedTexts; }
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    static const Expected& expectedFor(Message* const&)
    {
        return kExpectedChild;
    }
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    static const Expected& expectedFor(const std::vector<Message*>&)
    {
        return kExpectedChildren;
    }
    template <class Form>
    static auto expectedFor(const Form& form) -> decltype(form.expected())
    {
        return form.expected();
    }

private:
    JsonValue member(const char* key, const Expected& expected)
    {
        return isSpecial_ ? memberSeen(key, expected) : members_.find(key);
    }
    [[gnu::cold]] JsonValue memberSeen(const char* key, const Expected& expected);
    [[gnu::cold]] void beginSeen(const Contract* contract) const;
    [[gnu::cold]] void endSeen() const;
    [[gnu::cold]] void seeTaken(JsonValue value, const Expected& expected) const;
    bool missing(const char* key);
    [[gnu::cold]] void fail(unsigned char code, const char* why);
    void take(unsigned char error)
    {
        if (failed()) return;
        error_ = error;
        isSpecial_ = true;
    }

    const JsonValue value_;
    MemberFinder members_;
    unsigned char error_ = 0;
    bool isSpecial_;  // whether it has failed or has a witness
};

}  // namespace Orvu
