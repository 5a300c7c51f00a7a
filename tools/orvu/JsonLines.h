#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "JsonScanner.h"

namespace OrvuTool {

/// Lays a stream of JSON values, of which nothing but they themselves tells where they end, out as lines: one compact value a
/// line. The stream may be cut anywhere; the lines are the same.
///
/// What is no JSON is shown as it stands, from the byte at which its value would begin to the end of the line or to the next
/// "{" or "[", where a value may begin again. A value above a limit is shown so, too. Of white space between the values
/// nothing is shown.
class JsonLines {
public:
    static constexpr std::size_t kLongestValue = 64 * 1024 * 1024;  ///< Bytes.

    explicit JsonLines(std::size_t longestValue = kLongestValue) : longest_(longestValue) {}

    /// Puts `start` before each line that begins from now on.
    void startLinesWith(std::string start) { start_ = std::move(start); }

    /// Takes the next bytes of the stream and appends to `shown` what they let be told. Numbers, `true`, `false` and `null`
    /// are whole only when something follows them.
    void add(std::string_view bytes, std::string& shown);

    /// What came so far is all, or all of a message: shows what is held back and ends its line.
    void finish(std::string& shown);

private:
    bool take(char byte, std::string& shown);
    bool takeOther(char byte, std::string& shown);
    bool skip(char byte, std::string& shown);
    void hold(char byte, std::string& shown);
    void endValue(std::string& shown);
    void giveUp(std::string& shown);
    void show(std::string_view bytes, std::string& shown);
    void startLine(std::string& shown);
    void endLine(std::string& shown);

    std::size_t longest_;
    std::string start_;  // of each line
    JsonScanner scanner_;
    std::string held_;          // the value that began, and the blanks before it
    bool began_ = false;        // a value
    bool isTooLong_ = false;    // the value that began: it is shown while it comes
    bool isOther_ = false;      // what comes is no JSON
    bool isLineBegun_ = false;  // something stands in the last line shown
};

}  // namespace OrvuTool
