#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvu/Serializable.h"

namespace OrvuTool {

/// Every type of the library's catalogue, in the order of their values.
std::vector<Orvu::DataType> catalogue();

/// The type whose wire name is exactly `name`, also where no header is read as it; none when no type has this name.
std::optional<Orvu::DataType> typeNamed(const std::string& name);

/// The type's wire name that is nearest to `name`; empty when none is near.
std::string nearestType(const std::string& name);

/// The complaint about a name that no type has.
std::string faultOfType(const std::string& name);

/// What a complaint about an unknown word ends with: `; did you mean "near"?`, or nothing when `near` is empty.
std::string didYouMean(std::string_view near);

/// The name of a message's class, without the library's namespace.
std::string className(const Orvu::Serializable& message);

/// The C++ name of a type as a programmer writes it.
std::string readableName(const char* mangled);

}  // namespace OrvuTool
