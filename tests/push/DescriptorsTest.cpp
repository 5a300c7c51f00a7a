#include <gmock/gmock.h>
#include <unistd.h>

#include "push/Peers.h"
#include "push/Publisher.h"

using namespace OrvuTests;

/// A publisher for which the system has no descriptors left, and what it leaves behind when it ends.

namespace {

/// The accepting thread, once it has given itself its name.
int acceptorOf(const Publisher& publisher)
{
    std::vector<int> named;
    eventually([&] { return !(named = threadsNamed(publisher.number(), "orvu-accept")).empty(); });
    return named.at(0);
}

struct APublisher : testing::TestWithParam<const char*> {
    static bool isWebSocket() { return std::string(GetParam()) == "websocket"; }

    /// Whether a client that connects gets the next push.
    static bool isServed(RawPeer& client, Publisher& publisher)
    {
        if (isWebSocket() && !shakesHands(client)) return false;
        return eventually([&] {
            publisher.push();
            return hasBytes(client);
        });
    }

    /// Whether a client has come in and is to send its opening request.
    static bool isAtTheDoorOf(Publisher& publisher)
    {
        return eventually([&] { return publisher.count("OrvuRestServerWebSocket::doHanshake: doHanshake -->>") > 0; });
    }

    static bool hasLetTheClientGo(Publisher& publisher)
    {
        return eventually([&] { return publisher.count("OrvuRestServerWebSocket::clientReadThread end") > 0; });
    }

    /// It tries ten times a second to accept, which costs next to nothing.
    static void expectAPatientAcceptor(Publisher& publisher)
    {
        constexpr int kTries = 10;
        const auto begin = Clock::now();
        const double before = processorTimeOf(publisher.number());
        EXPECT_TRUE(waitForWaits(publisher, acceptorOf(publisher), kTries));
        const std::chrono::duration<double> passed = Clock::now() - begin;
        EXPECT_LT(processorTimeOf(publisher.number()) - before, passed.count() / 2);
        EXPECT_LE(publisher.count("OrvuRestServerWebSocket: Waiting new client connection..."),
                  passed.count() * 10 + kTries);
    }
};

INSTANTIATE_TEST_SUITE_P(Of, APublisher, testing::Values("tcp", "websocket"),
                         [](const auto& protocol) { return std::string(protocol.param); });

TEST_P(APublisher, OutlivesAWantOfDescriptors)
{
    Publisher publisher(GetParam(), "ulimit -n 64");
    RawPeer attached = RawPeer::connectedTo(publisher.port());
    ASSERT_TRUE(isWebSocket() ? isAtTheDoorOf(publisher) : isServed(attached, publisher));
    publisher.takeDescriptors();
    std::vector<RawPeer> waiting;
    for (int i = 0; i < 100; ++i)
        waiting.push_back(RawPeer::connectedTo(publisher.port()));
    expectAPatientAcceptor(publisher);
    ASSERT_TRUE(!isWebSocket() || isServed(attached, publisher));  // while another one is in its handshake
    EXPECT_TRUE(publisher.push());

    waiting.clear();
    attached.close();
    publisher.giveDescriptorsBack();
    ASSERT_TRUE(!isWebSocket() || hasLetTheClientGo(publisher));
    RawPeer next = RawPeer::connectedTo(publisher.port());
    EXPECT_TRUE(isServed(next, publisher));
    EXPECT_EQ(publisher.end(SIGTERM).code, 0);
}

TEST_P(APublisher, LeavesAMissingStandardInputMissing)
{
    Publisher publisher(std::string(GetParam()), "exec <&-");
    RawPeer client = RawPeer::connectedTo(publisher.port());
    EXPECT_TRUE(isServed(client, publisher));
    EXPECT_FALSE(hasDescriptor(publisher.number(), STDIN_FILENO));
    EXPECT_EQ(publisher.end(SIGTERM).code, 0);
}

TEST_P(APublisher, MayEndWithItsServerRunning)
{
    Publisher publisher(GetParam());
    RawPeer client = RawPeer::connectedTo(publisher.port());
    ASSERT_TRUE(isServed(client, publisher));
    const Ended ended = publisher.end(SIGINT);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.err, testing::Not(testing::HasSubstr("Sanitizer")));
}

TEST(ATcpPublisher, MakesRoomForNewClientsOnceOldOnesAreGone)
{
    Publisher publisher("tcp", "ulimit -n 64");
    std::vector<RawPeer> clients;
    for (int i = 0; i < 100; ++i)
        clients.push_back(RawPeer::connectedTo(publisher.port()));
    ASSERT_TRUE(waitForWaits(publisher, acceptorOf(publisher), 3));
    EXPECT_FALSE(hasBytes(clients.back()));
    EXPECT_TRUE(publisher.push());
    for (int i = 0; i < 80; ++i)
        clients[static_cast<std::size_t>(i)].vanish();
    EXPECT_TRUE(eventually([&] {
        publisher.push();
        return hasBytes(clients.back());
    }));
    RawPeer next = RawPeer::connectedTo(publisher.port());
    EXPECT_TRUE(eventually([&] {
        publisher.push();
        return hasBytes(next);
    }));
    EXPECT_EQ(publisher.end(SIGTERM).code, 0);
}

}  // namespace
