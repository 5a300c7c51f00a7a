#include <cerrno>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <ostream>
#include <stdexcept>
#include <sys/socket.h>

#include "listener/ListenerFixture.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/PushListener.h"
#include "orvu/Services.h"
#include "push/Peers.h"
#include "support/LogCapture.h"
#include "support/Observed.h"
#include "wire/Sockets.h"

namespace OrvuTests {
namespace {

using namespace Orvu;
using testing::ElementsAre;

const std::string kClosed = "lost 1/0: it closed the connection";

class EachChannelOfPushes : public testing::TestWithParam<const char*> {
protected:
    EachChannelOfPushes() { OrvuRestInterface::getInstance()->setSocketsPortsRange(port_.port(), port_.port()); }
    ~EachChannelOfPushes() override { OrvuRestInterface::destroyInstance(); }
    static Channel channel() { return std::string(GetParam()) == "tcp" ? ChannelTcp : ChannelWebSocket; }

    const PortLease port_;
};

INSTANTIATE_TEST_SUITE_P(AListener, EachChannelOfPushes, testing::Values("tcp", "websocket"));

TEST_P(EachChannelOfPushes, IsHeardAsTheMessagesThatWerePushed)
{
    OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
    const std::unique_ptr<SocketServerInfo> server(facade.createServer(GetParam()));
    ASSERT_TRUE(server);
    Heard heard;
    PushListener listener;
    heard.listenTo(listener);
    ASSERT_TRUE(listener.listen("127.0.0.1", server->port, channel()));
    ASSERT_TRUE(heard.waitFor("attached"));
    ServiceSelection selection;
    selection.serviceContextId = "1.2.01";
    selection.serializeHeader(false);
    const std::string text = "value: {\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"1.2.01\"\n}";
    // A TCP server may still be about to accept; later pushes come, too.
    EXPECT_TRUE(eventually([&] {
        facade.sendMessage(server->handler, selection);
        return !heard.messages().empty();
    }));
    EXPECT_EQ(heard.messages().front(), text);
    facade.stopServer(server->handler);
    EXPECT_TRUE(heard.waitFor(kClosed));
}

TEST_F(AListener, TellsValuesApartWhereverTheyAreCut)
{
    RawPeer publisher = attached();
    publisher.sendByteByByte("{\"a\": \"\\\" }\"} [1]\r\n{\"b\":{}}12 ");
    publisher.send("[2][3]");
    EXPECT_TRUE(heard_.waitFor("value: [3]"));
    EXPECT_THAT(heard_.messages(), ElementsAre("value: {\"a\": \"\\\" }\"}", "value: [1]", "value: {\"b\":{}}",
                                               "value: 12", "value: [2]", "value: [3]"));
}

TEST_F(AListener, HandsOverWhatIsNotJsonAsText)
{
    RawPeer publisher = attached();
    publisher.send("hello\n[1] and more");
    publisher.close();
    ASSERT_TRUE(heard_.waitFor("waiting"));
    EXPECT_THAT(heard_.messages(), ElementsAre("text: hello\n", "value: [1]", "text:  and more", "end of text"));
}

TEST_F(AListener, HandsOverTheBeginningOfAValueWhenTheConnectionEnds)
{
    RawPeer publisher = attached();
    publisher.send("{\"cut\":");
    publisher.close();
    ASSERT_TRUE(heard_.waitFor("waiting"));
    EXPECT_THAT(heard_.all(),
                ElementsAre("connecting", "attached", "text: {\"cut\":", "end of text", kClosed, "waiting"));
}

TEST_F(AListener, HandsOverBytesAsTheyCome)
{
    listener_.handOverBytes(true);
    RawPeer publisher = attached();
    publisher.send("[1]  x");
    EXPECT_TRUE(heard_.waitFor("bytes: [1]  x"));
}

TEST_F(AListener, HandsOverTheMessagesOfAWebSocketOneByOne)
{
    RawPeer publisher = attachedOverAWebSocket();
    publisher.sendByteByByte(
        "\x82\x02"
        "12"
        "\x81\x05hello\x02\x01[\x80\x02"
        "1]");
    EXPECT_TRUE(heard_.waitFor("value: [1]"));
    EXPECT_THAT(heard_.messages(), testing::AllOf(testing::Contains("value: 12"), testing::Contains("end of text")));
}

TEST_F(AListener, AnswersPings)
{
    RawPeer publisher = attachedOverAWebSocket();
    publisher.send("\x89\x02hi");
    const std::string pong = publisher.receive(8);
    ASSERT_EQ(pong.substr(0, 2), "\x8a\x82");
    EXPECT_EQ(pong[6] ^ pong[2], 'h');
    EXPECT_EQ(pong[7] ^ pong[3], 'i');
}

TEST_F(AListener, MasksEachFrameWithAnotherKey)
{
    RawPeer publisher = attachedOverAWebSocket();
    publisher.send(std::string("\x89\x00\x89\x00", 4));
    const std::string pongs = publisher.receive(12);
    EXPECT_NE(pongs.substr(0, 6), pongs.substr(6));
}

TEST_F(AListener, ClosesAWebSocketProperly)
{
    RawPeer publisher = attachedOverAWebSocket();
    listener_.stop();
    const std::string goodBye = publisher.readToEnd();
    ASSERT_EQ(goodBye.size(), 8u);
    EXPECT_EQ(goodBye.substr(0, 2), "\x88\x82");
    EXPECT_EQ(goodBye[6] ^ goodBye[2], 0x03);  // 1000, in two bytes under the mask
    EXPECT_EQ((goodBye[7] ^ goodBye[3]) & 0xff, 0xe8);
}

TEST_F(AListener, AnswersThePublishersGoodBye)
{
    RawPeer publisher = attachedOverAWebSocket();
    publisher.send("\x88\x02\x03\xe8");
    EXPECT_THAT(publisher.readToEnd(), testing::StartsWith("\x88\x82"));
    EXPECT_TRUE(heard_.waitFor(kClosed));
}

TEST_F(AListener, ConnectsAgainAfterALoss)
{
    RawPeer publisher = attached();
    publisher.close();
    RawPeer again = publisher_.accept();
    again.send("[2]");
    EXPECT_TRUE(heard_.waitFor("value: [2]"));
    EXPECT_THAT(heard_.all(),
                ElementsAre("connecting", "attached", kClosed, "waiting", "connecting", "attached", "value: [2]"));
    EXPECT_GE(heard_.pause(), 750);
    EXPECT_LE(heard_.pause(), 1000);
}

TEST_F(AListener, EndsAfterTheFirstLossWhenItIsToldSo)
{
    listener_.reconnect(false);
    RawPeer publisher = attached();
    publisher.close();
    ASSERT_TRUE(heard_.waitFor("stopped 1/0"));
    EXPECT_THAT(heard_.all(), ElementsAre("connecting", "attached", kClosed, "stopped 1/0"));
    EXPECT_TRUE(eventually([] { return threadsNamed("self", "orvu-listener").empty(); }));
}

TEST_F(AListener, FindsAPublisherThatVanished)
{
    RawPeer publisher = attached();
    const int fd = otherEndOf(publisher);
    int idle = 0, interval = 0, count = 0, on = 0;
    socklen_t size = sizeof idle;
    getsockopt(fd, SOL_SOCKET, SO_KEEPALIVE, &on, &size);
    getsockopt(fd, IPPROTO_TCP, TCP_KEEPIDLE, &idle, &size);
    getsockopt(fd, IPPROTO_TCP, TCP_KEEPINTVL, &interval, &size);
    getsockopt(fd, IPPROTO_TCP, TCP_KEEPCNT, &count, &size);
    EXPECT_EQ(on, 1);
    EXPECT_LE(idle + interval * count, 120);
}

/// Keeps or leaves the objects that it is given.
struct Objects {
    static void take(PushedMessage& message, void* context)
    {
        Objects& objects = *static_cast<Objects*>(context);
        const std::lock_guard<std::mutex> lock(objects.mutex);
        objects.types.emplace_back(message.object ? Serializable::dataTypeString(message.object->getDataType())
                                                  : "none");
        if (objects.types.size() == 1) objects.kept.reset(std::exchange(message.object, nullptr));
    }
    std::size_t count()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return types.size();
    }
    std::mutex mutex;
    std::vector<std::string> types;
    std::unique_ptr<Serializable> kept;
};

TEST_F(AListener, MakesObjectsOfValuesThatNameAType)
{
    Objects objects;
    listener_.onMessage(Objects::take, &objects);
    listener_.makeObjects(true);
    RawPeer publisher = attached();
    publisher.send(R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})"
                   R"({"HEADER":"serviceSelection","serviceContextId":"1.2.02"})"
                   R"({"HEADER":"eventInfoList"}{"HEADER":"nonsense"}{"other":1}[1])");
    ASSERT_TRUE(eventually([&] { return objects.count() == 6; }));
    listener_.stop();
    EXPECT_THAT(objects.types, ElementsAre("serviceSelection", "serviceSelection", "none", "none", "none", "none"));
    ASSERT_TRUE(objects.kept);
    EXPECT_EQ(static_cast<ServiceSelection&>(*objects.kept).serviceContextId, "1.2.01");
}

