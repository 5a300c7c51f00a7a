#pragma once

#include "JsonTrees.h"
#include "orvu/Serializable.h"

namespace OrvuTool {

/// The same text of a type without whatever it is read without. The "HEADER" stays.
JsonTree shortened(JsonTree tree, Orvu::DataType type);

}  // namespace OrvuTool
