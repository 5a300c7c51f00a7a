#include <memory>
#include <optional>
#include <string>

#include "Commands.h"
#include "Ending.h"
#include "Port.h"
#include "Watch.h"

namespace OrvuTool {
namespace {

struct WatchArguments {
    std::optional<std::string> host;  // or the port, when it is the only argument
    std::optional<int> port;
    WatchOptions options;
};

/// Tells host and port apart: a single argument is the port.
void settlePublisher(WatchArguments& arguments)
{
    const std::optional<int> firstWord = arguments.host ? portIn(*arguments.host) : std::nullopt;
    if (arguments.port && firstWord)
        throw CLI::ValidationError("PORT", *arguments.host + " is not a host, and the port is already given");
    if (!arguments.port && !firstWord)
        throw CLI::ValidationError("PORT", "missing; write orvu watch PORT, or orvu watch HOST PORT");
    if (firstWord == 0) throw CLI::ValidationError("PORT", "0 is not a port to connect to");
    arguments.options.port = arguments.port ? *arguments.port : *firstWord;
    arguments.options.host = firstWord ? kThisDevice : arguments.host.value_or(kThisDevice);
}

int watch(const WatchOptions& options, Output& output)
{
    Ending ending;  // before the listener's thread begins
    return Watch(options, ending, output).run();
}

void addWatchOptions(CLI::App& command, WatchArguments& arguments)
{
    WatchOptions& options = arguments.options;
    command.add_option("HOST,--host", arguments.host, "The publisher's name or IPv4 address (default: 127.0.0.1)")
        ->type_name("");
    command.add_option("PORT,--port", arguments.port, "Its TCP port; a single argument is the port")
        ->type_name("")
        ->check(isPort());
    command.add_flag("--websocket", options.webSocket, "The publisher uses WebSocket instead of TCP");
    CLI::Option* raw = command.add_flag("--raw", options.raw, "Print the bytes exactly as they come");
    command.add_flag("--time", options.time, "Print the local date and time before each value");
    command
        .add_flag("--check", options.check, "Report on standard error what the library would not read of each message")
        ->excludes(raw);
    command.add_flag("--again", options.again,
                     "Connect again when connecting fails or the connection ends, until Ctrl-C");
}

}  // namespace

void addWatch(CLI::App& app, Chosen& chosen)
{
    const auto arguments = std::make_shared<WatchArguments>();
    CLI::App* command = app.add_subcommand("watch", "Show what a publisher pushes, until it ends or Ctrl-C");
    addWatchOptions(*command, *arguments);
    addLogOption(*command, chosen);
    command->footer(
        "Prints each pushed JSON value compactly on its own line; text that is not JSON, and values above 64 MiB, as\n"
        "they come. Standard error says when watching begins and why it ends, and suggests a reason when nothing\n"
        "comes for 5 s. With --again the pauses grow from 1 s to 30 s.\n"
        "Exit codes:\n"
        "  0   the publisher ended, or Ctrl-C, SIGTERM or SIGHUP came\n"
        "  3   the publisher cannot be reached or refuses to be watched, or the connection broke (never with --again)\n"
        "  64  wrong arguments\n"
        "  74  standard output cannot be written");
    command->callback([arguments, &chosen] {
        if (arguments->options.time && arguments->options.raw) throw CLI::ExcludesError("--time", "--raw");
        settlePublisher(*arguments);
        chosen.run = [arguments](Output& output) { return watch(arguments->options, output); };
    });
}

}  // namespace OrvuTool
