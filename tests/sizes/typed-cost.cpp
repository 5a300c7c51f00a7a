#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "orvu/Typed.h"

/// orvu-typed-cost facade|typed COUNT: asks a receiver of its own for the time, COUNT times; both sides are written
/// over the facade, with an ExchangeReport, or over the typed interface. scripts/typed-cost counts the instructions.

using namespace Orvu;

namespace {

const char* const kTime = "2026-11-21T20:30:00-03:00";

void* answerTime(OrvuRestRequest* received)
{
    const std::unique_ptr<OrvuRestRequest> request(received);
    if (request->getData()->getDataType() != DataTypeServiceTime) return nullptr;
    ServiceTime time;
    time.time = kTime;
    request->sendResponse(&time);
    return nullptr;
}

/// Whether every exchange gave the time.
bool useFacade(int count)
{
    OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
    facade.registerRequestCallback(answerTime);
    if (!facade.startListenRequests(0) || !facade.configureClient("127.0.0.1", facade.requestPort())) return false;
    for (int i = 0; i < count; ++i) {
        ServiceTime request;
        ExchangeReport report;
        const std::unique_ptr<Serializable> answer(facade.sendRequest(&request, report));
        if (!answer || answer->getDataType() != DataTypeServiceTime) return false;
        if (static_cast<const ServiceTime&>(*answer).time != kTime) return false;
    }
    return true;
}

bool useTyped(int count)
{
    Receiver receiver;
    receiver.on([](const ServiceTime&) {
        ServiceTime time;
        time.time = kTime;
        return time;
    });
    if (!receiver.listen(0)) return false;
    Client tv("127.0.0.1", receiver.port());
    if (!tv.isReachable()) return false;
    for (int i = 0; i < count; ++i) {
        const auto time = tv.ask<ServiceTime>();
        if (!time || time->time != kTime) return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string way = argc == 3 ? argv[1] : "";
    if (way != "facade" && way != "typed") {
        std::cerr << "usage: orvu-typed-cost facade|typed COUNT\n";
        return 64;
    }
    const int count = std::atoi(argv[2]);
    return (way == "facade" ? useFacade(count) : useTyped(count)) ? 0 : 1;
}
