#pragma once

#include <optional>
#include <string>

#include "Descriptor.h"
#include "LineSplitter.h"

namespace OrvuTool {

class Ending;

/// The lines of a file or a pipe, as they come. Empty ones are skipped.
class LineSource {
public:
    /// Opens `file`, "-" for standard input. `ending` outlives the object.
    LineSource(const std::string& file, Ending& ending);

    /// Waits for the next line; without its line feed. None at the end, at a fault, and after a signal.
    std::optional<std::string> next();

    /// Why the file, or the rest of it, cannot be read; without its name. Empty when nothing is wrong.
    const std::string& fault() const { return fault_; }

private:
    std::optional<std::string> nextOfAny();
    bool readMore();

    Ending& ending_;
    Descriptor opened_;
    int descriptor_;
    LineSplitter lines_;
    std::string fault_;
    bool ended_ = false;
};

}  // namespace OrvuTool
