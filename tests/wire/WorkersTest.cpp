#include <algorithm>
#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <set>
#include <spawn.h>
#include <string>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Observed.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Each;
using testing::ElementsAre;
using testing::Optional;

namespace {

constexpr char kWorker[] = "orvu-worker";
const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";

long thisThread()
{
    return syscall(SYS_gettid);
}

std::size_t workers()
{
    return threadsNamed("self", kWorker).size();
}

/// The library as request server whose callbacks wait until released.
class BusyReceiver {
public:
    /// Asks on `count` connections; returns when each has its callback.
    void occupy(std::size_t count)
    {
        const std::size_t before = peers_.size();
        for (std::size_t i = 0; i < count; ++i) {
            peers_.push_back(receiver_.connect());
            peers_.back().send(frameOf(kRequest));
        }
        ASSERT_TRUE(eventually([&] { return entered_ == before + count; }));
    }
    void release() { released_.open(); }
    std::vector<std::optional<std::string>> answers()
    {
        std::vector<std::optional<std::string>> texts;
        for (RawPeer& peer : peers_)
            texts.push_back(peer.readFrame());
        return texts;
    }

private:
    std::atomic<std::size_t> entered_{0};
    Latch released_;
    std::vector<RawPeer> peers_;
    Receiver receiver_{[this](OrvuRestRequest* request) {
        ++entered_;
        released_.wait();
        answerWithSuccess(request);
    }};
};

TEST(AWorker, ServesOneConnectionAfterTheOther)
{
    std::mutex mutex;
    std::set<long> threads;
    const Receiver receiver([&](OrvuRestRequest* request) {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            threads.insert(thisThread());
        }
        answerWithSuccess(request);
    });
    constexpr int kRequests = 100;
    for (int i = 0; i < kRequests; ++i)
        ASSERT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    EXPECT_LT(threads.size(), kRequests / 2);  // one that has answered may not be idle yet when the next request comes
}

TEST(ARequest, NeverWaitsForTheCallbackOfAnotherOne)
{
    Latch decided;
    const Receiver receiver([&](OrvuRestRequest* request) {
        if (request->getData()->getDataType() == DataTypeConfirmationScreen) decided.wait();
        answerWithSuccess(request);
    });
    ConfirmationScreen screen("phone");
    const std::unique_ptr<char, decltype(&free)> text(screen.serialize(), free);
    std::vector<RawPeer> screens;
    for (int i = 0; i < 200; ++i) {
        screens.push_back(receiver.connect());
        screens.back().send(frameOf(text.get()));
    }
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    decided.open();
    for (RawPeer& peer : screens)
        EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(Workers, OfWhichAtMostEightIdle)
{
    BusyReceiver receiver;
    receiver.occupy(40);
    EXPECT_EQ(workers(), 40u);
    receiver.release();
    EXPECT_THAT(receiver.answers(), Each(Optional(kSuccess)));
    EXPECT_TRUE(eventually([] { return workers() == 8; }));
}

TEST(Workers, DoNotIdleAnyMoreWhenListeningHasStopped)
{
    const Receiver receiver;
    for (int i = 0; i < 10; ++i)
        ASSERT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    OrvuRestInterface::getInstance()->stopListenRequests();
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
}

TEST(Workers, DoNotIdleAnyMoreWhenTheFacadeIsDestroyed)
{
    const Receiver receiver;
    for (int i = 0; i < 10; ++i)
        ASSERT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    OrvuRestInterface::destroyInstance();
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
}

TEST(Workers, ThatAreBusyWhenListeningStopsEndAfterTheirCallback)
{
    BusyReceiver receiver;
    receiver.occupy(3);
    OrvuRestInterface::getInstance()->stopListenRequests();
    EXPECT_EQ(workers(), 3u);
    receiver.release();
    EXPECT_THAT(receiver.answers(), Each(Optional(kSuccess)));
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
}

TEST(AWorker, MayStopListeningFromItsCallback)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        OrvuRestInterface::getInstance()->stopListenRequests();
        answerWithSuccess(request);
    });
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
}

TEST(AWorker, IdlesAgainWhenListeningHasStartedAgain)
{
    Receiver receiver;
    OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
    for (int i = 0; i < 3; ++i) {
        facade.stopListenRequests();
        ASSERT_TRUE(eventually([] { return workers() == 0; }));  // one that still ends could idle once it has started
        ASSERT_TRUE(facade.startListenRequests(receiver.port()));
        EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    }
    EXPECT_TRUE(eventually([] { return workers() == 1; }));
}

/// What a callback finds its thread to be.
struct ThreadState {
    std::string name;
    bool isBlocked;  // SIGUSR1
    int cancellation;
};

