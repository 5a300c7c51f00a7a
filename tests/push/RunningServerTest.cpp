#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdexcept>
#include <unistd.h>

#include "push/AllServers.h"
#include "support/BuiltProgram.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::IsEmpty;
using testing::SizeIs;

/// The life of a running server, of each kind: how it starts, stops and starts again.

namespace {

/// Whether a new client gets what the server is there for.
bool serves(OrvuRestServerSocket&, int port)
{
    RawPeer client = RawPeer::connectedTo(port);
    client.send(frameOf(kSuccess));
    return client.readFrame() == kSuccess;
}
bool serves(OrvuRestServerTcpSocket& server, int port)
{
    RawPeer client = RawPeer::connectedTo(port);
    return eventually([&] { return push(server, "hello") && hasBytes(client); }) && client.receive(5) == "hello";
}
bool serves(OrvuRestServerWebSocket& server, int port)
{
    RawPeer client = RawPeer::connectedTo(port);
    return shakesHands(client) && push(server, "hello") && client.receive(7) == "\x82\x05hello";
}

template <class Server>
struct ARunningServer : testing::Test {
    ARunningServer() { runOn(lease.port()); }

    void runOn(int port)
    {
        if (!server().configure(port) || !server().start()) throw std::runtime_error("the server does not start");
    }
    Server& server() { return made.server(); }
    int loopsEnded() { return log.count(logLineOf<Server>("serverThread: Server loop end!")); }

    LogCapture log;
    const RegisteredHandler handler{answerWithSuccess};
    PortLease lease;
    PortLease other;
    Made<Server> made;
};
TYPED_TEST_SUITE(ARunningServer, AllKinds, NameOfKind);

TYPED_TEST(ARunningServer, ChangesNothingWhenItIsStartedAgain)
{
    EXPECT_TRUE(this->server().start());
    EXPECT_TRUE(this->server().start());
    EXPECT_TRUE(serves(this->server(), this->lease.port()));
    EXPECT_THAT(threadsNamed("self", "orvu-accept"), SizeIs(1));
    EXPECT_EQ(this->loopsEnded(), 0);
}

TYPED_TEST(ARunningServer, HasEndedItsLoopAndClosedItsSocketWhenStoppingReturns)
{
    EXPECT_EQ(this->loopsEnded(), 0);
    this->server().stop();
    EXPECT_EQ(this->loopsEnded(), 1);
    EXPECT_THAT(openSockets(), IsEmpty());
    EXPECT_FALSE(canConnect(this->lease.port()));
}

TYPED_TEST(ARunningServer, IsStoppedOnce)
{
    this->server().stop();
    this->server().stop();
    EXPECT_EQ(this->loopsEnded(), 1);
    EXPECT_FALSE(this->server().start());  // not before it is configured
    EXPECT_FALSE(canConnect(this->lease.port()));
}

TYPED_TEST(ARunningServer, IsStoppedByBeingConfigured)
{
    EXPECT_TRUE(this->server().configure(this->other.port()));
    EXPECT_EQ(this->loopsEnded(), 1);
    EXPECT_FALSE(canConnect(this->lease.port()));
    EXPECT_TRUE(this->server().start());
    EXPECT_TRUE(serves(this->server(), this->other.port()));
}

TYPED_TEST(ARunningServer, CanHaveItsOwnPortAgain)
{
    const RawPeer client = RawPeer::connectedTo(this->lease.port());
    this->runOn(this->lease.port());
    EXPECT_TRUE(serves(this->server(), this->lease.port()));
}

TYPED_TEST(ARunningServer, StartsAgainOnTheSamePortAtOnce)
{
    for (int round = 0; round < 20; ++round) {
        const RawPeer client = RawPeer::connectedTo(this->lease.port());
        ASSERT_TRUE(serves(this->server(), this->lease.port())) << round;
        this->server().stop();
        ASSERT_TRUE(canListenOn(this->lease.port())) << round;
        this->runOn(this->lease.port());
    }
}

TYPED_TEST(ARunningServer, GivesItsPortBackWhenItIsDestroyed)
{
    for (int round = 0; round < 20; ++round) {
        const PortLease lease;
        Made<TypeParam> another;
        ASSERT_TRUE(another.server().configure(lease.port()) && another.server().start()) << round;
        const RawPeer client = RawPeer::connectedTo(lease.port());
        another.destroy();
        ASSERT_TRUE(canListenOn(lease.port())) << round;
    }
}

TYPED_TEST(ARunningServer, HasTheLongestBacklogThatTheSystemGives)
{
    if (kEmulated) GTEST_SKIP() << "the emulator does not tell the backlog";
    EXPECT_EQ(backlogOf(listenerOn(this->lease.port())), longestBacklog());
}

TYPED_TEST(ARunningServer, HasNoDescriptorThatAProgramItStartsWouldInherit)
{
    const RawPeer client = RawPeer::connectedTo(this->lease.port());
    ASSERT_TRUE(eventually([&] { return otherEndOf(client) >= 0; }));
    for (const int fd : openSockets())
        EXPECT_TRUE(fd <= STDERR_FILENO || (fcntl(fd, F_GETFD) & FD_CLOEXEC) != 0) << fd;
}

}  // namespace
