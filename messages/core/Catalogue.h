#pragma once

#include <cjson/cJSON.h>

#include "orvu/Serializable.h"

namespace Orvu {

/// What a parsed text's "HEADER" names, in the two ways that the library asks for it. Logs as deserializeHeader() does.
/// `mapped` follows the header mapping; `named` is the catalogue's type of that name, also where the mapping leaves it out.
/// Both are DataTypeUnknown for a null tree, a missing "HEADER", one that is no string, and a stranger's name.
struct HeaderTypes {
    DataType mapped = DataTypeUnknown;
    DataType named = DataTypeUnknown;
};
HeaderTypes headerTypes(const cJSON* tree);

/// Fills a message that factory(type) made from the tree of `text`, without parsing `text` again where the class allows it.
/// The result, and the exceptions, are those of `message.deserialize(text)`.
bool fillFromTree(Serializable& message, const cJSON* tree, const char* text);

}  // namespace Orvu
