#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <sys/socket.h>

#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "transport/Workers.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct TheWorkers : testing::Test {
    TheWorkers() : peer(-1)
    {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw std::runtime_error("no sockets");
        socket = Socket(ends[0]);
        peer = RawPeer(ends[1]);
    }

    LogCapture log;
    std::shared_ptr<Workers> workers = std::make_shared<Workers>(std::make_shared<InFlight>());
    Socket socket;
    RawPeer peer;
};

TEST_F(TheWorkers, NeedNoThreadForAPeerThatLeftWithoutAWord)
{
    peer.close();
    const std::string number = std::to_string(socket.fd());
    const NoThreadsLeft noThreadsLeft;
    EXPECT_TRUE(workers->serve(std::move(socket)));
    EXPECT_THAT(log.lines(),
                ElementsAre("OrvuRestServerSocket::workerThread: clientSockfd: " + number,
                            "OrvuRestServerSocket::workerThread: No data will be read. Skipping...(" + number + ")",
                            "OrvuRestServerSocket::workerThread -- end (" + number + ")"));
}

TEST_F(TheWorkers, NeedAThreadForAPeerThatMayStillSpeak)
{
    const NoThreadsLeft noThreadsLeft;
    EXPECT_FALSE(workers->serve(std::move(socket)));
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TheWorkers, NeedAThreadForAPeerThatSpokeAndLeft)
{
    peer.send("x");
    peer.close();
    const NoThreadsLeft noThreadsLeft;
    EXPECT_FALSE(workers->serve(std::move(socket)));
    EXPECT_THAT(log.lines(), IsEmpty());
}

}  // namespace
