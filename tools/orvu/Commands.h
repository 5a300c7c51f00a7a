#pragma once

#include <CLI/CLI.hpp>
#include <arpa/inet.h>
#include <functional>
#include <memory>
#include <string>

namespace OrvuTool {

class Output;

/// What the arguments ask for.
struct Chosen {
    std::string log = "none";         ///< Where the library's own lines go.
    std::function<int(Output&)> run;  ///< Does it; gives the exit code.
};

/// Each of these declares one subcommand, which sets `chosen.run` when the arguments name it. `chosen` outlives `app`.
void addServe(CLI::App& app, Chosen& chosen);
void addAsk(CLI::App& app, Chosen& chosen);
void addSend(CLI::App& app, Chosen& chosen);
void addPush(CLI::App& app, Chosen& chosen);
void addWatch(CLI::App& app, Chosen& chosen);
void addTypes(CLI::App& app, Chosen& chosen);
void addNew(CLI::App& app, Chosen& chosen);
void addCheck(CLI::App& app, Chosen& chosen);

/// Has the command do `action` with its options when the arguments name it.
template <class Options>
void runs(CLI::App& command, Chosen& chosen, const std::shared_ptr<Options>& options,
          int (*action)(const Options&, Output&))
{
    command.callback([=, &chosen] { chosen.run = [=](Output& output) { return action(*options, output); }; });
}

/// A file that must be named; `what` is in it.
inline void addFileArgument(CLI::App& command, std::string& file, const std::string& what)
{
    command.add_option("FILE", file, "The file with the " + what + "; - is standard input")->required()->type_name("");
}

/// The option that the tool and every command take.
inline void addLogOption(CLI::App& app, Chosen& chosen)
{
    app.add_option("--log", chosen.log, "Where the library's own log lines go (default: none)")
        ->check(CLI::IsMember({"none", "stderr", "syslog"}).description(""))
        ->type_name("none|stderr|syslog");
}

/// The host that the commands talk to when none is named.
constexpr char kThisDevice[] = "127.0.0.1";

/// A TCP port to connect to; the help shows no range for it.
inline CLI::Validator isPort()
{
    return CLI::Range(1, 65535).description("");
}

/// Why `text` is not a dotted IPv4 address; empty when it is one.
inline std::string faultOfAddress(const std::string& text)
{
    in_addr address;
    return inet_pton(AF_INET, text.c_str(), &address) == 1 ? "" : text + " is not an IPv4 address, such as 127.0.0.1";
}

/// For the commands that listen. `address` stays empty without the option.
inline void addListenOption(CLI::App& app, std::string& address)
{
    app.add_option("--listen,--host", address, "This device's IPv4 address to listen on (default: every interface)")
        ->type_name("ADDRESS")
        ->check(CLI::Validator(faultOfAddress, ""));
}

/// What an error says after "is available" or "is not available".
inline std::string onAddress(const std::string& address)
{
    return address.empty() ? "" : " on " + address;
}

}  // namespace OrvuTool
