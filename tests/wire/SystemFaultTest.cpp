#include <arpa/inet.h>
#include <cerrno>
#include <gmock/gmock.h>
#include <map>
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

/// The names that the library finds while it lives, with their IPv4 addresses.
class Hosts {
public:
    explicit Hosts(std::map<std::string, std::vector<std::string>> addresses = {})
        : addresses_(std::move(addresses)),
          asking_(calls.getaddrinfo, [this](const char* name, const char*, const addrinfo* hints,
                                            addrinfo** list) { return give(name, *hints, list); }),
          releasing_(calls.freeaddrinfo, [](addrinfo*) { return true; })
    {}

    /// What it was last asked for.
    const addrinfo& hints() const { return hints_; }

private:
    int give(const char* name, const addrinfo& hints, addrinfo** list)
    {
        hints_ = hints;
        const auto known = addresses_.find(name);
        if (known == addresses_.end()) return EAI_NONAME;
        found_.assign(known->second.size(), {});
        for (std::size_t i = 0; i < found_.size(); ++i) {
            found_[i].address.sin_family = AF_INET;
            inet_pton(AF_INET, known->second[i].c_str(), &found_[i].address.sin_addr);
            found_[i].entry.ai_addr = reinterpret_cast<sockaddr*>(&found_[i].address);
            if (i > 0) found_[i - 1].entry.ai_next = &found_[i].entry;
        }
        *list = &found_.front().entry;
        return 0;
    }

    struct Found {
        addrinfo entry;
        sockaddr_in address;
    };

    const std::map<std::string, std::vector<std::string>> addresses_;
    addrinfo hints_{};
    std::vector<Found> found_;
    const Instead asking_;
    const Instead releasing_;
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
    const Hosts none;
    EXPECT_FALSE(configure("nowhere.example"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: nowhere.example"));
    EXPECT_EQ(OrvuRestClientSocket::getInstance()->connectSocket(5), 0);
}

TEST_F(AClientWhoseSystemFails, LogsANameLiterally)
{
    const Hosts none;
    EXPECT_FALSE(configure("%s%n"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: %s%n"));
}

TEST_F(AClientWhoseSystemFails, TakesTheFirstIPv4AddressOfAName)
{
    const Hosts hosts({{"receiver.example", {"127.0.0.1", "127.99.99.99"}}});
    EXPECT_TRUE(configure("receiver.example"));
    EXPECT_EQ(hosts.hints().ai_family, AF_INET);
    EXPECT_EQ(hosts.hints().ai_socktype, SOCK_STREAM);
    RawPeer accepted = peer.accept();
    EXPECT_EQ(accepted.readToEnd(), "");
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
