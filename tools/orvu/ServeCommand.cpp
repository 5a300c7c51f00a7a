#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "Answers.h"
#include "Commands.h"
#include "CuttingRelay.h"
#include "Ending.h"
#include "ExitCode.h"
#include "Fates.h"
#include "LocalTime.h"
#include "Output.h"
#include "TextMessage.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::OrvuRestInterface;
using Orvu::OrvuRestRequest;
using Orvu::Serializable;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kDefaultPort = 7575;
constexpr int kLastAnswersMilliseconds = 1000;
constexpr int kLongestDelay = 24 * 60 * 60 * 1000;  // milliseconds

struct ServeOptions {
    int port = kDefaultPort;
    std::string folder;
    std::string address;  // empty for every interface
    int delay = 0;        // milliseconds
    unsigned closePercent = 0;
    unsigned cutPercent = 0;
    std::optional<unsigned> seed;
};

struct Receiver {
    Answers answers;
    Fates fates;
    std::chrono::milliseconds delay;
    Output& output;
};
// Set before the first request; never deleted, since a late one may outlive main().
Receiver* receiver = nullptr;
CuttingRelay* relay = nullptr;  // only when answers are cut

std::string bytesSent(int bytes)
{
    return bytes < 0 ? "not taken" : std::to_string(bytes) + " bytes";
}

/// Lets the first half of `answer` reach the peer.
std::string sendHalf(OrvuRestRequest& request, Serializable& answer)
{
    const std::string text = writtenText(answer);
    TextMessage marked(answer.getDataType(), CuttingRelay::marked(text));
    if (request.sendResponse(&marked) < 0) return "not taken";
    return "cut, " + std::to_string(CuttingRelay::passed(text.size())) + " of " + std::to_string(text.size()) +
           " bytes";
}

/// Sends, cuts or drops `answer` as `fate` says. Returns what the line of the exchange says about it.
std::string answerWith(Serializable& answer, Fate fate, std::unique_ptr<OrvuRestRequest> request)
{
    if (fate == Fate::Closed) return "closed without an answer";
    const std::string type = Serializable::dataTypeString(answer.getDataType());
    if (fate == Fate::Cut) return type + " " + sendHalf(*request, answer);
    return type + " " + bytesSent(request->sendResponse(&answer));
}

std::string exchangeLine(DataType request, const std::string& outcome, Milliseconds took)
{
    char tail[40];
    std::snprintf(tail, sizeof tail, " %.2f ms\n", took.count());
    return localTime() + " " + Serializable::dataTypeString(request) + " -> " + outcome + tail;
}

void* answerRequest(OrvuRestRequest* received)
{
    const auto begin = std::chrono::steady_clock::now();
    std::unique_ptr<OrvuRestRequest> request(received);
    const DataType type = request->getData()->getDataType();
    const std::unique_ptr<Serializable> answer = receiver->answers.answerTo(type);
    const Fate fate = receiver->fates.next();
    std::this_thread::sleep_for(receiver->delay);
    const std::string outcome = answerWith(*answer, fate, std::move(request));
    receiver->output.write(exchangeLine(type, outcome, std::chrono::steady_clock::now() - begin));
    return nullptr;
}

Receiver* receiverFor(const ServeOptions& options, Output& output)
{
    const unsigned seed = options.seed ? *options.seed : std::random_device()();
    return new Receiver{Answers(options.folder), Fates(options.closePercent, options.cutPercent, seed),
                        std::chrono::milliseconds(options.delay), output};
}

/// The port; none when it is not available.
std::optional<int> listenOn(const std::string& address, int port)
{
    OrvuRestInterface& library = *OrvuRestInterface::getInstance();
    library.registerRequestCallback(answerRequest);
    library.setListenAddress(address);
    if (!library.startListenRequests(port)) return std::nullopt;
    return library.requestPort();
}

/// The same, with a relay before it that can cut answers.
std::optional<int> listenThroughRelay(const ServeOptions& options)
{
    const std::optional<int> inner = listenOn(kThisDevice, 0);
    if (!inner) return std::nullopt;
    relay = new CuttingRelay(*inner);
    if (!relay->listen(options.address, options.port)) return std::nullopt;
    return relay->port();
}

int serve(const ServeOptions& options, Output& output)
{
    receiver = receiverFor(options, output);
    const std::string fault = receiver->answers.checkFolder();
    if (!fault.empty()) {
        complain(options.folder + ": " + fault);
        return ExitNoInput;
    }
    Ending ending;
    const std::optional<int> port =
        options.cutPercent > 0 ? listenThroughRelay(options) : listenOn(options.address, options.port);
    if (!port) {
        complain("port " + std::to_string(options.port) + " is not available" + onAddress(options.address));
        return ExitNoPort;
    }
    output.write("listening on port " + std::to_string(*port) +
                 (options.address.empty() ? "" : " of " + options.address) + ", answers from " + options.folder + "\n");
    ending.wait();
    OrvuRestInterface::destroyInstance(kLastAnswersMilliseconds);
    if (relay != nullptr) relay->stop();
    return ExitOk;
}

void addFaultOptions(CLI::App& command, ServeOptions& options)
{
    const CLI::Validator percent = CLI::Range(0, 100).description("");
    command.add_option("--delay", options.delay, "Wait MS milliseconds before each answer")
        ->type_name("MS")
        ->check(CLI::Range(0, kLongestDelay).description(""));
    command.add_option("--close", options.closePercent, "Close PERCENT of the connections without an answer")
        ->type_name("PERCENT")
        ->check(percent);
    command
        .add_option("--cut", options.cutPercent, "Send only half of the answer to PERCENT of the requests, then close")
        ->type_name("PERCENT")
        ->check(percent);
    command.add_option("--seed", options.seed, "Choose the same requests for --close and --cut in every run")
        ->type_name("N");
}

void requireAtMostAll(const ServeOptions& options)
{
    if (options.closePercent + options.cutPercent > 100)
        throw CLI::ValidationError("--close and --cut", "more than 100 percent together");
}

}  // namespace

void addServe(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<ServeOptions>();
    CLI::App* command = app.add_subcommand("serve", "Answer requests from a folder of answers, until Ctrl-C");
    command
        ->add_option("PORT,--port", options->port,
                     "The TCP port to listen on (default: 7575); 0 lets the system choose")
        ->type_name("")
        ->check(CLI::Range(0, 65535).description(""));
    command->add_option("--answers", options->folder, "The folder: a request of type T gets the text of T.json")
        ->required()
        ->type_name("DIR");
    addListenOption(*command, options->address);
    addFaultOptions(*command, *options);
    addLogOption(*command, chosen);
    command->footer(
        "When there is no T.json, the files T.1.json, T.2.json and so on answer in turn. Files are read again for\n"
        "every request. Without a file the answer is resourceNotFound; a file that is not JSON or names an unknown\n"
        "type is reported on standard error and answered with resourceUnavailable. Prints one line for each exchange:\n"
        "time, request type -> answer type, answer bytes, milliseconds.\n"
        "Exit codes:\n"
        "  0   ended by Ctrl-C, SIGTERM or SIGHUP\n"
        "  64  wrong arguments\n"
        "  66  the folder cannot be read\n"
        "  69  the port is not available, or ADDRESS is not this device's\n"
        "  74  standard output cannot be written (requests were answered all the same)");
    command->callback([options, &chosen] {
        requireAtMostAll(*options);
        chosen.run = [options](Output& output) { return serve(*options, output); };
    });
}

}  // namespace OrvuTool
