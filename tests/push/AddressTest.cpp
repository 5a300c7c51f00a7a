#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>

#include "orvu/OrvuRestInterface.h"
#include "push/Faults.h"
#include "support/LogCapture.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

/// A list of interfaces, each with an IPv4 address, "IPv6", or "" for none.
class Interfaces {
public:
    explicit Interfaces(const std::vector<std::string>& addresses) : entries_(addresses.size()), ends_(addresses.size())
    {
        for (std::size_t i = 0; i < addresses.size(); ++i) {
            ends_[i].sin_family = addresses[i] == "IPv6" ? AF_INET6 : AF_INET;
            inet_pton(AF_INET, addresses[i].c_str(), &ends_[i].sin_addr);
            if (!addresses[i].empty()) entries_[i].ifa_addr = reinterpret_cast<sockaddr*>(&ends_[i]);
            if (i > 0) entries_[i - 1].ifa_next = &entries_[i];
        }
        interfaces = entries_.data();
    }
    ~Interfaces() { interfaces = nullptr; }

private:
    std::vector<ifaddrs> entries_;
    std::vector<sockaddr_in> ends_;
};

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

TEST_F(TheAddressOfThisDevice, IsFoundBehindInterfacesWithoutOne)
{
    EXPECT_EQ(among({"", "IPv6", "127.0.0.1", "", "10.0.0.1"}), "10.0.0.1");
}

}  // namespace
