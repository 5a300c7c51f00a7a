#pragma once

#include <memory>

#include <cjson/cJSON.h>

namespace Orvu {

struct DeleteTree {
    void operator()(cJSON* tree) const { cJSON_Delete(tree); }
};

/// Owns a parsed tree.
using JsonTree = std::unique_ptr<cJSON, DeleteTree>;

/// The tree of `text`; empty when `text` is null or no JSON. What follows the first JSON value is ignored.
inline JsonTree parseJson(const char* text)
{
    return JsonTree(text ? cJSON_Parse(text) : nullptr);
}

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

/// Owns a text that `malloc` made.
using JsonText = std::unique_ptr<char, FreeText>;

}  // namespace Orvu
