#include <cstdlib>
#include <gmock/gmock.h>
#include <memory>
#include <string>

#include "orvu/Typed.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "typed/Sides.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

std::string textOf(Serializable& message)
{
    const std::unique_ptr<char, void (*)(void*)> text(message.serialize(), std::free);
    return text.get();
}

struct APublisher : testing::Test {
    ~APublisher() override { OrvuRestInterface::destroyInstance(); }

    LogCapture log;
};

TEST_F(APublisher, PushesMessagesAndBytes)
{
    Publisher publisher("tcp");
    ASSERT_TRUE(publisher) << publisher.reason();
    RawPeer listener = RawPeer::connectedTo(publisher.port());
    ASSERT_TRUE(eventually([&] { return publisher.push("begin"); }));
    Service service;
    service.serializeHeader(false);
    EXPECT_TRUE(publisher.push(service));
    EXPECT_TRUE(publisher.push(NoSignalError()));
    EXPECT_TRUE(publisher.push(std::make_unique<NoSignalError>()));
    EXPECT_TRUE(publisher.push(std::string("bytes\0and more", 14)));
    const std::string expected = "begin" + textOf(service) + headerOnly("noSignal") + headerOnly("noSignal") +
                                 std::string("bytes\0and more", 14);
    EXPECT_EQ(listener.receive(expected.size()), expected);
}

TEST_F(APublisher, RefusesWhatHasNoType)
{
    Publisher publisher("tcp");
    const RawPeer listener = RawPeer::connectedTo(publisher.port());
    ASSERT_TRUE(eventually([&] { return publisher.push("begin"); }));
    EXPECT_FALSE(publisher.push(Bounds(1, 2)));
    EXPECT_FALSE(publisher.push(std::unique_ptr<Service>()));
    EXPECT_EQ(log.count("Orvu::Publisher: \"pos\" cannot be sent by itself: it has no \"HEADER\""), 1);
    EXPECT_EQ(log.count("Orvu::Publisher: there is no message"), 1);
}

TEST_F(APublisher, ListensOnAPortOfItsRange)
{
    const PortRangeLease range(2);
    const Publisher first("websocket", range.first(), range.last());
    const Publisher second("tcp", range.first(), range.last());
    const Publisher third("tcp", range.first(), range.last());
    EXPECT_EQ(first.port(), range.first());
    EXPECT_EQ(second.port(), range.last());
    EXPECT_EQ(second.reason(), "");
    EXPECT_EQ(second.address(), OrvuRestInterface::getInstance()->getCurrentIpAddress());
    EXPECT_FALSE(third);
    EXPECT_EQ(third.port(), 0);
    EXPECT_EQ(third.address(), "");
    EXPECT_EQ(third.reason(), "no TCP port from " + std::to_string(range.first()) + " to " +
                                  std::to_string(range.last()) + " is available");
}

TEST_F(APublisher, SaysWhyItWasNotOpened)
{
    const RawListener other;
    const std::string port = std::to_string(other.port());
    EXPECT_EQ(Publisher("tcp", other.port()).reason(), "TCP port " + port + " is not available");
    EXPECT_EQ(Publisher("udp").reason(), "the protocol is \"tcp\" or \"websocket\", not \"udp\"");
}

TEST_F(APublisher, StopsItsServerWhenItGoes)
{
    const PortLease lease;
    {
        const Publisher publisher("tcp", lease.port());
        ASSERT_TRUE(publisher);
    }
    EXPECT_GE(RawPeer(boundSocket(lease.port(), true)).fd(), 0);
}

TEST_F(APublisher, PushesNothingOnceItIsStopped)
{
    const PortLease lease;
    Publisher publisher("tcp", lease.port());
    publisher.stop();
    EXPECT_FALSE(publisher);
    EXPECT_FALSE(publisher.push("bytes"));
    publisher.stop();
}

}  // namespace
