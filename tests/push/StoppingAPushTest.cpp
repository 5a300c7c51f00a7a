#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "push/Peers.h"
#include "support/Observed.h"
#include "support/RawPeer.h"

using namespace Orvu;
using namespace OrvuTests;

/// A push that waits for its client, which reads nothing, while another thread ends it.

namespace {

class APushInProgress : public testing::TestWithParam<const char*> {
protected:
    APushInProgress()
    {
        facade().setSocketsPortsRange(0, 0);
        info.reset(facade().createServer(GetParam()));
        client = RawPeer::connectedTo(info->port);
        if (GetParam() == std::string("websocket") && !shakesHands(client)) throw std::runtime_error("no handshake");
        while (!push(1))  // until the client is one
            std::this_thread::yield();
        pushing = std::thread([this] {
            push(bytes.size());
            ended = true;
        });
        char first[64];
        while (recv(client.fd(), first, sizeof first, MSG_PEEK) < static_cast<ssize_t>(sizeof first))
            std::this_thread::yield();
    }
    ~APushInProgress() override
    {
        pushing.join();
        OrvuRestInterface::destroyInstance();
    }

    static OrvuRestInterface& facade() { return *OrvuRestInterface::getInstance(); }
    bool push(std::size_t size)
    {
        return facade().sendMessage(info->handler, reinterpret_cast<unsigned char*>(bytes.data()),
                                    static_cast<unsigned>(size));
    }
    void expectItsEnd(Clock::time_point begin) const
    {
        EXPECT_TRUE(eventually([this] { return ended.load(); }));
        EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
    }

    std::string bytes = std::string(32u << 20, 'x');
    std::unique_ptr<SocketServerInfo> info;
    RawPeer client{-1};
    std::thread pushing;
    std::atomic<bool> ended{false};
};

TEST_P(APushInProgress, EndsWhenItsServerIsStopped)
{
    EXPECT_FALSE(ended);
    const auto begin = Clock::now();
    EXPECT_TRUE(facade().stopServer(info->handler));
    expectItsEnd(begin);
    EXPECT_FALSE(push(1));
    EXPECT_FALSE(facade().stopServer(info->handler));
}

TEST_P(APushInProgress, EndsWhenAllServersAreStopped)
{
    const auto begin = Clock::now();
    facade().stopAllServers();
    expectItsEnd(begin);
    EXPECT_FALSE(push(1));
}

TEST_P(APushInProgress, EndsWhenTheFacadeIsDestroyed)
{
    const auto begin = Clock::now();
    OrvuRestInterface::destroyInstance();
    expectItsEnd(begin);
    EXPECT_FALSE(push(1));
}

INSTANTIATE_TEST_SUITE_P(Of, APushInProgress, testing::Values("tcp", "websocket"),
                         [](const auto& protocol) { return std::string(protocol.param); });

}  // namespace
