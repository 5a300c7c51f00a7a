#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <new>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include "orvu/OrvuRestInterface.h"
#include "push/PushServers.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

/// What the system does rarely: it takes a few bytes of a frame, has no memory, or a minute passes. This program stands
/// between the library and the system's functions.

namespace {

constexpr int kMinute = 60 * 1000;

std::atomic<int> minutesThatPass{0};           // waits of a minute that end at once
std::atomic<int> minutesThatFail{0};           // that fail
std::atomic<int> sendsThatFindNoRoom{0};       // sends that the system takes nothing of
std::atomic<int> sendsUntilOneFindsNoRoom{0};  // again and again; 0: none does
std::atomic<std::size_t> mostThatIsSent{0};    // bytes that it takes at once; 0: all
std::vector<int>* sentTo = nullptr;            // keeps the descriptors of sends
std::atomic<int> awaitedShutdown{-1};  // an accept that succeeds returns once this descriptor is shut down; -1: at once
std::atomic<bool> libraryHasNoMemory{false};  // its threads, for C++ objects
thread_local int allocationsLeft = 0;         // of this thread, up to the one that is refused; below 1: none is
ifaddrs* interfaces = nullptr;

bool happens(std::atomic<int>& fault)
{
    int left = fault;
    while (left > 0 && !fault.compare_exchange_weak(left, left - 1)) {
    }
    return left > 0;
}

bool isLibraryThread()
{
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof name);
    return std::strncmp(name, "orvu-", 5) == 0;
}

bool isRefused()
{
    if (allocationsLeft > 0 && --allocationsLeft == 0) return true;
    return libraryHasNoMemory && isLibraryThread();
}

void* allocated(std::size_t size)
{
    return isRefused() ? nullptr : std::malloc(size);
}

}  // namespace

extern "C" {
int __real_accept4(int fd, sockaddr* address, socklen_t* size, int flags);
int __real_shutdown(int fd, int how);
int __real_poll(pollfd* wanted, nfds_t count, int timeout);
ssize_t __real_sendmsg(int fd, const msghdr* message, int flags);

int __wrap_accept4(int fd, sockaddr* address, socklen_t* size, int flags)
{
    const int accepted = __real_accept4(fd, address, size, flags);
    if (accepted >= 0) eventually([] { return awaitedShutdown < 0; });
    return accepted;
}

int __wrap_shutdown(int fd, int how)
{
    const int result = __real_shutdown(fd, how);
    if (fd == awaitedShutdown) awaitedShutdown = -1;
    return result;
}

int __wrap_poll(pollfd* wanted, nfds_t count, int timeout)
{
    if (timeout == kMinute && happens(minutesThatFail)) {
        errno = ENOMEM;
        return -1;
    }
    if (timeout == kMinute && happens(minutesThatPass)) return 0;
    return __real_poll(wanted, count, timeout);
}

ssize_t __wrap_sendmsg(int fd, const msghdr* message, int flags)
{
    static std::atomic<int> sends{0};
    if (sentTo) sentTo->push_back(fd);
    const int period = sendsUntilOneFindsNoRoom;
    if (happens(sendsThatFindNoRoom) || (period > 0 && ++sends % period == 0)) {
        errno = EAGAIN;
        return -1;
    }
    if (mostThatIsSent == 0) return __real_sendmsg(fd, message, flags);
    std::size_t left = mostThatIsSent;
    iovec parts[2];
    msghdr shorter = *message;
    shorter.msg_iov = parts;
    for (std::size_t i = 0; i < message->msg_iovlen; ++i) {
        parts[i] = message->msg_iov[i];
        parts[i].iov_len = std::min(parts[i].iov_len, left);
        left -= parts[i].iov_len;
    }
    return __real_sendmsg(fd, &shorter, flags);
}

int __wrap_getifaddrs(ifaddrs** list)
{
    *list = interfaces;
    return interfaces ? 0 : -1;
}

void __wrap_freeifaddrs(ifaddrs*) {}
}

