#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "messages/core/Contract.h"
#include "messages/core/Exact.h"
#include "messages/core/Json.h"

namespace Orvu {

/// Reads the members of one parsed object into the fields of a message, member by member as cJSON_GetObjectItem finds them:
/// the first match, letter case ignored.
///
/// The verbs in which messages state what they read do nothing once the message has its first fault; what was read before
/// stays. A contract names each key once. A value that is no object has no members.
class JsonReader {
public:
    /// Why a message could not be read; the values are the codes of the error-reporting readers.
    enum class Fault : unsigned char { None = 0, Missing = 1, WrongKind = 2 };

    /// Whether the value is a text of its own or stands in one. A message is defined on its own text, so a number in a nested
    /// one counts as its printed text would read.
    enum class Place { OwnText, Nested };

    JsonReader(const cJSON& value, Place place) : value_(value), next_(value.child), place_(place) {}

    /// Takes the member into `field` when it is there and of the field's kind; a number or a boolean serves an `int` and a
    /// `bool` (non-zero is true). Returns whether it was taken; the field stays as it was otherwise.
    bool optional(const char* key, std::string& field);
    bool optional(const char* key, int& field);
    bool optional(const char* key, bool& field);

    /// Reads the member, of whatever kind, into the child, which is made when there is none. The child's faults are its own.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    bool optional(const char* key, Message*& child);

    /// Appends what stands in the array (or object) under `key`; elements that cannot be read are dropped.
    template <class Message>
    bool optional(const char* key, std::vector<Message*>& children);

    /// The same, but a member that is missing or of another kind fails the read here.
    template <class Field>
    bool required(const char* key, Field& field)
    {
        return optional(key, field) || missing(key);
    }

    /// The first of two names that can be taken.
    template <class Field>
    bool alternative(const char* key, const char* otherKey, Field& field)
    {
        return optional(key, field) || optional(otherKey, field);
    }

    Fault fault() const { return fault_; }

private:
    const cJSON* member(const char* key);
    const cJSON* search(const char* key) const;
    bool missing(const char* key);
    bool integer(const cJSON& item, int& value) const;

    const cJSON& value_;
    const cJSON* next_;  // behind the members that were asked for in the order in which they stand
    const Place place_;
    Fault fault_ = Fault::None;
};

template <class Message, class>
bool JsonReader::optional(const char* key, Message*& child)
{
    const cJSON* const item = member(key);
    if (!item) return false;
    if (!child) child = new Message;
    if (isExactly(*child, typeid(Message))) {
        JsonReader nested(*item, Place::Nested);
        read(nested, *child);
    } else {
        child->deserializeObject(const_cast<cJSON*>(item));
    }
    return true;
}

template <class Message>
bool JsonReader::optional(const char* key, std::vector<Message*>& children)
{
    const cJSON* const list = member(key);
    if (!list) return false;
    for (const cJSON* item = list->child; item; item = item->next) {
        auto child = std::make_unique<Message>();
        JsonReader nested(*item, Place::Nested);
        read(nested, *child);
        if (nested.fault() != Fault::None) continue;
        children.push_back(child.get());
        child.release();
    }
    return true;
}

}  // namespace Orvu
