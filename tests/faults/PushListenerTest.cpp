#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <thread>

#include "faults/FaultTest.h"
#include "orvu/PushListener.h"
#include "orvu/Serializable.h"
#include "support/Observed.h"
#include "transport/WebSocketProtocol.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

const std::string kPushed = R"({"HEADER":"serviceSelection","serviceContextId":"a text beyond any small buffer"})";

/// Pushes one message to each client, on its own thread, in two pieces.
class Publisher {
public:
    explicit Publisher(Channel channel) : channel_(channel), thread_([this] { pushToAll(); }) {}
    ~Publisher()
    {
        isLeaving_ = true;
        RawPeer::connectedTo(port());
        thread_.join();
    }
    int port() const { return listener_.port(); }

private:
    void pushToAll()
    {
        while (!isLeaving_) {
            RawPeer client = listener_.accept();
            if (channel_ == ChannelWebSocket && !shakesHands(client)) continue;
            const std::string head =
                channel_ == ChannelTcp ? "" : "\x82" + std::string(1, static_cast<char>(kPushed.size()));
            client.send(head + kPushed.substr(0, 10));
            client.send(kPushed.substr(10));
            client.readToEnd();
        }
    }
    static bool shakesHands(RawPeer& client)
    {
        std::string request;
        while (request.size() < 4 || request.compare(request.size() - 4, 4, "\r\n\r\n") != 0) {
            const std::string byte = client.receive(1);
            if (byte.empty()) return false;
            request += byte;
        }
        return client.send(getHSresponse(request).value());
    }

    const Channel channel_;
    RawListener listener_;
    std::atomic<bool> isLeaving_{false};
    std::thread thread_;
};

/// What the callbacks have seen. They allocate nothing: that would be a fault of the test's.
struct Seen {
    std::atomic<int> heard{0};  // 1: with its object, 2: without
    std::atomic<bool> hasStopped{false};

    static void message(PushedMessage& message, void* context)
    {
        if (message.kind != PushedValue || std::strcmp(message.text, kPushed.c_str()) != 0) return;
        static_cast<Seen*>(context)->heard = message.object ? 1 : 2;
    }
    static void state(const ListenerStatus& status, void* context)
    {
        if (status.state == ListenerStateStopped) static_cast<Seen*>(context)->hasStopped = true;
    }
};

template <Channel kChannel>
class AListenerTo : public FaultTest {
protected:
    AListenerTo() : FaultTest(kChannel == ChannelTcp ? "listener, tcp" : "listener, websocket", "heard") {}

    std::string exchange() override
    {
        Seen seen;
        const std::unique_ptr<PushListener> listener = std::make_unique<PushListener>();
        listener->onMessage(Seen::message, &seen);
        listener->onState(Seen::state, &seen);
        listener->makeObjects(true);
        listener->reconnect(false);
        if (!inLibrary([&] { return listener->listen("localhost", publisher_.port(), kChannel); })) return "not begun";
        EXPECT_TRUE(eventually([&] { return seen.heard != 0 || seen.hasStopped; }));
        inLibrary([&] { listener->stop(); });
        return seen.heard == 1 ? "heard" : seen.heard == 2 ? "heard without an object" : "lost";
    }

    void end() override {}

private:
    Publisher publisher_{kChannel};
};

using AListenerToTcp = AListenerTo<ChannelTcp>;
using AListenerToAWebSocket = AListenerTo<ChannelWebSocket>;

TEST_P(AListenerToTcp, OutlivesEveryFaultOf)
{
    tryEachFault();
}

TEST_P(AListenerToAWebSocket, OutlivesEveryFaultOf)
{
    tryEachFault();
}

const Outcomes kLost = {"lost"};
const Outcomes kLostOrHeard = {"lost", "heard"};

const FaultsOf kFaults[] = {
    {"allocations", &allocations, {"not begun", "lost", "heard without an object", "heard"}},
    {"eventfd", &calls.eventfd, {"not begun"}},
    {"eventfd_write", &calls.eventfd_write},
    {"pthread_create", &calls.pthread_create, {"not begun"}},
    {"gethostbyname_r", &calls.gethostbyname_r, kLost},
    {"socket", &calls.socket, kLost},
    {"fcntl", &calls.fcntl, kLost},
    {"setsockopt", &calls.setsockopt, {"heard"}},
    {"connect", &calls.connect, kLost},
    {"getsockopt", &calls.getsockopt, kLost},
    {"poll", &calls.poll, kLostOrHeard},
    {"recv", &calls.recv, kLostOrHeard},
    {"close", &calls.close, {"heard"}},
    {"write", &calls.write, {"heard"}},
};
INSTANTIATE_TEST_SUITE_P(Each, AListenerToTcp, testing::ValuesIn(kFaults), nameOfCall);
INSTANTIATE_TEST_SUITE_P(Each, AListenerToAWebSocket, testing::ValuesIn(kFaults), nameOfCall);

const FaultsOf kWebSocketFaults[] = {
    {"send", &calls.send, kLostOrHeard},
    {"shutdown", &calls.shutdown, {"heard"}},
    {"getrandom", &calls.getrandom, {"heard"}},
};
INSTANTIATE_TEST_SUITE_P(WebSockets, AListenerToAWebSocket, testing::ValuesIn(kWebSocketFaults), nameOfCall);

}  // namespace
