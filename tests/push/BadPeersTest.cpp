#include <gmock/gmock.h>
#include <random>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace OrvuTests;

/// Peers that mean no good. Whatever they do, the server serves the next good one, and keeps nothing of them.

namespace {

std::string randomBytes(std::mt19937& random, std::size_t longest)
{
    std::string bytes(random() % longest, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

void leave(RawPeer& peer, unsigned how)
{
    if (how % 3 == 0) peer.vanish();
    if (how % 3 == 1) peer.finishSending();
    peer.close();
}

template <class Server>
struct ABadPeer : testing::Test {
    static constexpr bool kIsWebSocket = std::is_same_v<Server, OrvuRestServerWebSocket>;

    /// The client that comes next. A WebSocket server takes one once it has let the one before go.
    RawPeer goodClient()
    {
        RawPeer client = RawPeer::connectedTo(running.port());
        const auto isTaken = [&] {
            if (shakesHands(client)) return true;
            client = RawPeer::connectedTo(running.port());
            return false;
        };
        EXPECT_TRUE(!kIsWebSocket || eventually(isTaken));
        return client;
    }
    void expectService()
    {
        RawPeer client = goodClient();
        EXPECT_TRUE(eventually([&] {
            running.push("hello");
            return hasBytes(client);
        }));
        EXPECT_EQ(client.receive(kIsWebSocket ? 7 : 5), kIsWebSocket ? "\x82\x05hello" : "hello");
    }
    void expectNothingLeft()
    {
        running.destroy();
        EXPECT_THAT(openSockets(), testing::IsEmpty());
        EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-accept").empty(); }));
        EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-reader").empty(); }));
    }

    Running<Server> running;
    std::mt19937 random{20240229};
};
TYPED_TEST_SUITE(ABadPeer, BothKinds, NameOfKind);

TYPED_TEST(ABadPeer, ComesAndGoesTwoHundredTimes)
{
    std::vector<RawPeer> peers;
    for (int i = 0; i < 200; ++i)
        peers.push_back(RawPeer::connectedTo(this->running.port()));
    for (RawPeer& peer : peers)
        leave(peer, this->random());
    this->expectService();
    this->expectNothingLeft();
}

TYPED_TEST(ABadPeer, ComesInFromManySidesAtOnce)
{
    std::vector<std::thread> visitors;
    visitors.reserve(8);
    for (unsigned i = 0; i < 8; ++i)
        visitors.emplace_back([this, random = std::mt19937(i)]() mutable {
            for (int j = 0; j < 50; ++j) {
                RawPeer peer = RawPeer::connectedTo(this->running.port());
                peer.send(random() % 2 == 0 ? openingRequest() : randomBytes(random, 3000));
                leave(peer, random());
            }
        });
    for (int i = 0; i < 50; ++i)
        this->running.push("hello");
    for (std::thread& visitor : visitors)
        visitor.join();
    this->expectService();
    this->expectNothingLeft();
}

TYPED_TEST(ABadPeer, SendsRandomBytes)
{
    for (int i = 0; i < 100; ++i) {
        RawPeer peer = RawPeer::connectedTo(this->running.port());
        peer.send(randomBytes(this->random, 5000) + "\r\n\r\n");
        leave(peer, this->random());
    }
    this->expectService();
    this->expectNothingLeft();
}

using ABadWebSocketPeer = ABadPeer<OrvuRestServerWebSocket>;

TEST_F(ABadWebSocketPeer, SendsRandomBytesAfterTheHandshake)
{
    for (int i = 0; i < 100; ++i) {
        RawPeer peer = this->goodClient();
        for (int j = 0; j < 5; ++j) {
            std::string bytes = randomBytes(this->random, 5000);
            if (!bytes.empty() && j % 2 == 0) bytes[0] = '\x81';
            if (!peer.send(bytes)) break;
            this->running.push("hello");
        }
        leave(peer, this->random());
    }
    this->expectService();
    this->expectNothingLeft();
}

TEST_F(ABadWebSocketPeer, ShakesHandsAndLeavesTwoHundredTimes)
{
    for (int i = 0; i < 200; ++i) {
        RawPeer peer = RawPeer::connectedTo(this->running.port());
        peer.send(openingRequest());
        if (i % 2 == 0) peer.receive(kAnswer.size());  // which does not come where the door is held
        leave(peer, this->random());
    }
    this->expectService();
    this->expectNothingLeft();
}

TEST_F(ABadWebSocketPeer, SendsTextsAndNeverReadsTheEchoes)
{
    RawPeer peer = this->running.attach(connectedWithLittleRoom);
    const std::string text = textFrame(std::string(2000, 'x'));
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(peer.send(text));
    peer.vanish();
    this->expectService();
    this->expectNothingLeft();
}

using ABadTcpPeer = ABadPeer<OrvuRestServerTcpSocket>;

TEST_F(ABadTcpPeer, SendsMoreThanAnybodyReads)
{
    RawPeer good = this->running.attach();
    RawPeer peer = this->running.attach();
    std::thread sender([&] { peer.send(tooMuch() + tooMuch()); });
    ASSERT_TRUE(this->running.push("hello"));
    EXPECT_EQ(good.receive(5), "hello");
    EXPECT_EQ(peer.receive(5), "hello");
    this->running.server().stop();
    sender.join();
}

}  // namespace
