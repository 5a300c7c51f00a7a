#pragma once

#include <string>

namespace OrvuTool {

/// The examples of a type in its JSON Schema, as a JSON array; null without one. The text is static.
const char* examplesOf(const std::string& wireName);

}  // namespace OrvuTool
