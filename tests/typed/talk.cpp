// A receiver, a client, a publisher and a listener in one process, for applications without exceptions or run-time type
// information.
#include <atomic>
#include <cstdio>
#include <thread>

#include "orvu/Typed.h"

using namespace Orvu;

namespace {

bool expect(bool holds, const char* what)
{
    if (!holds) std::fprintf(stderr, "not so: %s\n", what);
    return holds;
}

void answerOnAThread(Request<ConfirmationScreen> request)
{
    std::thread([request = std::move(request)]() mutable {
        ConfirmationScreen screen(request->displayName);
        screen.confirmed = true;
        request.answer(screen);
    }).detach();
}

bool asks(Client&& tv)
{
    ServiceSelection selection;
    bool holds = expect(tv.send(selection).ok(), "a selection succeeds");
    selection.serviceContextId = "none";
    holds &= expect(tv.send(selection).reason().is<ServiceNotFoundError>(), "an unknown service is not found");
    const auto list = tv.ask<ServiceList>();
    holds &= expect(list && list->services.at(0)->serviceName == "Canal Um", "there is a list");
    const auto screen = tv.send<ConfirmationScreen>(ConfirmationScreen("phone"));
    holds &= expect(screen && screen->confirmed, "the user agrees");
    holds &= expect(tv.ask<ServiceTime>().reason() == DataTypeResourceNotFound, "nobody knows the time");
    return holds;
}

bool hears()
{
    Publisher publisher("tcp");
    std::atomic<int> heard{0};
    Listener listener;
    listener.on([&](const Service& service) { heard = service.serviceName == "Canal Um" ? 1 : 2; });
    if (!expect(publisher && !publisher.push("nobody listens"), "the publisher is open")) return false;
    if (!expect(listener.listen("127.0.0.1", publisher.port(), ChannelTcp), "the listener listens")) return false;
    Service service;
    service.serviceName = "Canal Um";
    while (heard == 0) {
        publisher.push(service);
        std::this_thread::yield();
    }
    listener.stop();
    return expect(heard == 1, "the listener hears the service");
}

}  // namespace

int main()
{
    Receiver receiver;
    receiver.on([](const ServiceList&) {
        auto list = std::make_unique<ServiceList>();
        append(list->services).serviceName = "Canal Um";
        return list;
    });
    receiver.on([](const ServiceSelection& wanted) -> Answer {
        if (wanted.serviceContextId == "none") return ServiceNotFoundError();
        return SuccessResponse();
    });
    receiver.on(answerOnAThread);
    if (!expect(receiver.listen(0), "the receiver listens")) return 1;
    const bool holds = asks({"127.0.0.1", receiver.port()});
    return hears() && holds ? 0 : 1;
}
