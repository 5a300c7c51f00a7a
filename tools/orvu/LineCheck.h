#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace OrvuTool {

/// Tells what the library makes of messages that are shown one a line.
class LineCheck {
public:
    /// Each line begins with so many bytes that are not the message's.
    explicit LineCheck(std::size_t prefix) : prefix_(prefix) {}

    /// Takes what is shown next, wherever it is cut, and gives a sentence for each thing that reading the whole lines meets.
    std::vector<std::string> add(std::string_view shown);

private:
    void checkLine(std::vector<std::string>& found);

    const std::size_t prefix_;
    std::string line_;  // that has begun
};

}  // namespace OrvuTool
