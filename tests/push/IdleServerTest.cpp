#include <gmock/gmock.h>

#include "push/AllServers.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::ElementsAre;

/// The life of a server without peers, of each kind: the one for requests and the two for pushes.

namespace {

template <class Server>
struct AnIdleServer : testing::Test {
    static std::string line(const std::string& text) { return logLineOf<Server>(text); }

    LogCapture log;
    PortLease lease;
    PortLease other;
    Made<Server> made;
    Server& server = made.server();
};
TYPED_TEST_SUITE(AnIdleServer, AllKinds, NameOfKind);

TYPED_TEST(AnIdleServer, CannotStartBeforeItIsConfigured)
{
    EXPECT_FALSE(this->server.start());
    EXPECT_THAT(this->log.lines(), ElementsAre(this->line("start: ERROR configure before start!")));
}

TYPED_TEST(AnIdleServer, CannotHaveAPortWhereSomebodyElseListens)
{
    const RawPeer taken(boundSocket(this->lease.port(), true));
    EXPECT_FALSE(this->server.configure(this->lease.port()));
    EXPECT_THAT(this->log.lines(), ElementsAre(this->line("configure: ERROR binding server socket!")));
    EXPECT_FALSE(this->server.start());
    EXPECT_THAT(this->log.lines(), Contains(this->line("start: ERROR configure before start!")));
}

TYPED_TEST(AnIdleServer, KeepsOneSocketAtMostAfterFailedBinds)
{
    const RawPeer taken(boundSocket(this->lease.port(), true));
    const std::size_t before = openSockets().size();
    for (int round = 0; round < 3; ++round)
        this->server.configure(this->lease.port());
    const bool isForRequests = std::is_same_v<TypeParam, OrvuRestServerSocket>;
    EXPECT_EQ(openSockets().size(), before + (isForRequests ? 1 : 0));
}

TYPED_TEST(AnIdleServer, TakesAFreePortAfterATakenOne)
{
    const RawPeer taken(boundSocket(this->lease.port(), true));
    ASSERT_FALSE(this->server.configure(this->lease.port()));
    EXPECT_TRUE(this->server.configure(this->other.port()));
    EXPECT_TRUE(this->server.start());
    EXPECT_TRUE(canConnect(this->other.port()));
}

TYPED_TEST(AnIdleServer, RefusesWhatIsNoPort)
{
    EXPECT_FALSE(this->server.configure(-1));
    EXPECT_FALSE(this->server.configure(65536 + this->lease.port()));
    EXPECT_EQ(this->log.count(this->line("configure: ERROR binding server socket!")), 2);
}

TYPED_TEST(AnIdleServer, CannotBeConfiguredWithoutADescriptor)
{
    {
        const NoDescriptorsLeft none;
        EXPECT_FALSE(this->server.configure(this->lease.port()));
    }
    EXPECT_THAT(this->log.lines(), ElementsAre(this->line("configure: ERROR opening server socket!")));
    EXPECT_TRUE(this->server.configure(this->lease.port()));
}

TYPED_TEST(AnIdleServer, CannotStartWithoutAThreadButLater)
{
    ASSERT_TRUE(this->server.configure(this->lease.port()));
    {
        const NoThreadsLeft none;
        EXPECT_FALSE(this->server.start());
    }
    EXPECT_THAT(this->log.lines(), ElementsAre(this->line("start: ERROR run the server thread!")));
    const bool listensEarly = std::is_same_v<TypeParam, OrvuRestServerWebSocket>;
    EXPECT_EQ(canConnect(this->lease.port()), listensEarly);
    EXPECT_TRUE(this->server.start());
    EXPECT_TRUE(canConnect(this->lease.port()));
}

TYPED_TEST(AnIdleServer, CanBeConfiguredTwice)
{
    ASSERT_TRUE(this->server.configure(this->lease.port()));
    ASSERT_TRUE(this->server.configure(this->lease.port()));
    ASSERT_TRUE(this->server.configure(this->other.port()));
    EXPECT_TRUE(canListenOn(this->lease.port()));
    EXPECT_TRUE(this->server.start());
    EXPECT_TRUE(canConnect(this->other.port()));
}

TYPED_TEST(AnIdleServer, CanBeStoppedAndGivesItsPortBack)
{
    this->server.stop();
    ASSERT_TRUE(this->server.configure(this->lease.port()));
    this->server.stop();
    this->server.stop();
    EXPECT_TRUE(canListenOn(this->lease.port()));
    EXPECT_FALSE(this->server.start());
}

TYPED_TEST(AnIdleServer, LogsThatItStops)
{
    this->server.stop();
    if (std::is_same_v<TypeParam, OrvuRestServerWebSocket>) {
        EXPECT_THAT(this->log.lines(),
                    ElementsAre(this->line("stop: Stopping server -->>"), this->line("stop: Stopping server <<--")));
    } else {
        EXPECT_THAT(this->log.lines(), ElementsAre(this->line("stop: Stopping server")));
    }
}

TYPED_TEST(AnIdleServer, PushesToNobody)
{
    EXPECT_FALSE(push(this->server, "hello"));
}

TYPED_TEST(AnIdleServer, ListensWhenItIsConfiguredOnlyWhereItIsForAWebSocket)
{
    ASSERT_TRUE(this->server.configure(this->lease.port()));
    const bool listens = std::is_same_v<TypeParam, OrvuRestServerWebSocket>;
    EXPECT_EQ(canConnect(this->lease.port()), listens);
    if (listens) return;
    const RawPeer taken(boundSocket(this->lease.port(), true));
    ASSERT_GE(taken.fd(), 0);
    EXPECT_FALSE(this->server.start());
    EXPECT_THAT(this->log.lines(), Contains(this->line("start: ERROR listening on server socket!")));
}

TEST(AnIdleWebSocketPushServer, ServesThoseWhoCameBeforeItStarted)
{
    const PortLease lease;
    OrvuRestServerWebSocket server;
    ASSERT_TRUE(server.configure(lease.port()));
    RawPeer early = RawPeer::connectedTo(lease.port());
    ASSERT_TRUE(server.start());
    EXPECT_TRUE(shakesHands(early));
}

}  // namespace
