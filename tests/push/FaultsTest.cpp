#include <algorithm>
#include <atomic>
#include <cerrno>
#include <gmock/gmock.h>
#include <optional>
#include <thread>
#include <vector>

#include "push/PushServers.h"
#include "support/FailingMemory.h"
#include "support/SystemCalls.h"
#include "wire/Sockets.h"

using namespace OrvuTests;
using testing::Optional;

/// What the system does rarely: it takes a few bytes of a frame, has no memory, or a minute passes.

namespace {

const std::string kReader = "OrvuRestServerWebSocket::clientReadThread";

/// Has the next waits of a minute end at once, with `result`.
class NextMinutes {
public:
    NextMinutes(int count, int result)
        : left_(count), waiting_(calls.poll, [this, result](pollfd*, nfds_t, int timeout) -> std::optional<int> {
              constexpr int kMinute = 60 * 1000;
              if (timeout != kMinute || left_-- <= 0) return std::nullopt;
              errno = ENOMEM;
              return result;
          })
    {}

private:
    std::atomic<int> left_;
    const Instead waiting_;
};

/// While it lives the system takes so many bytes at once at most, and nothing of each `period`-th send; 0: of none.
class LittleRoom {
public:
    explicit LittleRoom(std::size_t most, int period = 0)
        : most_(most),
          period_(period),
          sending_(calls.send, [this](int fd, const msghdr* message, int flags) { return send(fd, *message, flags); })
    {}

private:
    ssize_t send(int fd, msghdr message, int flags)
    {
        if (period_ > 0 && ++sends_ % period_ == 0) {
            errno = EAGAIN;
            return -1;
        }
        std::vector<iovec> parts(message.msg_iov, message.msg_iov + message.msg_iovlen);
        std::size_t left = most_;
        for (iovec& part : parts) {
            part.iov_len = std::min(part.iov_len, left);
            left -= part.iov_len;
        }
        message.msg_iov = parts.data();
        return calls.send.real(fd, &message, flags);
    }

    const std::size_t most_;
    const int period_;
    std::atomic<int> sends_{0};
    const Instead sending_;
};

/// Holds up what the library accepts or receives until it has shut a socket down. To be made before its threads.
class HeldUpUntilShutdown {
public:
    HeldUpUntilShutdown()
        : accepting_(calls.accept4,
                     [this](int fd, sockaddr* address, socklen_t* size, int flags) {
                         return held(calls.accept4.real(fd, address, size, flags), 0);
                     }),
          receiving_(calls.recv, [this](int fd, void* to, std::size_t size,
                                        int flags) { return held(calls.recv.real(fd, to, size, flags), ssize_t{1}); }),
          shuttingDown_(calls.shutdown, [this](int fd, int how) {
              const int result = calls.shutdown.real(fd, how);
              if (fd == awaited_) awaited_ = -1;
              return result;
          })
    {}

    void await(int socket) { awaited_ = socket; }
    bool isAwaiting() const { return awaited_ >= 0; }
    bool isHolding() const { return isHolding_; }

private:
    template <class Result>
    Result held(Result result, Result least)
    {
        if (result < least || !isAwaiting()) return result;
        isHolding_ = true;
        eventually([this] { return !isAwaiting(); });
        isHolding_ = false;
        return result;
    }

    std::atomic<int> awaited_{-1};
    std::atomic<bool> isHolding_{false};
    const Instead accepting_;
    const Instead receiving_;
    const Instead shuttingDown_;
};

/// While it lives the library's threads have no memory.
class NoMemory {
public:
    NoMemory() { refuseAllocations(isOnLibraryThread); }
    ~NoMemory() { refuseAllocations(nullptr); }
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

struct AWebSocketServerInTrouble : testing::Test {
    bool waitFor(const std::string& line, int count)
    {
        return eventually([&] { return log.count(line) >= count; });
    }