TEST_F(AListener, GoesOnAfterAnExceptionOfItsCallback)
{
    heard_.action = [](const std::string& what) {
        if (what == "value: [1]") throw std::runtime_error("no");
        if (what == "value: [2]") throw 2;
    };
    RawPeer publisher = attached();
    publisher.send("[1][2][3]");
    EXPECT_TRUE(heard_.waitFor("value: [3]"));
    listener_.stop();
    EXPECT_EQ(log_.count("PushListener::listen: ERROR exception from the callback: no"), 1);
    EXPECT_EQ(log_.count("PushListener::listen: ERROR exception from the callback: of an unknown kind"), 1);
}

TEST_F(AListener, CallsBackWithTheSignalMaskOfItsStarter)
{
    sigset_t none, before, inCallback;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, &before);
    heard_.action = [&](const std::string& what) {
        if (what == "value: [1]") pthread_sigmask(SIG_SETMASK, nullptr, &inCallback);
    };
    RawPeer publisher = attached();
    publisher.send("[1]");
    ASSERT_TRUE(heard_.waitFor("value: [1]"));
    const std::vector<int> threads = threadsNamed("self", "orvu-listener");
    ASSERT_EQ(threads.size(), 1u);
    EXPECT_TRUE(eventually([&] { return hasTheLibrarysSignals("self", threads.front()); }));
    listener_.stop();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(sigismember(&inCallback, SIGINT), 0);
    EXPECT_EQ(sigismember(&inCallback, SIGTERM), 0);
}

