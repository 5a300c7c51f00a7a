#pragma once

#include <memory>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "orvu/Serializable.h"

namespace OrvuTests {

/// A text that `malloc` made, which is released; "(null)" for none.
std::string taken(char* text);

/// What `message` writes; "(null)" when it writes nothing.
std::string textOf(Orvu::Serializable& message);

struct DeleteTree {
    void operator()(cJSON* tree) const { cJSON_Delete(tree); }
};

/// Owns a parsed tree.
using Tree = std::unique_ptr<cJSON, DeleteTree>;

/// The tree of `text`. Throws std::invalid_argument when it is not JSON.
Tree treeOf(const std::string& text);

/// Every type of the catalogue.
std::vector<Orvu::DataType> allTypes();

/// A copy of `text` that `malloc` made, for functions that take such a text or are to return one.
char* mallocText(const std::string& text);

}  // namespace OrvuTests
