#include <memory>

#include "Commands.h"
#include "Exchange.h"
#include "ExitCode.h"
#include "Input.h"
#include "Output.h"
#include "TextMessage.h"

namespace OrvuTool {
namespace {

using Orvu::Serializable;

struct SendOptions : ExchangeOptions {
    std::string file;
};

/// A receiver that cannot read the text as a confirmation screen answers at once: there is no user to wait for.
std::unique_ptr<Serializable> requestOf(const std::string& text)
{
    const Orvu::DataType type = Serializable::deserializeHeader(text.c_str());
    if (type == Orvu::DataTypeConfirmationScreen) {
        auto screen = std::make_unique<ConfirmationTextMessage>(text);
        if (screen->deserialize(text.c_str())) return screen;
        return std::make_unique<TextMessage>(Orvu::DataTypeUnknown, text);
    }
    return std::make_unique<TextMessage>(type, text);
}

int send(const SendOptions& options, Output& output)
{
    return withInput(options.file,
                     [&](const std::string& text) { return exchange(*requestOf(text), options, output); });
}

}  // namespace

void addSend(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<SendOptions>();
    CLI::App* command = app.add_subcommand("send", "Send a request text as it is and print the answer");
    addFileArgument(*command, options->file, "request");
    addExchangeOptions(*command, *options);
    addLogOption(*command, chosen);
    command->footer(std::string(kExchangeExitCodes) +
                    "  64  wrong arguments\n"
                    "  66  FILE cannot be read, or holds a NUL byte\n"
                    "  74  standard output cannot be written");
    runs(*command, chosen, options, send);
}

}  // namespace OrvuTool