TEST_F(AListener, LogsWhatItDoes)
{
    RawPeer publisher = attached();
    publisher.close();
    ASSERT_TRUE(heard_.waitFor("waiting"));
    listener_.stop();
    const std::string place = "127.0.0.1:" + std::to_string(publisher_.port());
    EXPECT_THAT(
        log_.lines(),
        ElementsAre("PushListener::listen: " + place + " (tcp)", "PushListener::listen: attached to " + place,
                    "PushListener::listen: " + place + ": it closed the connection",
                    "PushListener::listen: trying " + place + " again in " + std::to_string(heard_.pause()) + " ms"));
}

struct Nonsense {
    const char* host;
    int port;
    int channel;
    std::string line;
};

void PrintTo(const Nonsense& nonsense, std::ostream* out)
{
    *out << nonsense.line;
}

class APlaceWithoutAPublisher : public testing::TestWithParam<Nonsense> {};

TEST_P(APlaceWithoutAPublisher, IsNotListenedTo)
{
    LogCapture log;
    PushListener listener;
    EXPECT_FALSE(listener.listen(GetParam().host, GetParam().port, static_cast<Channel>(GetParam().channel)));
    EXPECT_THAT(log.lines(), ElementsAre("PushListener::listen: ERROR " + GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(AListener, APlaceWithoutAPublisher,
                         testing::Values(Nonsense{nullptr, 9000, ChannelTcp, "no host!"},
                                         Nonsense{"", 9000, ChannelTcp, "no host!"},
                                         Nonsense{"127.0.0.1", 0, ChannelTcp, "not a port to connect to!"},
                                         Nonsense{"127.0.0.1", 65536, ChannelTcp, "not a port to connect to!"},
                                         Nonsense{"127.0.0.1", -1, ChannelTcp, "not a port to connect to!"},
                                         Nonsense{"127.0.0.1", 9000, 2, "not a channel!"}));

TEST_F(AListener, CannotListenWithoutAThread)
{
    const NoThreadsLeft none;
    EXPECT_FALSE(listen());
    EXPECT_EQ(log_.count("PushListener::listen: ERROR Could not start the thread!"), 1);
}

TEST_F(AListener, TriesAgainWhenDescriptorsRunOut)
{
    const PortLease port;
    ASSERT_TRUE(listener_.listen("127.0.0.1", port.port(), ChannelTcp));
    ASSERT_TRUE(heard_.waitFor("waiting"));
    {
        const NoDescriptorsLeft none;
        EXPECT_TRUE(heard_.waitFor("lost 3/" + std::to_string(EMFILE) + ": Too many open files"));
    }
}

}  // namespace
}  // namespace OrvuTests
