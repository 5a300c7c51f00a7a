#pragma once

#include "orvu/Export.h"

struct cJSON;

/// Typed access to the members of a cJSON object, beside cJSON's own functions: the members are found as
/// `cJSON_GetObjectItem` finds them (the first match, letter case ignored). `object` and `key` may be null: nothing is
/// found then. What is returned stays the object's. Any thread, as long as nobody changes the object.
#ifdef __cplusplus
extern "C" {
#endif

/// The member if it is a JSON string, otherwise null.
ORVU_EXPORT struct cJSON* cJSON_GetStringItem(const struct cJSON* object, const char* key);

/// The member if it is a JSON number, true or false (`valueint` of a boolean is 1 or 0), otherwise null.
ORVU_EXPORT struct cJSON* cJSON_GetNumberItem(const struct cJSON* object, const char* key);

/// The member if it is a JSON number; a boolean does not count here. Otherwise null, and `*error` becomes 1 when the
/// member is missing and 2 when it is of another kind. Success leaves `*error` alone, so that it can be tested once
/// after many calls.
ORVU_EXPORT struct cJSON* cJSON_GetNumberItemError(const struct cJSON* object, const char* key, unsigned char* error);

#ifdef __cplusplus
}
#endif
