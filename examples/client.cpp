/// \file
/// A client: it prints a receiver's services, its guide and what it can do, selects a service, asks to pair, and meets
/// errors. Ctrl-C stops it at any time.
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
#include <string>

#include "orvu/Typed.h"

namespace {

/// Set once Ctrl-C or SIGTERM came. It is tested before each request.
std::atomic<bool> isStopping{false};

/// Why there is no message: in the receiver's words, or in the system's.
template <class Message>
std::string reasonOf(const Orvu::Reply<Message>& reply)
{
    if (reply.phase() == Orvu::ExchangePhaseAnswered) return std::string("the receiver says ") + reply.reason().text();
    if (reply.isCancelled()) return "cancelled";
    if (reply.report().errorNumber != 0) return std::strerror(reply.report().errorNumber);
    return reply.phase() == Orvu::ExchangePhaseNoAnswer ? "the receiver closed the connection" : reply.reason().text();
}

/// Asks for a message and prints it, or why there is none.
template <class Message>
void show(Orvu::Client& tv, const char* what, std::string (*textOf)(const Message&))
{
    const auto reply = tv.ask<Message>();
    std::cout << what << ": " << (reply ? textOf(*reply) : reasonOf(reply)) << "\n";
}

void select(Orvu::Client& tv, const std::string& locator)
{
    Orvu::ServiceSelection selection;
    selection.serviceContextId = locator;
    const auto selected = tv.send<Orvu::SuccessResponse>(selection);
    std::cout << "selecting " << locator << ": " << (selected ? "done" : reasonOf(selected)) << "\n";
}

/// Waits, however long the user takes: a confirmation is the one request without a time-out.
void askToPair(Orvu::Client& tv, const std::string& device)
{
    const auto answer = tv.send<Orvu::ConfirmationScreen>(Orvu::ConfirmationScreen(device));
    std::cout << "pairing with " << device << ": "
              << (answer ? answer->confirmed ? "agreed" : "not agreed" : reasonOf(answer)) << "\n";
}

int useReceiver(Orvu::Client& tv)
{
    const auto list = tv.ask<Orvu::ServiceList>();
    if (!list) {
        std::cerr << "client: no list: " << reasonOf(list) << "\n";
        return list.mayHaveArrived() ? 1 : 3;
    }
    std::cout << list->services.size() << " services\n";
    for (const Orvu::Service* service : list->services)
        std::cout << "  " << service->serviceContextId << "  " << service->serviceName << "\n";
    const std::function<void()> steps[] = {
        [&] { select(tv, list->services.empty() ? "current-service" : list->services.back()->serviceContextId); },
        [&] { show<Orvu::Service>(tv, "now on", [](const auto& service) { return service.serviceName; }); },
        [&] { select(tv, "9.9.09"); },  // no such service: the answer is an error, by its type
        [&] {
            show<Orvu::EventInfoList>(
                tv, "the guide", [](const auto& guide) { return guide.present ? guide.present->name : "nothing"; });
        },
        [&] { show<Orvu::PlatformCapabilities>(tv, "the model", [](const auto& can) { return can.model; }); },
        [&] { askToPair(tv, "Celular da Ana"); },
        [&] { show<Orvu::ServiceTime>(tv, "the time", [](const auto& time) { return time.time; }); },
    };
    for (const auto& step : steps)
        if (!isStopping) step();
    return isStopping ? 1 : 0;
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

    Orvu::Client tv(argc == 3 ? argv[2] : "127.0.0.1", port);
    std::future<int> asking = std::async(std::launch::async, [&] { return useReceiver(tv); });
    const timespec now{};
    while (asking.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        if (sigtimedwait(&signals, nullptr, &now) > 0) isStopping = true;
        if (isStopping) tv.cancel();  // again and again: a request may just begin
    }
    return asking.get();
}
