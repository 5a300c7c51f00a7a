#include <arpa/inet.h>
#include <cerrno>
#include <gmock/gmock.h>
#include <netdb.h>
#include <netinet/in.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "support/Interfaces.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "support/SystemCalls.h"
#include "transport/OrvuRestClientSocket.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::ElementsAre;

namespace {

/// The one name that the library finds while it lives, with its IPv4 addresses; without one, no name.
class Host {
public:
    explicit Host(std::string name = "", const std::vector<std::string>& addresses = {})
        : name_(std::move(name)),
          addresses_(addresses.size()),
          asking_(calls.gethostbyname_r, [this](const char* asked, hostent* host, char*, std::size_t, hostent** found,
                                                int* reason) { return give(asked, host, found, reason); })
    {
        for (std::size_t i = 0; i < addresses.size(); ++i) {
            inet_pton(AF_INET, addresses[i].c_str(), &addresses_[i]);
            list_.push_back(reinterpret_cast<char*>(&addresses_[i]));
        }
        list_.push_back(nullptr);
    }

private:
    int give(const std::string& asked, hostent* host, hostent** found, int* reason)
    {
        *host = {};
        host->h_addrtype = AF_INET;
        host->h_length = sizeof(in_addr);
        host->h_addr_list = list_.data();
        *found = asked == name_ ? host : nullptr;
        *reason = HOST_NOT_FOUND;
        return 0;
    }

    const std::string name_;
    std::vector<in_addr> addresses_;
    std::vector<char*> list_;
    const Instead asking_;
};

/// Has the library set no such option of a socket while it lives.
class RefusedOption {
public:
    explicit RefusedOption(int option)
        : setting_(calls.setsockopt, [option](int, int level, int asked, const void*, socklen_t) -> std::optional<int> {
              if (level != SOL_SOCKET || asked != option) return std::nullopt;
              errno = EINVAL;
              return -1;
          })
    {}

private:
    const Instead setting_;
};

const std::string kConnect = "OrvuRestClientSocket::connectSocket: ";

struct AClientWhoseSystemFails : testing::Test {
    ~AClientWhoseSystemFails() override { OrvuRestInterface::destroyInstance(); }

    bool configure(const char* host) { return OrvuRestInterface::getInstance()->configureClient(host, peer.port()); }

    LogCapture log;
    RawListener peer;
};

TEST_F(AClientWhoseSystemFails, ReportsATimeOutForReadingThatCannotBeSet)
{
    const RefusedOption refused(SO_RCVTIMEO);
    EXPECT_FALSE(configure("127.0.0.1"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot set SO_RCVTIMEO"));
}

TEST_F(AClientWhoseSystemFails, ReportsATimeOutForWritingThatCannotBeSet)
{
    const RefusedOption refused(SO_SNDTIMEO);
    EXPECT_FALSE(configure("127.0.0.1"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot set SO_SNDTIMEO"));
}

TEST_F(AClientWhoseSystemFails, ReportsANameThatNobodyKnows)
{
    const Host none;
    EXPECT_FALSE(configure("nowhere.example"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: nowhere.example"));
    EXPECT_EQ(OrvuRestClientSocket::getInstance()->connectSocket(5), 0);
}

TEST_F(AClientWhoseSystemFails, LogsANameLiterally)
{
    const Host none;
    EXPECT_FALSE(configure("%s%n"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: %s%n"));
}

TEST_F(AClientWhoseSystemFails, TakesTheFirstIPv4AddressOfAName)
{
    const Host host("receiver.example", {"127.0.0.1", "127.99.99.99"});
    EXPECT_TRUE(configure("receiver.example"));
    RawPeer accepted = peer.accept();
    EXPECT_EQ(accepted.readToEnd(), "");
}

TEST_F(AClientWhoseSystemFails, AsksForANameAgainWithMoreRoom)
{
    const Host host("receiver.example", {"127.0.0.1"});
    const FailingCall asking(calls.gethostbyname_r, 1, ERANGE);
    EXPECT_TRUE(configure("receiver.example"));
    EXPECT_EQ(calls.gethostbyname_r.count(), 2);
}

TEST_F(AClientWhoseSystemFails, ReportsANameThatCannotBeLookedUp)
{
    const Host host("receiver.example", {"127.0.0.1"});
    const FailingCall asking(calls.gethostbyname_r, 1, EAGAIN);
    EXPECT_FALSE(configure("receiver.example"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: receiver.example"));
}

struct ADevice : testing::Test {
    ~ADevice() override { OrvuRestInterface::destroyInstance(); }

    std::string address(const std::vector<std::string>& addresses)
    {
        const Interfaces known(addresses);
        return OrvuRestInterface::getInstance()->getCurrentIpAddress();
    }

    LogCapture log;
};

TEST_F(ADevice, HasTheFirstAddressThatIsNotTheLoopbacks)
{
    EXPECT_EQ(address({"127.0.0.1", "192.168.0.7", "10.0.0.7"}), "192.168.0.7");
    EXPECT_THAT(log.lines(), ElementsAre("valid IPv4 Address found"));
}

TEST_F(ADevice, HasTheLoopbacksAddressWithoutAnother)
{
    EXPECT_EQ(address({"127.0.0.1"}), "127.0.0.1");
    EXPECT_THAT(log.lines(), testing::IsEmpty());
}

TEST_F(ADevice, HasTheLoopbacksAddressWithoutAnInterface)
{
    EXPECT_EQ(address({}), "127.0.0.1");
}

TEST_F(ADevice, MayHaveAnotherAddressOfTheLoopback)
{
    EXPECT_EQ(address({"127.0.1.1", "192.168.0.7"}), "127.0.1.1");
    EXPECT_EQ(address({"127.0.0.11"}), "127.0.0.11");
}

TEST_F(ADevice, PassesOverInterfacesWithoutAnIPv4Address)
{
    EXPECT_EQ(address({"", "::1", "fe80::1", "10.0.0.7"}), "10.0.0.7");
}

TEST_F(ADevice, HasTheLoopbacksAddressWhenItsOwnCannotBeWritten)
{
    const FailingCall writing(calls.inet_ntop, 1, ENOSPC);
    EXPECT_EQ(address({"192.168.0.7"}), "127.0.0.1");
    EXPECT_THAT(log.lines(), Contains("Cannot resolve the current IP. Check your network!"));
}

TEST(TheRealDevice, HasADottedAddress)
{
    in_addr address{};
    const std::string text = OrvuRestInterface::getInstance()->getCurrentIpAddress();
    EXPECT_EQ(inet_pton(AF_INET, text.c_str(), &address), 1) << text;
    OrvuRestInterface::destroyInstance();
}

}  // namespace
