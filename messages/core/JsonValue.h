#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "messages/core/CheckedText.h"

namespace Orvu {

class JsonItems;
class JsonMembers;

/// A value as its place in a checked text: it owns nothing and costs nothing to copy. One that was made without a text
/// is not a value, and of no kind.
class JsonValue {
public:
    JsonValue() : entry_(0), nested_(false) {}

    explicit operator bool() const { return text_ != nullptr; }
    bool isText() const { return first() == '"'; }
    bool isNumber() const;
    bool isBoolean() const { return first() == 't' || first() == 'f'; }
    bool isNull() const { return first() == 'n'; }
    bool isObject() const { return first() == '{'; }
    bool isArray() const { return first() == '['; }

    /// The text, decoded, up to its first U+0000; "" for any other value.
    std::string text() const;
    /// The same without a copy where nothing has to be decoded; otherwise in `room`. Valid as long as both.
    std::string_view text(std::string& room) const;
    /// The same, into a string that may have room already. It may hold the whole text that is being read.
    void copyTo(std::string& field) const;
    /// Whether it is this text.
    bool equals(std::string_view text) const;

    /// The integer of a number, truncated and saturated at the ends of 32 bits, or of a boolean. False, and `value`
    /// stays, for any other value and for a nested number that prints as null. Throws std::bad_alloc when out of
    /// memory.
    bool integer(int& value) const;

    /// The items of an array, or the values of an object's members; none for any other value.
    JsonItems items() const;
    /// The members of an object; none for any other value.
    JsonMembers members() const;
    /// The value right after this one in its array or object; none after the last.
    JsonValue next() const;

    /// The same value as a message that is nested in another sees it. A message is defined on its own text, so a number
    /// in a nested one counts as its printed text would read.
    JsonValue nested() const;

    /// The JSON that this value is. A number at the top of a text may have some of the characters with it that follow.
    std::string_view source() const;

    /// Where it begins in its text, in bytes.
    std::size_t offset() const { return at_; }

    /// These four pass on to the text that is being read: see CheckedText.
    ReadingWitness* witness() const { return text_ ? text_->witness() : nullptr; }
    void keepText() const { text_->keep(); }
    void keepTextFrom(const std::string& field) const { text_->keepFrom(field); }
    void takeRoom(std::size_t size) const { text_->takeRoom(size); }

private:
    friend class CheckedText;
    friend class JsonItems;
    friend class MemberFinder;
    friend class TextRuns;

    JsonValue(const CheckedText& text, const char* at, std::uint32_t entry, bool nested)
        : text_(&text), at_(text.offset(at)), entry_(entry), nested_(nested)
    {}
    const char* at() const { return text_->begin_ + at_; }
    char first() const { return text_ ? *at() : '\0'; }

    const CheckedText* text_ = nullptr;
    std::uint32_t at_ = 0;
    std::uint32_t entry_ : 31;  // the first of the text's index that begins here or later
    std::uint32_t nested_ : 1;  // one word with the entry: a value goes in registers
};

/// A member of an object. The key is a text.
struct JsonMember {
    JsonValue key;
    JsonValue value;
};

/// The items of an array, or the values of an object's members, in order.
class JsonItems {
public:
    struct End {};
    class Iterator {
    public:
        explicit Iterator(JsonValue container);
        JsonValue operator*() const { return member_.value; }
        Iterator& operator++();
        bool operator!=(End) const { return static_cast<bool>(member_.value); }

    protected:
        void take(const CheckedText& text, const char* place, std::uint32_t entry);

        bool isKeyed_;
        bool nested_;
        JsonMember member_;
    };

    explicit JsonItems(JsonValue value) : value_(value) {}
    Iterator begin() const { return Iterator(value_); }
    End end() const { return {}; }
    std::size_t size() const;

protected:
    JsonValue value_;
};

/// The members of an object, in order.
class JsonMembers : JsonItems {
public:
    class Iterator : public JsonItems::Iterator {
    public:
        explicit Iterator(JsonItems::Iterator items) : JsonItems::Iterator(items) {}
        const JsonMember& operator*() const { return member_; }
    };

    explicit JsonMembers(JsonValue value) : JsonItems(value.isObject() ? value : JsonValue()) {}
    Iterator begin() const { return Iterator(JsonItems::begin()); }
    using JsonItems::end;
};

inline JsonItems JsonValue::items() const
{
    return JsonItems(*this);
}

inline JsonMembers JsonValue::members() const
{
    return JsonMembers(*this);
}

/// The decoded bytes of a text up to its first U+0000, run by run: most of them are where they were. Escapes that are
/// close to each other are gathered, with what is between them.
class TextRuns {
public:
    /// Of any other value there are none.
    explicit TextRuns(JsonValue text);
    /// Of a text, from `at` on; `end` is after the whole JSON text.
    TextRuns(const char* at, const char* end) : at_(at), end_(end) {}

    /// The next of them, which lasts until the next call; empty at the end.
    std::string_view next();
    /// Whether no byte follows, without decoding any: false for an escape, even of U+0000.
    bool isAtEnd() const { return at_ == end_ || *at_ == '"'; }

private:
    static constexpr std::ptrdiff_t kFewPlain = 16;  // bytes between escapes
    static constexpr std::ptrdiff_t kMostBytes = 4;  // of a character

    std::size_t gather();
    const char* decodeUnicodes(const char* at, char*& to) const;
    bool hasRoom(const char* to) const;

    const char* at_ = nullptr;
    const char* end_ = nullptr;
    char decoded_[64];
};

}  // namespace Orvu
