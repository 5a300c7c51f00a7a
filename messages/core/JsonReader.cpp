#include "messages/core/JsonReader.h"

#include <utility>

namespace Orvu {

bool JsonReader::optional(const char* key, std::string& field)
{
    return read(member(key, kExpectedText), field);
}

bool JsonReader::optional(const char* key, int& field)
{
    return member(key, kExpectedNumber).integer(field);
}

bool JsonReader::optional(const char* key, unsigned& field)
{
    return read(member(key, kExpectedNumber), field);
}

bool JsonReader::optional(const char* key, bool& field)
{
    return read(member(key, kExpectedBoolean), field);
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
    if (!failed() || value_.witness()) fail(members_.find(key) ? Fault::WrongKind : Fault::Missing);
    return false;
}

/// None once it has failed, unless a witness is to see all that is asked for.
JsonValue JsonReader::memberSeen(const char* key, const Expected& expected)
{
    ReadingWitness* const witness = value_.witness();
    if (failed() && (!witness || witness->afterFault == ReadingWitness::AfterFault::Stops)) return {};
    const JsonValue found = members_.find(key);
    if (witness) witness->asked(key, expected, found);
    return found;
}

void JsonReader::beginSeen(const Contract* contract) const
{
    if (ReadingWitness* const witness = value_.witness()) witness->begin(value_, contract);
}

void JsonReader::endSeen() const
{
    if (ReadingWitness* const witness = value_.witness()) witness->end();
}

void JsonReader::seeTaken(JsonValue value, const Expected& expected) const
{
    if (ReadingWitness* const witness = value_.witness()) witness->took(value, expected);
}

void JsonReader::fail(unsigned char code, const char* why)
{
    take(code);
    if (ReadingWitness* const witness = value_.witness()) witness->failed(why);
}

}  // namespace Orvu
