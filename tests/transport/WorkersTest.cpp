#include <gmock/gmock.h>
#include <memory>

#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "support/SocketPair.h"
#include "transport/Workers.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct TheWorkers : testing::Test {
    LogCapture log;
    std::shared_ptr<Workers> workers = std::make_shared<Workers>(std::make_shared<InFlight>());
    const SocketPair pair;
    Socket socket{pair.ends[0]};
    RawPeer peer{pair.ends[1]};
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
