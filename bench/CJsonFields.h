#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

namespace OrvuBench {

/// \file
/// Fields of plain structs from and to cJSON's tree. A field stays as it is where its key is missing or of another
/// kind. A struct has its own `readFields(const cJSON*, Struct&)` and `addFields(cJSON*, const Struct&)`.

inline void read(const cJSON* tree, const char* key, std::string& field)
{
    const cJSON* const item = cJSON_GetObjectItem(tree, key);
    if (cJSON_IsString(item)) field = item->valuestring;
}

inline void read(const cJSON* tree, const char* key, int& field)
{
    const cJSON* const item = cJSON_GetObjectItem(tree, key);
    if (cJSON_IsNumber(item)) field = item->valueint;
}

inline void read(const cJSON* tree, const char* key, bool& field)
{
    const cJSON* const item = cJSON_GetObjectItem(tree, key);
    if (cJSON_IsBool(item)) field = cJSON_IsTrue(item) != 0;
}

inline void read(const cJSON* tree, const char* key, std::vector<int>& numbers)
{
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, cJSON_GetObjectItem(tree, key)) numbers.push_back(item->valueint);
}

template <class Struct>
void readStruct(const cJSON* tree, const char* key, Struct& field)
{
    if (const cJSON* const item = cJSON_GetObjectItem(tree, key)) readFields(item, field);
}

template <class Struct>
void readStructs(const cJSON* tree, const char* key, std::vector<Struct>& fields)
{
    const cJSON* const list = cJSON_GetObjectItem(tree, key);
    if (!list) return;
    fields.reserve(static_cast<std::size_t>(cJSON_GetArraySize(list)));
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, list) readFields(item, fields.emplace_back());
}

/// The index of the text among the words; 0, the unknown one, for any other text.
template <std::size_t kCount>
int placeOf(const cJSON* text, const std::array<const char*, kCount>& words)
{
    if (!cJSON_IsString(text)) return 0;
    for (std::size_t i = 1; i < kCount; ++i) {
        if (std::strcmp(words[i], text->valuestring) == 0) return static_cast<int>(i);
    }
    return 0;
}

template <std::size_t kCount>
void readWord(const cJSON* tree, const char* key, int& field, const std::array<const char*, kCount>& words)
{
    if (const cJSON* const item = cJSON_GetObjectItem(tree, key)) field = placeOf(item, words);
}

template <std::size_t kCount>
void readWords(const cJSON* tree, const char* key, std::vector<int>& fields,
               const std::array<const char*, kCount>& words)
{
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, cJSON_GetObjectItem(tree, key)) fields.push_back(placeOf(item, words));
}

inline void add(cJSON* tree, const char* key, const std::string& field)
{
    cJSON_AddStringToObject(tree, key, field.c_str());
}

inline void add(cJSON* tree, const char* key, int field)
{
    cJSON_AddNumberToObject(tree, key, field);
}

inline void add(cJSON* tree, const char* key, bool field)
{
    cJSON_AddBoolToObject(tree, key, field);
}

inline void add(cJSON* tree, const char* key, const std::vector<int>& numbers)
{
    cJSON* const list = cJSON_AddArrayToObject(tree, key);
    for (const int number : numbers)
        cJSON_AddItemToArray(list, cJSON_CreateNumber(number));
}

inline void addOrNull(cJSON* tree, const char* key, const std::string& field)
{
    field.empty() ? static_cast<void>(cJSON_AddNullToObject(tree, key)) : add(tree, key, field);
}

inline void addOrNull(cJSON* tree, const char* key, int field)
{
    field < 1 ? static_cast<void>(cJSON_AddNullToObject(tree, key)) : add(tree, key, field);
}

template <class Struct>
void addStruct(cJSON* tree, const char* key, const Struct& field)
{
    addFields(cJSON_AddObjectToObject(tree, key), field);
}

template <class Struct>
void addStructs(cJSON* tree, const char* key, const std::vector<Struct>& fields)
{
    cJSON* const list = cJSON_AddArrayToObject(tree, key);
    for (const Struct& field : fields) {
        cJSON* const item = cJSON_CreateObject();
        cJSON_AddItemToArray(list, item);
        addFields(item, field);
    }
}

template <std::size_t kCount>
void addWord(cJSON* tree, const char* key, int field, const std::array<const char*, kCount>& words)
{
    cJSON_AddStringToObject(tree, key, words.at(static_cast<std::size_t>(field)));
}

template <std::size_t kCount>
void addWords(cJSON* tree, const char* key, const std::vector<int>& fields,
              const std::array<const char*, kCount>& words)
{
    cJSON* const list = cJSON_AddArrayToObject(tree, key);
    for (const int field : fields)
        cJSON_AddItemToArray(list, cJSON_CreateString(words.at(static_cast<std::size_t>(field))));
}

}  // namespace OrvuBench
