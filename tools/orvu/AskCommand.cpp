#include <memory>
#include <optional>

#include "Commands.h"
#include "Exchange.h"
#include "ExitCode.h"
#include "Output.h"
#include "Types.h"

namespace OrvuTool {
namespace {

struct AskOptions : ExchangeOptions {
    std::string type;
};

int ask(const AskOptions& options, Output& output)
{
    const std::optional<Orvu::DataType> type = typeNamed(options.type);
    if (!type) {
        const std::string near = nearestType(options.type);
        const std::string hint = near.empty() ? "; \"orvu types\" lists them" : didYouMean(near);
        complain(options.type + ": no such type" + hint);
        return ExitUsage;
    }
    const std::unique_ptr<Orvu::Serializable> request(Orvu::Serializable::factory(*type));
    if (request) return exchange(*request, options, output);
    complain(options.type + ": cannot be asked for, since no message is made from this type alone");
    return ExitUsage;
}

}  // namespace

void addAsk(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<AskOptions>();
    CLI::App* command = app.add_subcommand("ask", "Send the empty request of a type and print the answer");
    command->add_option("TYPE", options->type, "The type's wire name, such as serviceList")->required()->type_name("");
    addExchangeOptions(*command, *options);
    addLogOption(*command, chosen);
    command->footer(std::string(kExchangeExitCodes) +
                    "  64  wrong arguments, or a type that cannot be asked for\n"
                    "  74  standard output cannot be written");
    command->callback([options, &chosen] { chosen.run = [options](Output& output) { return ask(*options, output); }; });
}

}  // namespace OrvuTool
