#include "LineSplitter.h"

namespace OrvuTool {

void LineSplitter::add(std::string_view bytes)
{
    held_.erase(0, begin_);
    searched_ -= begin_;
    begin_ = 0;
    held_ += bytes;
}

std::optional<std::string> LineSplitter::next()
{
    const std::size_t end = held_.find('\n', searched_);
    if (end == std::string::npos) {
        searched_ = held_.size();
        return std::nullopt;
    }
    std::string line = held_.substr(begin_, end - begin_);
    begin_ = searched_ = end + 1;
    return line;
}

}  // namespace OrvuTool
