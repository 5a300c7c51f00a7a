#include "orvu/JsonAccess.h"

#include <cjson/cJSON.h>

cJSON* cJSON_GetStringItem(const cJSON* object, const char* key)
{
    cJSON* const item = cJSON_GetObjectItem(object, key);
    return cJSON_IsString(item) ? item : nullptr;
}

cJSON* cJSON_GetNumberItem(const cJSON* object, const char* key)
{
    cJSON* const item = cJSON_GetObjectItem(object, key);
    return cJSON_IsNumber(item) || cJSON_IsBool(item) ? item : nullptr;
}

cJSON* cJSON_GetNumberItemError(const cJSON* object, const char* key, unsigned char* error)
{
    constexpr unsigned char kMissing = 1;
    constexpr unsigned char kWrongKind = 2;
    cJSON* const item = cJSON_GetObjectItem(object, key);
    if (cJSON_IsNumber(item)) return item;
    *error = item ? kWrongKind : kMissing;
    return nullptr;
}
