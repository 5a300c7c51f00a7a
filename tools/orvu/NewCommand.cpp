#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "Examples.h"
#include "ExitCode.h"
#include "JsonText.h"
#include "Output.h"
#include "Types.h"
#include "orvu/Explanation.h"

namespace OrvuTool {
namespace {

struct NewOptions {
    std::string type;
    bool least = false;
};

/// Takes out of a text whatever it is read without.
class Shortening {
public:
    Shortening(JsonTree tree, Orvu::DataType type) : tree_(std::move(tree)), type_(type) {}

    JsonTree shortened()
    {
        shortenInside();
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
};

int printNew(const NewOptions& options, Output& output)
{
    const std::optional<Orvu::DataType> type = typeNamed(options.type);
    if (!type) {
        complain(faultOfType(options.type));
        return ExitUsage;
    }
    const char* const examples = examplesOf(options.type);
    if (!examples) {
        complain(options.type + ": the type has no text of its own");
        return ExitUsage;
    }
    JsonTree tree(cJSON_DetachItemFromArray(parseText(examples).tree.get(), 0));
    if (options.least) tree = Shortening(std::move(tree), *type).shortened();
    output.write(pretty(tree.get()) + "\n");
    return ExitOk;
}

}  // namespace

void addNew(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<NewOptions>();
    CLI::App* command = app.add_subcommand("new", "Print a filled text of a type, to edit");
    command->add_option("TYPE", options->type, "The type's wire name, such as serviceList")->required()->type_name("");
    command->add_flag("--least", options->least, "Print the least that is read instead");
    addLogOption(*command, chosen);
    command->footer(
        "Exit codes:\n"
        "  0   the text was printed\n"
        "  64  wrong arguments, or a type that has no text of its own\n"
        "  74  standard output cannot be written");
    command->callback(
        [options, &chosen] { chosen.run = [options](Output& output) { return printNew(*options, output); }; });
}

}  // namespace OrvuTool
