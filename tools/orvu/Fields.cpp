#include "Fields.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "Types.h"
#include "messages/core/Nearest.h"

namespace OrvuTool {
namespace {

using Orvu::KeyDescription;

/// Thrown for an argument that makes no sense; says why.
struct Wrong : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string meant(std::string_view word, const std::vector<std::string_view>& words)
{
    return didYouMean(Orvu::nearest(word, words));
}

/// One step of a path: a key and, for an item of a list, its number.
struct Step {
    std::string_view key;
    std::optional<unsigned> index;
};

Step stepOf(std::string_view text)
{
    const std::size_t bracket = text.find('[');
    if (bracket == std::string_view::npos) return {text, std::nullopt};
    unsigned index = 0;
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data() + bracket + 1, end, index);
    if (error != std::errc() || parsed + 1 != end || *parsed != ']')
        throw Wrong(std::string(text) + ": an item of a list is written as in list[0]");
    return {text.substr(0, bracket), index};
}

bool isWholeNumber(std::string_view text)
{
    int number = 0;
    const auto [parsed, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && parsed == text.data() + text.size();
}

JsonTree numberOf(const std::string& value)
{
    if (!isWholeNumber(value)) throw Wrong("\"" + value + "\" is not a 32-bit number");
    return JsonTree(cJSON_CreateNumber(std::stoi(value)));
}

JsonTree booleanOf(const std::string& value)
{
    if (value != "true" && value != "false") throw Wrong("\"" + value + "\" is neither true nor false");
    return JsonTree(cJSON_CreateBool(value == "true"));
}

JsonTree wordOf(const std::string& value, const KeyDescription& key)
{
    const std::vector<std::string_view> words(key.words.begin(), key.words.end());
    if (std::find(words.begin(), words.end(), value) == words.end())
        throw Wrong("\"" + value + "\" is not a word of this key" + meant(value, words));
    return JsonTree(cJSON_CreateString(value.c_str()));
}

/// A value, or one item of a list.
JsonTree valueOf(const std::string& value, const KeyDescription& key)
{
    switch (key.kind) {
        case KeyDescription::Number:
        case KeyDescription::Numbers:
            return numberOf(value);
        case KeyDescription::Boolean:
            return booleanOf(value);
        case KeyDescription::NumberOrText:
            return isWholeNumber(value) ? numberOf(value) : JsonTree(cJSON_CreateString(value.c_str()));
        case KeyDescription::Word:
        case KeyDescription::Words:
            return wordOf(value, key);
        case KeyDescription::Object:
        case KeyDescription::Objects:
            throw Wrong(key.keys.empty() ? "cannot be given here" : "holds keys: " + key.key + "." + key.keys[0].key);
        default:
            return JsonTree(cJSON_CreateString(value.c_str()));
    }
}

bool isObject(const KeyDescription& key)
{
    return key.kind == KeyDescription::Object || key.kind == KeyDescription::Objects;
}

const KeyDescription& keyNamed(const std::vector<KeyDescription>& keys, std::string_view name, bool holdsKeys)
{
    const KeyDescription* found = nullptr;
    std::vector<std::string_view> names;
    for (const KeyDescription& key : keys) {
        names.emplace_back(key.key);
        if (key.key == name && (!found || isObject(key) == holdsKeys)) found = &key;
    }
    if (found) return *found;
    throw Wrong("there is no key \"" + std::string(name) + "\"" + meant(name, names));
}

/// What is under `key`, made when it is not there.
cJSON* memberOf(cJSON* object, const std::string& key, cJSON* (*make)())
{
    cJSON* member = cJSON_GetObjectItemCaseSensitive(object, key.c_str());
    if (member) return member;
    member = make();
    cJSON_AddItemToObject(object, key.c_str(), member);
    return member;
}

cJSON* itemOf(cJSON* list, unsigned index)
{
    const auto size = static_cast<unsigned>(cJSON_GetArraySize(list));
    if (index > size) throw Wrong("item " + std::to_string(size) + " of the list comes first");
    if (index == size) cJSON_AddItemToArray(list, cJSON_CreateObject());
    return cJSON_GetArrayItem(list, static_cast<int>(index));
}

void put(cJSON* object, const KeyDescription& key, const std::string& value)
{
    JsonTree made = valueOf(value, key);
    const bool isList =
        key.kind == KeyDescription::Texts || key.kind == KeyDescription::Numbers || key.kind == KeyDescription::Words;
    if (isList) {
        cJSON_AddItemToArray(memberOf(object, key.key, cJSON_CreateArray), made.release());
    } else if (cJSON_HasObjectItem(object, key.key.c_str())) {
        throw Wrong("is given twice");
    } else {
        cJSON_AddItemToObject(object, key.key.c_str(), made.release());
    }
}

void putUnder(cJSON* object, const std::vector<KeyDescription>& keys, std::string_view path, const std::string& value)
{
    const std::size_t dot = path.find('.');
    const Step step = stepOf(path.substr(0, dot));
    const KeyDescription& key = keyNamed(keys, step.key, dot != std::string_view::npos);
    if (dot == std::string_view::npos) return put(object, key, value);
    if (!isObject(key)) throw Wrong("\"" + key.key + "\" holds no keys: its kind is " + kindName(key.kind));
    if ((key.kind == KeyDescription::Objects) != step.index.has_value())
        throw Wrong(step.index ? "\"" + key.key + "\" is not a list"
                               : "\"" + key.key + "\" is a list: " + key.key + "[0]");
    cJSON* const inner = step.index ? itemOf(memberOf(object, key.key, cJSON_CreateArray), *step.index)
                                    : memberOf(object, key.key, cJSON_CreateObject);
    putUnder(inner, key.keys, path.substr(dot + 1), value);
}

}  // namespace

FieldsText textOfFields(const std::string& name, const std::vector<KeyDescription>& keys,
                        const std::vector<std::string>& arguments)
{
    FieldsText text{JsonTree(cJSON_CreateObject()), ""};
    cJSON_AddStringToObject(text.tree.get(), "HEADER", name.c_str());
    for (const std::string& argument : arguments) {
        const std::size_t sign = argument.find('=');
        if (sign == std::string::npos) return {nullptr, argument + ": a field is given as key=value"};
        try {
            putUnder(text.tree.get(), keys, std::string_view(argument).substr(0, sign), argument.substr(sign + 1));
        } catch (const Wrong& wrong) {
            return {nullptr, argument.substr(0, sign) + ": " + wrong.what()};
        }
    }
    return text;
}

const char* kindName(KeyDescription::Kind kind)
{
    switch (kind) {
        case KeyDescription::Anything:
            return "anything";
        case KeyDescription::Nothing:
            return "has no effect";
        case KeyDescription::Text:
            return "text";
        case KeyDescription::Number:
            return "number";
        case KeyDescription::Boolean:
            return "boolean";
        case KeyDescription::NumberOrText:
            return "number or text";
        case KeyDescription::Word:
            return "word";
        case KeyDescription::Object:
            return "object";
        case KeyDescription::Texts:
            return "list of texts";
        case KeyDescription::Numbers:
            return "list of numbers";
        case KeyDescription::Words:
            return "list of words";
        case KeyDescription::Objects:
            return "list of objects";
    }
    return "";
}

}  // namespace OrvuTool
