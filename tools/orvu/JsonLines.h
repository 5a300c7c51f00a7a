#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "orvu/PushListener.h"

namespace OrvuTool {

/// Lays out what a listener hands over as lines: one compact JSON value per line, and other text unchanged.
class JsonLines {
public:
    /// Puts `start` before each line that begins from now on.
    void startLinesWith(std::string start) { start_ = std::move(start); }

    /// Appends to `shown` what `message` adds to the lines.
    void add(const Orvu::PushedMessage& message, std::string& shown);

private:
    void show(std::string_view bytes, std::string& shown);
    void startLine(std::string& shown);
    void endLine(std::string& shown);

    std::string start_;         // of each line
    bool isLineBegun_ = false;  // the last line shown is not empty
};

}  // namespace OrvuTool
