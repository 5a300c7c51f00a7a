#include <arpa/inet.h>
#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include "orvu/Services.h"
#include "push/FacadeFixture.h"
#include "support/Observed.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

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
