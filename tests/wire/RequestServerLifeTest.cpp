#include <chrono>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

#include "orvu/OrvuRestInterface.h"
#include "support/BuiltProgram.h"
#include "transport/OrvuRestServerSocket.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

using Clock = std::chrono::steady_clock;

bool canConnect(int port)
{
    try {
        RawPeer::connectedTo(port);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

TEST(ARunningServer, ChangesNothingWhenItIsStartedAgain)
{
    LogCapture log;
    const Receiver receiver;
    EXPECT_TRUE(OrvuRestServerSocket::getInstance()->start());
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
    EXPECT_EQ(log.count("OrvuRestServerSocket::serverThread -- init"), 1);
}

TEST(ARunningServer, IsStoppedByBeingConfigured)
{
    LogCapture log;
    const Receiver receiver;
    const PortLease other;
    EXPECT_TRUE(OrvuRestServerSocket::getInstance()->configure(other.port()));
    EXPECT_EQ(log.count("OrvuRestServerSocket::stop: Stopping server"), 1);
    EXPECT_FALSE(canConnect(receiver.port()));
    EXPECT_FALSE(canConnect(other.port()));
}

TEST(ARunningServer, LogsItsEnd)
{
    LogCapture log;
    const Receiver receiver;
    ASSERT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread -- init"));
    EXPECT_TRUE(OrvuRestInterface::getInstance()->stopListenRequests());
    EXPECT_TRUE(areInOrder(log.lines(), {"stopListenRequests", "OrvuRestServerSocket::stop: Stopping server",
                                         "OrvuRestServerSocket::serverThread: Server loop end!",
                                         "OrvuRestServerSocket::serverThread -- end"}));
}

TEST(ARunningServer, LogsAFailedAcceptWithMinusOne)
{
    LogCapture log;
    const Receiver receiver;
    shutdown(listenerOn(receiver.port()), SHUT_RDWR);  // as stopping does: the accept that waits fails
    EXPECT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread: clientSockfd: -1"));
}

TEST(ARunningServer, StopsAndStartsAgainOnTheSamePort)
{
    const Receiver receiver;
    RawPeer idle = receiver.connect();
    for (int round = 0; round < 50; ++round) {
        ASSERT_THAT(receiver.ask(kSuccess), Optional(kSuccess)) << round;
        ASSERT_TRUE(OrvuRestInterface::getInstance()->stopListenRequests());
        ASSERT_FALSE(canConnect(receiver.port())) << round;
        ASSERT_TRUE(OrvuRestInterface::getInstance()->startListenRequests(receiver.port())) << round;
    }
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
}

TEST(ARunningServer, MovesToAnotherPort)
{
    const Receiver receiver;
    const PortLease other;
    ASSERT_TRUE(OrvuRestInterface::getInstance()->startListenRequests(other.port()));
    EXPECT_FALSE(canConnect(receiver.port()));
    RawPeer peer = RawPeer::connectedTo(other.port());
    peer.send(frameOf(kSuccess));
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARunningServer, StaysWithoutAPortWhenItCannotMove)
{
    const Receiver receiver;
    const PortLease other;
    const RawPeer taken(boundSocket(other.port(), true));
    EXPECT_FALSE(OrvuRestInterface::getInstance()->startListenRequests(other.port()));
    EXPECT_FALSE(canConnect(receiver.port()));
}

TEST(ARunningServer, ServesTheRequestsItAcceptedAfterItStopped)
{
    LogCapture log;
    const Receiver receiver;
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    OrvuRestInterface::getInstance()->stopListenRequests();
    peer.send(frameOf(kSuccess));
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARunningServer, StopsWithinASecondWhateverPeersDo)
{
    LogCapture log;
    const Receiver receiver;
    std::vector<RawPeer> peers;
    for (const std::size_t size : {0, 2, 4, 10, 20}) {
        peers.push_back(receiver.connect());
        peers.back().send(frameOf(kSuccess).substr(0, size));
    }
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", peers.size()));
    const auto begin = Clock::now();
    OrvuRestInterface::getInstance()->stopListenRequests();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
}

TEST(ARunningServer, CanBeStoppedFromItsCallback)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        OrvuRestInterface::getInstance()->stopListenRequests();
        answerWithSuccess(request);
    });
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
    EXPECT_FALSE(canConnect(receiver.port()));
}

TEST(ARunningServer, HasTheLongestBacklogThatTheSystemGives)
{
    if (kEmulated) GTEST_SKIP() << "the emulator does not tell the backlog";
    const Receiver receiver;
    EXPECT_EQ(backlogOf(listenerOn(receiver.port())), longestBacklog());
}

TEST(ARunningServer, HasNoDescriptorThatAProgramItStartsWouldInherit)
{
    std::vector<int> inherited;
    {
        const Receiver receiver([&](OrvuRestRequest* request) {
            for (const int fd : openSockets())
                if (fd > STDERR_FILENO && (fcntl(fd, F_GETFD) & FD_CLOEXEC) == 0) inherited.push_back(fd);
            answerWithSuccess(request);
        });
        receiver.ask(kSuccess);
    }
    EXPECT_THAT(inherited, testing::IsEmpty());
}

TEST(ARunningServer, ClosesAConnectionForWhichThereIsNoThread)
{
    LogCapture log;
    const Receiver receiver;
    {
        const NoThreadsLeft none;
        RawPeer peer = receiver.connect();
        EXPECT_EQ(peer.readToEnd(), "");
    }
    EXPECT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread: ERROR Fail to start worker thread!"));
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
}

}  // namespace
