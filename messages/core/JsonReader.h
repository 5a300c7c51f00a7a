#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "messages/core/Contract.h"
#include "messages/core/Exact.h"
#include "messages/core/Json.h"

namespace Orvu {

class JsonReader;

template <class Message>
bool readNested(Message& child, const cJSON& item);

/// Reads the members of one parsed object into the fields of a message, member by member as cJSON_GetObjectItem finds them:
/// the first match, letter case ignored.
///
/// The verbs in which messages state what they read do nothing once the message has its first fault; what was read before
/// stays. A contract names each key once, or several times in a row. A value that is no object has no members.
class JsonReader {
public:
    /// Why a message could not be read; the values are the codes of the error-reporting readers. Messages with reasons of
    /// their own add codes.
    enum class Fault : unsigned char { None = 0, Missing = 1, WrongKind = 2, NotRead = 1 };

    /// Whether the value is a text of its own or stands in one. A message is defined on its own text, so a number in a nested
    /// one counts as its printed text would read.
    enum class Place { OwnText, Nested };

    JsonReader(const cJSON& value, Place place) : value_(value), next_(value.child), place_(place) {}

    /// Takes the member into `field` when it is there and of the field's kind; a number or a boolean serves an `int` and a
    /// `bool` (non-zero is true). Returns whether it was taken; the field stays as it was otherwise.
    bool optional(const char* key, std::string& field);
    bool optional(const char* key, int& field);
    bool optional(const char* key, unsigned& field);
    bool optional(const char* key, bool& field);

    /// Takes the member into a field that travels in another form (see Forms.h).
    template <class Form>
    auto optional(const char* key, Form form) -> decltype(form.read(*this, std::declval<const cJSON&>()))
    {
        const cJSON* const item = member(key);
        return item && form.read(*this, *item);
    }

    /// Reads the member, of whatever kind, into the child, which is made when there is none. The child's faults are its own.
    template <class Message, class = std::enable_if_t<std::is_base_of_v<Serializable, Message>>>
    bool optional(const char* key, Message*& child);

    /// The same, but into a new child, whatever is held: what was held before is the application's from then on.
    template <class Message>
    bool replace(const char* key, Message*& child)
    {
        const cJSON* const item = member(key);
        if (item) readNested(*(child = new Message), *item);
        return item != nullptr;
    }

    /// Appends what stands in the array (or object) under `key`; elements that cannot be read are dropped.
    template <class Message>
    bool optional(const char* key, std::vector<Message*>& children);

    /// Appends every text of the array under `key`; what is no text is skipped.
    bool optional(const char* key, std::vector<std::string>& texts);
    /// Appends what stands in the array under `key`, also elements that cannot be read.
    template <class Message>
    bool keepAll(const char* key, std::vector<Message*>& children);

    /// The same, but a member that is missing or of another kind fails the read here.
    template <class Field>
    bool required(const char* key, Field&& field)
    {
        return optional(key, std::forward<Field>(field)) || missing(key);
    }
    template <class Message>
    bool requiredKeepAll(const char* key, std::vector<Message*>& children)
    {
        return keepAll(key, children) || missing(key);
    }

    /// The first of two names that can be taken.
    template <class Field>
    bool alternative(const char* key, const char* otherKey, Field& field)
    {
        return optional(key, field) || optional(otherKey, field);
    }

    /// Reads the members of the object under `key` with a reader of their own, whose fault becomes this message's.
    template <class Members>
    bool object(const char* key, Members members);
    template <class Members>
    bool requiredObject(const char* key, Members members)
    {
        return object(key, members) || missing(key);
    }

    /// Reads the list that stands right behind the member `key`, whatever its own name; fails the read when nothing does.
    template <class Message>
    void listAfter(const char* key, std::vector<Message*>& children);
    template <class Form, class = decltype(&Form::read)>
    void listAfter(const char* key, Form form);

    /// Fails the read of a value that is no object.
    void requireObject();

    /// Peers send it; it has no effect, on purpose.
    void ignored(const char* key) { member(key); }

