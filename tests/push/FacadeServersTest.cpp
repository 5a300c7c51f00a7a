#include <climits>
#include <gmock/gmock.h>

#include "push/FacadeFixture.h"

using namespace Orvu;
using namespace OrvuTests;

/// How the facade creates its servers, and on which ports.

namespace {

TEST_F(TheFacade, CreatesATcpServer)
{
    const Info info = create("tcp");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->protocol, "tcp");
    EXPECT_EQ(info->port, leases[0]->port());
    EXPECT_EQ(info->error, 0);
    EXPECT_EQ(info->ipAddress, facade().getCurrentIpAddress());
    RawPeer client = RawPeer::connectedTo(info->port);
    EXPECT_TRUE(eventually([&] { return send(info->handler, "hello"); }));
    EXPECT_EQ(client.receive(5), "hello");
}

TEST_F(TheFacade, CreatesAWebSocketServer)
{
    const Info info = create("websocket");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->protocol, "websocket");
    EXPECT_EQ(info->port, leases[0]->port());
    EXPECT_EQ(info->error, 0);
    RawPeer client = RawPeer::connectedTo(info->port);
    ASSERT_TRUE(shakesHands(client));
    EXPECT_TRUE(send(info->handler, "hello"));
    EXPECT_EQ(client.receive(7), "\x82\x05hello");
}

TEST_F(TheFacade, LogsHowItCreatesAServer)
{
    const Info info = create("websocket");
    EXPECT_TRUE(
        areInOrder(log.lines(), {kCreate + "protocol: websocket", kTrying, kCreate + "------------------------"}));
    EXPECT_EQ(tried(), 1);
    EXPECT_EQ(log.count(kNotConfigured), 0);
}

TEST_F(TheFacade, KnowsTwoProtocolsByTheirExactNames)
{
    for (const std::string protocol : {"TCP", "WebSocket", "", "tcp ", "udp", "%s"}) {
        EXPECT_EQ(create(protocol), nullptr);
        EXPECT_EQ(log.count(kCreate + "protocol: " + protocol), 1);
        EXPECT_EQ(log.count(kCreate + "cannot create the server: " + protocol), 1);
    }
    EXPECT_EQ(tried(), 0);
}

TEST_F(TheFacade, TriesNoPortBeforeItIsGivenARange)
{
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
    EXPECT_THAT(log.lines(),
                testing::ElementsAre(kCreate + "protocol: tcp", testing::StartsWith("OrvuRestServerTcpSocket::stop")));
}

TEST_F(TheFacade, CreatesAServerInARangeOfItsOwn)
{
    const PortLease own, common;
    facade().setSocketsPortsRange(common.port(), common.port());
    const Info first(facade().createServer("tcp", own.port(), own.port()));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->port, own.port());
    EXPECT_EQ(Info(facade().createServer("websocket", own.port(), own.port())), nullptr);
    EXPECT_EQ(Info(facade().createServer("tcp", 2, 1)), nullptr);
    const Info second(facade().createServer("tcp"));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->port, common.port());
}

TEST_F(TheFacade, RemembersNoRangeOfAServersOwn)
{
    const PortLease own;
    ASSERT_TRUE(Info(facade().createServer("tcp", own.port(), own.port())));
    facade().stopAllServers();
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
}

TEST_F(TheFacade, TriesNoPortOfAnEmptyRange)
{
    facade().setSocketsPortsRange(5001, 5000);
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
    EXPECT_EQ(Info(facade().createServer("websocket")), nullptr);
    EXPECT_EQ(tried(), 0);
}

TEST_F(TheFacade, RefusesWhatIsNoPort)
{
    facade().setSocketsPortsRange(-1, -1);
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
    facade().setSocketsPortsRange(65536, 65537);
    EXPECT_EQ(Info(facade().createServer("websocket")), nullptr);
    EXPECT_EQ(tried(), 3);
    EXPECT_EQ(log.count("OrvuRestServerTcpSocket::configure: ERROR binding server socket!"), 1);
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::configure: ERROR binding server socket!"), 2);
    EXPECT_EQ(log.count("OrvuRestInterface::createServer: cannot configure the server"), 3);
}

