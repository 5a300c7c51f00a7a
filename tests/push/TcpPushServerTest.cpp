#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <pthread.h>
#include <thread>

#include "push/PushServers.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

const std::string kSending = "OrvuRestServerTcpSocket::send: Send to client: ";
const std::string kFailed = "OrvuRestServerTcpSocket::send: ERROR writing to socket";
const std::string kEmpty = "OrvuRestServerTcpSocket::send: ERROR data is empty!";

struct ATcpPushServer : testing::Test {
    RunningTcp server;
    LogCapture& log = server.log;
};

std::string everyByte()
{
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

TEST_F(ATcpPushServer, PushesTheBytesExactlyAsGiven)
{
    RawPeer client = server.attach();
    EXPECT_TRUE(server.push(everyByte()));
    EXPECT_TRUE(server.push("{}"));
    server.destroy();
    EXPECT_EQ(client.readToEnd(), everyByte() + "{}");
}

TEST_F(ATcpPushServer, PushesToEveryClient)
{
    std::vector<RawPeer> clients;
    for (int i = 0; i < 64; ++i)
        clients.push_back(server.attach());
    EXPECT_TRUE(server.push("hello"));
    for (RawPeer& client : clients)
        EXPECT_EQ(client.receive(5), "hello");
}

TEST_F(ATcpPushServer, LogsThePushOnce)
{
    const RawPeer first = server.attach();
    const RawPeer second = server.attach();
    server.push("hello");
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending + "hello"));
}

TEST_F(ATcpPushServer, PushesToNobodyBeforeSomebodyConnects)
{
    ASSERT_TRUE(log.waitFor("OrvuRestServerTcpSocket::serverThread: Server loop start!"));
    log.clear();
    EXPECT_FALSE(server.push("hello"));
    EXPECT_FALSE(server.push(""));
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending + "hello", kSending));
}

TEST_F(ATcpPushServer, PushesNoEmptyMessage)
{
    RawPeer first = server.attach();
    const RawPeer second = server.attach();
    EXPECT_FALSE(server.push(""));
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending, kEmpty, kEmpty));
    server.server().stop();
    EXPECT_EQ(first.readToEnd(), "");
}

TEST_F(ATcpPushServer, TakesNoBytesAtAllForAnEmptyMessage)
{
    const RawPeer client = server.attach();
    EXPECT_FALSE(server.server().send(nullptr, 5));
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending, kEmpty));
}

TEST_F(ATcpPushServer, LogsNoMoreThanTheGivenBytes)
{
    RawPeer client = server.attach();
    char text[] = {'h', 'e', 'l', 'l', 'o', '!', '\0'};
    EXPECT_TRUE(server.server().send(reinterpret_cast<unsigned char*>(text), 5));
    EXPECT_TRUE(server.push(std::string("one\0two", 7)));
    EXPECT_TRUE(server.push("%s%n%d"));
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending + "hello", kSending + "one", kSending + "%s%n%d"));
    EXPECT_EQ(client.receive(18), std::string("helloone\0two%s%n%d", 18));
}

TEST_F(ATcpPushServer, CutsALongLineInTheLogAlone)
{
    RawPeer client = server.attach();
    const std::string message(100000, 'x');
    EXPECT_TRUE(server.push(message));
    EXPECT_EQ(client.receive(message.size()), message);
    EXPECT_THAT(log.lines(), testing::ElementsAre((kSending + message).substr(0, 4095)));
}

TEST_F(ATcpPushServer, ReportsAClientThatIsGoneAtEachPush)
{
    RawPeer gone = server.attach();
    RawPeer other = server.attach();
    gone.vanish();
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(server.push("hello"));
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending + "hello", kFailed, kSending + "hello", kFailed,
                                                  kSending + "hello", kFailed));
    EXPECT_EQ(other.receive(15), "hellohellohello");
}

TEST_F(ATcpPushServer, FailsWhenItsOnlyClientIsGone)
{
    server.attach().vanish();
    EXPECT_FALSE(server.push("hello"));
    EXPECT_EQ(server.listed(), 1);
}

TEST_F(ATcpPushServer, FindsAClientThatClosedAtTheSecondPushAtTheLatest)
{
    server.attach().close();
    server.push("the system learns from the answer to this one that nobody is there");
    EXPECT_TRUE(eventually([this] { return !server.push("hello"); }));
    EXPECT_EQ(server.listed(), 1);
}

TEST_F(ATcpPushServer, PushesToAClientThatSaysThatItWillSendNothing)
{
    RawPeer client = server.attach();
    client.finishSending();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(client.receive(5), "hello");
}

TEST_F(ATcpPushServer, ReadsNothing)
{
    RawPeer client = server.attach();
    ASSERT_TRUE(client.send(std::string(50000, 'x')));
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(client.receive(5), "hello");
    EXPECT_THAT(log.lines(), testing::ElementsAre(kSending + "hello"));
}

TEST_F(ATcpPushServer, GoesOnWithALongPushWhereTheClientMakesRoom)
{
    RawPeer client = server.attach(connectedWithLittleRoom);
    const std::string message = tooMuch() + "end";
    std::string received;
    std::thread reader([&] { received = client.receive(message.size()); });
    EXPECT_TRUE(server.push(message));
    reader.join();
    EXPECT_TRUE(received == message);
    EXPECT_EQ(log.count(kFailed), 0);
}

TEST_F(ATcpPushServer, NeverMixesThePushesOfSeveralThreads)
{
    constexpr int kThreads = 4;
    constexpr int kPushes = 20;
    constexpr std::size_t kSize = 300000;  // the system takes them in pieces
    RawPeer client = server.attach(connectedWithLittleRoom);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([this, i] {
            for (int j = 0; j < kPushes; ++j)
                EXPECT_TRUE(server.push(std::string(kSize, static_cast<char>('a' + i))));
        });
    const std::string received = client.receive(kThreads * kPushes * kSize);
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_EQ(received.size(), kThreads * kPushes * kSize);
    for (std::size_t at = 0; at < received.size(); at += kSize)
        ASSERT_EQ(received.substr(at, kSize), std::string(kSize, received[at]));
}

TEST_F(ATcpPushServer, TakesClientsWhileItPushes)
{
    std::atomic<bool> over{false};
    std::thread pusher([&] {
        while (!over)
            server.push("x");
    });
    std::vector<RawPeer> clients;
    for (int i = 0; i < 100; ++i) {
        clients.push_back(RawPeer::connectedTo(server.port()));
        EXPECT_EQ(clients.back().receive(1), "x") << i;
    }
    over = true;
    pusher.join();
}

TEST_F(ATcpPushServer, WaitsOnThroughSignals)
{
    struct sigaction ignore {};
    struct sigaction before {};
    ignore.sa_handler = [](int) {};  // without SA_RESTART: calls that wait are interrupted
    sigaction(SIGUSR1, &ignore, &before);
    RawPeer client = server.attach(connectedWithLittleRoom);
    const std::string& message = tooMuch();
    std::thread pusher([&] { EXPECT_TRUE(server.push(message)); });
    const std::string begin = client.receive(1);
    for (int i = 0; i < 100; ++i)
        pthread_kill(pusher.native_handle(), SIGUSR1);
    EXPECT_TRUE(begin + client.receive(message.size() - 1) == message);
    pusher.join();
    sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
