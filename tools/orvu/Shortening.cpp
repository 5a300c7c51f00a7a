#include "Shortening.h"

#include <string>
#include <utility>
#include <vector>

#include "orvu/Explanation.h"

namespace OrvuTool {
namespace {

class Shortening {
public:
    Shortening(JsonTree tree, Orvu::DataType type) : tree_(std::move(tree)), type_(type) {}

    JsonTree shortened()
    {
        do {
            hasShortened_ = false;
            shortenInside();
        } while (hasShortened_);
        return std::move(tree_);
    }

private:
    /// Of the object or list at `path_`, the last item first.
    void shortenInside()
    {
        for (int i = cJSON_GetArraySize(at(tree_.get())) - 1; i >= 0; --i) {
            JsonTree without(cJSON_Duplicate(tree_.get(), true));
            cJSON_DeleteItemFromArray(at(without.get()), i);  // an object's members are a list as well
            if (!isHeader(*cJSON_GetArrayItem(at(tree_.get()), i)) && isRead(without.get())) {
                tree_ = std::move(without);
                hasShortened_ = true;
                continue;
            }
            path_.push_back(i);
            shortenInside();
            path_.pop_back();
        }
    }

    cJSON* at(cJSON* tree) const
    {
        for (const int step : path_)
            tree = cJSON_GetArrayItem(tree, step);
        return tree;
    }

    static bool isHeader(const cJSON& item) { return item.string && std::string(item.string) == "HEADER"; }
    bool isRead(const cJSON* tree) const { return Orvu::explain(pretty(tree).c_str(), type_).isRead; }

    JsonTree tree_;
    const Orvu::DataType type_;
    std::vector<int> path_;
    bool hasShortened_ = false;
};

}  // namespace

JsonTree shortened(JsonTree tree, Orvu::DataType type)
{
    return Shortening(std::move(tree), type).shortened();
}

}  // namespace OrvuTool