TEST_F(TheFacade, TriesNoMorePortsThanThereAre)
{
    facade().setSocketsPortsRange(INT_MIN, INT_MAX);
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
    EXPECT_EQ(tried(), 65536);
}

TEST_F(TheFacade, LeavesTheChoiceToTheSystemOnPortZero)
{
    facade().setSocketsPortsRange(0, 0);
    const Info info(facade().createServer("tcp"));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(tried(), 1);
    EXPECT_NE(info->port, 0);
    EXPECT_GE(RawPeer::connectedTo(info->port).fd(), 0);
    EXPECT_EQ(info->error, 0);
    EXPECT_TRUE(facade().stopServer(info->handler));
}

TEST_F(TheFacade, GivesUpWhenTheOnlyPortIsTaken)
{
    const PortLease lease;
    const RawPeer taken(boundSocket(lease.port(), true));
    facade().setSocketsPortsRange(lease.port(), lease.port());
    for (const char* const protocol : {"tcp", "websocket"}) {
        log.clear();
        EXPECT_EQ(Info(facade().createServer(protocol)), nullptr);
        EXPECT_EQ(tried(), 1);
        EXPECT_EQ(log.count(kNotConfigured), 1);
    }
}

TEST_F(TheFacade, TakesTheFirstPortThatIsFree)
{
    const PortRangeLease ports(4);
    const RawPeer first(boundSocket(ports.first(), true));
    const RawPeer second(boundSocket(ports.first() + 1, true));
    facade().setSocketsPortsRange(ports.first(), ports.last());
    for (const char* const protocol : {"tcp", "websocket"}) {
        log.clear();
        const Info info(facade().createServer(protocol));
        ASSERT_TRUE(info);
        EXPECT_EQ(info->port, ports.first() + 2);
        EXPECT_EQ(tried(), 3);
        EXPECT_EQ(log.count(kNotConfigured), 2);
        EXPECT_TRUE(facade().stopServer(info->handler));
    }
}

TEST_F(TheFacade, FillsARangeAndNoMore)
{
    const PortRangeLease ports(3);
    facade().setSocketsPortsRange(ports.first(), ports.last());
    std::vector<int> taken;
    for (int i = 0; i < 3; ++i)
        taken.push_back(Info(facade().createServer(i == 1 ? "tcp" : "websocket"))->port);
    EXPECT_THAT(taken, testing::ElementsAre(ports.first(), ports.first() + 1, ports.last()));
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
    EXPECT_EQ(Info(facade().createServer("websocket")), nullptr);
}

TEST_F(TheFacade, TellsInTheRecordThatAServerCannotBeStarted)
{
    for (const std::string protocol : {"tcp", "websocket"}) {
        Info info;
        {
            const NoThreadsLeft none;
            info = create(protocol);
        }
        ASSERT_TRUE(info);
        EXPECT_EQ(info->error, 1);
        EXPECT_EQ(info->protocol, protocol);
        EXPECT_EQ(info->port, leases.back()->port());
        EXPECT_FALSE(send(info->handler, "hello"));
        EXPECT_FALSE(facade().stopServer(info->handler));
        EXPECT_TRUE(canListenOn(info->port));
        EXPECT_TRUE(areInOrder(
            log.lines(), {kTrying, kCreate + "cannot start the server 1", kCreate + "cannot start the server 2"}));
        EXPECT_EQ(log.count(kCreate + "------------------------"), 0);
        log.clear();
    }
    facade().stopAllServers();
    EXPECT_EQ(log.count("OrvuRestInterface::stopAllServers: severs count: 0"), 1);
}

}  // namespace
