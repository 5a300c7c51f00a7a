#include <algorithm>
#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "support/Observed.h"
#include "support/RawPeer.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::Optional;

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";

TEST(AThreadOfTheLibrary, HasANameAndBlocksTheSignalsThatAskForSomething)
{
    const Receiver receiver(answerWithSuccess);
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    for (const char* const name : {"orvu-accept", "orvu-worker"}) {
        const auto areTheLibrarys = [name] {
            const std::vector<int> threads = threadsNamed("self", name);
            return !threads.empty() && std::all_of(threads.begin(), threads.end(),
                                                   [](int thread) { return hasTheLibrarysSignals("self", thread); });
        };
        EXPECT_TRUE(eventually(areTheLibrarys)) << name;  // the worker may still come from its callback
    }
}

TEST(AThreadOfTheLibrary, LeavesTheSignalsOfItsCallerAsTheyWere)
{
    sigset_t before;
    pthread_sigmask(SIG_SETMASK, nullptr, &before);
    const Receiver receiver;
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (int number = 1; number < 32; ++number)
        EXPECT_EQ(sigismember(&after, number), sigismember(&before, number)) << number;
}

std::size_t stackOf(const pthread_attr_t& attributes)
{
    std::size_t size = 0;
    pthread_attr_getstacksize(&attributes, &size);
    return size;
}

TEST(AThreadOfTheLibrary, HasThePlatformsDefaultStack)
{
    std::size_t stack = 0;
    {
        const Receiver receiver([&](OrvuRestRequest* request) {
            pthread_attr_t attributes;
            pthread_getattr_np(pthread_self(), &attributes);
            stack = stackOf(attributes);
            pthread_attr_destroy(&attributes);
            answerWithSuccess(request);
        });
        receiver.ask(kRequest);
    }
    pthread_attr_t defaults;
    pthread_getattr_default_np(&defaults);
    EXPECT_GE(stack, stackOf(defaults));
    pthread_attr_destroy(&defaults);
}

TEST(AThreadOfTheLibrary, LeavesNoSignalBehindWhenItsPeerIsGone)
{
    Latch entered;
    Latch gone;
    bool pending = true;
    {
        const Receiver receiver([&](OrvuRestRequest* received) {
            const std::unique_ptr<OrvuRestRequest> request(received);
            entered.open();
            gone.wait();
            SuccessResponse answer;
            EXPECT_EQ(request->sendResponse(&answer), 0);
            sigset_t signals;
            sigpending(&signals);
            pending = sigismember(&signals, SIGPIPE) == 1;
        });
        RawPeer peer = receiver.connect();
        peer.send(frameOf(kRequest));
        entered.wait();
        peer.vanish();
        gone.open();
    }
    EXPECT_FALSE(pending);
}

struct ACallbackThatThrows : testing::Test {
    LogCapture log;
    std::atomic<OrvuRestRequest*> kept{nullptr};
};

TEST_F(ACallbackThatThrows, IsLoggedAndLeavesTheRequestToTheApplication)
{
    const Receiver receiver([&](OrvuRestRequest* request) {
        kept = request;
        throw std::runtime_error("100% wrong");
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kRequest));
    EXPECT_TRUE(log.waitFor("OrvuRestInterface::notifyCallback: ERROR exception from the callback: 100% wrong"));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end (", 1));
    answerWithSuccess(kept);
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST_F(ACallbackThatThrows, MayThrowAnything)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        answerWithSuccess(request);
        throw 42;  // NOLINT(hicpp-exception-baseclass): the library takes whatever comes
    });
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    EXPECT_TRUE(
        log.waitFor("OrvuRestInterface::notifyCallback: ERROR exception from the callback: of an unknown kind"));
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
}

TEST_F(ACallbackThatThrows, DoesNotThrowThroughTheFacade)
{
    const RegisteredHandler handler([](OrvuRestRequest*) { throw std::runtime_error("not today"); });
    OrvuRestRequest request(0, nullptr);
    EXPECT_TRUE(OrvuRestInterface::getInstance()->notifyCallback(&request));
    EXPECT_THAT(log.lines(),
                Contains("OrvuRestInterface::notifyCallback: ERROR exception from the callback: not today"));
    OrvuRestInterface::destroyInstance();
}

void* answerUnknown(OrvuRestRequest* request)
{
    UnknowRequest answer;
    request->sendResponse(&answer);
    delete request;
    return nullptr;
}

void* answerEmptyData(OrvuRestRequest* request)
{
    EmptyData answer;
    request->sendResponse(&answer);
    delete request;
    return nullptr;
}

TEST(ACallback, MayBeReplacedWhileRequestsCome)
{
    const Receiver receiver;
    std::atomic<bool> over{false};
    OrvuRestInterface::getInstance()->registerRequestCallback(answerUnknown);
    std::vector<std::thread> asking;
    for (int i = 0; i < 4; ++i)
        asking.emplace_back([&] {
            for (int turn = 0; turn < 100; ++turn)
                EXPECT_THAT(receiver.ask(kRequest), Optional(testing::AnyOf(kUnknown, kEmptyData)));
            over = true;
        });
    for (int turn = 0; !over; ++turn)
        OrvuRestInterface::getInstance()->registerRequestCallback(turn % 2 == 0 ? answerEmptyData : answerUnknown);
    for (std::thread& thread : asking)
        thread.join();
}

}  // namespace
