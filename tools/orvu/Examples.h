#pragma once

#include <string>

namespace OrvuTool {

/// The example of a type in its JSON Schema; null without one. The text is static.
const char* exampleOf(const std::string& wireName);

}  // namespace OrvuTool
