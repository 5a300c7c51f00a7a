#include <cerrno>
#include <gtest/gtest.h>
#include <string>

#include "listener/ListenerFixture.h"
#include "support/PortLease.h"

namespace OrvuTests {
namespace {

using namespace Orvu;

TEST_F(AListener, TellsAPublisherThatEndedFromAConnectionThatBroke)
{
    RawPeer publisher = attached();
    publisher.vanish();
    EXPECT_TRUE(heard_.waitFor("lost 2/" + std::to_string(ECONNRESET) + ": Connection reset by peer"));
}

TEST_F(AListener, GivesUpAConnectionThatIsNotAWebSocket)
{
    RawPeer publisher = attachedOverAWebSocket();
    publisher.send("\x82\x81\x01\x02\x03\x04x");
    EXPECT_TRUE(
        heard_.waitFor("lost 2/" + std::to_string(EPROTO) + ": it sends something that is not a WebSocket frame"));
}

TEST_F(AListener, IsToldThatAPortRefusesIt)
{
    ASSERT_TRUE(listen(ChannelWebSocket));
    publisher_.accept().send("HTTP/1.1 404 Not Found\r\n\r\n");
    EXPECT_TRUE(heard_.waitFor("lost 5/" + std::to_string(EPROTO) + ": it answers \"HTTP/1.1 404 Not Found\""));
}

TEST_F(AListener, IsToldThatAnotherClientMayBeAttached)
{
    ASSERT_TRUE(listen(ChannelWebSocket));
    RawPeer publisher = publisher_.accept();
    publisher.finishSending();
    EXPECT_TRUE(
        heard_.waitFor("lost 6/0: it closes the connection: it has another client, or is not a WebSocket port"));
}

TEST_F(AListener, IsToldThatAnotherClientIsAttachedWhereItWasAttachedBefore)
{
    RawPeer first = attachedOverAWebSocket();
    first.close();
    RawPeer second = publisher_.accept();
    second.finishSending();
    EXPECT_TRUE(heard_.waitFor("lost 7/0: it has another client"));
}

TEST_F(AListener, IsToldThatNobodyListens)
{
    const PortLease port;
    ASSERT_TRUE(listener_.listen("127.0.0.1", port.port(), ChannelTcp));
    EXPECT_TRUE(heard_.waitFor("lost 3/" + std::to_string(ECONNREFUSED) + ": refused, nobody listens there"));
    EXPECT_TRUE(heard_.waitFor("waiting"));
}

TEST_F(AListener, IsToldThatAHostHasNoAddress)
{
    ASSERT_TRUE(listener_.listen("::1", 9000, ChannelTcp));
    EXPECT_TRUE(heard_.waitFor("lost 4/" + std::to_string(EAFNOSUPPORT) +
                               ": the host cannot be resolved: it has no IPv4 address"));
}

}  // namespace
}  // namespace OrvuTests
