#include <arpa/inet.h>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Services.h"
#include "push/Peers.h"
#include "support/LogCapture.h"
#include "support/Observed.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

const std::string kCreate = "OrvuRestInterface::createServer: ";
const std::string kTrying = kCreate + "Trying";
const std::string kNotConfigured = kCreate + "cannot configure the server";

using Info = std::unique_ptr<SocketServerInfo>;

struct TheFacade : testing::Test {
    ~TheFacade() override { OrvuRestInterface::destroyInstance(); }

    static OrvuRestInterface& facade() { return *OrvuRestInterface::getInstance(); }
    static bool send(int handler, const std::string& bytes)
    {
        return facade().sendMessage(handler, reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data())),
                                    static_cast<unsigned>(bytes.size()));
    }
    static bool canListenOn(int port) { return RawPeer(boundSocket(port, true)).fd() >= 0; }

    /// A server on a port of its own.
    Info create(const std::string& protocol)
    {
        leases.push_back(std::make_unique<PortLease>());
        facade().setSocketsPortsRange(leases.back()->port(), leases.back()->port());
        return Info(facade().createServer(protocol));
    }
    int tried() { return log.count(kTrying); }

    LogCapture log;
    std::vector<std::unique_ptr<PortLease>> leases;
};

std::string firstAddressOutside()
{
    ifaddrs* interfaces = nullptr;
    getifaddrs(&interfaces);
    std::string found;
    for (const ifaddrs* entry = interfaces; entry && found.empty(); entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET) continue;
        char text[INET_ADDRSTRLEN];
        inet_ntop(AF_INET, &reinterpret_cast<sockaddr_in*>(entry->ifa_addr)->sin_addr, text, sizeof text);
        if (std::string(text) != "127.0.0.1") found = text;
    }
    freeifaddrs(interfaces);
    return found;
}

TEST_F(TheFacade, PushesAMessageWithItsHeaderWhateverItsFlagSays)
{
    const Info info = create("tcp");
    ASSERT_TRUE(info);
    ServiceSelection message;
    message.serviceContextId = "1.2.01";
    message.serializeHeader(false);
    RawPeer client = RawPeer::connectedTo(info->port);
    ASSERT_TRUE(eventually([&] { return facade().sendMessage(info->handler, message); }));
    const std::string text = "{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"1.2.01\"\n}";
    EXPECT_EQ(client.receive(text.size()), text);
    const std::unique_ptr<char, decltype(&std::free)> afterwards(message.serialize(), std::free);
    EXPECT_STREQ(afterwards.get(), "{\n\t\"serviceContextId\":\t\"1.2.01\"\n}");
}

/// Cannot be written.
struct AMessageWithoutText : Serializable {
    AMessageWithoutText() : Serializable(DataTypeKeyset) {}
    char* serialize() override { return nullptr; }
    bool deserialize(const char*) override { return false; }
};

TEST_F(TheFacade, DoesNotPushAMessageThatCannotBeWritten)
{
    const Info info = create("tcp");
    ASSERT_TRUE(info);
    AMessageWithoutText message;
    log.clear();
    EXPECT_FALSE(facade().sendMessage(info->handler, message));
    EXPECT_EQ(log.count("OrvuRestInterface::sendMessage: ERROR cannot write the message!"), 1);
}

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

TEST_F(TheFacade, PushesToTheServerOfTheHandle)
{
    const Info first = create("tcp");
    const Info second = create("tcp");
    RawPeer one = RawPeer::connectedTo(first->port);
    RawPeer two = RawPeer::connectedTo(second->port);
    EXPECT_TRUE(eventually([&] { return send(first->handler, "for one"); }));
    EXPECT_TRUE(eventually([&] { return send(second->handler, "for two"); }));
    EXPECT_EQ(one.receive(7), "for one");
    EXPECT_EQ(two.receive(7), "for two");
}

TEST_F(TheFacade, LogsAPush)
{
    const Info info = create("tcp");
    const std::string handler = std::to_string(info->handler);
    log.clear();
    EXPECT_FALSE(send(info->handler, "hello"));
    EXPECT_THAT(log.lines(),
                testing::IsSupersetOf({"OrvuRestInterface::sendMessage: handler: " + handler + " | size: 5",
                                       std::string("OrvuRestServerTcpSocket::send: Send to client: hello")}));
}

TEST_F(TheFacade, PushesNowhereWithAnUnknownHandle)
{
    EXPECT_FALSE(send(-7, "hello"));
    EXPECT_THAT(log.lines(), testing::ElementsAre("OrvuRestInterface::sendMessage: handler: -7 | size: 5",
                                                  "OrvuRestInterface::sendMessage: cannot found handler: -7"));
}

TEST_F(TheFacade, StopsAServerOnce)
{
    for (const char* const protocol : {"tcp", "websocket"}) {
        const Info info = create(protocol);
        RawPeer client = RawPeer::connectedTo(info->port);
        EXPECT_TRUE(facade().stopServer(info->handler));
        EXPECT_EQ(client.readToEnd(), "");
        EXPECT_TRUE(canListenOn(info->port));
        EXPECT_FALSE(send(info->handler, "hello"));
        EXPECT_FALSE(facade().stopServer(info->handler));
    }
}

