#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "support/RawPeer.h"
#include "support/SocketPair.h"
#include "support/SystemCalls.h"
#include "transport/InFlight.h"
#include "transport/Socket.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

bool isOpen(int fd)
{
    return fcntl(fd, F_GETFD) >= 0;
}

struct ExchangesInFlight : testing::Test {
    std::shared_ptr<InFlight> inFlight = std::make_shared<InFlight>();
    const SocketPair pair;
    Socket socket{pair.ends[0]};
    RawPeer peer{pair.ends[1]};
};

TEST_F(ExchangesInFlight, AreWokenByShuttingTheirSocketsDown)
{
    EXPECT_TRUE(inFlight->enter(socket.fd(), 0));
    inFlight->wakeAll();
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_TRUE(isOpen(socket.fd()));
}

TEST_F(ExchangesInFlight, AreNotTouchedOnceTheyHaveLeft)
{
    inFlight->enter(socket.fd(), 0);
    inFlight->leave(socket.fd());
    inFlight->wakeAll();
    peer.send("hello");
    char bytes[5];
    EXPECT_EQ(recv(socket.fd(), bytes, sizeof bytes, 0), 5);
}

TEST_F(ExchangesInFlight, AreNotLetInWhenTheyBeganBeforeAllWereWoken)
{
    const unsigned begun = inFlight->wakes();
    inFlight->wakeAll();
    EXPECT_FALSE(inFlight->enter(socket.fd(), begun));
    EXPECT_TRUE(inFlight->enter(socket.fd(), inFlight->wakes()));
}

TEST_F(ExchangesInFlight, LetNobodyInOnceTheyAreClosed)
{
    inFlight->close();
    EXPECT_FALSE(inFlight->enter(socket.fd(), inFlight->wakes()));
    inFlight->waitUntilEmpty();  // and whoever was not let in is not waited for
}

TEST_F(ExchangesInFlight, LearnThatTheyAreNotWantedAnyMore)
{
    const ConnectionInFlight connection(std::move(socket), inFlight, inFlight->wakes());
    EXPECT_TRUE(connection.isWanted());
    inFlight->wakeAll();
    EXPECT_FALSE(connection.isWanted());
    const ConnectionInFlight later(Socket::stream(), inFlight, inFlight->wakes());
    EXPECT_TRUE(later.isWanted());
    inFlight->close();
    EXPECT_FALSE(later.isWanted());
}

TEST_F(ExchangesInFlight, BeginNothingMoreOnceTheyAreClosed)
{
    int begun = 0;
    EXPECT_TRUE(inFlight->ifOpen([&] { ++begun; }));
    inFlight->close();
    EXPECT_FALSE(inFlight->ifOpen([&] { ++begun; }));
    EXPECT_EQ(begun, 1);
}

TEST_F(ExchangesInFlight, AreWaitedFor)
{
    std::atomic<bool> left{false};
    inFlight->enter(socket.fd(), 0);
    std::thread exchange([&] {
        char byte;
        EXPECT_EQ(recv(socket.fd(), &byte, 1, 0), 0);  // until it is woken
        left = true;
        inFlight->leave(socket.fd());
    });
    inFlight->wakeAll();
    inFlight->waitUntilEmpty();
    EXPECT_TRUE(left);
    exchange.join();
}

TEST_F(ExchangesInFlight, LeaveByTheirConnection)
{
    const int fd = socket.fd();
    {
        const ConnectionInFlight connection(std::move(socket), inFlight, 0);
        EXPECT_TRUE(connection);
    }
    EXPECT_FALSE(isOpen(fd));
    inFlight->waitUntilEmpty();
}

TEST_F(ExchangesInFlight, LeaveBeforeTheirDescriptorIsClosed)
{
    bool wasStillKnown = true;
    std::optional<Instead> closing;
    {
        const ConnectionInFlight connection(std::move(socket), inFlight, 0);
        closing.emplace(calls.close, [&](int) {
            inFlight->wakeAll();
            char byte;
            wasStillKnown = recv(peer.fd(), &byte, 1, MSG_DONTWAIT) == 0;  // shut down, as all that are known were
            return std::nullopt;
        });
    }
    EXPECT_FALSE(wasStillKnown);
}

TEST_F(ExchangesInFlight, CloseAConnectionThatIsNotLetIn)
{
    const int fd = socket.fd();
    inFlight->close();
    const ConnectionInFlight connection(std::move(socket), inFlight, inFlight->wakes());
    EXPECT_FALSE(connection);
    EXPECT_FALSE(isOpen(fd));
}

TEST_F(ExchangesInFlight, GiveTheirSocketAwayAfterTheyLeft)
{
    ConnectionInFlight connection(std::move(socket), inFlight, 0);
    socket = connection.releaseSocket();
    inFlight->waitUntilEmpty();
    connection.close();
    EXPECT_TRUE(isOpen(socket.fd()));
}

TEST_F(ExchangesInFlight, MoveWithTheirConnection)
{
    ConnectionInFlight first(std::move(socket), inFlight, 0);
    const int fd = first.fd();
    {
        const ConnectionInFlight second(std::move(first));
        EXPECT_EQ(second.fd(), fd);
    }
    EXPECT_FALSE(isOpen(fd));
    inFlight->waitUntilEmpty();
}

TEST(ASocket, ClosesItsDescriptorOnce)
{
    int fd;
    {
        Socket first = Socket::stream();
        fd = first.fd();
        const Socket second(std::move(first));
        EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): which is what is tested
        EXPECT_TRUE(isOpen(fd));
    }
    EXPECT_FALSE(isOpen(fd));
}

TEST(ASocket, ClosesWhatItHadWhenItIsGivenAnother)
{
    Socket socket = Socket::stream();
    const int old = socket.fd();
    Socket other = Socket::stream();
    const int fresh = other.fd();
    socket = std::move(other);
    EXPECT_FALSE(isOpen(old));
    EXPECT_EQ(socket.fd(), fresh);
    EXPECT_TRUE(isOpen(fresh));
}

TEST(ASocket, NeverTakesAStandardDescriptor)
{
    const RawPeer input(dup(STDIN_FILENO));
    close(STDIN_FILENO);
    const Socket socket = Socket::stream();
    EXPECT_GE(socket.fd(), 3);
    EXPECT_FALSE(isOpen(STDIN_FILENO));
    dup2(input.fd(), STDIN_FILENO);
}

TEST(ASocket, IsClosedByExec)
{
    EXPECT_EQ(fcntl(Socket::stream().fd(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

}  // namespace
