#include "LineCheck.h"

#include "orvu/Explanation.h"

namespace OrvuTool {

std::vector<std::string> LineCheck::add(std::string_view shown)
{
    std::vector<std::string> found;
    for (std::size_t end = shown.find('\n'); end != std::string_view::npos; end = shown.find('\n')) {
        line_ += shown.substr(0, end);
        checkLine(found);
        line_.clear();
        shown.remove_prefix(end + 1);
    }
    line_ += shown;
    return found;
}

void LineCheck::checkLine(std::vector<std::string>& found)
{
    if (line_.size() <= prefix_) return;
    const Orvu::Explanation explanation = Orvu::explain(line_.c_str() + prefix_);
    const std::string type = Orvu::Serializable::dataTypeString(explanation.type);
    for (const Orvu::Finding& finding : explanation.findings) {
        const bool isFault = finding.kind == Orvu::Finding::Fault;
        found.push_back((isFault ? "not read: " : type + ": ") +
                        (isFault && explanation.type != Orvu::DataTypeUnknown ? type + ": " : "") +
                        (finding.path.empty() ? "" : finding.path + ": ") + finding.message);
    }
}

}  // namespace OrvuTool
