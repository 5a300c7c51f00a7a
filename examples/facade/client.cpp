/// \file
/// A small client over the facade: it prints a receiver's services, selects one of them, and meets an error. Ctrl-C
/// stops it at any time.
///
///     client PORT [HOST]
///
/// The library's own log lines go to standard error; run it with ORVU_LOG=none to turn them off.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <future>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "orvu/Orvu.h"

namespace {

using Orvu::OrvuRestInterface;
using Orvu::Serializable;

/// Every exchange gives a message that is ours to delete.
using Answer = std::unique_ptr<Serializable>;

/// Set once Ctrl-C or SIGTERM came. It is tested before each request.
std::atomic<bool> isStopping{false};

/// What an error is called, such as "serviceNotFound". Failures of the connection arrive as such messages too.
std::string nameOf(const Answer& answer)
{
    return Serializable::dataTypeString(answer->getDataType());
}

/// Why there is no list. If the receiver did not answer, the library made `answer`.
std::string reasonOf(const Answer& answer, const Orvu::ExchangeReport& report)
{
    if (report.phase == Orvu::ExchangePhaseAnswered) return "the receiver says " + nameOf(answer);
    if (report.cancelled) return "cancelled";
    if (report.errorNumber != 0) return std::strerror(report.errorNumber);
    return report.phase == Orvu::ExchangePhaseNoAnswer ? "the receiver closed the connection" : nameOf(answer);
}

/// Asks for the service list. A bare query needs no request object: its type is enough.
std::unique_ptr<Orvu::ServiceList> askForServices(OrvuRestInterface& orvu)
{
    Orvu::ExchangeReport report;
    Answer answer(orvu.sendRequest(Orvu::DataTypeServiceList, report));
    if (answer->getDataType() == Orvu::DataTypeServiceList)
        return std::unique_ptr<Orvu::ServiceList>(static_cast<Orvu::ServiceList*>(answer.release()));
    std::cerr << "client: no list: " << reasonOf(answer, report) << "\n";
    return nullptr;
}

void printServices(const Orvu::ServiceList& list)
{
    std::cout << list.services.size() << " services\n";
    for (const Orvu::Service* service : list.services)
        std::cout << "  " << service->serviceContextId << "  " << service->serviceName << "\n";
}

/// Selects a service. A request that carries data is an object of its class; it stays ours.
void select(OrvuRestInterface& orvu, const std::string& locator)
{
    Orvu::ServiceSelection request;
    request.serviceContextId = locator;
    const Answer answer(orvu.sendRequest(&request));
    std::cout << "selecting " << locator << ": " << nameOf(answer) << "\n";
}

void printCurrentService(OrvuRestInterface& orvu)
{
    const Answer answer(orvu.sendRequest(Orvu::DataTypeCurrentService));
    if (answer->getDataType() == Orvu::DataTypeCurrentService)
        std::cout << "now on " << static_cast<const Orvu::Service&>(*answer).serviceName << "\n";
    else
        std::cout << "no current service: " << nameOf(answer) << "\n";
}

int useReceiver(OrvuRestInterface& orvu, const char* host, int port)
{
    if (!orvu.configureClient(host, port)) {
        std::cerr << "client: nobody answers on port " << port << "\n";
        return 3;
    }
    const std::unique_ptr<Orvu::ServiceList> list = askForServices(orvu);
    if (!list || list->services.empty()) return 1;
    printServices(*list);
    const std::function<void()> steps[] = {
        [&] { printCurrentService(orvu); }, [&] { select(orvu, list->services.back()->serviceContextId); },
        [&] { printCurrentService(orvu); },
        [&] { select(orvu, "9.9.09"); },  // no such service: the answer is an error, by its type
    };
    for (const auto& step : steps)
        if (!isStopping) step();
    return 0;
}

/// Waits for the thread that asks. A signal stops it: the exchange that it is in ends at once, with an error as its
/// answer.
int resultOf(std::future<int> asking, OrvuRestInterface& orvu, const sigset_t& signals)
{
    const timespec now{};
    while (asking.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        if (sigtimedwait(&signals, nullptr, &now) > 0) isStopping = true;
        if (isStopping) orvu.cancelRequests();  // again and again: a request may just begin
    }
    if (!isStopping) return asking.get();
    std::cerr << "client: stopped\n";
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const int port = argc == 2 || argc == 3 ? std::atoi(argv[1]) : 0;
    if (port < 1 || port > 65535) {
        std::cerr << "usage: client PORT [HOST]\n";
        return 64;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any other thread is started

    OrvuRestInterface& orvu = *OrvuRestInterface::getInstance();
    const char* const host = argc == 3 ? argv[2] : "127.0.0.1";
    std::future<int> asking = std::async(std::launch::async, [&] { return useReceiver(orvu, host, port); });
    const int result = resultOf(std::move(asking), orvu, signals);
    OrvuRestInterface::destroyInstance();
    return result;
}
