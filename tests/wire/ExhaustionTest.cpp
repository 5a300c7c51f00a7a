#include <chrono>
#include <dirent.h>
#include <fstream>
#include <gmock/gmock.h>
#include <string>

#include "orvu/OrvuRestInterface.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kFailedAccept = "OrvuRestServerSocket::serverThread: clientSockfd: -1";

/// The nanoseconds that the thread of this name has had of a processor.
long long processorTimeOf(const std::string& thread)
{
    long long time = -1;
    DIR* const folder = opendir("/proc/self/task");
    while (const dirent* const entry = readdir(folder)) {
        const std::string place = std::string("/proc/self/task/") + entry->d_name;
        std::string name;
        std::ifstream(place + "/comm") >> name;
        if (name == thread) std::ifstream(place + "/schedstat") >> time;
    }
    closedir(folder);
    return time;
}

TEST(AnAcceptLoopWithoutDescriptors, PausesAndServesOnOnceThereAreSome)
{
    LogCapture log;
    const Receiver receiver;
    ASSERT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread -- init"));
    const long long busyBefore = processorTimeOf("orvu-accept");
    ASSERT_GE(busyBefore, 0);
    RawPeer idle = RawPeer::unconnected();
    RawPeer peer = RawPeer::unconnected();
    {
        const NoDescriptorsLeft none;
        idle.connectTo(receiver.port());  // gets the descriptor that the waiting accept has reserved
        peer.connectTo(receiver.port());
        peer.send(frameOf(kSuccess));
        ASSERT_TRUE(log.waitFor(kFailedAccept));
        const auto begin = std::chrono::steady_clock::now();
        ASSERT_TRUE(waitForLines(log, kFailedAccept, 6));
        EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(400));
    }
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
    EXPECT_LT(processorTimeOf("orvu-accept") - busyBefore, 50'000'000);
}

TEST(AnAcceptLoopWithoutDescriptors, CanBeStopped)
{
    LogCapture log;
    const Receiver receiver;
    RawPeer idle = RawPeer::unconnected();
    RawPeer peer = RawPeer::unconnected();
    const NoDescriptorsLeft none;
    idle.connectTo(receiver.port());
    peer.connectTo(receiver.port());
    ASSERT_TRUE(waitForLines(log, kFailedAccept, 2));
    const auto begin = std::chrono::steady_clock::now();
    OrvuRestInterface::getInstance()->stopListenRequests();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

}  // namespace
