#pragma once

#include <string>

namespace OrvuTests {

/// Reads `text` in place and as cJSON's tree: whether it is JSON, every value by every path, every member by its key.
/// Returns a sentence about the first thing that is not the same; empty when all is.
std::string differenceFromCJson(const std::string& text);

}  // namespace OrvuTests
