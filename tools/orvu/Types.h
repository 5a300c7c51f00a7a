#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace OrvuTool {

/// Every type of the library's catalogue, in the order of their values.
std::vector<Orvu::DataType> catalogue();

/// The type whose wire name is exactly `name`, also where no header is read as it; none for a stranger's name.
std::optional<Orvu::DataType> typeNamed(const std::string& name);

/// The name of a message's class, without the library's namespace.
std::string className(const Orvu::Serializable& message);

/// The C++ name of a type as a programmer writes it.
std::string readableName(const char* mangled);

}  // namespace OrvuTool