void* operator new(std::size_t size)
{
    if (void* const block = allocated(size)) return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocated(size);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    std::free(block);
}

namespace {

const std::string kReader = "OrvuRestServerWebSocket::clientReadThread";

struct AWebSocketServerInTrouble : testing::Test {
    ~AWebSocketServerInTrouble() override
    {
        mostThatIsSent = 0;
        libraryHasNoMemory = false;
    }
    bool waitFor(const std::string& line, int count)
    {
        return eventually([&] { return log.count(line) >= count; });
    }

    RunningWebSocket server;
    LogCapture& log = server.log;
};

TEST_F(AWebSocketServerInTrouble, LogsEachMinuteInWhichNothingComes)
{
    minutesThatPass = 3;
    RawPeer client = server.attach();
    EXPECT_TRUE(waitFor(kReader + ": waiting...", 3));
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
    EXPECT_EQ(log.count(kReader + ": waiting..."), 3);
}

TEST_F(AWebSocketServerInTrouble, LetsAClientGoForWhichItCannotWait)
{
    minutesThatFail = 1;
    RawPeer client = server.attach();
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(waitFor(kReader + " end", 1));
    EXPECT_EQ(log.count(kReader + ": closing..."), 1);
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST_F(AWebSocketServerInTrouble, DropsAFrameOfWhichNothingCouldBeSent)
{
    RawPeer client = server.attach();
    sendsThatFindNoRoom = 1;
    EXPECT_TRUE(server.push("dropped"));  // a failed write counts as sent
    EXPECT_TRUE(server.push("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, "hello"}));
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::send: Sent to client -1 bytes"), 1);
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::send: Sent to client 7 bytes"), 1);
}

TEST_F(AWebSocketServerInTrouble, DropsAnEchoOfWhichNothingCouldBeSent)
{
    RawPeer client = server.attach();
    sendsThatFindNoRoom = 1;
    client.send(textFrame("dropped"));
    ASSERT_TRUE(waitFor(kReader + " <<-- Receive data", 1));
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketServerInTrouble, SendsWholeFramesHoweverLittleTheSystemTakesAtOnce)
{
    for (const std::size_t most : {1, 2, 3, 5, 100}) {
        mostThatIsSent = most;
        RawPeer client = server.attach();
        for (const std::size_t size : {0, 1, 125, 126, 1000}) {
            const std::string message(size, 'x');
            EXPECT_TRUE(server.push(message));
            EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, message})) << most << " of " << size;
        }
        client.send(textFrame("hello"));
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
        client.send(kCloseFrame);
        EXPECT_EQ(client.readToEnd(), "");
    }
}

TEST_F(AWebSocketServerInTrouble, DropsOrFinishesAFrameThatFindsNoRoomAtTimes)
{
    constexpr int kPushes = 30;
    RawPeer client = server.attach();
    mostThatIsSent = 100;
    sendsUntilOneFindsNoRoom = 4;
    for (int i = 0; i < kPushes; ++i)
        EXPECT_TRUE(server.push(std::string(1000, static_cast<char>('A' + i))));
    sendsUntilOneFindsNoRoom = 0;
    const int dropped = log.count("OrvuRestServerWebSocket::send: Sent to client -1 bytes");
    EXPECT_EQ(dropped + log.count("OrvuRestServerWebSocket::send: Sent to client 1004 bytes"), kPushes);
    EXPECT_GT(dropped, 0);
    EXPECT_LT(dropped, kPushes);
    server.server().stop();
    std::string received = client.readToEnd();
    const std::vector<Frame> frames = takeFrames(received);
    EXPECT_EQ(received, "");
    EXPECT_EQ(frames.size(), static_cast<std::size_t>(kPushes - dropped));
    for (const Frame& frame : frames)
        EXPECT_EQ(frame, (Frame{0x82, std::string(1000, frame.payload[0])}));
}

TEST_F(AWebSocketServerInTrouble, IgnoresATextForWhichItHasNoMemory)
{
    RawPeer client = server.attach();
    ASSERT_TRUE(waitFor(kReader + ": start", 1));
    libraryHasNoMemory = true;
    client.send(textFrame(std::string(100, 'x')));
    ASSERT_TRUE(waitFor(kReader + " <<-- Receive data", 1));
    libraryHasNoMemory = false;
    EXPECT_EQ(log.count("receiveframe: ERROR out of memory!"), 1);
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketServerInTrouble, TurnsClientsAwayForWhichItHasNoMemory)
{
    libraryHasNoMemory = true;
    RawPeer client = RawPeer::connectedTo(server.port());
    client.send(openingRequest());
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(waitFor("OrvuRestServerWebSocket::serverThread: ERROR out of memory!", 1));
    libraryHasNoMemory = false;
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST(ATcpServerInTrouble, TurnsClientsAwayForWhichItHasNoMemory)
{
    RunningTcp server;
    libraryHasNoMemory = true;
    RawPeer client = RawPeer::connectedTo(server.port());
    EXPECT_EQ(client.readToEnd(), "");
    libraryHasNoMemory = false;
    EXPECT_EQ(server.log.count("OrvuRestServerTcpSocket::serverThread: ERROR out of memory!"), 1);
    RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(another.receive(5), "hello");
}

TEST(ATcpServerInTrouble, PushesNothingOrAllWithoutMemory)
{
    RunningTcp server;
    RawPeer client = server.attach();
    int refused = 0;
    for (int nth = 1; allocationsLeft == 0; ++nth) {
        allocationsLeft = nth;
        if (server.push("hello")) break;
        ++refused;
    }
    allocationsLeft = 0;
    EXPECT_GT(refused, 0);
    EXPECT_EQ(server.log.count("OrvuRestServerTcpSocket::send: ERROR out of memory!"), refused);
    server.server().stop();
    EXPECT_EQ(client.readToEnd(), "hello");
}

TEST(ATcpServerInTrouble, PushesAllBytesHoweverFewTheSystemTakesAtOnce)
{
    RunningTcp server;
    RawPeer first = server.attach();
    RawPeer second = server.attach();
    mostThatIsSent = 1;
    EXPECT_TRUE(server.push("hello"));
    mostThatIsSent = 0;
    EXPECT_EQ(first.receive(5), "hello");
    EXPECT_EQ(second.receive(5), "hello");
}

TEST(ATcpServer, TakesNobodyWhoComesInWhileItStops)
{
    RunningTcp server;
    RawPeer first = server.attach();
    awaitedShutdown = otherEndOf(first);
    RawPeer last = RawPeer::connectedTo(server.port());
    ASSERT_TRUE(eventually([&] { return otherEndOf(last) >= 0; }));
    server.server().stop();
    EXPECT_EQ(awaitedShutdown, -1);
    EXPECT_EQ(otherEndOf(first), -1);
    EXPECT_EQ(otherEndOf(last), -1);
}

TEST(ATcpServer, OffersAPushInTheOrderOfAcceptance)
{
    RunningTcp server;
    std::vector<RawPeer> clients;
    std::vector<int> accepted;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(server.attach());
        accepted.push_back(otherEndOf(clients.back()));
    }
    std::vector<int> order;
    sentTo = &order;
    EXPECT_TRUE(server.push("hello"));
    sentTo = nullptr;
    EXPECT_EQ(order, accepted);
}

TEST(TheFacadeInTrouble, CreatesNoServerWithoutMemory)
{
    const PortLease lease;
    for (const char* const protocol : {"tcp", "websocket"}) {
        OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
        facade.setSocketsPortsRange(lease.port(), lease.port());
        const std::string name = protocol;
        int refused = 0;
        std::unique_ptr<SocketServerInfo> info;
        for (int nth = 1; !info || info->error != 0; ++nth) {
            allocationsLeft = nth;
            info.reset(facade.createServer(name));
            refused += allocationsLeft == 0;
            allocationsLeft = 0;
        }
        EXPECT_GT(refused, 2);
        EXPECT_TRUE(facade.stopServer(info->handler));
        OrvuRestInterface::destroyInstance();
    }
}

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
