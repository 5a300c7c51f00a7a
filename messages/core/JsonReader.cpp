#include "messages/core/JsonReader.h"

#include <utility>

namespace Orvu {

bool JsonReader::optional(const char* key, std::string& field)
{
    return read(member(key), field);
}

bool JsonReader::optional(const char* key, int& field)
{
    return member(key).integer(field);
}

bool JsonReader::optional(const char* key, unsigned& field)
{
    return read(member(key), field);
}

bool JsonReader::optional(const char* key, bool& field)
{
    return read(member(key), field);
}

bool JsonReader::read(JsonValue value, std::string& field)
{
    if (!value.isText()) return false;
    value.copyTo(field);
    return true;
}

bool JsonReader::read(JsonValue value, unsigned& field)
{
    int number = 0;
    if (!value.integer(number)) return false;
    field = static_cast<unsigned>(number);
    return true;
}

bool JsonReader::read(JsonValue value, bool& field)
{
    int number = 0;
    if (!value.integer(number)) return false;
    field = number != 0;
    return true;
}

bool JsonReader::read(JsonValue array, std::vector<std::string>& texts)
{
    for (const JsonValue item : array.items()) {
        if (!item.isText()) continue;
        item.takeRoom(sizeof(std::string));
        texts.push_back(item.text());
    }
    return true;
}

void JsonReader::assign(std::string& field, std::string text)
{
    value_.keepTextFrom(field);
    field = std::move(text);
}

/// A required member was not taken: this message's first fault, if it has none yet.
bool JsonReader::missing(const char* key)
{
    if (!failed()) fail(members_.find(key) ? Fault::WrongKind : Fault::Missing);
    return false;
}

}  // namespace Orvu
