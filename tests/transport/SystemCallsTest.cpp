#include <atomic>
#include <cerrno>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <thread>

#include "support/Observed.h"
#include "support/RawPeer.h"
#include "support/SystemCalls.h"
#include "transport/Socket.h"
#include "transport/Threads.h"

using namespace OrvuTests;
using Orvu::Socket;

namespace {

TEST(ASystemCall, FailsInItsTurn)
{
    const FailingCall second(calls.socket, 2, EMFILE);
    EXPECT_TRUE(Socket::stream());
    EXPECT_FALSE(second.hasFailed());
    EXPECT_FALSE(Socket::stream());
    EXPECT_EQ(errno, EMFILE);
    EXPECT_TRUE(second.hasFailed());
    EXPECT_TRUE(Socket::stream());
    EXPECT_EQ(calls.socket.count(), 3);
}

TEST(ASystemCall, FailsNoMoreOnceItsFaultIsGone)
{
    {
        const FailingCall first(calls.socket, 1, EMFILE);
    }
    EXPECT_TRUE(Socket::stream());
}

TEST(ASystemCall, IsTheLibrarysOnly)
{
    const FailingCall first(calls.socket, 1, EMFILE);
    const RawPeer own = RawPeer::unconnected();
    EXPECT_GE(own.fd(), 0);
    EXPECT_EQ(calls.socket.count(), 0);
}

TEST(ASystemCall, IsReplacedWhereItsReplacementAnswers)
{
    const Socket first = Socket::stream();
    const Socket second = Socket::stream();
    const Instead waiting(calls.poll, [&](pollfd* wanted, nfds_t, int) -> std::optional<int> {
        if (wanted->fd != second.fd()) return std::nullopt;
        return 0;
    });
    EXPECT_TRUE(Orvu::waitFor(first.fd(), POLLOUT, Orvu::kNever));  // one that is not connected hangs up
    EXPECT_FALSE(Orvu::waitFor(second.fd(), POLLOUT, Orvu::kNever));
}

TEST(ASystemCall, HasOneReplacementAtATime)
{
    const auto passOn = [](int) { return std::nullopt; };
    {
        const Instead closing(calls.close, passOn);
        EXPECT_THROW(Instead(calls.close, passOn), std::logic_error);
    }
    EXPECT_NO_THROW(Instead(calls.close, passOn));
}

TEST(ASystemCall, KeepsItsReplacementWhileAThreadIsInIt)
{
    std::atomic<bool> isIn{false};
    std::atomic<bool> isEnding{false};
    std::atomic<bool> isOut{false};
    std::thread closing;
    {
        const Instead slow(calls.close, [&](int) {
            isIn = true;
            eventually([&] { return isEnding.load(); });
            std::this_thread::yield();
            isOut = true;
            return std::nullopt;
        });
        closing = std::thread([] { Socket::stream(); });
        EXPECT_TRUE(eventually([&] { return isIn.load(); }));
        isEnding = true;
    }
    EXPECT_TRUE(isOut);
    closing.join();
}

TEST(ALibraryThread, IsKnownAsOne)
{
    bool isOne = false;
    Orvu::Thread thread;
    ASSERT_TRUE(thread.start(Orvu::makeTask("orvu-test", [&] { isOne = isOnLibraryThread(); })));
    thread.join();
    EXPECT_TRUE(isOne);
    EXPECT_FALSE(isOnLibraryThread());
}

}  // namespace
