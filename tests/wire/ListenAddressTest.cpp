#include <gmock/gmock.h>
#include <memory>
#include <string>

#include "orvu/OrvuRestInterface.h"
#include "support/LogCapture.h"
#include "support/PortLease.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";

struct AListenAddress : testing::Test {
    ~AListenAddress() override { OrvuRestInterface::destroyInstance(); }

    static OrvuRestInterface& facade() { return *OrvuRestInterface::getInstance(); }

    LogCapture log;
    const RegisteredHandler handler{answerWithSuccess};
    PortLease lease;
};

TEST_F(AListenAddress, IsWhereRequestsAreListenedFor)
{
    facade().setListenAddress("127.0.0.2");
    ASSERT_TRUE(facade().startListenRequests(lease.port()));
    EXPECT_EQ(listenAddressOf(lease.port()), "127.0.0.2");
    facade().setListenAddress("");
    ASSERT_TRUE(facade().startListenRequests(lease.port()));
    EXPECT_EQ(listenAddressOf(lease.port()), "0.0.0.0");
}

TEST_F(AListenAddress, IsWherePushServersListenThatAreMadeFromThenOn)
{
    for (const char* const protocol : {"tcp", "websocket"}) {
        facade().setSocketsPortsRange(lease.port(), lease.port());
        facade().setListenAddress("127.0.0.2");
        std::unique_ptr<SocketServerInfo> info(facade().createServer(protocol));
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(info->ipAddress, "127.0.0.2");
        EXPECT_EQ(listenAddressOf(info->port), "127.0.0.2");
        facade().setListenAddress("");
        EXPECT_EQ(listenAddressOf(info->port), "127.0.0.2");
        facade().stopServer(info->handler);
        info.reset(facade().createServer(protocol));
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(info->ipAddress, facade().getCurrentIpAddress());
        EXPECT_EQ(listenAddressOf(info->port), "0.0.0.0");
        facade().stopServer(info->handler);
    }
}

TEST_F(AListenAddress, IsEveryInterfaceAsWellWhenItIsZero)
{
    facade().setListenAddress("0.0.0.0");
    facade().setSocketsPortsRange(0, 0);
    const std::unique_ptr<SocketServerInfo> info(facade().createServer("tcp"));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->ipAddress, facade().getCurrentIpAddress());
}

TEST_F(AListenAddress, ThatCannotBeOneFailsBeforeAnyPortIsTried)
{
    facade().setSocketsPortsRange(lease.port(), lease.port() + 5);
    for (const std::string address :
         {"localhost", "1.2.3", "256.0.0.1", " 127.0.0.1", "::1", "192.0.2.1", "224.0.0.1", "255.255.255.255"}) {
        log.clear();
        facade().setListenAddress(address);
        EXPECT_FALSE(facade().startListenRequests(lease.port())) << address;
        EXPECT_EQ(log.count("OrvuRestInterface::startListenRequests: ERROR no IPv4 address of this host: " + address),
                  1);
        EXPECT_EQ(facade().createServer("tcp"), nullptr) << address;
        EXPECT_EQ(facade().createServer("websocket"), nullptr) << address;
        EXPECT_EQ(log.count("OrvuRestInterface::createServer: ERROR no IPv4 address of this host: " + address), 2);
        EXPECT_EQ(log.count("OrvuRestInterface::createServer: Trying"), 0);
    }
}

TEST_F(AListenAddress, IsForgottenWithTheFacade)
{
    facade().setListenAddress("no address");
    OrvuRestInterface::destroyInstance();
    EXPECT_TRUE(facade().startListenRequests(lease.port()));
}

TEST_F(AListenAddress, DoesNotMoveAServerThatListens)
{
    ASSERT_TRUE(facade().startListenRequests(lease.port()));
    facade().setListenAddress("no address");
    EXPECT_FALSE(facade().startListenRequests(lease.port()));
    EXPECT_EQ(facade().requestPort(), lease.port());
}

TEST_F(AListenAddress, HasThePortThatTheSystemChose)
{
    EXPECT_EQ(facade().requestPort(), 0);
    ASSERT_TRUE(facade().startListenRequests(0));
    const int port = facade().requestPort();
    EXPECT_GT(port, 0);
    RawPeer peer = RawPeer::connectedTo(port);
    peer.send(frameOf(kRequest));
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
    facade().stopListenRequests();
    EXPECT_EQ(facade().requestPort(), 0);
}

TEST_F(AListenAddress, HasThePortThatWasAskedFor)
{
    ASSERT_TRUE(facade().startListenRequests(lease.port()));
    EXPECT_EQ(facade().requestPort(), lease.port());
    OrvuRestInterface::destroyInstance();
    EXPECT_EQ(facade().requestPort(), 0);
}

}  // namespace
