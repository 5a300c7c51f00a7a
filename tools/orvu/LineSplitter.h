#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace OrvuTool {

/// Divides a stream of bytes into lines, wherever the stream is cut.
class LineSplitter {
public:
    void add(std::string_view bytes);

    /// The next line, without its line feed; none when the line feed has not come yet.
    std::optional<std::string> next();

    /// The bytes after the last line feed: the last line, when no more come.
    std::string rest() const { return held_.substr(begin_); }

    /// Bytes that next() has not given yet.
    std::size_t size() const { return held_.size() - begin_; }

private:
    std::string held_;
    std::size_t begin_ = 0;     // of the next line
    std::size_t searched_ = 0;  // there is no line feed from begin_ to here
};

}  // namespace OrvuTool
