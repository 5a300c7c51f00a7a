#include <chrono>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
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
using testing::Contains;
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

struct AServerThatIsNotRunning : testing::Test {
    ~AServerThatIsNotRunning() override { OrvuRestServerSocket::destroyInstance(); }

    LogCapture log;
    PortLease lease;
    OrvuRestServerSocket& server = *OrvuRestServerSocket::getInstance();
};

TEST_F(AServerThatIsNotRunning, CannotStartBeforeItIsConfigured)
{
    EXPECT_FALSE(server.start());
    EXPECT_THAT(log.lines(), Contains("OrvuRestServerSocket::start: ERROR configure before start!"));
}

TEST_F(AServerThatIsNotRunning, DoesNotListenWhenItIsOnlyConfigured)
{
    ASSERT_TRUE(server.configure(lease.port()));
    EXPECT_FALSE(canConnect(lease.port()));
}

TEST_F(AServerThatIsNotRunning, CannotHaveAPortWhereSomebodyElseListens)
{
    const RawPeer taken(boundSocket(lease.port(), true));
    EXPECT_FALSE(server.configure(lease.port()));
    EXPECT_THAT(log.lines(), Contains("OrvuRestServerSocket::configure: ERROR binding server socket!"));
}

TEST_F(AServerThatIsNotRunning, IsNotConfiguredByAFailedBind)
{
    const RawPeer taken(boundSocket(lease.port(), true));
    server.configure(lease.port());
    EXPECT_FALSE(server.start());
    EXPECT_THAT(log.lines(), Contains("OrvuRestServerSocket::start: ERROR configure before start!"));
}

TEST_F(AServerThatIsNotRunning, CanBeConfiguredAfterAFailedBind)
{
    const RawPeer taken(boundSocket(lease.port(), true));
    server.configure(lease.port());
    const PortLease other;
    EXPECT_TRUE(server.configure(other.port()));
    EXPECT_TRUE(server.start());
    EXPECT_TRUE(canConnect(other.port()));
}

TEST_F(AServerThatIsNotRunning, KeepsOneSocketAfterFailedBinds)
{
    const RawPeer taken(boundSocket(lease.port(), true));
    server.configure(lease.port());
    const std::size_t before = openSockets().size();
    server.configure(lease.port());
    EXPECT_EQ(openSockets().size(), before);
}

TEST_F(AServerThatIsNotRunning, RefusesWhatIsNoPort)
{
    EXPECT_FALSE(server.configure(-1));
    EXPECT_FALSE(server.configure(65536 + lease.port()));
    EXPECT_EQ(log.count("OrvuRestServerSocket::configure: ERROR binding server socket!"), 2);
}

TEST_F(AServerThatIsNotRunning, CannotBeConfiguredWithoutADescriptor)
{
    {
        const NoDescriptorsLeft none;
        EXPECT_FALSE(server.configure(lease.port()));
    }
    EXPECT_THAT(log.lines(), Contains("OrvuRestServerSocket::configure: ERROR opening server socket!"));
}

TEST_F(AServerThatIsNotRunning, CannotStartWhereSomebodyElseBeganToListen)
{
    ASSERT_TRUE(server.configure(lease.port()));
    const RawPeer taken(boundSocket(lease.port(), true));
    ASSERT_GE(taken.fd(), 0);
    EXPECT_FALSE(server.start());
    EXPECT_THAT(log.lines(), Contains("OrvuRestServerSocket::start: ERROR listening on server socket!"));
}

TEST_F(AServerThatIsNotRunning, CannotStartWithoutAThread)
{
    ASSERT_TRUE(server.configure(lease.port()));
    {
        const NoThreadsLeft none;
        EXPECT_FALSE(server.start());
    }
    EXPECT_THAT(log.lines(), Contains("OrvuRestServerSocket::start: ERROR run the server thread!"));
    EXPECT_FALSE(canConnect(lease.port()));
    EXPECT_TRUE(server.start());
    EXPECT_TRUE(canConnect(lease.port()));
}

TEST_F(AServerThatIsNotRunning, CanBeStopped)
{
    server.stop();
    EXPECT_THAT(log.lines(), testing::ElementsAre("OrvuRestServerSocket::stop: Stopping server"));
}

TEST_F(AServerThatIsNotRunning, DoesNotPush)
{
    unsigned char byte = 0;
    EXPECT_FALSE(server.send(&byte, 1));
}

TEST_F(AServerThatIsNotRunning, GivesItsPortBackWhenItIsStopped)
{
    ASSERT_TRUE(server.configure(lease.port()));
    server.stop();
    EXPECT_GE(RawPeer(boundSocket(lease.port(), true)).fd(), 0);
    EXPECT_FALSE(server.start());
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
