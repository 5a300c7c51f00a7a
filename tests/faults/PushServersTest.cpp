#include <memory>

#include "faults/FaultTest.h"
#include "orvu/OrvuRestInterface.h"
#include "push/Peers.h"
#include "support/Observed.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

/// A push server of the facade, from its creation to its end.
class APushServer : public FaultTest {
protected:
    APushServer(const std::string& protocol, const std::string& well)
        : FaultTest(protocol + " push server", well), protocol_(protocol)
    {}

    /// What a client gets of the server.
    virtual std::string serveClient() = 0;

    bool push(std::string message)
    {
        return inLibrary([&] {
            auto* const bytes = reinterpret_cast<unsigned char*>(message.data());
            return facade_->sendMessage(server_->handler, bytes, static_cast<unsigned>(message.size()));
        });
    }
    int port() const { return lease_.port(); }

private:
    std::string exchange() override
    {
        facade_ = inLibrary(OrvuRestInterface::getInstance);
        if (!facade_) return kNoFacade;
        facade_->setSocketsPortsRange(port(), port());
        if (!isRunning()) server_.reset(inLibrary([this] { return facade_->createServer(protocol_); }));
        if (!server_) return "no server";
        return isRunning() ? serveClient() : "not started";
    }

    void end() override
    {
        if (isRunning()) inLibrary([this] { return facade_->stopServer(server_->handler); });
        inLibrary([] { OrvuRestInterface::destroyInstance(); });
        server_.reset();
    }

    bool isRunning() const { return server_ && server_->error == 0; }

    const std::string protocol_;
    PortLease lease_;
    OrvuRestInterface* facade_ = nullptr;
    std::unique_ptr<SocketServerInfo> server_;
};

class ATcpPushServer : public APushServer {
protected:
    ATcpPushServer() : APushServer("tcp", "one two ") {}

private:
    std::string serveClient() override
    {
        const int before = progress_.connectionsDealtWith();
        RawPeer client = RawPeer::connectedTo(port());
        EXPECT_TRUE(eventually([&] { return progress_.connectionsDealtWith() > before; }));
        std::string pushed;
        for (const char* const message : {"one ", "two "})
            if (push(message)) pushed += message;
        return client.receive(pushed.size());
    }
};

TEST_P(ATcpPushServer, OutlivesEveryFaultOf)
{
    tryEachFault();
}

const FaultsOf kTcpFaults[] = {
    {"allocations", &allocations, {kNoFacade, "no server", "not started", "", "one ", "two "}},
    {"socket", &calls.socket, {"no server"}},
    {"bind", &calls.bind, {"no server"}},
    {"listen", &calls.listen, {"not started"}},
    {"accept", &calls.accept4, {"one two "}},
    {"pthread_create", &calls.pthread_create, {"not started"}},
    {"setsockopt", &calls.setsockopt, {"one two "}},
    {"poll_to_send", &calls.poll, {"one two "}, {}, {{&calls.send, 1, EAGAIN}}},
    {"send", &calls.send, {"one ", "two "}},
    {"close", &calls.close, {"one two "}},
    {"write", &calls.write, {"one two "}},
};
INSTANTIATE_TEST_SUITE_P(Each, ATcpPushServer, testing::ValuesIn(kTcpFaults), nameOfCall);

const std::string kPushed = "pushed ";
const std::string kEchoed = "echoed, a text beyond any small buffer ";

class AWebSocketPushServer : public APushServer {
protected:
    AWebSocketPushServer() : APushServer("websocket", kPushed + kEchoed) {}

private:
    std::string serveClient() override
    {
        const std::size_t before = progress_.bytesReceived();
        RawPeer client = RawPeer::connectedTo(port());
        if (!shakesHands(client)) return "turned away";
        const bool isPushed = push(kPushed);
        const std::string text = textFrame(kEchoed);
        client.send(text);
        const std::size_t all = before + openingRequest().size() + text.size();
        EXPECT_TRUE(eventually([&] { return progress_.bytesDealtWith() >= all || hasEnded(client); }));
        client.send(kCloseFrame);
        const std::string got = payloadsIn(client.readToEnd());
        EXPECT_TRUE(isPushed || got.find(kPushed) == std::string::npos);
        return got;
    }

    static std::string payloadsIn(std::string bytes)
    {
        std::string payloads;
        for (const Frame& frame : takeFrames(bytes))
            payloads += frame.payload;
        EXPECT_EQ(bytes, "") << "a frame is cut";
        return payloads;
    }
};

TEST_P(AWebSocketPushServer, OutlivesEveryFaultOf)
{
    tryEachFault();
}

const FaultsOf kWebSocketFaults[] = {
    {"allocations", &allocations, {kNoFacade, "no server", "not started", "turned away", "", kPushed}},
    {"socket", &calls.socket, {"no server"}},
    {"bind", &calls.bind, {"no server"}},
    {"listen", &calls.listen, {"no server"}},
    {"accept", &calls.accept4, {kPushed + kEchoed}},
    {"pthread_create", &calls.pthread_create, {"not started", "turned away"}},
    {"setsockopt", &calls.setsockopt, {kPushed + kEchoed}},
    {"poll", &calls.poll, {"turned away", "", kPushed, kPushed + kEchoed}, {}, {{&calls.recv, 1, EAGAIN}}},
    {"recv", &calls.recv, {"turned away", "", kPushed, kPushed + kEchoed}},
    // A frame that finds no room is dropped.
    {"send", &calls.send, {"turned away", "", kPushed}, {kPushed, kEchoed, kPushed + kEchoed}},
    {"close", &calls.close, {kPushed + kEchoed}},
    {"write", &calls.write, {kPushed + kEchoed}},
};
INSTANTIATE_TEST_SUITE_P(Each, AWebSocketPushServer, testing::ValuesIn(kWebSocketFaults), nameOfCall);

}  // namespace
