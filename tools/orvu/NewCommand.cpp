#include <memory>
#include <optional>
#include <string>

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

/// What can be left out of a text that is read.
class Shortening {
public:
    Shortening(cJSON* tree, Orvu::DataType type) : tree_(tree), type_(type) {}

    /// Takes out whatever is not needed, the last first.
    void shorten(cJSON* container)
    {
        for (int i = cJSON_GetArraySize(container) - 1; i >= 0; --i) {
            cJSON* const item = cJSON_DetachItemViaPointer(container, cJSON_GetArrayItem(container, i));
            if (!isHeader(*item) && isRead()) {
                cJSON_Delete(item);
            } else {
                cJSON_InsertItemInArray(container, i, item);  // an object's members are a list as well
                shorten(item);
            }
        }
    }

private:
    static bool isHeader(const cJSON& item) { return item.string && std::string(item.string) == "HEADER"; }
    bool isRead() const { return Orvu::explain(pretty(tree_).c_str(), type_).isRead; }

    cJSON* const tree_;
    const Orvu::DataType type_;
};

int printNew(const NewOptions& options, Output& output)
{
    const std::optional<Orvu::DataType> type = typeNamed(options.type);
    if (!type) {
        complain(faultOfType(options.type));
        return ExitUsage;
    }
    const char* const example = exampleOf(options.type);
    if (!example) {
        complain(options.type + ": the type has no text of its own");
        return ExitUsage;
    }
    const ParsedText parsed = parseText(example);
    if (options.least) Shortening(parsed.tree.get(), *type).shorten(parsed.tree.get());
    output.write(pretty(parsed.tree.get()) + "\n");
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
