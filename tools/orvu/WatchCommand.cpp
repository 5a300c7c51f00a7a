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
    std::optional<std::string> host;  // or the port, when nothing else names it
    std::optional<int> port;
    WatchOptions options;
};

/// Tells host and port apart: one word alone is the port.
void settlePublisher(WatchArguments& arguments)
{
    const std::optional<int> firstWord = arguments.host ? portIn(*arguments.host) : std::nullopt;
    if (arguments.port && firstWord)
        throw CLI::ValidationError("PORT", *arguments.host + " is no host, and the port is given already");
    if (!arguments.port && !firstWord)
        throw CLI::ValidationError("PORT", "missing; write orvu watch PORT, or orvu watch HOST PORT");
    if (firstWord == 0) throw CLI::ValidationError("PORT", "0 is no port to connect to");
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
    command.add_option("PORT,--port", arguments.port, "Its TCP port; one word alone is the port")
        ->type_name("")
        ->check(isPort());
    command.add_flag("--websocket", options.webSocket, "The publisher is one for WebSockets");
    CLI::Option* raw =
        command.add_flag("--raw", options.raw, "Print the bytes as they come, nothing added and nothing left out");
    command.add_flag("--time", options.time, "Print the local date and time before each value");
    command.add_flag("--check", options.check, "Say on standard error what the library does not read of each message")
        ->excludes(raw);
    command.add_flag("--again", options.again,
                     "Connect again when connecting fails and when the connection ends, until Ctrl-C");
}

}  // namespace

void addWatch(CLI::App& app, Chosen& chosen)
{
    const auto arguments = std::make_shared<WatchArguments>();
    CLI::App* command = app.add_subcommand("watch", "Show what a publisher pushes, until it ends or Ctrl-C");
    addWatchOptions(*command, *arguments);
    addLogOption(*command, chosen);
    command->footer(
        "Each pushed JSON value is printed compactly on a line of its own. Text that is not JSON, and values above\n"
        "64 MiB, are printed as they come. Standard error says when watching begins and why it ends, and what the\n"
        "reason may be when nothing comes for 5 s. With --again the pauses grow from 1 s to 30 s.\n"
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
