#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PushListener.h"
#include "stress/StressTime.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "support/RawPeer.h"
#include "wire/Sockets.h"

using namespace Orvu;

/// Listeners that are started, stopped and destroyed without pause, from their callbacks as well, while pushes arrive
/// and publishers vanish. The thread sanitizer sees whether they get into each other's way.

namespace OrvuTests {
namespace {

const std::string kMessage = R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})";

/// Pushes to whoever connects, and goes away without a word every other time.
class VanishingPublisher {
public:
    VanishingPublisher() : thread_([this] { pushAndVanish(); }) {}
    ~VanishingPublisher()
    {
        isLeaving_ = true;
        RawPeer::connectedTo(port());
        thread_.join();
    }
    int port() const { return listener_.port(); }

private:
    void pushAndVanish()
    {
        for (int turn = 0; !isLeaving_; ++turn) {
            RawPeer client = listener_.accept();
            for (int i = 0; i < turn % 20 && client.send(kMessage); ++i) {
            }
            if (turn % 2 == 0) client.vanish();
        }
    }

    RawListener listener_;
    std::atomic<bool> isLeaving_{false};
    std::thread thread_;
};

/// A listener and what its callbacks touch, which must not be touched once the listener has gone.
struct Listening {
    std::atomic<int> heard{0};
    int touched = 0;  // by the listener's thread alone
    int stopAfter = 0;
    PushListener listener;

    static void message(PushedMessage&, void* context)
    {
        Listening& listening = *static_cast<Listening*>(context);
        ++listening.touched;
        if (++listening.heard == listening.stopAfter) listening.listener.stop();
    }
    static void state(const ListenerStatus&, void* context) { ++static_cast<Listening*>(context)->touched; }
};

/// Every other listener waits for a message first; every third stops in its callback; others are stopped by two
/// threads.
void liveOnce(int turn, int port, Channel channel)
{
    Listening listening;
    listening.stopAfter = turn % 3 == 0 ? 1 : 0;
    listening.listener.onMessage(Listening::message, &listening);
    listening.listener.onState(Listening::state, &listening);
    listening.listener.makeObjects(turn % 2 == 0);
    ASSERT_TRUE(listening.listener.listen("127.0.0.1", port, channel));
    if (turn % 5 == 0) {
        std::thread other([&] { listening.listener.stop(); });
        listening.listener.stop();
        other.join();
    }
    if (turn % 7 == 0) {
        ASSERT_TRUE(listening.listener.listen("127.0.0.1", port, channel));
    }
    if (turn % 4 == 1) std::this_thread::yield();
    listening.listener.stop();
}

TEST(ListenersUnderStress, StartStopAndEndWhilePushesArriveAndPublishersVanish)
{
    const std::vector<int> descriptors = openDescriptors();
    const auto end = Clock::now() + stressTime();
    {
        const VanishingPublisher publisher;
        const PortLease lease;
        OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
        facade.setSocketsPortsRange(lease.port(), lease.port());
        const std::unique_ptr<SocketServerInfo> server(facade.createServer("websocket"));
        ASSERT_TRUE(server && server->error == 0);
        std::thread pushing([&] {
            auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(kMessage.data()));  // only read from
            while (Clock::now() < end)
                facade.sendMessage(server->handler, data, static_cast<unsigned>(kMessage.size()));
        });
        std::thread tcp([&] {
            for (int turn = 0; Clock::now() < end; ++turn)
                liveOnce(turn, publisher.port(), ChannelTcp);
        });
        for (int turn = 0; Clock::now() < end; ++turn)
            liveOnce(turn, server->port, ChannelWebSocket);
        tcp.join();
        pushing.join();
        OrvuRestInterface::destroyInstance();
    }
    EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-listener").empty(); }));
    EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors; }));
}

}  // namespace
}  // namespace OrvuTests