ThreadState changedState()
{
    ThreadState found;
    char name[16];
    pthread_getname_np(pthread_self(), name, sizeof name);
    found.name = name;
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR1);
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &signals, &before);
    found.isBlocked = sigismember(&before, SIGUSR1) == 1;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &found.cancellation);
    pthread_setname_np(pthread_self(), "the-callbacks");
    return found;
}

TEST(AWorker, HasItsNameAndSignalsAndCancellationBackForTheNextRequest)
{
    std::mutex mutex;
    std::vector<ThreadState> states;
    const Receiver receiver([&](OrvuRestRequest* request) {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            states.push_back(changedState());
        }
        answerWithSuccess(request);
    });
    for (int i = 0; i < 20; ++i)
        ASSERT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    for (const ThreadState& state : states) {
        EXPECT_EQ(state.name, kWorker);
        EXPECT_FALSE(state.isBlocked);
        EXPECT_EQ(state.cancellation, PTHREAD_CANCEL_ENABLE);
    }
}

TEST(ACallback, HasTheSignalMaskOfWhoStartedListening)
{
    sigset_t ours;
    pthread_sigmask(SIG_SETMASK, nullptr, &ours);
    sigset_t started = ours;
    sigaddset(&started, SIGUSR2);
    pthread_sigmask(SIG_SETMASK, &started, nullptr);
    std::vector<int> different;
    {
        const Receiver receiver([&](OrvuRestRequest* request) {
            sigset_t signals;
            pthread_sigmask(SIG_SETMASK, nullptr, &signals);
            for (int number = 1; number < 32; ++number)
                if (sigismember(&signals, number) != sigismember(&started, number)) different.push_back(number);
            answerWithSuccess(request);
        });
        pthread_sigmask(SIG_SETMASK, &ours, nullptr);
        EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    }
    EXPECT_THAT(different, ElementsAre());
}

TEST(AProgramStartedFromACallback, CanBeEnded)
{
    std::atomic<pid_t> child{0};
    const Receiver receiver([&](OrvuRestRequest* request) {
        char program[] = "/bin/sleep", seconds[] = "60";
        char* const arguments[] = {program, seconds, nullptr};
        pid_t started = 0;
        if (posix_spawn(&started, program, nullptr, nullptr, arguments, environ) == 0) child = started;
        answerWithSuccess(request);
    });
    EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
    ASSERT_GT(child, 0);
    kill(child, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

volatile std::sig_atomic_t handled = 0;

TEST(AFaultInACallback, ReachesTheApplicationsHandler)
{
    for (const int fault : {SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS}) {
        struct sigaction handler {};
        struct sigaction before {};
        handler.sa_handler = [](int number) { handled = number; };
        sigaction(fault, &handler, &before);
        sig_atomic_t seen = 0;
        {
            const Receiver receiver([&](OrvuRestRequest* request) {
                pthread_kill(pthread_self(), fault);
                seen = handled;
                answerWithSuccess(request);
            });
            EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
        }
        EXPECT_EQ(seen, fault);
        sigaction(fault, &before, nullptr);
    }
}

TEST(ACallback, MayEndItsThread)
{
    const std::vector<int> descriptors = openDescriptors();
    {
        const Receiver receiver([](OrvuRestRequest* request) {
            answerWithSuccess(request);
            pthread_exit(nullptr);
        });
        for (int i = 0; i < 10; ++i)
            EXPECT_THAT(receiver.ask(kRequest), Optional(kSuccess));
        EXPECT_TRUE(eventually([] { return workers() == 0; }));
        EXPECT_TRUE(OrvuRestInterface::destroyInstance(0));
    }
    EXPECT_EQ(openDescriptors(), descriptors);
}

/// A service whose writing ends the thread that does it.
class LastService : public Service {
public:
    char* serialize() override { pthread_exit(nullptr); }
};

TEST(ACallback, MayEndItsThreadWhileItsAnswerIsWritten)
{
    const Receiver receiver([](OrvuRestRequest* received) {
        const std::unique_ptr<OrvuRestRequest> request(received);
        ServiceList answer;
        answer.services.push_back(new LastService);
        request->sendResponse(&answer);
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kRequest));
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
    EXPECT_TRUE(OrvuRestInterface::destroyInstance(0));
}

TEST(ACallback, MayBeCancelled)
{
    Latch entered;
    std::atomic<pthread_t> thread{};
    const Receiver receiver([&](OrvuRestRequest* received) {
        const std::unique_ptr<OrvuRestRequest> request(received);
        thread = pthread_self();
        entered.open();
        for (;;)
            pthread_testcancel();
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kRequest));
    entered.wait();
    pthread_cancel(thread);
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
}

}  // namespace
