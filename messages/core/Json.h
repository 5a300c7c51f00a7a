#pragma once

#include <cstdlib>
#include <memory>

#include <cjson/cJSON.h>

namespace Orvu {

/// How many levels of nesting cJSON parses, and so the most that is written.
constexpr int kMaxDepth = CJSON_NESTING_LIMIT;

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

/// Owns a text that `malloc` made, such as serialize() gives.
using JsonText = std::unique_ptr<char, FreeText>;

}  // namespace Orvu
