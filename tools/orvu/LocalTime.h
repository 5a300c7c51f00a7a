#pragma once

#include <string>

namespace OrvuTool {

/// The local date and time in milliseconds, such as "2026-11-21 20:30:04.381".
std::string localTime();

}  // namespace OrvuTool
