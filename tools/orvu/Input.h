#pragma once

#include <string>

namespace OrvuTool {

/// A text that was read, or why it could not be.
struct Input {
    std::string text;
    std::string fault;     ///< Empty when `text` was read; otherwise the reason, without the file's name.
    bool missing = false;  ///< The fault is that there is no such file.
};

/// Reads the file, "-" for standard input. A text with a NUL byte is a fault: no message can carry it.
Input readInput(const std::string& file);

/// The same for a file that must be a regular one: never waits for a writer.
Input readRegularFile(const std::string& file);

}  // namespace OrvuTool
