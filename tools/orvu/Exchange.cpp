#include "Exchange.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>

#include "Commands.h"
#include "ExchangeFault.h"
#include "ExitCode.h"
#include "JsonTrees.h"
#include "Output.h"
#include "orvu/ExchangeReport.h"
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

std::string textOf(Serializable& message)
{
    char* const written = message.serialize();
    const std::string text = written != nullptr ? written : "";
    std::free(written);
    return text;
}

/// How many values of the received text are missing or different in what the answer writes.
std::size_t lossesIn(const std::string& received, const std::string& written)
{
    const ParsedText came = parseText(received);
    const ParsedText kept = parseText(written);
    const Differences found = differences(came.tree.get(), kept.tree.get());
    return found.lost.size() + found.changed.size() + (came.rest.empty() ? 0 : 1);
}

void tellLosses(const std::string& received, const std::string& written)
{
    const std::size_t losses = received == written ? 0 : lossesIn(received, written);
    if (losses == 0) return;
    complain(std::to_string(losses) + (losses == 1 ? " thing was" : " things were") +
             " lost in reading; --wire shows the text that came");
}

void show(Serializable& answer, const Orvu::ExchangeReport& report, const ExchangeOptions& options, Output& output)
{
    if (options.wire) return output.write(*report.receivedText);
    const std::string text = textOf(answer);
    output.write(options.raw ? text : readable(text));
    if (report.phase == Orvu::ExchangePhaseAnswered) tellLosses(*report.receivedText, text);
}

}  // namespace

const char* const kExchangeExitCodes =
    "Exit codes:\n"
    "  0   an answer: success, an empty answer or data\n"
    "  2   an error answer; also when no whole answer came (emptyData) or it was not understood (unknown)\n"
    "  3   the server cannot be reached, or answers that it cannot reach another one\n";

void addExchangeOptions(CLI::App& command, ExchangeOptions& options)
{
    command.add_option("--host", options.host, "The server's name or IPv4 address")
        ->type_name("HOST")
        ->capture_default_str();
    command.add_option("--port", options.port, "The server's TCP port")
        ->type_name("PORT")
        ->check(isPort())
        ->capture_default_str();
    CLI::Option* raw = command.add_flag("--raw", options.raw, "Print exactly the text that the answer's object writes");
    command.add_flag("--wire", options.wire, "Print exactly the text that was received")->excludes(raw);
}

int exchange(Serializable& request, const ExchangeOptions& options, Output& output)
{
    OrvuRestInterface& library = *OrvuRestInterface::getInstance();
    library.configureClient(options.host.c_str(), options.port);  // if this fails, so does the exchange: it says why
    std::string text;
    Orvu::ExchangeReport report;
    report.receivedText = &text;
    const std::unique_ptr<Serializable> answer(library.sendRequest(&request, report));
    const std::string fault = faultOfExchange(report, options.host, options.port);
    if (!fault.empty()) complain(fault);
    if (hasNoServer(report)) return ExitNoServer;
    if (!answer) return ExitRefused;
    show(*answer, report, options, output);
    return exitCodeOf(answer->getDataType());
}

}  // namespace OrvuTool
