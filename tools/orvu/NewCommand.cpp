#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Commands.h"
#include "Examples.h"
#include "ExitCode.h"
#include "JsonTrees.h"
#include "Output.h"
#include "Shortening.h"
#include "Types.h"

namespace OrvuTool {
namespace {

struct NewOptions {
    std::string type;
    bool least = false;
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
    if (options.least) tree = shortened(std::move(tree), *type);
    output.write(pretty(tree.get()) + "\n");
    return ExitOk;
}

}  // namespace

void addNew(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<NewOptions>();
    CLI::App* command = app.add_subcommand("new", "Print an example text of a type, for you to edit");
    command->add_option("TYPE", options->type, "The type's wire name, such as serviceList")->required()->type_name("");
    command->add_flag("--least", options->least, "Print only what the library requires");
    addLogOption(*command, chosen);
    command->footer(
        "Exit codes:\n"
        "  0   the text was printed\n"
        "  64  wrong arguments, or a type that has no text of its own\n"
        "  74  standard output cannot be written");
    runs(*command, chosen, options, printNew);
}

}  // namespace OrvuTool
