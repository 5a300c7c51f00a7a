#pragma once

#include <string>
#include <vector>

#include "JsonTrees.h"
#include "orvu/Explanation.h"

namespace OrvuTool {

/// A message text made from the arguments of a command line.
struct FieldsText {
    JsonTree tree;      ///< The object; empty when there is a fault.
    std::string fault;  ///< Which of the arguments is wrong, and why.
};

/// The text of a message of the type `name`, which reads `keys`, from arguments such as "serviceContextId=1.2.01",
/// "pos.w=640", "services[0].serviceName=Canal Um" or, once for each item of a list, "keys=numeric_keys". A value
/// counts as what its key holds.
FieldsText textOfFields(const std::string& name, const std::vector<Orvu::KeyDescription>& keys,
                        const std::vector<std::string>& arguments);

/// What a key holds, in a word or two: "text", "list of numbers".
const char* kindName(Orvu::KeyDescription::Kind kind);

}  // namespace OrvuTool
