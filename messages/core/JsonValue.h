#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct cJSON;

namespace Orvu {

/// One value of a text that is being read. A place, which owns nothing: valid while what it is read from is. Without a value
/// (see next() and JsonMembers::find()) it is of no kind.
class JsonValue {
public:
    class Items;

    JsonValue() = default;
    /// The value of a text of its own.
    explicit JsonValue(const cJSON& tree) : item_(&tree) {}

    explicit operator bool() const { return item_ != nullptr; }

    bool isText() const;
    bool isNumber() const;
    bool isBoolean() const;
    bool isObject() const;
    bool isArray() const;

    /// A text, up to its first NUL; "" for a value of another kind.
    std::string text() const;
    /// The same without a copy where none is needed; otherwise in `room`. Valid as long as both.
    std::string_view text(std::string& room) const;

    /// A number, cut to an integer that saturates at the ends of 32 bits, or a boolean as 1 or 0. False, and `value` stays, for
    /// another kind, and for a number that prints as none.
    bool integer(int& value) const;

    /// The values of an array, or of an object's members; any other value has none.
    Items items() const;

    /// What follows in the same array or object.
    JsonValue next() const;

    /// The same value as a message that is nested in another sees it. A message is defined on its own text, so a number in a
    /// nested one counts as its printed text would read.
    JsonValue nested() const;

    /// As a cJSON item, for the readers that applications write; the item stays its owner's.
    void* tree() const { return const_cast<cJSON*>(item_); }

private:
    friend class JsonMembers;

    JsonValue(const cJSON* item, bool nested) : item_(item), nested_(nested) {}
    JsonValue first() const;
    bool integerOf(int& value) const;

    const cJSON* item_ = nullptr;
    bool nested_ = false;
};

class JsonValue::Items {
public:
    class Iterator {
    public:
        explicit Iterator(JsonValue value) : value_(value) {}
        JsonValue operator*() const { return value_; }
        Iterator& operator++()
        {
            value_ = value_.next();
            return *this;
        }
        bool operator!=(const Iterator& other) const { return value_.item_ != other.value_.item_; }

    private:
        JsonValue value_;
    };

    explicit Items(JsonValue first) : first_(first) {}
    Iterator begin() const { return Iterator(first_); }
    Iterator end() const { return Iterator(JsonValue()); }
    std::size_t size() const;

private:
    JsonValue first_;
};

inline JsonValue::Items JsonValue::items() const
{
    return Items(first());
}

/// Finds the members of an object by their keys as cJSON_GetObjectItem does: the first match, letter case ignored. Keys that
/// are asked for in the order of the text cost one comparison each. A value that is not an object is one without members.
class JsonMembers {
public:
    explicit JsonMembers(JsonValue object);

    /// The member's value; none without such a member.
    JsonValue find(const char* key);
    /// The same, by a walk from the front.
    JsonValue search(const char* key) const;

private:
    JsonValue takeNext();

    const JsonValue object_;
    JsonValue next_;   // after the members that were asked for in the order of the text
    JsonValue found_;  // the last of those
};

}  // namespace Orvu
