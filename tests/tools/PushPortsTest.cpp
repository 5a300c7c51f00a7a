#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class APushServersPort : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Push, APushServersPort, testing::Values("tcp", "websocket"));

TEST_P(APushServersPort, IsNamedWhenItIsNotAvailable)
{
    const RawListener taken;
    for (const char* option : {"--ports", "--port"}) {
        const Ended ended = run(orvu({"push", GetParam(), option, std::to_string(taken.port())}));
        EXPECT_EQ(ended.code, 69);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "orvu: port " + std::to_string(taken.port()) + " is not available\n");
    }
}

TEST_P(APushServersPort, MayBeGivenAlone)
{
    for (const char* option : {"--ports", "--port"}) {
        const PortLease port;
        const Ended ended = run(orvu({"push", GetParam(), option, std::to_string(port.port())}));
        EXPECT_EQ(ended.code, 0);
        EXPECT_THAT(ended.out, HasSubstr(":" + std::to_string(port.port()) + ", handle "));
    }
}

TEST_P(APushServersPort, IsOnTheAddressThatHostNames)
{
    const PortLease port;
    const Ended ended = run(orvu({"push", GetParam(), "--ports", std::to_string(port.port()), "--host", "127.0.0.2"}));
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, HasSubstr(" server on 127.0.0.2:" + std::to_string(port.port()) + ", handle "));
}

TEST_P(APushServersPort, IsNamedWithItsRangeWhenNoneIsAvailable)
{
    const RawListener taken;
    const std::string ports = rangeOf(taken.port());
    const Ended ended = run(orvu({"push", GetParam(), "--ports", ports}));
    EXPECT_EQ(ended.code, 69);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: no port of " + ports + " is available\n");
}

TEST_P(APushServersPort, IsTheFirstFreeOneOfTheRange)
{
    std::deque<PortLease> ports(2);
    while (ports.back().port() != ports[ports.size() - 2].port() + 1)
        ports.emplace_back();
    const int taken = ports[ports.size() - 2].port();
    const int listening = boundSocket(taken, true);
    const std::string range = std::to_string(taken) + "-" + std::to_string(taken + 1);
    const Ended ended = run(orvu({"push", GetParam(), "--ports", range}));
    close(listening);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, HasSubstr(":" + std::to_string(taken + 1) + ", handle "));
}

TEST_P(APushServersPort, IsNotAvailableOnAnAddressThatIsNotThisDevices)
{
    const Ended ended = run(orvu({"push", GetParam(), "--ports", "9000-9010", "--listen", "192.0.2.1"}));
    EXPECT_EQ(ended.code, 69);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: no port of 9000-9010 is available on 192.0.2.1\n");
}

TEST_P(APushServersPort, ListensOnOneAddressAloneWhenAsked)
{
    Publisher publisher(GetParam(), {"--listen", "127.0.0.2"});
    EXPECT_THAT(publisher.process().out(),
                StartsWith(publisher.protocol() + " server on 127.0.0.2:" + publisher.portText() + ", handle "));
    EXPECT_LT(connectedTo(publisher.port()), 0);
}

TEST_P(APushServersPort, IsPrintedWhenTheSystemChoseIt)
{
    Pipe input;
    Process publisher({"/bin/sh", "-c",
                       "exec " + orvuInShell("push " + std::string(GetParam()) + " --ports 0-0 --listen 127.0.0.1 <'" +
                                             input.path() + "'")});
    ASSERT_TRUE(publisher.waitForOutput("handle"));
    const std::string beginning = std::string(GetParam()) + " server on 127.0.0.1:";
    ASSERT_THAT(publisher.out(), StartsWith(beginning));
    const int client = connectedTo(std::stoi(publisher.out().substr(beginning.size())));
    EXPECT_GE(client, 0);
    close(client);
    input.close();
    EXPECT_EQ(publisher.wait().code, 0);
}

}  // namespace
}  // namespace OrvuTests