    HeldUpUntilShutdown heldUp;
    RunningWebSocket server;
    LogCapture& log = server.log;
};

TEST_F(AWebSocketServerInTrouble, LogsEachMinuteInWhichNothingComes)
{
    const NextMinutes pass(3, 0);
    RawPeer client = server.attach();
    EXPECT_TRUE(waitFor(kReader + ": waiting...", 3));
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
    EXPECT_EQ(log.count(kReader + ": waiting..."), 3);
}

TEST_F(AWebSocketServerInTrouble, LetsAClientGoForWhichItCannotWait)
{
    const NextMinutes fails(1, -1);
    RawPeer client = server.attach();
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(waitFor(kReader + " end", 1));
    EXPECT_EQ(log.count(kReader + ": closing..."), 1);
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST_F(AWebSocketServerInTrouble, DropsAFrameOfWhichNothingCouldBeSent)
{
    RawPeer client = server.attach();
    const FailingCall send(calls.send, 1, EAGAIN);
    EXPECT_TRUE(server.push("dropped"));  // a failed write counts as sent
    EXPECT_TRUE(server.push("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, "hello"}));
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::send: Sent to client -1 bytes"), 1);
    EXPECT_EQ(log.count("OrvuRestServerWebSocket::send: Sent to client 7 bytes"), 1);
}

TEST_F(AWebSocketServerInTrouble, DropsAnEchoOfWhichNothingCouldBeSent)
{
    RawPeer client = server.attach();
    const FailingCall send(calls.send, 1, EAGAIN);
    client.send(textFrame("dropped"));
    ASSERT_TRUE(waitFor(kReader + " <<-- Receive data", 1));
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketServerInTrouble, SendsWholeFramesHoweverLittleTheSystemTakesAtOnce)
{
    for (const std::size_t most : {1, 2, 3, 5, 100}) {
        const LittleRoom room(most);
        RawPeer client = server.attach();
        for (const std::size_t size : {0, 1, 125, 126, 1000}) {
            const std::string message(size, 'x');
            EXPECT_TRUE(server.push(message));
            EXPECT_THAT(readServerFrame(client), Optional(Frame{0x82, message})) << most << " of " << size;
        }
        client.send(textFrame("hello"));
        EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
        client.send(kCloseFrame);
        EXPECT_EQ(client.readToEnd(), "");
    }
}

TEST_F(AWebSocketServerInTrouble, DropsOrFinishesAFrameThatFindsNoRoomAtTimes)
{
    constexpr int kPushes = 30;
    RawPeer client = server.attach();
    const LittleRoom room(100, 4);
    for (int i = 0; i < kPushes; ++i)
        EXPECT_TRUE(server.push(std::string(1000, static_cast<char>('A' + i))));
    const int dropped = log.count("OrvuRestServerWebSocket::send: Sent to client -1 bytes");
    EXPECT_EQ(dropped + log.count("OrvuRestServerWebSocket::send: Sent to client 1004 bytes"), kPushes);
    EXPECT_GT(dropped, 0);
    EXPECT_LT(dropped, kPushes);
    server.server().stop();
    std::string received = client.readToEnd();
    const std::vector<Frame> frames = takeFrames(received);
    EXPECT_EQ(received, "");
    EXPECT_EQ(frames.size(), static_cast<std::size_t>(kPushes - dropped));
    for (const Frame& frame : frames)
        EXPECT_EQ(frame, (Frame{0x82, std::string(1000, frame.payload[0])}));
}

TEST_F(AWebSocketServerInTrouble, IgnoresAFrameThatCameBeforeItsClientWasLetGo)
{
    RawPeer client = server.attach();
    heldUp.await(otherEndOf(client));
    client.send(textFrame("hello"));
    ASSERT_TRUE(eventually([this] { return heldUp.isHolding(); }));
    server.server().stop();
    EXPECT_EQ(log.count("receiveframe: Invalid frame!"), 1);
    EXPECT_EQ(log.count(kReader + ": Receive msg: WS_FR_OP_TXT"), 0);
    EXPECT_EQ(log.count(kReader + " end"), 1);
    EXPECT_EQ(client.readToEnd(), "");
}

TEST_F(AWebSocketServerInTrouble, IgnoresATextForWhichItHasNoMemory)
{
    RawPeer client = server.attach();
    ASSERT_TRUE(waitFor(kReader + ": start", 1));
    {
        const NoMemory none;
        client.send(textFrame(std::string(100, 'x')));
        ASSERT_TRUE(waitFor(kReader + " <<-- Receive data", 1));
    }
    EXPECT_EQ(log.count("receiveframe: ERROR out of memory!"), 1);
    client.send(textFrame("hello"));
    EXPECT_THAT(readServerFrame(client), Optional(Frame{0x81, "hello"}));
}

TEST_F(AWebSocketServerInTrouble, TurnsClientsAwayForWhichItHasNoMemory)
{
    {
        const NoMemory none;
        RawPeer client = RawPeer::connectedTo(server.port());
        client.send(openingRequest());
        EXPECT_EQ(client.readToEnd(), "");
        EXPECT_TRUE(waitFor("OrvuRestServerWebSocket::serverThread: ERROR out of memory!", 1));
    }
    const RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
}

TEST(ATcpServerInTrouble, TurnsClientsAwayForWhichItHasNoMemory)
{
    RunningTcp server;
    {
        const NoMemory none;
        RawPeer client = RawPeer::connectedTo(server.port());
        EXPECT_EQ(client.readToEnd(), "");
    }
    EXPECT_EQ(server.log.count("OrvuRestServerTcpSocket::serverThread: ERROR out of memory!"), 1);
    RawPeer another = server.attach();
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(another.receive(5), "hello");
}

TEST(ATcpServerInTrouble, PushesAllBytesHoweverFewTheSystemTakesAtOnce)
{
    RunningTcp server;
    RawPeer first = server.attach();
    RawPeer second = server.attach();
    const LittleRoom room(1);
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(first.receive(5), "hello");
    EXPECT_EQ(second.receive(5), "hello");
}

// The descriptor of the client that is gone becomes free when the push ends: one that has only ended its own sending
// stays.
TEST(ATcpServerInTrouble, WaitsForThePushThatHoldsAClientThatIsGone)
{
    std::atomic<int> acceptsWithoutDescriptor{0};
    const Instead accepting(calls.accept4, [&](int fd, sockaddr* address, socklen_t* size, int flags) {
        const int accepted = calls.accept4.real(fd, address, size, flags);
        if (accepted < 0 && errno == EMFILE) ++acceptsWithoutDescriptor;
        return accepted;
    });
    RunningTcp server;
    RawPeer silent = server.attach();
    silent.finishSending();
    server.attach().vanish();
    RawPeer stalled = server.attach(connectedWithLittleRoom);
    keepLittleFor(stalled);
    RawPeer last = unconnected();
    const std::string most(std::size_t{256} << 10, 'x');
    std::thread pushing([&] { server.push(most); });
    EXPECT_TRUE(eventually([&] { return hasBytes(stalled); }));
    {
        const NoDescriptorsLeft none;
        connectTo(server.port(), last);
        EXPECT_TRUE(eventually([&] { return acceptsWithoutDescriptor > 0; }));
        stalled.vanish();
        pushing.join();
        EXPECT_TRUE(eventually([&] { return server.push("x") && hasBytes(last); }));
    }
    server.push("hello");
    server.server().stop();
    EXPECT_THAT(silent.readToEnd(), testing::EndsWith("xhello"));
    EXPECT_THAT(last.readToEnd(), testing::EndsWith("xhello"));
}

TEST(ATcpServer, TakesNobodyWhoComesInWhileItStops)
{
    HeldUpUntilShutdown heldUp;
    RunningTcp server;
    RawPeer first = server.attach();
    heldUp.await(otherEndOf(first));
    RawPeer last = RawPeer::connectedTo(server.port());
    ASSERT_TRUE(eventually([&] { return heldUp.isHolding(); }));
    server.server().stop();
    EXPECT_FALSE(heldUp.isAwaiting());
    EXPECT_EQ(otherEndOf(first), -1);
    EXPECT_EQ(otherEndOf(last), -1);
}

TEST(AWebSocketServer, EndsAPushAtOnceWhenItStopsWhileItsAcceptThreadHasJustStartedTheReader)
{
    std::atomic<bool> isReleased{false};
    const Instead starting(calls.pthread_create,
                           [&](pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                               void* argument) -> std::optional<int> {
                               const int result = calls.pthread_create.real(thread, attributes, routine, argument);
                               if (isOnLibraryThread()) eventually([&] { return isReleased.load(); });
                               return result;
                           });
    RunningWebSocket server;
    RawPeer client = RawPeer::connectedTo(server.port());
    ASSERT_TRUE(shakesHands(client));
    std::thread pushing([&] { EXPECT_TRUE(server.push(tooMuch())); });  // a failed push is true, too
    client.receive(100);
    std::thread stopping([&] { server.server().stop(); });
    ASSERT_TRUE(
        eventually([&] { return server.log.count("OrvuRestServerWebSocket::stop: Stopping server -->>") == 1; }));
    const auto begin = Clock::now();
    isReleased = true;
    stopping.join();
    pushing.join();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
}

TEST(ATcpServer, IsNotConfiguredOnAPortThatTheSystemDoesNotName)
{
    const FailingCall nameless(calls.getsockname, 1, ENOBUFS);
    Orvu::OrvuRestServerTcpSocket server;
    EXPECT_FALSE(server.configure(0));
    EXPECT_FALSE(server.start());
    EXPECT_TRUE(server.configure(0));
    EXPECT_TRUE(server.start());
}

TEST(ATcpServer, OffersAPushInTheOrderOfAcceptance)
{
    RunningTcp server;
    std::vector<RawPeer> clients;
    std::vector<int> accepted;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(server.attach());
        accepted.push_back(otherEndOf(clients.back()));
    }
    std::vector<int> order;
    const Instead sending(calls.send, [&](int fd, const msghdr*, int) {
        order.push_back(fd);
        return std::nullopt;
    });
    EXPECT_TRUE(server.push("hello"));
    EXPECT_EQ(order, accepted);
}

}  // namespace