TEST_F(TheFacade, LogsWhatItStops)
{
    const Info first = create("tcp");
    const Info second = create("websocket");
    const std::string line = "OrvuRestInterface::stopServer: handler: ";
    log.clear();
    EXPECT_FALSE(facade().stopServer(-1));
    EXPECT_THAT(linesWith(log, "OrvuRestInterface"),
                testing::ElementsAre(line + "-1 handler severs count: 2",
                                     "OrvuRestInterface::stopServer: cannot locate the server"));
    log.clear();
    EXPECT_TRUE(facade().stopServer(first->handler));
    EXPECT_THAT(linesWith(log, "OrvuRestInterface"),
                testing::ElementsAre(line + std::to_string(first->handler) + " handler severs count: 2"));
    log.clear();
    EXPECT_TRUE(facade().stopServer(second->handler));
    EXPECT_THAT(linesWith(log, "OrvuRestInterface"),
                testing::ElementsAre(line + std::to_string(second->handler) + " handler severs count: 1"));
}

TEST_F(TheFacade, StopsAllServers)
{
    std::vector<Info> infos;
    for (const char* const protocol : {"tcp", "websocket", "tcp", "websocket"})
        infos.push_back(create(protocol));
    facade().stopAllServers();
    EXPECT_EQ(log.count("OrvuRestInterface::stopAllServers: severs count: 4"), 1);
    for (const Info& info : infos) {
        EXPECT_FALSE(facade().stopServer(info->handler));
        EXPECT_TRUE(canListenOn(info->port));
    }
    facade().stopAllServers();
    EXPECT_EQ(log.count("OrvuRestInterface::stopAllServers: severs count: 0"), 1);
}

TEST_F(TheFacade, TakesItsServersAlongWhenItIsDestroyed)
{
    std::vector<Info> infos;
    std::vector<RawPeer> clients;
    for (const char* const protocol : {"tcp", "websocket"}) {
        infos.push_back(create(protocol));
        clients.push_back(RawPeer::connectedTo(infos.back()->port));
    }
    OrvuRestInterface::destroyInstance();
    for (RawPeer& client : clients)
        EXPECT_EQ(client.readToEnd(), "");
    for (const Info& info : infos) {
        EXPECT_TRUE(canListenOn(info->port));
        EXPECT_FALSE(facade().stopServer(info->handler));
    }
}

TEST_F(TheFacade, ForgetsItsRangeWhenItIsDestroyed)
{
    create("tcp");
    OrvuRestInterface::destroyInstance();
    EXPECT_EQ(Info(facade().createServer("tcp")), nullptr);
}

TEST_F(TheFacade, MakesTheHandleOfTheClockAndTheNextOneWhereItIsTaken)
{
    Info first;
    Info second;
    Info third;
    std::time_t now = 0;
    do {  // until all three are made within the same second
        facade().stopAllServers();
        now = std::time(nullptr);
        first = create("tcp");
        second = create("websocket");
        third = create("tcp");
    } while (std::time(nullptr) != now);
    std::srand(static_cast<unsigned>(now));
    EXPECT_EQ(first->handler, std::rand());
    EXPECT_EQ(second->handler, std::rand());
    EXPECT_EQ(third->handler, std::rand());

    RawPeer one = RawPeer::connectedTo(first->port);
    RawPeer three = RawPeer::connectedTo(third->port);
    EXPECT_TRUE(eventually([&] { return send(first->handler, "hello"); }));
    EXPECT_TRUE(eventually([&] { return send(third->handler, "hello"); }));
    EXPECT_EQ(one.receive(5), "hello");
    EXPECT_EQ(three.receive(5), "hello");
    for (const Info* const info : {&second, &first, &third})
        EXPECT_TRUE(facade().stopServer((*info)->handler));
}

TEST_F(TheFacade, GivesAFreedHandleAgain)
{
    std::time_t now = 0;
    int before = 0;
    int after = 0;
    do {
        now = std::time(nullptr);
        before = create("tcp")->handler;
        facade().stopServer(before);
        after = create("tcp")->handler;
        facade().stopServer(after);
    } while (std::time(nullptr) != now);
    EXPECT_EQ(after, before);
}

TEST_F(TheFacade, KnowsTheFirstAddressThatLeadsOutside)
{
    const std::string outside = firstAddressOutside();
    EXPECT_EQ(facade().getCurrentIpAddress(), outside.empty() ? "127.0.0.1" : outside);
    EXPECT_EQ(log.count("valid IPv4 Address found"), outside.empty() ? 0 : 1);
}

TEST_F(TheFacade, LeavesNothingOfAHundredServers)
{
    ASSERT_TRUE(create("tcp"));
    facade().stopAllServers();
    const std::size_t before = openSockets().size();
    const PortLease lease;
    facade().setSocketsPortsRange(lease.port(), lease.port());
    for (int i = 0; i < 100; ++i) {
        const Info info(facade().createServer(i % 2 == 0 ? "tcp" : "websocket"));
        ASSERT_TRUE(info) << i;
        RawPeer client = RawPeer::connectedTo(info->port);
        if (i % 3 == 0) client.send(openingRequest());
        ASSERT_TRUE(facade().stopServer(info->handler));
    }
    EXPECT_EQ(openSockets().size(), before);
    EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-accept").empty(); }));
}

}  // namespace
