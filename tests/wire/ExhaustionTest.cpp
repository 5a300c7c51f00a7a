#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "support/Observed.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

const std::string kFailedAccept = "OrvuRestServerSocket::serverThread: clientSockfd: -1";

/// The nanoseconds that the accepting thread has had of a processor.
long long acceptingTime()
{
    long long time = -1;
    for (const int thread : threadsNamed("self", "orvu-accept"))
        std::ifstream("/proc/self/task/" + std::to_string(thread) + "/schedstat") >> time;
    return time;
}

TEST(AnAcceptLoopWithoutDescriptors, PausesAndServesOnOnceThereAreSome)
{
    LogCapture log;
    const Receiver receiver;
    ASSERT_TRUE(log.waitFor("OrvuRestServerSocket::serverThread -- init"));
    const long long busyBefore = acceptingTime();
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
    EXPECT_LT(acceptingTime() - busyBefore, 50'000'000);
}

/// Holds the first 1100 descriptors, so that those after them have larger numbers than `select` could wait for.
class ManyDescriptors {
public:
    ManyDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit enough{before_.rlim_max, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &enough);
        while (taken_.empty() || taken_.back() < 1100) {
            taken_.push_back(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3));
            if (taken_.back() < 0) throw std::runtime_error("this system gives no process so many descriptors");
        }
    }
    ~ManyDescriptors()
    {
        for (const int fd : taken_)
            close(fd);
        setrlimit(RLIMIT_NOFILE, &before_);
    }

private:
    rlimit before_;
    std::vector<int> taken_;
};

TEST(AnExchangeOnLargeDescriptors, IsLikeAnyOther)
{
    const ManyDescriptors below;
    const Receiver receiver;
    RawPeer slow = receiver.connect();
    ASSERT_GT(slow.fd(), 1100);
    ASSERT_TRUE(slow.sendByteByByte(frameOf(kSuccess)));  // so that the server has to wait
    EXPECT_THAT(slow.readFrame(), Optional(kSuccess));
    ASSERT_TRUE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", receiver.port()));
    const std::unique_ptr<Serializable> answer(OrvuRestInterface::getInstance()->sendRequest(DataTypeSuccess));
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
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
