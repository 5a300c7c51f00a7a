#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/RawPeer.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;

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

}  // namespace
}  // namespace OrvuTests
