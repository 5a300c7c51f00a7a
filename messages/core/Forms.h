#pragma once

#include <string>
#include <utility>
#include <vector>

#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"
#include "messages/core/Vocabulary.h"

namespace Orvu {

/// \file
/// Fields that travel in another form than their own. A form writes itself as one value, and reads itself from an item of
/// any kind: false leaves the field as it was.

/// An enumeration as its word.
template <class Enum>
struct AsWord {
    Enum& field;
    const Vocabulary<Enum>& words;

    void write(JsonWriter& json) const { json.value(words.word(field)); }
    bool read(JsonReader&, const cJSON& item) const
    {
        if (!cJSON_IsString(&item)) return false;
        field = words.value(item.valuestring);
        return true;
    }
};
template <class Enum>
AsWord<Enum> asWord(Enum& field, const Vocabulary<Enum>& words)
{
    return {field, words};
}

/// A list of enumerations as an array of their words. Reading appends; what is no text is skipped.
template <class Enum>
struct AsWords {
    std::vector<Enum>& fields;
    const Vocabulary<Enum>& words;

    void write(JsonWriter& json) const
    {
        json.array(fields, [&](Enum field) { json.value(words.word(field)); });
    }
    bool read(JsonReader&, const cJSON& item) const
    {
        forEachText(item, [&](const char* text) { fields.push_back(words.value(text)); });
        return true;
    }
};
template <class Enum>
AsWords<Enum> asWords(std::vector<Enum>& fields, const Vocabulary<Enum>& words)
{
    return {fields, words};
}

/// A text, or null when it is empty. Null leaves the field alone when it is read, so only writing needs the form.
struct AsNullWhenEmpty {
    const std::string& field;

    void write(JsonWriter& json) const { field.empty() ? json.null() : json.value(field); }
};
inline AsNullWhenEmpty asNullWhenEmpty(const std::string& field)
{
    return {field};
}

/// A number, or null when it is below 1.
struct AsNullBelowOne {
    int field;

    void write(JsonWriter& json) const { field < 1 ? json.null() : json.value(field); }
};
inline AsNullBelowOne asNullBelowOne(int field)
{
    return {field};
}

/// Each text of an array, handed to `take`, in order; what is no text is skipped. Only for reading.
template <class Take>
struct EachText {
    Take take;

    bool read(JsonReader&, const cJSON& item) const
    {
        forEachText(item, take);
        return true;
    }
};
template <class Take>
EachText<Take> eachText(Take take)
{
    return {take};
}

/// Each item of an array as a number, handed to `take`, in order; what is no number counts as 0. Only for reading.
template <class Take>
struct EachNumber {
    Take take;

    bool read(JsonReader& json, const cJSON& item) const
    {
        for (const cJSON* number = item.child; number; number = number->next)
            take(json.numberOrZero(*number));
        return true;
    }
};
template <class Take>
EachNumber<Take> eachNumber(Take take)
{
    return {take};
}

/// Each item of an array as a child that `make` makes, handed to `keep` when it could be read. Only for reading.
template <class Make, class Keep>
struct EachChild {
    Make make;
    Keep keep;

    bool read(JsonReader&, const cJSON& item) const
    {
        for (const cJSON* element = item.child; element; element = element->next) {
            auto child = make();
            if (readNested(*child, *element)) keep(std::move(child));
        }
        return true;
    }
};
template <class Make, class Keep>
EachChild<Make, Keep> eachChild(Make make, Keep keep)
{
    return {make, keep};
}

}  // namespace Orvu
