#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "Commands.h"
#include "ExitCode.h"
#include "Output.h"
#include "UnknownArgument.h"

namespace {

using OrvuTool::Chosen;
using OrvuTool::Output;

/// CLI11's, but an option that may be given without its name shows that word as its value.
class HelpFormat : public CLI::Formatter {
public:
    std::string make_option_name(const CLI::Option* option, bool isPositional) const override
    {
        const std::string name = Formatter::make_option_name(option, isPositional);
        return isPositional || !option->get_positional() ? name : name + " " + option->get_name(true);
    }
};

void declare(CLI::App& app, Chosen& chosen)
{
    app.formatter(std::make_shared<HelpFormat>());
    app.name("orvu");
    app.set_version_flag("--version", "orvu " ORVU_VERSION);
    app.require_subcommand(1);
    app.failure_message([](const CLI::App* refusing, const CLI::Error& error) {
        const std::string unknown = OrvuTool::faultOfUnknownArgument(*refusing);
        return "orvu: " + (unknown.empty() ? error.what() : unknown) + "\nRun with --help for more information.\n";
    });
    app.footer(
        "Exit codes: 0 is success, 64 wrong arguments, 66 a file that cannot be read, 74 a standard output that\n"
        "cannot be written; see \"orvu COMMAND --help\" for the others. Errors go to standard error.");
    OrvuTool::addLogOption(app, chosen);
    OrvuTool::addServe(app, chosen);
    OrvuTool::addAsk(app, chosen);
    OrvuTool::addSend(app, chosen);
    OrvuTool::addPush(app, chosen);
    OrvuTool::addWatch(app, chosen);
    OrvuTool::addTypes(app, chosen);
    OrvuTool::addNew(app, chosen);
    OrvuTool::addCheck(app, chosen);
}

/// For what ends before any command runs: help, the version, and wrong arguments.
int endEarly(const CLI::App& app, const CLI::ParseError& end, Output& output)
{
    std::ostringstream out;
    std::ostringstream err;
    const bool asked = app.exit(end, out, err) == 0;
    output.write(out.str());
    std::cerr << err.str();
    return output.result(asked ? OrvuTool::ExitOk : OrvuTool::ExitUsage);
}

}  // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    static Output output;
    CLI::App app("A client, a server, a publisher and a listener for the JSON messages of a digital-TV receiver.");
    Chosen chosen;
    declare(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return endEarly(app, end, output);
    }
    setenv("ORVU_LOG", chosen.log.c_str(), 1);  // before the library's first line: it reads the variable once
    return output.result(chosen.run(output));
}
