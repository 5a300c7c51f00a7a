#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Observed.h"
#include "wire/ClientFixture.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using std::chrono::milliseconds;
using testing::AllOf;
using testing::Ge;
using testing::Lt;
using testing::Optional;

// These tests wait for the library's own time-outs. What takes the same time runs at the same time, so that few tests
// wait.

namespace {

/// How long `action` takes.
milliseconds timeOf(const std::function<void()>& action)
{
    const auto begin = Clock::now();
    action();
    return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

const auto isTheTimeOut = AllOf(Ge(milliseconds(4990)), Lt(milliseconds(8000)));

/// A peer's system that is asked again and again takes a few bytes more, although its program reads none.
const auto isTheTimeOutAfterTheLastByte = AllOf(Ge(milliseconds(4990)), Lt(milliseconds(15000)));

class AtTheSameTime {
public:
    ~AtTheSameTime()
    {
        for (std::thread& thread : threads_)
            thread.join();
    }
    void run(std::function<void()> action) { threads_.emplace_back(std::move(action)); }

private:
    std::vector<std::thread> threads_;
};

TEST(AnIdleWorker, EndsAfterTenSeconds)
{
    const Receiver receiver;
    EXPECT_THAT(receiver.ask(R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})"), Optional(kSuccess));
    const milliseconds idle =
        timeOf([] { EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-worker").empty(); })); });
    EXPECT_THAT(idle, AllOf(Ge(milliseconds(9900)), Lt(milliseconds(15000))));
}

TEST(AServer, WaitsFiveSecondsForTheNextByte)
{
    const Receiver receiver;
    const std::string frame = frameOf(R"({"HEADER":"serviceTime","time":"now"})");
    AtTheSameTime peers;
    for (const std::size_t size : {0, 3})
        peers.run([&, size] {
            RawPeer peer = receiver.connect();
            peer.send(frame.substr(0, size));
            EXPECT_THAT(timeOf([&] { EXPECT_EQ(peer.readToEnd(), ""); }), isTheTimeOut);
        });
    peers.run([&] {
        RawPeer peer = receiver.connect();
        peer.send(frame.substr(0, 4));
        EXPECT_THAT(timeOf([&] { EXPECT_THAT(peer.readFrame(), Optional(kEmptyData)); }), isTheTimeOut);
    });
    peers.run([&] {
        RawPeer peer = receiver.connect();
        peer.send(frame.substr(0, 20));  // which is not JSON: an UnknowRequest for the application
        EXPECT_THAT(timeOf([&] { EXPECT_THAT(peer.readFrame(), Optional(kSuccess)); }), isTheTimeOut);
    });
}

TEST(AServer, WaitsThirtySecondsInAllForARequestThatTricklesIn)
{
    const Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(lengthBytes(1000));
    const milliseconds time = timeOf([&] {
        pollfd answer{peer.fd(), POLLIN, 0};
        while (poll(&answer, 1, 1000) == 0)
            peer.send(" ");  // in time, each of them
        EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
    });
    EXPECT_THAT(time, AllOf(Ge(milliseconds(29990)), Lt(milliseconds(34000))));
}

TEST(AnAnswer, WaitsFiveSecondsForAPeerThatStoppedReading)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    const RawPeer peer(ends[0]);
    OrvuRestRequest request(ends[1], nullptr);
    ServiceTime answer;
    answer.time.assign(4u << 20, 'x');  // more than there is room for, and soon written
    EXPECT_THAT(timeOf([&] { EXPECT_EQ(request.sendResponse(&answer), -1); }), isTheTimeOut);
}

TEST(AnAnswer, WaitsFiveSecondsAfterTheLastByteThatThePeersSystemTook)
{
    Latch answered;
    const Receiver receiver([&](OrvuRestRequest* received) {
        const std::unique_ptr<OrvuRestRequest> request(received);
        ServiceTime answer;
        answer.time.assign(32u << 20, 'x');
        EXPECT_THAT(timeOf([&] { EXPECT_EQ(request->sendResponse(&answer), -1); }), isTheTimeOutAfterTheLastByte);
        answered.open();
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kSuccess));
    answered.wait();
}

using AWaitingClient = ARequestClient;

TEST_F(AWaitingClient, WaitsFiveSecondsForTheNextByteButForAConfirmationWithoutEnd)
{
    const std::string frame = frameOf(kSuccess);
    std::vector<RawPeer> silent;
    AtTheSameTime asking;
    const auto expectEmptyDataInTime = [](Serializable& request) {
        std::unique_ptr<Serializable> answer;
        EXPECT_THAT(timeOf([&] { answer.reset(client().sendRequest(&request)); }), isTheTimeOut);
        EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
    };
    for (const std::size_t size : {0, 3, 4, 20}) {
        asking.run([&] {
            SuccessResponse request;
            expectEmptyDataInTime(request);
        });
        silent.push_back(peer.accept());
        silent.back().send(frame.substr(0, size));
    }
    asking.run([&] {
        ConfirmationScreen disposing("phone");
        disposing.dispose = true;
        expectEmptyDataInTime(disposing);
    });
    silent.push_back(peer.accept());
    asking.run([&] {
        ConfirmationScreen request("phone");
        std::unique_ptr<Serializable> answer;
        EXPECT_THAT(timeOf([&] { answer.reset(client().sendRequest(&request)); }), Ge(milliseconds(4990)));
        EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
    });
    RawPeer user = peer.accept();
    user.readFrame();
    for (RawPeer& connection : silent) {
        connection.readFrame();
        EXPECT_EQ(connection.readToEnd(), "");  // until its client has given up
    }
    user.send(frame);
}

TEST_F(AWaitingClient, GivesUpConnectingAndSendingAfterFiveSeconds)
{
    RawListener full(0);
    const RawPeer waiting = RawPeer::connectedTo(full.port());  // takes the place of one not yet accepted
    RawPeer notReading(-1);
    AtTheSameTime asking;
    asking.run([&] {
        ServiceTime request;
        request.time.assign(16u << 20, 'x');
        ExchangeReport report;
        std::unique_ptr<Serializable> answer;
        EXPECT_THAT(timeOf([&] { answer.reset(client().sendRequest(&request, report)); }),
                    isTheTimeOutAfterTheLastByte);
        EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
        EXPECT_EQ(report.phase, ExchangePhaseNotSent);
        EXPECT_EQ(report.errorNumber, ETIMEDOUT);
        EXPECT_TRUE(report.mayHaveArrived);
    });
    notReading = peer.accept();
    asking.run([&] {
        EXPECT_THAT(timeOf([&] { EXPECT_FALSE(client().configureClient("127.0.0.1", full.port())); }), isTheTimeOut);
    });
    while (!isBeingOpened(full.port()))
        std::this_thread::yield();
    asking.run([] {
        SuccessResponse request;
        ExchangeReport report;
        const std::unique_ptr<Serializable> answer(client().sendRequest(&request, report));
        EXPECT_EQ(report.phase, ExchangePhaseNotConnected);
        EXPECT_EQ(report.errorNumber, ETIMEDOUT);
        EXPECT_THAT(milliseconds(report.connectingMicroseconds / 1000), isTheTimeOut);
    });
}

void ignore(int) {}

/// A process with a timer that interrupts its calls a thousand times a second.
class InterruptingTimer {
public:
    InterruptingTimer()
    {
        struct sigaction action {};
        action.sa_handler = ignore;  // and no SA_RESTART
        sigaction(SIGALRM, &action, &before_);
        const itimerval often{{0, 1000}, {0, 1000}};
        setitimer(ITIMER_REAL, &often, nullptr);
    }
    ~InterruptingTimer()
    {
        const itimerval never{};
        setitimer(ITIMER_REAL, &never, nullptr);
        sigaction(SIGALRM, &before_, nullptr);
    }

private:
    struct sigaction before_ {};
};

/// Blocks the timer's signal in the test's other threads, so that it comes to the one that calls the library.
class SignalsElsewhere {
public:
    SignalsElsewhere() { mask(SIG_BLOCK); }
    ~SignalsElsewhere() { mask(SIG_UNBLOCK); }

private:
    static void mask(int how)
    {
        sigset_t alarm;
        sigemptyset(&alarm);
        sigaddset(&alarm, SIGALRM);
        pthread_sigmask(how, &alarm, nullptr);
    }
};

TEST(AnInterruptedProcess, FinishesItsExchanges)
{
    const std::string large(8u << 20, 'x');
    std::unique_ptr<SignalsElsewhere> inTheOthers = std::make_unique<SignalsElsewhere>();
    RawListener peer;
    std::thread acting([&] {
        for (int i = 0; i < 5; ++i) {
            RawPeer connection = peer.accept();
            const std::optional<std::string> asked = connection.readFrame();
            if (!asked) continue;  // the connection that tested the peer
            pollfd more{connection.fd(), POLLIN, 0};
            poll(&more, 1, 50);  // fifty interruptions
            connection.send(frameOf(*asked));
        }
    });
    inTheOthers.reset();
    const InterruptingTimer timer;
    ASSERT_TRUE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", peer.port()));
    for (int i = 0; i < 4; ++i) {
        ServiceTime request;
        request.time = large;
        const std::unique_ptr<Serializable> answer(OrvuRestInterface::getInstance()->sendRequest(&request));
        const auto* const echo = dynamic_cast<ServiceTime*>(answer.get());
        ASSERT_NE(echo, nullptr);
        EXPECT_TRUE(echo->time == large);
    }
    acting.join();
    OrvuRestInterface::destroyInstance();
}

TEST(AnInterruptedProcess, KeepsTheTimeOutOfReading)
{
    RawListener peer;
    ASSERT_TRUE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", peer.port()));
    const InterruptingTimer timer;
    SuccessResponse request;
    std::unique_ptr<Serializable> answer;
    EXPECT_THAT(timeOf([&] { answer.reset(OrvuRestInterface::getInstance()->sendRequest(&request)); }), isTheTimeOut);
    EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
    OrvuRestInterface::destroyInstance();
}

TEST(AnInterruptedProcess, KeepsTheTimeOutOfConnecting)
{
    RawListener full(0);
    const RawPeer waiting = RawPeer::connectedTo(full.port());  // takes the place of one not yet accepted
    const InterruptingTimer timer;
    bool connected = true;
    EXPECT_THAT(
        timeOf([&] { connected = OrvuRestInterface::getInstance()->configureClient("127.0.0.1", full.port()); }),
        isTheTimeOut);
    EXPECT_FALSE(connected);
    OrvuRestInterface::destroyInstance();
}

}  // namespace
