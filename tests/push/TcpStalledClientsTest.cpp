#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "push/PushServers.h"

using namespace OrvuTests;
using std::chrono::seconds;

/// Clients that do not read what they are sent. Each test here takes as long as a push waits for them: 5 s.

namespace {

const std::string kFailed = "OrvuRestServerTcpSocket::send: ERROR writing to socket";
constexpr seconds kPushTime(5);
constexpr seconds kAtOnce(2);  // far from the bound, also on a busy machine

/// Whether just these bytes come.
bool receives(RawPeer& client, const std::string& expected)
{
    constexpr std::size_t kPiece = 65536;
    for (std::size_t at = 0; at < expected.size(); at += kPiece) {
        const std::size_t size = std::min(kPiece, expected.size() - at);
        if (expected.compare(at, size, client.receive(size)) != 0) return false;
    }
    return true;
}

struct APushToStalledClients : testing::Test {
    /// Pushes `message`; how long it took, and whether it went out whole to anybody.
    std::pair<Clock::duration, bool> timed(const std::string& message)
    {
        const auto begin = Clock::now();
        const bool sent = server.push(message);
        return {Clock::now() - begin, sent};
    }

    RunningTcp server;
    LogCapture& log = server.log;
};

TEST_F(APushToStalledClients, WaitsOnceAndCostsTheOthersNothing)
{
    const RawPeer stalled = server.attach(connectedWithLittleRoom);
    keepLittleFor(stalled);
    std::vector<RawPeer> clients;
    for (int i = 0; i < 63; ++i)
        clients.push_back(server.attach());
    const std::string first(std::size_t{256} << 10, 'x');
    std::string whole = first;
    for (int i = 0; i < 100; ++i)
        whole += "more";
    std::vector<std::thread> readers;
    readers.reserve(clients.size());
    for (RawPeer& client : clients)
        readers.emplace_back([&] { EXPECT_TRUE(receives(client, whole)); });

    const auto [wait, sent] = timed(first);
    EXPECT_GE(wait, kPushTime);
    EXPECT_LT(wait, kPushTime + kAtOnce);
    EXPECT_TRUE(sent);
    EXPECT_EQ(log.count(kFailed), 1);

    const auto begin = Clock::now();
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(server.push("more"));
    EXPECT_LT(Clock::now() - begin, kAtOnce);
    EXPECT_EQ(log.count(kFailed), 101);
    for (std::thread& reader : readers)
        reader.join();
}

TEST_F(APushToStalledClients, WaitsForAllOfThemTogether)
{
    std::vector<RawPeer> stalled;
    for (int i = 0; i < 5; ++i)
        stalled.push_back(server.attach(connectedWithLittleRoom));
    const auto [wait, sent] = timed(tooMuch());
    EXPECT_GE(wait, kPushTime);
    EXPECT_LT(wait, kPushTime + kAtOnce);
    EXPECT_FALSE(sent);
    EXPECT_EQ(log.count(kFailed), 5);
}

TEST_F(APushToStalledClients, WaitsAgainForOneThatTookAPushWhole)
{
    RawPeer client = server.attach(connectedWithLittleRoom);
    ASSERT_FALSE(timed(tooMuch()).second);
    const auto [wait, sent] = timed(tooMuch());
    EXPECT_LT(wait, kAtOnce);
    EXPECT_FALSE(sent);

    std::string received;
    std::thread reader([&] { received = client.readToEnd(); });
    ASSERT_TRUE(eventually([this] { return server.push("taken whole"); }));  // as soon as there is room for it
    EXPECT_TRUE(server.push(tooMuch() + "end"));  // more than there is room for: it is waited for
    server.destroy();
    reader.join();
    EXPECT_TRUE(received.size() > tooMuch().size() + 3);
    EXPECT_TRUE(received.substr(received.size() - tooMuch().size() - 3) == tooMuch() + "end");
}

TEST_F(APushToStalledClients, ServesOneThatReadsAByteASecondAsOneThatDoesNotRead)
{
    RawPeer slow = server.attach(connectedWithLittleRoom);
    RawPeer other = server.attach();
    std::atomic<bool> over{false};
    std::thread slowReader([&] {
        while (!over && slow.receive(1) == "x")
            std::this_thread::sleep_for(seconds(1));
    });
    std::thread reader([&] { EXPECT_TRUE(receives(other, tooMuch() + "more")); });
    const auto [wait, sent] = timed(tooMuch());
    EXPECT_LT(wait, kPushTime + kAtOnce);
    EXPECT_TRUE(sent);
    EXPECT_LT(timed("more").first, kAtOnce);
    reader.join();
    over = true;
    slowReader.join();
}

TEST_F(APushToStalledClients, EndsWhenTheyGoAway)
{
    RawPeer first = server.attach(connectedWithLittleRoom);
    RawPeer second = server.attach(connectedWithLittleRoom);
    std::pair<Clock::duration, bool> push;
    std::thread pusher([&] { push = timed(tooMuch()); });
    EXPECT_EQ(first.receive(1) + second.receive(1), "xx");  // it has begun to go out
    first.vanish();
    second.close();
    pusher.join();
    EXPECT_LT(push.first, kPushTime);
    EXPECT_FALSE(push.second);
    EXPECT_EQ(log.count(kFailed), 2);
    EXPECT_EQ(server.listed(), 2);
}

}  // namespace
