#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "orvu/ExchangeReport.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "stress/StressTime.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

/// Every call of the facade at random, on many threads at once, each on what getInstance() gives at that time. The
/// thread sanitizer sees whether they get into each other's way.

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";

OrvuRestInterface& facade()
{
    return *OrvuRestInterface::getInstance();
}

void* answer(OrvuRestRequest* received)
{
    const std::unique_ptr<OrvuRestRequest> request(received);
    SuccessResponse success;
    if (!request->isPeerGone()) request->sendResponse(&success);
    return nullptr;
}

void* destroyAndAnswer(OrvuRestRequest* received)
{
    OrvuRestInterface::destroyInstance(1);
    return answer(received);
}

/// One thread that calls whatever chance says.
class Caller {
public:
    Caller(unsigned seed, const std::vector<int>& ports) : random_(seed), ports_(ports) {}

    void callOne() { kCalls[upTo(kCalls.size())](*this); }

private:
    using Call = void (*)(Caller&);
    static const std::vector<Call> kCalls;

    std::size_t upTo(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }
    int port() { return ports_[upTo(ports_.size())]; }

    void create(const char* protocol)
    {
        const std::unique_ptr<SocketServerInfo> info(facade().createServer(protocol));
        if (info) handler_ = info->handler;
    }
    void push(int handler)
    {
        unsigned char bytes[] = "a message";
        facade().sendMessage(handler, bytes, sizeof bytes);
    }

    std::mt19937 random_;
    const std::vector<int>& ports_;
    int handler_ = 0;
};

const std::vector<Caller::Call> Caller::kCalls = {
    [](Caller&) { facade().registerRequestCallback(answer); },
    [](Caller& caller) { facade().registerRequestCallback(caller.upTo(10) == 0 ? destroyAndAnswer : answer); },
    [](Caller&) { facade().registerLogCallback(nullptr); },
    [](Caller&) { OrvuRestInterface::log("a line"); },
    [](Caller& caller) { facade().startListenRequests(caller.port()); },
    [](Caller&) { facade().startListenRequests(0); },
    [](Caller&) { facade().stopListenRequests(); },
    [](Caller& caller) { facade().setListenAddress(caller.upTo(2) == 0 ? "" : "127.0.0.1"); },
    [](Caller&) { EXPECT_GE(facade().requestPort(), 0); },
    [](Caller&) {
        auto request = std::make_unique<OrvuRestRequest>(-1, nullptr);
        if (facade().notifyCallback(request.get())) static_cast<void>(request.release());
    },
    [](Caller& caller) { facade().configureClient("127.0.0.1", caller.port()); },
    [](Caller&) { facade().configureClient("127.0.0.1", facade().requestPort()); },
    [](Caller&) {
        ServiceTime request;
        const std::unique_ptr<Serializable> got(facade().sendRequest(&request));
        EXPECT_NE(got, nullptr);
    },
    [](Caller&) {
        const std::unique_ptr<Serializable> got(facade().sendRequest(DataTypeServiceList));
        EXPECT_NE(got, nullptr);
    },
    [](Caller&) {
        ExchangeReport report;
        std::string text;
        report.receivedText = &text;
        const std::unique_ptr<Serializable> got(facade().sendRequest(DataTypeServiceTime, report));
        EXPECT_NE(got, nullptr);
        EXPECT_EQ(report.receivedText, &text);
    },
    [](Caller&) { facade().cancelRequests(); },
    [](Caller& caller) {
        ExchangeReport report;
        report.group = &caller;
        SuccessResponse request;
        const std::unique_ptr<Serializable> got(facade().sendRequest("127.0.0.1", caller.port(), &request, report));
        EXPECT_NE(got, nullptr);
        EXPECT_EQ(report.group, &caller);
    },
    [](Caller& caller) { facade().isReachable("127.0.0.1", caller.port(), &caller); },
    [](Caller& caller) { facade().cancelRequests(&caller); },
    [](Caller& caller) { facade().setSocketsPortsRange(0, static_cast<int>(caller.upTo(3))); },
    [](Caller& caller) { caller.create("tcp"); },
    [](Caller& caller) { caller.create("websocket"); },
    [](Caller&) { const std::unique_ptr<SocketServerInfo> info(facade().createServer("tcp", 0, 0)); },
    [](Caller& caller) { facade().stopServer(caller.handler_); },
    [](Caller&) { facade().stopAllServers(); },
    [](Caller& caller) { caller.push(caller.handler_); },
    [](Caller& caller) { caller.push(0); },
    [](Caller&) { EXPECT_FALSE(facade().getCurrentIpAddress().empty()); },
    [](Caller& caller) {
        if (caller.upTo(5) == 0) OrvuRestInterface::destroyInstance();
    },
    [](Caller& caller) {
        if (caller.upTo(5) == 0) OrvuRestInterface::destroyInstance(static_cast<int>(caller.upTo(3)));
    },
};

TEST(EveryCall, MayBeMadeByAnyThreadAtAnyTime)
{
    const PortLease first;
    const PortLease second;
    const std::vector<int> ports{first.port(), second.port()};
    const std::vector<int> descriptors = openDescriptors();
    {
        const auto end = Clock::now() + stressTime();
        std::vector<std::thread> threads;
        for (unsigned seed = 1; seed <= 8; ++seed)
            threads.emplace_back([seed, end, &ports] {
                Caller caller(seed, ports);
                while (Clock::now() < end)
                    caller.callOne();
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_TRUE(OrvuRestInterface::destroyInstance(30 * 1000));
    }
    {
        const Receiver receiver;
        EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    }
    for (const char* const name : {"orvu-accept", "orvu-reader", "orvu-worker"})
        EXPECT_TRUE(eventually([name] { return threadsNamed("self", name).empty(); })) << name;
    EXPECT_EQ(openDescriptors(), descriptors);
}

TEST(ListeningForRequests, MayStartAndStopWhileAnotherThreadDestroysTheFacade)
{
    const PortLease lease;
    const auto end = Clock::now() + stressTime() / 8;
    std::thread listening([&] {
        while (Clock::now() < end) {
            facade().startListenRequests(lease.port());
            facade().stopListenRequests();
        }
    });
    while (Clock::now() < end)
        OrvuRestInterface::destroyInstance();
    listening.join();
    const Receiver receiver;
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
}

}  // namespace
