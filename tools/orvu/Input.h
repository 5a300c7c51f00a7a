#pragma once

#include <string>

#include "ExitCode.h"
#include "Output.h"

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

/// What `use` makes of the file's text, an exit code. Complains of a file that cannot be read.
template <class Use>
int withInput(const std::string& file, Use use)
{
    const Input input = readInput(file);
    if (input.fault.empty()) return use(input.text);
    complain(file + ": " + input.fault);
    return ExitNoInput;
}

}  // namespace OrvuTool
