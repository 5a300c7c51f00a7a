#include <chrono>
#include <gmock/gmock.h>
#include <sys/socket.h>

#include "orvu/OrvuRestInterface.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

using Clock = std::chrono::steady_clock;

TEST(ARunningRequestServer, LogsItsEnd)
{
    LogCapture log;
    const Receiver receiver;
    ASSERT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread -- init"));
    EXPECT_TRUE(OrvuRestInterface::getInstance()->stopListenRequests());
    EXPECT_TRUE(areInOrder(log.lines(), {"stopListenRequests", "OrvuRestServerSocket::stop: Stopping server",
                                         "OrvuRestServerSocket::serverThread: Server loop end!",
                                         "OrvuRestServerSocket::serverThread -- end"}));
}

TEST(ARunningRequestServer, LogsAFailedAcceptWithMinusOne)
{
    LogCapture log;
    const Receiver receiver;
    shutdown(listenerOn(receiver.port()), SHUT_RDWR);  // as stopping does: the accept that waits fails
    EXPECT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread: clientSockfd: -1"));
}

TEST(ARunningRequestServer, MovesToAnotherPort)
{
    const Receiver receiver;
    const PortLease other;
    ASSERT_TRUE(OrvuRestInterface::getInstance()->startListenRequests(other.port()));
    EXPECT_FALSE(canConnect(receiver.port()));
    RawPeer peer = RawPeer::connectedTo(other.port());
    peer.send(frameOf(kSuccess));
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARunningRequestServer, StaysWithoutAPortWhenItCannotMove)
{
    const Receiver receiver;
    const PortLease other;
    const RawPeer taken(boundSocket(other.port(), true));
    EXPECT_FALSE(OrvuRestInterface::getInstance()->startListenRequests(other.port()));
    EXPECT_FALSE(canConnect(receiver.port()));
}

TEST(ARunningRequestServer, ServesTheRequestsItAcceptedAfterItStopped)
{
    LogCapture log;
    const Receiver receiver;
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    OrvuRestInterface::getInstance()->stopListenRequests();
    peer.send(frameOf(kSuccess));
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

TEST(ARunningRequestServer, StopsWithinASecondWhateverPeersDo)
{
    LogCapture log;
    const Receiver receiver;
    std::vector<RawPeer> peers;
    for (const std::size_t size : {0, 2, 4, 10, 20}) {
        peers.push_back(receiver.connect());
        peers.back().send(frameOf(kSuccess).substr(0, size));
    }
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", peers.size()));
    const auto begin = Clock::now();
    OrvuRestInterface::getInstance()->stopListenRequests();
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
}

TEST(ARunningRequestServer, CanBeStoppedFromItsCallback)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        OrvuRestInterface::getInstance()->stopListenRequests();
        answerWithSuccess(request);
    });
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
    EXPECT_FALSE(canConnect(receiver.port()));
}

TEST(ARunningRequestServer, ClosesAConnectionForWhichThereIsNoThread)
{
    LogCapture log;
    const Receiver receiver;
    {
        const NoThreadsLeft none;
        RawPeer peer = receiver.connect();
        EXPECT_EQ(peer.readToEnd(), "");
    }
    EXPECT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread: ERROR Fail to start worker thread!"));
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
}

}  // namespace
