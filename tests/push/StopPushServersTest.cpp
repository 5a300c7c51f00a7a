#include <algorithm>
#include <gmock/gmock.h>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

/// Stopping takes less than a second whatever peers do, and leaves nothing.

namespace {

/// How many sockets of this process are others than those of `peers`.
int openSocketsBut(const std::vector<RawPeer>& peers)
{
    const std::vector<int> open = openSockets();
    return static_cast<int>(std::count_if(open.begin(), open.end(), [&](int fd) {
        return std::none_of(peers.begin(), peers.end(), [fd](const RawPeer& peer) { return peer.fd() == fd; });
    }));
}

template <class Server>
struct StoppingAPushServer : testing::Test {
    ~StoppingAPushServer() override
    {
        for (RawPeer& client : clients)
            client.close();
        EXPECT_THAT(openSockets(), testing::IsEmpty());
        for (const char* const name : {"orvu-accept", "orvu-reader"})
            EXPECT_TRUE(eventually([&] { return threadsNamed("self", name).empty(); }));
    }

    void stopAtOnce()
    {
        const auto begin = Clock::now();
        running.server().stop();
        EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
    }
    /// The server holds nothing any more when stopping returns.
    void stopWhole()
    {
        stopAtOnce();
        EXPECT_EQ(openSocketsBut(clients), 0);
        for (RawPeer& client : clients)
            client.readToEnd();
    }

    Running<Server> running;
    std::vector<RawPeer> clients;
    const std::string begin = Kind<Server>::head(tooMuch().size()) + "x";  // of the push
};
TYPED_TEST_SUITE(StoppingAPushServer, BothKinds, NameOfKind);

TYPED_TEST(StoppingAPushServer, DoesNotWaitForAnIdleClient)
{
    this->clients.push_back(this->running.attach());
    this->stopWhole();
}

TYPED_TEST(StoppingAPushServer, EndsAPushThatAClientDoesNotTake)
{
    this->clients.push_back(this->running.attach(connectedWithLittleRoom));
    std::thread pusher([this] { this->running.push(tooMuch()); });
    EXPECT_EQ(this->clients[0].receive(this->begin.size()), this->begin);  // it has begun to go out
    this->stopWhole();
    pusher.join();
}

TYPED_TEST(StoppingAPushServer, IsNotHinderedByAClientThatCameDuringAPush)
{
    this->clients.push_back(this->running.attach(connectedWithLittleRoom));
    std::thread pusher([this] { this->running.push(tooMuch()); });
    EXPECT_EQ(this->clients[0].receive(this->begin.size()), this->begin);
    for (int i = 0; i < 3; ++i) {
        this->clients.push_back(RawPeer::connectedTo(this->running.port()));
        const RawPeer& client = this->clients.back();
        EXPECT_TRUE(eventually([&] { return otherEndOf(client) >= 0 || hasBytes(client); }));  // taken, or refused
    }
    this->stopWhole();
    pusher.join();
}

TYPED_TEST(StoppingAPushServer, EndsThePushesThatWaitForOneAnother)
{
    this->clients.push_back(this->running.attach(connectedWithLittleRoom));
    std::vector<std::thread> pushers;
    pushers.reserve(4);
    for (int i = 0; i < 4; ++i)
        pushers.emplace_back([this] { this->running.push(tooMuch()); });
    EXPECT_EQ(this->clients[0].receive(this->begin.size()), this->begin);
    this->stopWhole();
    for (std::thread& pusher : pushers)
        pusher.join();
}

TYPED_TEST(StoppingAPushServer, EndsAPushAlsoByDestroyingIt)
{
    this->clients.push_back(this->running.attach(connectedWithLittleRoom));
    std::thread pusher([&server = this->running.server()] { push(server, tooMuch()); });
    EXPECT_EQ(this->clients[0].receive(this->begin.size()), this->begin);
    const auto begin = Clock::now();
    this->running.destroy();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
    pusher.join();
}

TYPED_TEST(StoppingAPushServer, LeavesTheCutPushAPrefix)
{
    this->clients.push_back(this->running.attach(connectedWithLittleRoom));
    std::thread pusher([this] { this->running.push(tooMuch()); });
    const std::string head = this->clients[0].receive(this->begin.size());
    this->running.server().stop();
    pusher.join();
    const std::string received = head + this->clients[0].readToEnd();
    const std::string whole = Kind<TypeParam>::head(tooMuch().size()) + tooMuch();
    EXPECT_LT(received.size(), whole.size());
    EXPECT_TRUE(whole.compare(0, received.size(), received) == 0);
}

TYPED_TEST(StoppingAPushServer, DropsThoseThatWaitAtTheDoor)
{
    for (int i = 0; i < 200; ++i)
        this->clients.push_back(unconnected());
    const NoDescriptorsLeft none;
    for (RawPeer& client : this->clients)
        connectTo(this->running.port(), client);
    this->stopAtOnce();
}

TYPED_TEST(StoppingAPushServer, WorksWhileClientsComeAndGo)
{
    std::thread visitor([port = this->running.port()] {
        try {
            for (;;)
                RawPeer::connectedTo(port);
        } catch (const std::runtime_error&) {
            // the server is gone
        }
    });
    EXPECT_TRUE(eventually([] { return openSockets().size() > 2; }));
    this->stopAtOnce();
    visitor.join();
}

TYPED_TEST(StoppingAPushServer, WorksFromSeveralThreadsAtOnce)
{
    this->clients.push_back(this->running.attach());
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] { this->running.server().stop(); });
        threads.emplace_back([this] { this->running.push("hello"); });
    }
    for (std::thread& thread : threads)
        thread.join();
    this->stopWhole();
}

