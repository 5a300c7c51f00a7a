#include "Exchange.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>

#include "Commands.h"
#include "ExitCode.h"
#include "JsonText.h"
#include "Output.h"
#include "orvu/OrvuRestInterface.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::OrvuRestInterface;
using Orvu::Serializable;

constexpr DataType kErrors[] = {
    Orvu::DataTypeUnknown,
    Orvu::DataTypeEmptyData,
    Orvu::DataTypeIllegalArgument,
    Orvu::DataTypePlatformUnavailable,
    Orvu::DataTypeFormatNotSupported,
    Orvu::DataTypeActionNotSupported,
    Orvu::DataTypeParameterNotSupported,
    Orvu::DataTypeEmptyChannelList,
    Orvu::DataTypeServiceNotFound,
    Orvu::DataTypeResourceNotFound,
    Orvu::DataTypeResourceUnavailable,
    Orvu::DataTypeNoSignal,
    Orvu::DataTypeTableNotFound,
    Orvu::DataTypeMissingArgument,
    Orvu::DataTypeTvServiceNotInUse,
    Orvu::DataTypeSiCacheUnavailable,
};

int exitCodeOf(DataType answer)
{
    if (answer == Orvu::DataTypeCannotConnectToServer) return ExitNoServer;
    return std::find(std::begin(kErrors), std::end(kErrors), answer) != std::end(kErrors) ? ExitRefused : ExitOk;
}

std::string readable(const std::string& text)
{
    const ParsedText parsed = parseText(text);
    return (parsed.tree ? pretty(parsed.tree.get()) : text) + "\n";
}

void show(Serializable& answer, bool raw, Output& output)
{
    char* const written = answer.serialize();
    const std::string text = written != nullptr ? written : "";
    std::free(written);
    output.write(raw ? text : readable(text));
}

}  // namespace

const char* const kExchangeExitCodes =
    "Exit codes:\n"
    "  0   an answer: success, an empty answer or data\n"
    "  2   an error answer; also an answer that did not come (emptyData) or was not understood (unknown)\n"
    "  3   the server cannot be reached, or says that it cannot reach another\n";

void addExchangeOptions(CLI::App& command, ExchangeOptions& options)
{
    command.add_option("--host", options.host, "The server's name or IPv4 address")
        ->type_name("HOST")
        ->capture_default_str();
    command.add_option("--port", options.port, "The server's TCP port")
        ->type_name("PORT")
        ->check(isPort())
        ->capture_default_str();
    command.add_flag("--raw", options.raw, "Print exactly the text that the answer writes, nothing added");
}

int exchange(Serializable& request, const ExchangeOptions& options, Output& output)
{
    OrvuRestInterface& library = *OrvuRestInterface::getInstance();
    if (!library.configureClient(options.host.c_str(), options.port)) {
        complain("cannot connect to " + options.host + ":" + std::to_string(options.port));
        return ExitNoServer;
    }
    const std::unique_ptr<Serializable> answer(library.sendRequest(&request));
    show(*answer, options.raw, output);
    return exitCodeOf(answer->getDataType());
}

}  // namespace OrvuTool
