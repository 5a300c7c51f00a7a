#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "push/Clients.h"
#include "push/PushServers.h"
#include "stress/StressTime.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

/// Push servers that are made, pushed through, stopped and destroyed without pause, while clients connect, echo, leave
/// and vanish. The thread sanitizer sees whether they get into each other's way.

namespace {

const std::string kMessage(500, 'x');

using Listen = Got (*)(int port, int turn, const std::string& message);

/// Clients of a push server, one after the other, while it lives.
class Clients {
public:
    Clients(Listen listen, int port)
        : thread_([this, listen, port] {
              for (int turn = 0; !over_; ++turn)
                  if (listen(port, turn, kMessage) == Got::SomethingElse) ++wrong_;
          })
    {}
    ~Clients()
    {
        over_ = true;
        thread_.join();
        EXPECT_EQ(wrong_, 0);
    }

private:
    std::atomic<bool> over_{false};
    int wrong_ = 0;
    std::thread thread_;
};

/// The descriptors that this process has when it is made.
class Belongings {
public:
    /// That it has no others by now, and no thread of a push server.
    void expectNothingElse() const
    {
        EXPECT_EQ(openDescriptors(), descriptors_);
        for (const char* const name : {"orvu-accept", "orvu-reader"})
            EXPECT_TRUE(eventually([name] { return threadsNamed("self", name).empty(); }));
    }

private:
    const std::vector<int> descriptors_ = openDescriptors();
};

void expectMessage(RawPeer& client, const std::string& head)
{
    EXPECT_EQ(client.receive(head.size() + kMessage.size()), head + kMessage);
}

struct TheFacadeUnderStress : testing::Test {
    ~TheFacadeUnderStress() override { OrvuRestInterface::destroyInstance(); }

    static OrvuRestInterface& facade() { return *OrvuRestInterface::getInstance(); }

    static int create(const char* protocol, int port)
    {
        facade().setSocketsPortsRange(port, port);
        const std::unique_ptr<SocketServerInfo> info(facade().createServer(protocol));
        EXPECT_TRUE(info && info->error == 0);
        return info ? info->handler : 0;
    }
    static bool push(int handler)
    {
        auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(kMessage.data()));  // only read from
        return facade().sendMessage(handler, data, static_cast<unsigned>(kMessage.size()));
    }
    static void stop(int one, int other, int turn)
    {
        if (turn % 3 == 0) {
            EXPECT_TRUE(facade().stopServer(one));
            EXPECT_TRUE(facade().stopServer(other));
        } else if (turn % 3 == 1) {
            facade().stopAllServers();
        } else {
            OrvuRestInterface::destroyInstance();
        }
    }
    /// A pair of servers from beginning to end; every other one waits for a client of each.
    void liveOnce(int turn) const
    {
        const int one = create("tcp", tcp.port());
        const int other = create("websocket", webSocket.port());
        const bool taken =
            turn % 2 == 0 || (eventually([&] { return push(one); }) && eventually([&] { return push(other); }));
        EXPECT_TRUE(taken);
        for (int i = 0; i < turn % 50; ++i) {
            push(one);
            push(other);
        }
        stop(one, other, turn);
    }
    void expectService() const
    {
        const int one = create("tcp", tcp.port());
        RawPeer client = RawPeer::connectedTo(tcp.port());
        EXPECT_TRUE(eventually([&] { return push(one); }));
        expectMessage(client, "");
        const int other = create("websocket", webSocket.port());
        RawPeer page = RawPeer::connectedTo(webSocket.port());
        ASSERT_TRUE(shakesHands(page));
        EXPECT_TRUE(push(other));
        EXPECT_EQ(readServerFrame(page), (Frame{0x82, kMessage}));
        OrvuRestInterface::destroyInstance();
    }

    const PortLease tcp;
    const PortLease webSocket;
};

TEST_F(TheFacadeUnderStress, MakesPushesStopsAndDestroysAndServesTheNextClient)
{
    const Belongings belongings;
    const auto end = Clock::now() + stressTime();
    {
        const Clients listeners(listenToTcp, tcp.port());
        const Clients moreListeners(listenToTcp, tcp.port());
        const Clients pages(listenToWebSocket, webSocket.port());
        const Clients morePages(listenToWebSocket, webSocket.port());
        for (int turn = 0; Clock::now() < end; ++turn)
            liveOnce(turn);
        OrvuRestInterface::destroyInstance();  // sends those away who are still there
    }
    expectService();
    belongings.expectNothingElse();
}

template <class Server>
struct APushServerUnderStress : testing::Test {
    static constexpr bool kIsTcp = std::is_same_v<Server, OrvuRestServerTcpSocket>;
    static constexpr Listen kListen = kIsTcp ? listenToTcp : listenToWebSocket;

    bool start() { return server.configure(lease.port()) && server.start(); }
    void expectService()
    {
        ASSERT_TRUE(start());
        RawPeer client = RawPeer::connectedTo(lease.port());
        ASSERT_TRUE(kIsTcp || shakesHands(client));
        EXPECT_TRUE(eventually([&] { return push(server, kMessage); }));
        expectMessage(client, kIsTcp ? "" : std::string("\x82\x7e\x01\xf4", 4));
        server.stop();
    }

    Server server;
    const PortLease lease;
};
TYPED_TEST_SUITE(APushServerUnderStress, BothKinds, NameOfKind);

TYPED_TEST(APushServerUnderStress, StopsAndStartsWhileManyPushAndServesTheNextClient)
{
    const Belongings belongings;
    const auto end = Clock::now() + stressTime() / 4;
    {
        const Clients clients(this->kListen, this->lease.port());
        const Clients moreClients(this->kListen, this->lease.port());
        std::vector<std::thread> pushers;
        for (int i = 0; i < 2; ++i)
            pushers.emplace_back([&] {
                while (Clock::now() < end)
                    push(this->server, kMessage);
            });
        while (Clock::now() < end) {
            EXPECT_TRUE(this->start());
            EXPECT_TRUE(eventually([&] { return push(this->server, kMessage); }));
            this->server.stop();
        }
        for (std::thread& pusher : pushers)
            pusher.join();
    }
    this->expectService();
    belongings.expectNothingElse();
}

}  // namespace
