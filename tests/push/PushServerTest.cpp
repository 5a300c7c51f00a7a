#include <fcntl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "push/PushServers.h"
#include "support/BuiltProgram.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

/// What holds for both kinds of push server.

namespace {

bool isRefused(int port)
{
    RawPeer peer = unconnected();
    try {
        connectTo(port, peer);
        return false;
    } catch (const std::runtime_error&) {
        return true;
    }
}

bool canListenOn(int port)
{
    return RawPeer(boundSocket(port, true)).fd() >= 0;
}

template <class Server>
struct APushServer : testing::Test {
    static std::string line(const std::string& text) { return std::string(Kind<Server>::kName) + "::" + text; }

    Running<Server> running;
};
TYPED_TEST_SUITE(APushServer, BothKinds, NameOfKind);

TYPED_TEST(APushServer, LogsTheBeginningAndTheEndOfItsLoop)
{
    EXPECT_TRUE(this->running.log.waitFor(this->line("serverThread: Server loop start!")));
    EXPECT_EQ(this->running.log.count(this->line("serverThread: Server loop end!")), 0);
    this->running.server().stop();
    EXPECT_EQ(this->running.log.count(this->line("serverThread: Server loop start!")), 1);
    EXPECT_EQ(this->running.log.count(this->line("serverThread: Server loop end!")), 1);
}

TYPED_TEST(APushServer, ChangesNothingWhenItIsStartedAgain)
{
    RawPeer client = this->running.attach();
    EXPECT_TRUE(this->running.server().start());
    EXPECT_TRUE(this->running.push("hello"));
    const std::string head = Kind<TypeParam>::head(0).empty() ? "" : "\x82\x05";
    EXPECT_EQ(client.receive(head.size() + 5), head + "hello");
    EXPECT_LE(this->running.log.count(this->line("serverThread: Server loop start!")), 1);
}

TYPED_TEST(APushServer, IsStoppedByBeingConfigured)
{
    RawPeer client = this->running.attach();
    const PortLease other;
    EXPECT_TRUE(this->running.server().configure(other.port()));
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(isRefused(this->running.port()));
    EXPECT_EQ(this->running.log.count(this->line("serverThread: Server loop end!")), 1);
    EXPECT_TRUE(this->running.server().start());
    EXPECT_FALSE(isRefused(other.port()));
}

TYPED_TEST(APushServer, CanHaveItsOwnPortAgain)
{
    RawPeer client = this->running.attach();
    EXPECT_TRUE(this->running.server().configure(this->running.port()));
    EXPECT_TRUE(this->running.server().start());
    EXPECT_FALSE(isRefused(this->running.port()));
}

TYPED_TEST(APushServer, ClosesItsClientWhenItStops)
{
    RawPeer client = this->running.attach();
    this->running.server().stop();
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(isRefused(this->running.port()));
    EXPECT_FALSE(this->running.push("hello"));
    EXPECT_FALSE(this->running.server().start());
}

TYPED_TEST(APushServer, StartsAgainOnTheSamePortAtOnce)
{
    for (int round = 0; round < 20; ++round) {
        RawPeer client = RawPeer::connectedTo(this->running.port());
        this->running.server().stop();
        ASSERT_TRUE(canListenOn(this->running.port())) << round;
        ASSERT_TRUE(this->running.server().configure(this->running.port())) << round;
        ASSERT_TRUE(this->running.server().start()) << round;
        EXPECT_EQ(client.readToEnd(), "");
    }
}

TYPED_TEST(APushServer, GivesItsPortBackWhenItIsDestroyed)
{
    for (int round = 0; round < 20; ++round) {
        const PortLease lease;
        auto server = std::make_unique<TypeParam>();
        ASSERT_TRUE(server->configure(lease.port()) && server->start()) << round;
        RawPeer client = RawPeer::connectedTo(lease.port());
        server.reset();
        EXPECT_EQ(client.readToEnd(), "");
        ASSERT_TRUE(canListenOn(lease.port())) << round;
    }
}

TYPED_TEST(APushServer, HasTheLongestBacklogThatTheSystemGives)
{
    if (kEmulated) GTEST_SKIP() << "the emulator does not tell the backlog";
    EXPECT_EQ(backlogOf(listenerOn(this->running.port())), longestBacklog());
}

TYPED_TEST(APushServer, HasNoDescriptorThatAProgramItStartsWouldInherit)
{
    const RawPeer client = this->running.attach();
    for (const int fd : {listenerOn(this->running.port()), otherEndOf(client)}) {
        ASSERT_GE(fd, 3);
        EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
    }
}

TYPED_TEST(APushServer, SendsWithoutWaitingForTheClientToConfirm)
{
    const RawPeer client = this->running.attach();
    int on = 0;
    socklen_t size = sizeof on;
    ASSERT_EQ(getsockopt(otherEndOf(client), IPPROTO_TCP, TCP_NODELAY, &on, &size), 0);
    EXPECT_EQ(on, 1);
}

TYPED_TEST(APushServer, NamesItsThreadsAndBlocksTheirSignals)
{
    const RawPeer client = this->running.attach();
    const bool reads = std::string(Kind<TypeParam>::kProtocol) == "websocket";
    ASSERT_TRUE(eventually([&] { return threadsNamed("self", "orvu-reader").size() == (reads ? 1 : 0); }));
    ASSERT_EQ(threadsNamed("self", "orvu-accept").size(), 1u);
    for (const char* const name : {"orvu-accept", "orvu-reader"})
        for (const int thread : threadsNamed("self", name))
            EXPECT_TRUE(eventually([&] { return hasTheLibrarysSignals("self", thread); })) << name;
}

TYPED_TEST(APushServer, LeavesNothingBehind)
{
    this->running.server().stop();
    ASSERT_TRUE(eventually([] { return threadsNamed("self", "orvu-accept").empty(); }));
    const std::size_t descriptors = openDescriptors().size();
    const int threads = threadCount();
    for (int round = 0; round < 10; ++round) {
        Running<TypeParam> another;
        const RawPeer client = another.attach();
        const RawPeer second = RawPeer::connectedTo(another.port());
        another.push("hello");
    }
    EXPECT_EQ(openDescriptors().size(), descriptors);
    EXPECT_TRUE(eventually([&] { return threadCount() <= threads; }));  // a reader may just have ended
}

}  // namespace
