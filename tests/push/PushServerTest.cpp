#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "push/PushServers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

/// What holds for both kinds of push server.

namespace {

template <class Server>
struct APushServer : testing::Test {
    Running<Server> running;
};
TYPED_TEST_SUITE(APushServer, BothKinds, NameOfKind);

TYPED_TEST(APushServer, ClosesItsClientWhenItStops)
{
    RawPeer client = this->running.attach();
    this->running.server().stop();
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_FALSE(this->running.push("hello"));
}

TYPED_TEST(APushServer, ClosesItsClientWhenItIsConfigured)
{
    RawPeer client = this->running.attach();
    const PortLease other;
    EXPECT_TRUE(this->running.server().configure(other.port()));
    EXPECT_EQ(client.readToEnd(), "");
}

TYPED_TEST(APushServer, ClosesItsClientWhenItIsDestroyed)
{
    RawPeer client = this->running.attach();
    this->running.destroy();
    EXPECT_EQ(client.readToEnd(), "");
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
