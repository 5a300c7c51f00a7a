#include <gmock/gmock.h>
#include <thread>

#include "push/PushServers.h"
#include "wire/Sockets.h"

using namespace OrvuTests;

/// Clients that are gone stay listed until there are no descriptors left for others.

namespace {

struct ClientsThatAreGone : testing::Test {
    /// Connects `client`, for which there is no descriptor but that of others, and waits until it gets what is pushed.
    void squeezeIn(RawPeer& client)
    {
        connectTo(server.port(), client);
        EXPECT_TRUE(eventually([&] {
            server.push("x");
            return hasBytes(client);
        }));
    }

    bool waitUntilListed(int count)
    {
        return eventually([=] { return server.listed() == count; });
    }

    /// What came after the pushes that squeezeIn() needed.
    static std::string lastWords(RawPeer& client)
    {
        const std::string received = client.readToEnd();
        return received.substr(std::min(received.find_first_not_of('x'), received.size()));
    }

    RunningTcp server;
};

TEST_F(ClientsThatAreGone, StayListed)
{
    server.attach().vanish();
    server.attach().close();
    server.attach().finishSending();
    const RawPeer another = server.attach();
    EXPECT_EQ(server.listed(), 4);
}

TEST_F(ClientsThatAreGone, MakeRoomWhenDescriptorsRunOut)
{
    RawPeer silent = server.attach();
    silent.finishSending();
    server.attach().vanish();
    RawPeer alive = server.attach();
    RawPeer last = unconnected();
    const NoDescriptorsLeft none;

    squeezeIn(last);
    EXPECT_TRUE(waitUntilListed(3));
    EXPECT_TRUE(server.push("hello"));
    server.server().stop();
    for (RawPeer* const client : {&silent, &alive, &last})
        EXPECT_EQ(lastWords(*client), "hello");
}

TEST_F(ClientsThatAreGone, CountAsSuchOnceAWriteFailed)
{
    RawPeer silent = server.attach();
    silent.finishSending();
    server.attach().close();
    ASSERT_TRUE(eventually([this] {
        server.push("x");  // the first one is answered with a reset
        return server.log.count("OrvuRestServerTcpSocket::send: ERROR writing to socket") > 0;
    }));
    RawPeer last = unconnected();
    const NoDescriptorsLeft none;

    squeezeIn(last);
    EXPECT_TRUE(waitUntilListed(2));
    EXPECT_TRUE(server.push("hello"));
    server.server().stop();
    EXPECT_EQ(lastWords(silent), "hello");
    EXPECT_EQ(lastWords(last), "hello");
}

TEST_F(ClientsThatAreGone, IncludeThoseThatOnlySaidThatTheyWillSendNothingIfNeedBe)
{
    RawPeer silent = server.attach();
    silent.finishSending();
    RawPeer alive = server.attach();
    RawPeer last = unconnected();
    const NoDescriptorsLeft none;

    squeezeIn(last);
    EXPECT_TRUE(waitUntilListed(2));
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(lastWords(silent), "");
    server.server().stop();
    EXPECT_EQ(lastWords(alive), "hello");
    EXPECT_EQ(lastWords(last), "hello");
}

TEST_F(ClientsThatAreGone, MakeRoomAlsoWhenAPushWaitsForThem)
{
    RawPeer silent = server.attach(connectedWithLittleRoom);
    silent.finishSending();
    RawPeer last = unconnected();
    Clock::duration wait{};
    std::thread pusher([&] {
        const auto begin = Clock::now();
        EXPECT_FALSE(server.push(tooMuch()));
        wait = Clock::now() - begin;
    });
    EXPECT_EQ(silent.receive(1), "x");
    {
        const NoDescriptorsLeft none;
        squeezeIn(last);
    }
    pusher.join();
    EXPECT_LT(wait, std::chrono::seconds(5));
    EXPECT_TRUE(waitUntilListed(1));
}

TEST_F(ClientsThatAreGone, DoNotIncludeThoseThatAreStillThere)
{
    std::vector<RawPeer> clients;
    clients.push_back(server.attach());
    for (int i = 0; i < 3; ++i)
        clients.push_back(unconnected());
    {
        const NoDescriptorsLeft none;
        for (std::size_t i = 1; i < clients.size(); ++i)
            connectTo(server.port(), clients[i]);
        for (int i = 0; i < 100; ++i)
            EXPECT_TRUE(server.push("x"));
        EXPECT_LE(server.listed(), 2);  // an accept that waited before may have had its descriptor already
        EXPECT_EQ(clients[0].receive(100), std::string(100, 'x'));
    }
    EXPECT_TRUE(waitUntilListed(4));
    EXPECT_TRUE(server.push("hello"));
    server.server().stop();
    for (RawPeer& client : clients)
        EXPECT_EQ(lastWords(client), "hello");
}

}  // namespace
