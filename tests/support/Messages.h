#pragma once

#include <memory>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "messages/core/CJsonBridge.h"
#include "orvu/Serializable.h"

namespace OrvuTests {

/// A text that `malloc` made, which is released; "(null)" for none.
std::string taken(char* text);

/// What `message` writes; "(null)" when it writes nothing.
std::string textOf(Orvu::Serializable& message);

using Tree = Orvu::JsonTree;

/// The tree of `text`. Throws std::invalid_argument when it is not JSON.
Tree treeOf(const std::string& text);

/// Every type of the catalogue.
std::vector<Orvu::DataType> allTypes();

/// A copy of `text` that `malloc` made.
char* mallocText(const std::string& text);

/// The same, as what an application's class writes: the texts of messages that hold it do not count as the library's in
/// the check of the schemas.
char* textOfAnApplication(const std::string& text);

}  // namespace OrvuTests