struct StoppingAWebSocketPushServer : StoppingAPushServer<OrvuRestServerWebSocket> {
    bool waitForOpeningRequest() { return running.log.waitFor("OrvuRestServerWebSocket::doHanshake: doHanshake -->>"); }
};

TEST_F(StoppingAWebSocketPushServer, DoesNotWaitForASilentConnection)
{
    clients.push_back(RawPeer::connectedTo(running.port()));
    ASSERT_TRUE(waitForOpeningRequest());
    stopWhole();
}

TEST_F(StoppingAWebSocketPushServer, DoesNotWaitForTheRestOfAnOpeningRequest)
{
    clients.push_back(RawPeer::connectedTo(running.port()));
    clients[0].send(openingRequest().substr(0, 100));
    ASSERT_TRUE(waitForOpeningRequest());
    stopWhole();
}

TEST_F(StoppingAWebSocketPushServer, DropsAllThatAreInTheirHandshake)
{
    for (int i = 0; i < 8; ++i)
        clients.push_back(RawPeer::connectedTo(running.port()));
    ASSERT_TRUE(waitForLines(running.log, "OrvuRestServerWebSocket::doHanshake: doHanshake -->>", 8));
    stopWhole();
}

TEST_F(StoppingAWebSocketPushServer, DropsThoseThatCompeteForThePlace)
{
    for (int i = 0; i < 201; ++i) {
        clients.push_back(RawPeer::connectedTo(running.port()));
        clients.back().send(i % 2 == 0 ? "" : openingRequest());
    }
    ASSERT_TRUE(waitForOpeningRequest());
    stopWhole();
}

TEST_F(StoppingAWebSocketPushServer, EndsTheEchoesOfAClientThatDoesNotReadThem)
{
    clients.push_back(running.attach(connectedWithLittleRoom));
    std::thread sender([this] {
        const std::string frames = textFrame(std::string(2000, 'x'));
        while (clients[0].send(frames)) {
        }
    });
    ASSERT_TRUE(waitForLines(running.log, "OrvuRestServerWebSocket::clientReadThread: -->> Receive data", 100));
    stopAtOnce();
    sender.join();
}

}  // namespace
