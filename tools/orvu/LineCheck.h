#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace OrvuTool {

/// Says what the library reads from messages that are shown one per line.
class LineCheck {
public:
    /// Each line begins with `prefix` bytes that do not belong to the message.
    explicit LineCheck(std::size_t prefix) : prefix_(prefix) {}

    /// Takes the next bytes that are shown, wherever they are cut. Returns a sentence for each fault and ignored part
    /// of the lines that are now whole.
    std::vector<std::string> add(std::string_view shown);

private:
    void checkLine(std::vector<std::string>& found);

    const std::size_t prefix_;
    std::string line_;  // the line that has begun
};

}  // namespace OrvuTool