    /// The member of any kind; null without one.
    const cJSON* any(const char* key) { return member(key); }

    /// Fails the read here, unless it has failed before.
    void fail(Fault fault)
    {
        if (fault_ == Fault::None) fault_ = fault;
    }
    Fault fault() const { return fault_; }

    /// A number as an integer; 0 for what is none. For the forms in which fields travel.
    int numberOrZero(const cJSON& item) const;
    /// The same for a number or a boolean; false, and `value` stays, for what is neither.
    bool integer(const cJSON& item, int& value) const;

private:
    const cJSON* member(const char* key);
    const cJSON* takeNext();
    const cJSON* search(const char* key) const;
    bool missing(const char* key);
    const cJSON* behind(const char* key);

    enum class Elements { ThatRead, All };
    template <class Message>
    static void takeElements(const cJSON& list, std::vector<Message*>& children, Elements which);

    const cJSON& value_;
    const cJSON* next_;             // behind the members that were asked for in the order in which they stand
    const cJSON* found_ = nullptr;  // the last of those
    const Place place_;
    Fault fault_ = Fault::None;
};

/// Reads a child from an item of its holder's tree: by its contract, or through its virtual reader when an application
/// derived its class.
template <class Message>
bool readNested(Message& child, const cJSON& item)
{
    if (!isExactly(child, typeid(Message))) return child.deserializeObject(const_cast<cJSON*>(&item));
    JsonReader nested(item, JsonReader::Place::Nested);
    read(nested, child);
    return nested.fault() == JsonReader::Fault::None;
}

/// The same through the error-reporting reader.
template <class Message>
bool readNested(Message& child, const cJSON& item, unsigned char& error)
{
    if (isExactly(child, typeid(Message))) return readNested(child, item);
    return child.deserializeObject(const_cast<cJSON*>(&item), error);
}

template <class Message, class>
bool JsonReader::optional(const char* key, Message*& child)
{
    const cJSON* const item = member(key);
    if (!item) return false;
    if (!child) child = new Message;
    readNested(*child, *item);
    return true;
}

template <class Message>
bool JsonReader::optional(const char* key, std::vector<Message*>& children)
{
    const cJSON* const list = member(key);
    if (list) takeElements(*list, children, Elements::ThatRead);
    return list != nullptr;
}

template <class Message>
bool JsonReader::keepAll(const char* key, std::vector<Message*>& children)
{
    const cJSON* const list = member(key);
    if (list) takeElements(*list, children, Elements::All);
    return list != nullptr;
}

template <class Message>
void JsonReader::takeElements(const cJSON& list, std::vector<Message*>& children, Elements which)
{
    children.reserve(children.size() + static_cast<std::size_t>(cJSON_GetArraySize(&list)));
    for (const cJSON* item = list.child; item; item = item->next) {
        auto child = std::make_unique<Message>();
        JsonReader nested(*item, Place::Nested);
        read(nested, *child);
        if (nested.fault() != Fault::None && which == Elements::ThatRead) continue;
        children.push_back(child.get());
        child.release();
    }
}

template <class Members>
bool JsonReader::object(const char* key, Members members)
{
    const cJSON* const item = member(key);
    if (!item) return false;
    JsonReader inner(*item, place_);
    members(inner);
    fail(inner.fault());
    return true;
}

template <class Message>
void JsonReader::listAfter(const char* key, std::vector<Message*>& children)
{
    if (const cJSON* const list = behind(key)) takeElements(*list, children, Elements::ThatRead);
}

template <class Form, class>
void JsonReader::listAfter(const char* key, Form form)
{
    if (const cJSON* const list = behind(key)) form.read(*this, *list);
}

/// Calls `take` with every text of an array, in order.
template <class Take>
void forEachText(const cJSON& array, Take take)
{
    for (const cJSON* item = array.child; item; item = item->next) {
        if (cJSON_IsString(item)) take(item->valuestring);
    }
}

}  // namespace Orvu
