#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "Exchange.h"
#include "ExitCode.h"
#include "Fields.h"
#include "Output.h"
#include "Types.h"

namespace OrvuTool {
namespace {

using Orvu::Serializable;

struct AskOptions : ExchangeOptions {
    std::string type;
    std::vector<std::string> fields;
};

/// Fills the request with the fields. Returns why that fails; empty when it does not.
std::string faultOfFilling(Serializable& request, const AskOptions& options)
{
    if (options.fields.empty()) return "";
    const Orvu::DataType type = request.getDataType();
    const FieldsText fields = textOfFields(options.type, Orvu::keysOf(type), options.fields);
    if (!fields.tree) return fields.fault;
    const std::string text = pretty(fields.tree.get());
    const Orvu::Explanation explanation = Orvu::explain(text.c_str(), type);
    if (explanation.isRead && request.deserialize(text.c_str())) return "";
    const Orvu::Finding& fault = explanation.findings.front();
    return options.type + ": " + (fault.path.empty() ? "" : fault.path + ": ") + fault.message;
}

int ask(const AskOptions& options, Output& output)
{
    const std::optional<Orvu::DataType> type = typeNamed(options.type);
    if (!type) {
        complain(faultOfType(options.type));
        return ExitUsage;
    }
    const std::unique_ptr<Serializable> request(Serializable::factory(*type));
    const std::string fault =
        request ? faultOfFilling(*request, options)
                : options.type + ": cannot be requested: the library makes no message from this type alone";
    if (fault.empty()) return exchange(*request, options, output);
    complain(fault);
    return ExitUsage;
}

}  // namespace

void addAsk(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<AskOptions>();
    CLI::App* command = app.add_subcommand("ask", "Send a request of a type and print the answer");
    command->add_option("TYPE", options->type, "The type's wire name, such as serviceList")->required()->type_name("");
    command->add_option("FIELDS", options->fields, "Fields of the request, such as serviceContextId=1.2.01")
        ->type_name("KEY=VALUE");
    addExchangeOptions(*command, *options);
    addLogOption(*command, chosen);
    command->footer(
        std::string("\"orvu types TYPE\" lists the keys of a type. Write pos.w for a key inside an object and\n"
                    "list[0].name for one inside a list item. Give each item of a list of texts, words or\n"
                    "numbers by itself: key=a key=b. A VALUE is read as the kind that its key holds.\n") +
        kExchangeExitCodes +
        "  64  wrong arguments, or a type that cannot be requested\n"
        "  74  standard output cannot be written");
    runs(*command, chosen, options, ask);
}

}  // namespace OrvuTool
