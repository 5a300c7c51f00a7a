#include <gmock/gmock.h>

#include "orvu/OrvuRestInterface.h"
#include "support/Interfaces.h"
#include "support/LogCapture.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

struct TheAddressOfThisDevice : testing::Test {
    std::string among(const std::vector<std::string>& addresses)
    {
        const Interfaces known(addresses);
        return OrvuRestInterface::getInstance()->getCurrentIpAddress();
    }
    ~TheAddressOfThisDevice() override { OrvuRestInterface::destroyInstance(); }

    LogCapture log;
};

TEST_F(TheAddressOfThisDevice, IsTheFirstThatIsNotTheLoopback)
{
    EXPECT_EQ(among({"127.0.0.1", "192.168.0.7", "10.0.0.1"}), "192.168.0.7");
    EXPECT_EQ(among({"10.0.0.1", "127.0.0.1"}), "10.0.0.1");
    EXPECT_EQ(among({"255.255.255.255"}), "255.255.255.255");
    EXPECT_EQ(log.count("valid IPv4 Address found"), 3);
}

TEST_F(TheAddressOfThisDevice, MayBeAnotherOfTheLoopbackNetwork)
{
    EXPECT_EQ(among({"127.0.0.1", "127.0.1.1", "192.168.0.7"}), "127.0.1.1");
    EXPECT_EQ(among({"127.0.0.10"}), "127.0.0.10");
}

TEST_F(TheAddressOfThisDevice, IsTheLoopbackWithoutAnother)
{
    EXPECT_EQ(among({"127.0.0.1"}), "127.0.0.1");
    EXPECT_EQ(among({}), "127.0.0.1");
    EXPECT_EQ(among({"", "IPv6", "127.0.0.1"}), "127.0.0.1");
    EXPECT_EQ(log.count("valid IPv4 Address found"), 0);
}

TEST_F(TheAddressOfThisDevice, IsFoundAfterInterfacesWithoutOne)
{
    EXPECT_EQ(among({"", "IPv6", "127.0.0.1", "", "10.0.0.1"}), "10.0.0.1");
}

}  // namespace
