#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>

#include "Answers.h"
#include "Commands.h"
#include "Ending.h"
#include "ExitCode.h"
#include "Output.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::OrvuRestInterface;
using Orvu::OrvuRestRequest;
using Orvu::Serializable;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kLastAnswersMilliseconds = 1000;

struct ServeOptions {
    int port = 0;
    std::string folder;
    std::string address;  // empty for every interface
};

struct Receiver {
    Answers answers;
    Output& output;
};
Receiver* receiver = nullptr;  // set before the first request; never deleted, since a late one may outlive main()

std::string timeNow()
{
    const auto now = std::chrono::system_clock::now();
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    char day[32];
    char text[40];
    std::strftime(day, sizeof day, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(text, sizeof text, "%s.%03d", day, static_cast<int>(sinceEpoch.count() % 1000));
    return text;
}

std::string exchangeLine(DataType request, DataType answer, int bytes, Milliseconds took)
{
    char tail[80];
    if (bytes < 0)
        std::snprintf(tail, sizeof tail, " not taken %.2f ms\n", took.count());
    else
        std::snprintf(tail, sizeof tail, " %d bytes %.2f ms\n", bytes, took.count());
    return timeNow() + " " + Serializable::dataTypeString(request) + " -> " + Serializable::dataTypeString(answer) +
           tail;
}

void* answerRequest(OrvuRestRequest* received)
{
    const auto begin = std::chrono::steady_clock::now();
    const std::unique_ptr<OrvuRestRequest> request(received);
    const DataType type = request->getData()->getDataType();
    const std::unique_ptr<Serializable> answer = receiver->answers.answerTo(type);
    const int bytes = request->sendResponse(answer.get());
    receiver->output.write(exchangeLine(type, answer->getDataType(), bytes, std::chrono::steady_clock::now() - begin));
    return nullptr;
}

int serve(const ServeOptions& options, Output& output)
{
    receiver = new Receiver{Answers(options.folder), output};
    const std::string fault = receiver->answers.checkFolder();
    if (!fault.empty()) {
        complain(options.folder + ": " + fault);
        return ExitNoInput;
    }
    Ending ending;
    OrvuRestInterface& library = *OrvuRestInterface::getInstance();
    library.registerRequestCallback(answerRequest);
    library.setListenAddress(options.address);
    if (!library.startListenRequests(options.port)) {
        complain("port " + std::to_string(options.port) + " is not available" + onAddress(options.address));
        return ExitNoPort;
    }
    output.write("listening on port " + std::to_string(library.requestPort()) +
                 (options.address.empty() ? "" : " of " + options.address) + ", answers from " + options.folder + "\n");
    ending.wait();
    OrvuRestInterface::destroyInstance(kLastAnswersMilliseconds);
    return ExitOk;
}

}  // namespace

void addServe(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<ServeOptions>();
    CLI::App* command = app.add_subcommand("serve", "Answer requests from a folder of answers, until Ctrl-C");
    command->add_option("PORT", options->port, "The TCP port to listen on; 0 for one of the system's choice")
        ->required()
        ->type_name("")
        ->check(CLI::Range(0, 65535).description(""));
    command->add_option("--answers", options->folder, "The folder: a request of type T gets the text of T.json")
        ->required()
        ->type_name("DIR");
    addListenOption(*command, options->address);
    addLogOption(*command, chosen);
    command->footer(
        "A file is read anew for every request. Without one the answer is resourceNotFound; one that is no JSON or "
        "names\n"
        "an unknown type is reported on standard error and answered resourceUnavailable. Each exchange is one line: "
        "time,\n"
        "request type -> answer type, answer bytes, milliseconds.\n"
        "Exit codes:\n"
        "  0   ended by Ctrl-C, SIGTERM or SIGHUP\n"
        "  64  wrong arguments\n"
        "  66  the folder cannot be read\n"
        "  69  the port is not available, or ADDRESS is not this device's\n"
        "  74  standard output cannot be written (requests were answered all the same)");
    command->callback(
        [options, &chosen] { chosen.run = [options](Output& output) { return serve(*options, output); }; });
}

}  // namespace OrvuTool
