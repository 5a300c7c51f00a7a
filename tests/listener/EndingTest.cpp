#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "listener/Heard.h"
#include "orvu/PushListener.h"
#include "push/Peers.h"
#include "support/Observed.h"
#include "support/SystemCalls.h"
#include "wire/Latch.h"

namespace OrvuTests {
namespace {

using namespace Orvu;
using testing::ElementsAre;

bool hasNoThread()
{
    return threadsNamed("self", "orvu-listener").empty();
}

/// A listener that is stopped in one way or another.
class AListenersEnd : public testing::Test {
protected:
    AListenersEnd() { heard_.listenTo(*listener_); }

    bool listen(Channel channel = ChannelTcp) { return listener_->listen("127.0.0.1", publisher_.port(), channel); }
    /// Stops it, within a second and with its thread joined.
    void stop()
    {
        const auto before = Clock::now();
        listener_->stop();
        EXPECT_LT(Clock::now() - before, std::chrono::seconds(1));
        const auto heard = heard_.all();
        EXPECT_TRUE(eventually(hasNoThread));  // the system takes a moment to forget a thread that was joined
        EXPECT_EQ(heard_.all(), heard);
    }

    RawListener publisher_;
    Heard heard_;
    std::unique_ptr<PushListener> listener_ = std::make_unique<PushListener>();
};

TEST_F(AListenersEnd, IsNothingWithoutABeginning)
{
    stop();
    stop();
}

TEST_F(AListenersEnd, ComesWhileItIsAttached)
{
    ASSERT_TRUE(listen());
    RawPeer connection = publisher_.accept();
    ASSERT_TRUE(heard_.waitFor("attached"));
    stop();
    EXPECT_EQ(connection.readToEnd(), "");
}

TEST_F(AListenersEnd, ComesWhileTheOpeningHandshakeIsNotAnswered)
{
    ASSERT_TRUE(listen(ChannelWebSocket));
    RawPeer connection = publisher_.accept();
    connection.receive(1);
    stop();
    EXPECT_THAT(heard_.all(), ElementsAre("connecting"));
}

TEST_F(AListenersEnd, ComesThoughAWebSocketPublisherDoesNotClose)
{
    ASSERT_TRUE(listen(ChannelWebSocket));
    RawPeer connection = openedWebSocket(publisher_);
    ASSERT_TRUE(heard_.waitFor("attached"));
    stop();
}

TEST_F(AListenersEnd, ComesWhileItWaits)
{
    const PortLease port;
    ASSERT_TRUE(listener_->listen("127.0.0.1", port.port(), ChannelTcp));
    ASSERT_TRUE(heard_.waitFor("waiting"));
    stop();
}

TEST_F(AListenersEnd, ComesWhilePushesArriveWithoutEnd)
{
    ASSERT_TRUE(listen());
    RawPeer connection = publisher_.accept();
    std::thread pushing([&] {
        while (connection.send("[\"without end\"]")) {
        }
    });
    EXPECT_TRUE(heard_.waitFor("value: [\"without end\"]"));
    stop();
    pushing.join();
}

TEST_F(AListenersEnd, HandsOverTheBeginningOfAValue)
{
    ASSERT_TRUE(listen());
    RawPeer connection = publisher_.accept();
    connection.send("[1]{\"a\":");
    ASSERT_TRUE(heard_.waitFor("value: [1]"));
    stop();
    EXPECT_THAT(heard_.messages(), ElementsAre("value: [1]", "text: {\"a\":", "end of text"));
}

TEST_F(AListenersEnd, ComesAfterItHasEndedByItself)
{
    listener_->reconnect(false);
    ASSERT_TRUE(listen());
    publisher_.accept().close();
    ASSERT_TRUE(heard_.waitFor("stopped 1/0"));
    stop();
}

TEST_F(AListenersEnd, WaitsForACallbackThatRuns)
{
    Latch inCallback, mayEnd;
    std::atomic<bool> hasEnded{false};
    heard_.action = [&](const std::string& what) {
        if (what != "value: [1]") return;
        inCallback.open();
        mayEnd.wait();
        hasEnded = true;
    };
    ASSERT_TRUE(listen());
    publisher_.accept().send("[1]");
    inCallback.wait();
    std::thread stopping([&] {
        listener_->stop();
        EXPECT_TRUE(hasEnded);
    });
    mayEnd.open();
    stopping.join();
}

TEST_F(AListenersEnd, DropsWhatCameAfterTheMessageWhoseCallbackRuns)
{
    Latch inCallback, isStopping;
    const Instead ringing(calls.eventfd_write, [&](int fd, eventfd_t value) {
        const int result = eventfd_write(fd, value);
        isStopping.open();
        return result;
    });
    heard_.action = [&](const std::string& what) {
        if (what != "value: [1]") return;
        inCallback.open();
        isStopping.wait();
    };
    ASSERT_TRUE(listen());
    RawPeer connection = publisher_.accept();
    connection.send("[1][2]no JSON\n{\"a\":");
    inCallback.wait();
    stop();
    EXPECT_THAT(heard_.messages(), ElementsAre("value: [1]"));
}

TEST_F(AListenersEnd, MayComeFromItsOwnCallback)
{
    heard_.action = [&](const std::string& what) {
        if (what == "value: [1]") listener_->stop();
    };
    ASSERT_TRUE(listen());
    RawPeer connection = publisher_.accept();
    connection.send("[1][2][3");
    EXPECT_EQ(connection.readToEnd(), "");
    EXPECT_TRUE(eventually(hasNoThread));
    EXPECT_THAT(heard_.messages(), ElementsAre("value: [1]"));
}

TEST_F(AListenersEnd, MayBeItsDestructionInItsOwnCallback)
{
    static Heard& heard = *new Heard;  // nobody can wait for the last callback to return
    static PushListener* listener;
    static Latch isGone;
    listener = new PushListener;
    heard.listenTo(*listener);
    heard.action = [](const std::string& what) {
        if (what != "value: [1]") return;
        delete listener;
        isGone.open();
    };
    ASSERT_TRUE(listener->listen("127.0.0.1", publisher_.port(), ChannelTcp));
    RawPeer connection = publisher_.accept();
    connection.send("[1][2]");
    isGone.wait();
    EXPECT_EQ(connection.readToEnd(), "");
    EXPECT_TRUE(eventually(hasNoThread));
    EXPECT_THAT(heard.messages(), ElementsAre("value: [1]"));
}

TEST_F(AListenersEnd, MayBeANewBeginningInItsOwnCallback)
{
    RawListener other;
    heard_.action = [&](const std::string& what) {
        if (what == "value: [1]") listener_->listen("127.0.0.1", other.port(), ChannelTcp);
    };
    ASSERT_TRUE(listen());
    publisher_.accept().send("[1][2]");
    RawPeer connection = other.accept();
    connection.send("[3]");
    ASSERT_TRUE(heard_.waitFor("value: [3]"));
    stop();
    EXPECT_THAT(heard_.messages(), ElementsAre("value: [1]", "value: [3]"));
}

TEST_F(AListenersEnd, DoesNotWaitForANameToBeResolved)
{
    Latch inLookUp, mayEnd;
    {
        const Instead lookingUp(calls.gethostbyname_r,
                                [&](const char*, hostent*, char*, std::size_t, hostent** found, int*) {
                                    inLookUp.open();
                                    mayEnd.wait();
                                    *found = nullptr;
                                    return 0;
                                });
        ASSERT_TRUE(listener_->listen("slow.invalid", 9000, ChannelTcp));
        inLookUp.wait();
        const auto before = Clock::now();
        listener_.reset();
        EXPECT_LT(Clock::now() - before, std::chrono::seconds(1));
        mayEnd.open();
        EXPECT_TRUE(eventually(hasNoThread));
    }
    EXPECT_THAT(heard_.all(), ElementsAre("connecting"));
}

TEST_F(AListenersEnd, LetsItBeginAgain)
{
    for (int turn = 0; turn < 3; ++turn) {
        ASSERT_TRUE(listen());
        RawPeer connection = publisher_.accept();
        connection.send("[1]");
        ASSERT_TRUE(heard_.waitFor("value: [1]", turn + 1));
        stop();
    }
}

TEST_F(AListenersEnd, MayComeFromManyThreadsAtOnce)
{
    ASSERT_TRUE(listen());
    RawPeer connection = publisher_.accept();
    ASSERT_TRUE(heard_.waitFor("attached"));
    std::vector<std::thread> stopping;
    for (int i = 0; i < 4; ++i)
        stopping.emplace_back([&] { listener_->stop(); });
    for (std::thread& thread : stopping)
        thread.join();
    EXPECT_TRUE(eventually(hasNoThread));
}

}  // namespace
}  // namespace OrvuTests
