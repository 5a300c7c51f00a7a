#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "Ending.h"
#include "ExitCode.h"
#include "LineSource.h"
#include "Output.h"
#include "Port.h"
#include "orvu/OrvuRestInterface.h"

namespace OrvuTool {
namespace {

using Orvu::OrvuRestInterface;
using Orvu::SocketServerInfo;
using Lines = std::vector<std::string>;

constexpr int kLongestPause = 24 * 60 * 60 * 1000;  // milliseconds

struct PushOptions {
    std::string protocol;
    std::string ports;
    std::string address;  // empty for every interface
    std::string file = "-";
    int every = 0;  // milliseconds; 0 without repetition

    std::string source() const { return file == "-" ? "standard input" : file; }
};

struct PortRange {
    int first;
    int last;
};

std::optional<PortRange> rangeIn(const std::string& text)
{
    const std::size_t hyphen = text.find('-');
    const std::optional<int> first = portIn(text.substr(0, hyphen));
    const std::optional<int> last = hyphen == std::string::npos ? first : portIn(text.substr(hyphen + 1));
    if (!first || !last || *first > *last) return std::nullopt;
    if (*first == 0 && *last != 0) return std::nullopt;  // 0 always finds a port: no other would be tried
    return PortRange{*first, *last};
}

/// Why `text` is neither a port nor a range of ports; empty when it is.
std::string faultOfRange(const std::string& text)
{
    return rangeIn(text) ? "" : text + " is not a port or a range of ports from 1 to 65535, such as 9000 or 9000-9010";
}

/// A push server, and where its results are printed.
class Publisher {
public:
    Publisher(int handle, Ending& ending, Output& output) : handle_(handle), ending_(ending), output_(output) {}

    void push(std::string line)
    {
        const auto size = static_cast<unsigned>(line.size());
        auto* const bytes = reinterpret_cast<unsigned char*>(line.data());
        const bool taken = OrvuRestInterface::getInstance()->sendMessage(handle_, bytes, size);
        output_.write(std::to_string(size) + (taken ? " bytes pushed\n" : " bytes: no client took it\n"), ending_);
    }

    void pushAsTheyCome(LineSource& lines)
    {
        while (std::optional<std::string> line = lines.next())
            push(std::move(*line));
    }

    /// Pushes the lines over and over until a signal comes. A push that takes longer than the pause delays only the
    /// next one.
    void repeat(const Lines& lines, std::chrono::milliseconds pause)
    {
        Clock::time_point next = Clock::now();
        for (std::size_t i = 0; ending_.waitFor({}, next) == Ending::Awaited::TimeOver; i = (i + 1) % lines.size()) {
            push(lines[i]);
            next = std::max(next + pause, Clock::now());
        }
    }

private:
    int handle_;
    Ending& ending_;
    Output& output_;
};

int unreadable(const PushOptions& options, const std::string& fault)
{
    complain(options.source() + ": " + fault);
    return ExitNoInput;
}

/// None when no port is available.
std::unique_ptr<SocketServerInfo> opened(const PushOptions& options)
{
    const PortRange ports = *rangeIn(options.ports);
    OrvuRestInterface& library = *OrvuRestInterface::getInstance();
    library.setListenAddress(options.address);
    library.setSocketsPortsRange(ports.first, ports.last);
    std::unique_ptr<SocketServerInfo> server(library.createServer(options.protocol));
    if (server && server->error == 0) return server;
    const bool isRange = options.ports.find('-') != std::string::npos;
    complain((isRange ? "no port of " + options.ports + " is" : "port " + options.ports + " is not") + " available" +
             onAddress(options.address));
    return nullptr;
}

void printAddress(const SocketServerInfo& server, Ending& ending, Output& output)
{
    output.write(server.protocol + " server on " + server.ipAddress + ":" + std::to_string(server.port) + ", handle " +
                     std::to_string(server.handler) + "\n",
                 ending);
}

Lines allOf(LineSource& source)
{
    Lines lines;
    while (std::optional<std::string> line = source.next())
        lines.push_back(std::move(*line));
    return lines;
}

int push(const PushOptions& options, Output& output)
{
    Ending ending;
    LineSource source(options.file, ending);
    const Lines repeated = options.every > 0 ? allOf(source) : Lines();
    if (!source.fault().empty()) return unreadable(options, source.fault());
    if (ending.hasCome()) return ExitOk;
    if (options.every > 0 && repeated.empty()) return unreadable(options, "holds no line to push");

    const std::unique_ptr<SocketServerInfo> server = opened(options);
    if (!server) return ExitNoPort;
    printAddress(*server, ending, output);
    Publisher publisher(server->handler, ending, output);
    if (options.every > 0)
        publisher.repeat(repeated, std::chrono::milliseconds(options.every));
    else
        publisher.pushAsTheyCome(source);
    OrvuRestInterface::destroyInstance();
    return source.fault().empty() ? ExitOk : unreadable(options, source.fault());
}

}  // namespace

void addPush(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<PushOptions>();
    CLI::App* command =
        app.add_subcommand("push", "Push lines to every client that connects, until the input ends or Ctrl-C");
    command->add_option("PROTOCOL", options->protocol, "tcp or websocket")
        ->required()
        ->type_name("")
        ->check(CLI::IsMember({"tcp", "websocket"}).description(""));
    command
        ->add_option("--ports,--port", options->ports,
                     "The port, or a range to take the first free port of; 0 lets the system choose")
        ->required()
        ->type_name("PORT|MIN-MAX")
        ->check(CLI::Validator(faultOfRange, ""));
    addListenOption(*command, options->address);
    command->add_option("--file", options->file, "Read the lines from FILE instead of standard input")
        ->type_name("FILE");
    command
        ->add_option("--every", options->every,
                     "Read all lines first, then push one every MS milliseconds, over and over")
        ->type_name("MS")
        ->check(CLI::Range(1, kLongestPause).description(""));
    addLogOption(*command, chosen);
    command->footer(
        "Each line is one message, without its line feed; empty lines are skipped. The first line printed gives the\n"
        "server's address and handle; then each push prints a line with its bytes and whether a client took it.\n"
        "Exit codes:\n"
        "  0   all lines were pushed, or Ctrl-C, SIGTERM or SIGHUP came\n"
        "  64  wrong arguments\n"
        "  66  FILE cannot be read, has a line above 64 MiB, or holds no line although --every is given\n"
        "  69  none of the ports is available, or ADDRESS is not this device's\n"
        "  74  standard output cannot be written (lines were pushed all the same)");
    runs(*command, chosen, options, push);
}

}  // namespace OrvuTool
