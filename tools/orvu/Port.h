#pragma once

#include <optional>
#include <string>

namespace OrvuTool {

/// The port that `text` names, from 0 to 65535; none when it is anything else.
std::optional<int> portIn(const std::string& text);

}  // namespace OrvuTool
