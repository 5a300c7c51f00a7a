#include "soak/Subject.h"

#include <memory>
#include <stdexcept>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PushListener.h"
#include "orvu/Serializable.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr std::chrono::milliseconds kLife{10};  // of a push server: long enough for clients to come

OrvuRestInterface& facade()
{
    return *OrvuRestInterface::getInstance();
}

/// A push server on `port` while it lives.
class Publisher {
public:
    Publisher(const char* protocol, int port)
    {
        facade().setSocketsPortsRange(port, port);
        info_.reset(facade().createServer(protocol));
        if (!info_ || info_->error != 0) throw std::runtime_error("no push server");
    }
    ~Publisher() { facade().stopServer(info_->handler); }
    Publisher(const Publisher&) = delete;
    Publisher& operator=(const Publisher&) = delete;

    /// Whether a client took it.
    bool push() const
    {
        auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(kPushed.data()));  // only read from
        return facade().sendMessage(info_->handler, data, static_cast<unsigned>(kPushed.size()));
    }

private:
    std::unique_ptr<SocketServerInfo> info_;
};

/// A listener to a server of this process while it lives.
class Hearing {
public:
    Hearing(int port, Channel channel)
    {
        listener_.onMessage(hear, this);
        listener_.makeObjects(true);
        if (!listener_.listen("127.0.0.1", port, channel)) throw std::runtime_error("no listener");
    }
    /// Ends it, and adds what it heard.
    void endInto(Work& work)
    {
        listener_.stop();
        work.heard += heard_;
        work.wrong += wrong_;
    }

private:
    static void hear(PushedMessage& message, void* context)
    {
        Hearing& hearing = *static_cast<Hearing*>(context);
        if (!hearing.isDue(message))
            ++hearing.wrong_;
        else if (message.kind == PushedValue)
            ++hearing.heard_;
    }
    /// Whether it is what was pushed, or its beginning, which a listener hands over when it is stopped before the rest
    /// has come. Nothing follows that.
    bool isDue(const PushedMessage& message)
    {
        if (message.kind == PushedValue) return !isCut_ && message.object && kPushed == message.text;
        isCut_ = true;
        return message.kind == PushedTextEnd || kPushed.compare(0, message.size, message.text) == 0;
    }

    long heard_ = 0;
    long wrong_ = 0;
    bool isCut_ = false;
    PushListener listener_;
};

/// How many pushes of a pair of push servers were taken; every fourth pair is stopped at once.
long pushesOf(const Publisher& one, const Publisher& other, long pair)
{
    const auto end = Clock::now() + (pair % 4 == 0 ? std::chrono::milliseconds(0) : kLife);
    long taken = 0;
    while (Clock::now() < end) {
        taken += one.push() ? 1 : 0;
        taken += other.push() ? 1 : 0;
    }
    return taken;
}

long askUntil(Clock::time_point end)
{
    long asked = 0;
    for (; Clock::now() < end; ++asked)
        delete facade().sendRequest(DataTypeServiceList);
    return asked;
}

}  // namespace

Subject::Subject(int peerPort) : restingThreads_(threadCount())
{
    if (!facade().configureClient("127.0.0.1", peerPort)) throw std::runtime_error("cannot reach the peer");
}

void Subject::listenAgain() const
{
    if (!facade().startListenRequests(receiver_.port())) throw std::runtime_error("cannot listen again");
}

Work Subject::workUntil(Clock::time_point end) const
{
    Work work;
    std::thread asking([&] { work.asked = askUntil(end); });
    for (long pair = 0; Clock::now() < end; ++pair, work.servers += 2) {
        const Publisher tcp("tcp", tcp_.port());
        const Publisher webSocket("websocket", webSocket_.port());
        Hearing tcpListener(tcp_.port(), ChannelTcp);
        Hearing webSocketListener(webSocket_.port(), ChannelWebSocket);
        work.pushes += pushesOf(tcp, webSocket, pair);
        tcpListener.endInto(work);
        webSocketListener.endInto(work);
    }
    asking.join();
    return work;
}

void Subject::settle() const
{
    facade().stopListenRequests();  // or workers would idle for ten seconds
    if (!eventually([this] { return threadCount() <= restingThreads_; }))
        throw std::runtime_error("threads stay when the work is done");
}

}  // namespace OrvuTests
