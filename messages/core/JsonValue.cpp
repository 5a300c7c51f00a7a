#include "messages/core/JsonValue.h"

#include <cstring>
#include <new>
#include <strings.h>

#include "messages/core/Json.h"

namespace Orvu {
namespace {

bool isOfKind(const cJSON* item, int kinds)
{
    return item && (item->type & kinds) != 0;
}

bool isNamed(const cJSON& item, const char* key)
{
    constexpr int kLetterCase = 'a' ^ 'A';
    if (!item.string || ((*item.string ^ *key) & ~kLetterCase) != 0) return false;  // spares most of the calls
    return std::strcmp(item.string, key) == 0 || strcasecmp(item.string, key) == 0;
}

/// What `number` reads as once it is printed and parsed again; empty when it does not print as a number (infinities).
JsonTree reprinted(const cJSON& number)
{
    char text[64];  // cJSON writes at most 26
    cJSON_PrintPreallocated(const_cast<cJSON*>(&number), text, sizeof text, false);
    JsonTree tree = parseJson(text);
    if (!tree) throw std::bad_alloc();  // what cJSON prints is JSON: only memory can have failed
    return cJSON_IsNumber(tree.get()) ? std::move(tree) : nullptr;
}

}  // namespace

bool JsonValue::isText() const
{
    return isOfKind(item_, cJSON_String);
}

bool JsonValue::isNumber() const
{
    return isOfKind(item_, cJSON_Number);
}

bool JsonValue::isBoolean() const
{
    return isOfKind(item_, cJSON_True | cJSON_False);
}

bool JsonValue::isObject() const
{
    return isOfKind(item_, cJSON_Object);
}

bool JsonValue::isArray() const
{
    return isOfKind(item_, cJSON_Array);
}

std::string JsonValue::text() const
{
    return isText() ? item_->valuestring : std::string();
}

std::string_view JsonValue::text(std::string&) const
{
    return isText() ? item_->valuestring : std::string_view();
}

bool JsonValue::integer(int& value) const
{
    if (isNumber()) return integerOf(value);
    if (!isBoolean()) return false;
    value = isOfKind(item_, cJSON_True);
    return true;
}

bool JsonValue::integerOf(int& value) const
{
    if (!nested_ || item_->valuedouble == item_->valueint) {
        value = item_->valueint;
        return true;
    }
    const JsonTree number = reprinted(*item_);
    if (number) value = number->valueint;
    return number != nullptr;
}

JsonValue JsonValue::next() const
{
    return {item_->next, nested_};
}

JsonValue JsonValue::nested() const
{
    return {item_, true};
}

JsonValue JsonValue::first() const
{
    return {item_->child, nested_};
}

std::size_t JsonValue::Items::size() const
{
    std::size_t count = 0;
    for (auto item = begin(); item != end(); ++item)
        ++count;
    return count;
}

JsonMembers::JsonMembers(JsonValue object) : object_(object), next_(object.first()) {}

/// The usual order costs one comparison: a member after those already found, with at most "HEADER" between them, is the first
/// of its name, unless the last one found has it too.
JsonValue JsonMembers::find(const char* key)
{
    if (found_ && isNamed(*found_.item_, key)) return found_;
    if (next_ && isNamed(*next_.item_, key)) return takeNext();
    if (!next_ || !isNamed(*next_.item_, "HEADER")) return search(key);
    next_ = next_.next();
    return next_ && isNamed(*next_.item_, key) ? takeNext() : search(key);
}

JsonValue JsonMembers::takeNext()
{
    found_ = next_;
    next_ = next_.next();
    return found_;
}

JsonValue JsonMembers::search(const char* key) const
{
    for (const JsonValue member : object_.items()) {
        if (isNamed(*member.item_, key)) return member;
    }
    return {};
}

}  // namespace Orvu
