#include "messages/core/JsonReader.h"

#include <cstring>
#include <new>
#include <strings.h>

namespace Orvu {
namespace {

bool isNamed(const cJSON& item, const char* key)
{
    constexpr int kLetterCase = 'a' ^ 'A';
    if (!item.string || ((*item.string ^ *key) & ~kLetterCase) != 0) return false;  // spares most of the calls
    return std::strcmp(item.string, key) == 0 || strcasecmp(item.string, key) == 0;
}

/// What `number` reads as once it is printed and parsed again; empty when it prints as no number (infinities).
JsonTree reprinted(const cJSON& number)
{
    char text[64];  // cJSON writes at most 26
    cJSON_PrintPreallocated(const_cast<cJSON*>(&number), text, sizeof text, false);
    JsonTree tree = parseJson(text);
    if (!tree) throw std::bad_alloc();  // what cJSON prints is JSON: only memory can have failed
    return cJSON_IsNumber(tree.get()) ? std::move(tree) : nullptr;
}

}  // namespace

bool JsonReader::optional(const char* key, std::string& field)
{
    const cJSON* const item = member(key);
    if (!cJSON_IsString(item)) return false;
    field = item->valuestring;
    return true;
}

bool JsonReader::optional(const char* key, int& field)
{
    const cJSON* const item = member(key);
    return item && integer(*item, field);
}

bool JsonReader::optional(const char* key, unsigned& field)
{
    int value = 0;
    if (!optional(key, value)) return false;
    field = static_cast<unsigned>(value);
    return true;
}

bool JsonReader::optional(const char* key, bool& field)
{
    int value = 0;
    if (!optional(key, value)) return false;
    field = value != 0;
    return true;
}

bool JsonReader::optional(const char* key, std::vector<std::string>& texts)
{
    const cJSON* const list = member(key);
    if (list) forEachText(*list, [&](const char* text) { texts.emplace_back(text); });
    return list != nullptr;
}

/// The member that cJSON_GetObjectItem would find. The usual order costs one comparison: a member that stands behind those
/// already found, with at most "HEADER" between them, is the first of its name, unless the last one found has it too.
const cJSON* JsonReader::member(const char* key)
{
    if (fault_ != Fault::None) return nullptr;
    if (found_ && isNamed(*found_, key)) return found_;
    if (next_ && isNamed(*next_, key)) return takeNext();
    if (!next_ || !isNamed(*next_, "HEADER")) return search(key);
    next_ = next_->next;
    return next_ && isNamed(*next_, key) ? takeNext() : search(key);
}

const cJSON* JsonReader::takeNext()
{
    found_ = next_;
    next_ = next_->next;
    return found_;
}

const cJSON* JsonReader::search(const char* key) const
{
    for (const cJSON* item = value_.child; item; item = item->next) {
        if (isNamed(*item, key)) return item;
    }
    return nullptr;
}

/// A required member was not taken: this message's first fault, if it has none yet.
bool JsonReader::missing(const char* key)
{
    if (fault_ == Fault::None) fault_ = search(key) ? Fault::WrongKind : Fault::Missing;
    return false;
}

/// What stands right behind the member `key`; without it the read fails.
const cJSON* JsonReader::behind(const char* key)
{
    const cJSON* const item = member(key);
    if (item && item->next) return item->next;
    fail(Fault::Missing);
    return nullptr;
}

void JsonReader::requireObject()
{
    if (!cJSON_IsObject(&value_)) fail(Fault::WrongKind);
}

int JsonReader::numberOrZero(const cJSON& item) const
{
    int value = 0;
    if (cJSON_IsNumber(&item)) integer(item, value);
    return value;
}

bool JsonReader::integer(const cJSON& item, int& value) const
{
    if (cJSON_IsBool(&item)) {
        value = cJSON_IsTrue(&item);
        return true;
    }
    if (!cJSON_IsNumber(&item)) return false;
    if (place_ == Place::OwnText || item.valuedouble == item.valueint) {
        value = item.valueint;
        return true;
    }
    const JsonTree number = reprinted(item);
    if (number) value = number->valueint;
    return number != nullptr;
}

}  // namespace Orvu
