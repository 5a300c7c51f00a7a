#pragma once

#include "JsonTrees.h"
#include "orvu/Serializable.h"

namespace OrvuTool {

/// A text of a type without the parts that the library does not require. The "HEADER" stays.
JsonTree shortened(JsonTree tree, Orvu::DataType type);

}  // namespace OrvuTool
