#include <arpa/inet.h>
#include <cstring>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <ifaddrs.h>
#include <map>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "transport/OrvuRestClientSocket.h"

// What the system answers in this program, where the tests say so.

namespace {

int refusedOption = -1;
std::map<std::string, std::vector<std::string>> addressesOf;  // of the names that there are
addrinfo askedFor;
std::vector<std::string> interfaceAddresses;  // "" for an interface without an address, "::1" for one that is not IPv4
bool interfacesAreFake = false;
bool addressesCannotBeWritten = false;

template <class Function>
Function* real(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

struct Entry {
    sockaddr_storage address{};
    ifaddrs entry{};
};

sockaddr* fill(sockaddr_storage& storage, const std::string& text)
{
    if (text.empty()) return nullptr;
    auto* const four = reinterpret_cast<sockaddr_in*>(&storage);
    storage.ss_family = inet_pton(AF_INET, text.c_str(), &four->sin_addr) == 1 ? AF_INET : AF_INET6;
    return reinterpret_cast<sockaddr*>(&storage);
}

}  // namespace

extern "C" {

int setsockopt(int fd, int level, int option, const void* value, socklen_t size) noexcept
{
    if (level == SOL_SOCKET && option == refusedOption) return -1;
    return real<int(int, int, int, const void*, socklen_t)>("setsockopt")(fd, level, option, value, size);
}

int getaddrinfo(const char* name, const char*, const addrinfo* hints, addrinfo** found)
{
    askedFor = *hints;
    const auto known = addressesOf.find(name);
    if (known == addressesOf.end()) return EAI_NONAME;
    *found = nullptr;
    for (auto text = known->second.rbegin(); text != known->second.rend(); ++text) {
        auto* const address = new sockaddr_storage{};
        auto* const entry = new addrinfo{};
        entry->ai_addr = fill(*address, *text);
        entry->ai_next = *found;
        *found = entry;
    }
    return 0;
}

void freeaddrinfo(addrinfo* entry) noexcept
{
    while (entry) {
        addrinfo* const next = entry->ai_next;
        delete reinterpret_cast<sockaddr_storage*>(entry->ai_addr);
        delete entry;
        entry = next;
    }
}

const char* inet_ntop(int family, const void* address, char* text, socklen_t size) noexcept
{
    if (interfacesAreFake && addressesCannotBeWritten) return nullptr;
    return real<const char*(int, const void*, char*, socklen_t)>("inet_ntop")(family, address, text, size);
}

int getifaddrs(ifaddrs** list) noexcept
{
    if (!interfacesAreFake) return real<int(ifaddrs**)>("getifaddrs")(list);
    *list = nullptr;
    for (auto text = interfaceAddresses.rbegin(); text != interfaceAddresses.rend(); ++text) {
        Entry* const made = std::make_unique<Entry>().release();
        made->entry.ifa_addr = fill(made->address, *text);
        made->entry.ifa_data = made;
        made->entry.ifa_next = *list;
        *list = &made->entry;
    }
    return interfaceAddresses.empty() ? -1 : 0;
}

void freeifaddrs(ifaddrs* entry) noexcept
{
    if (!interfacesAreFake) return real<void(ifaddrs*)>("freeifaddrs")(entry);
    while (entry) {
        ifaddrs* const next = entry->ifa_next;
        delete static_cast<Entry*>(entry->ifa_data);
        entry = next;
    }
}
}

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::ElementsAre;

namespace {

const std::string kConnect = "OrvuRestClientSocket::connectSocket: ";

struct AClientWhoseSystemFails : testing::Test {
    ~AClientWhoseSystemFails() override
    {
        refusedOption = -1;
        addressesOf.clear();
        OrvuRestInterface::destroyInstance();
    }

    bool configure(const char* host) { return OrvuRestInterface::getInstance()->configureClient(host, peer.port()); }

    LogCapture log;
    RawListener peer;
};

TEST_F(AClientWhoseSystemFails, ReportsATimeOutForReadingThatCannotBeSet)
{
    refusedOption = SO_RCVTIMEO;
    EXPECT_FALSE(configure("127.0.0.1"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot set SO_RCVTIMEO"));
}

TEST_F(AClientWhoseSystemFails, ReportsATimeOutForWritingThatCannotBeSet)
{
    refusedOption = SO_SNDTIMEO;
    EXPECT_FALSE(configure("127.0.0.1"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot set SO_SNDTIMEO"));
}

TEST_F(AClientWhoseSystemFails, ReportsANameThatNobodyKnows)
{
    EXPECT_FALSE(configure("nowhere.example"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: nowhere.example"));
    EXPECT_EQ(OrvuRestClientSocket::getInstance()->connectSocket(5), 0);
}

TEST_F(AClientWhoseSystemFails, LogsANameLiterally)
{
    EXPECT_FALSE(configure("%s%n"));
    EXPECT_THAT(log.lines(), Contains(kConnect + "ERROR cannot find host: %s%n"));
}

TEST_F(AClientWhoseSystemFails, TakesTheFirstIPv4AddressOfAName)
{
    addressesOf["receiver.example"] = {"127.0.0.1", "127.99.99.99"};
    EXPECT_TRUE(configure("receiver.example"));
    EXPECT_EQ(askedFor.ai_family, AF_INET);
    EXPECT_EQ(askedFor.ai_socktype, SOCK_STREAM);
    RawPeer accepted = peer.accept();
    EXPECT_EQ(accepted.readToEnd(), "");
}

struct ADevice : testing::Test {
    ADevice() { interfacesAreFake = true; }
    ~ADevice() override
    {
        interfacesAreFake = false;
        OrvuRestInterface::destroyInstance();
    }

    std::string address(std::vector<std::string> addresses)
    {
        interfaceAddresses = std::move(addresses);
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
    addressesCannotBeWritten = true;
    EXPECT_EQ(address({"192.168.0.7"}), "127.0.0.1");
    addressesCannotBeWritten = false;
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
