#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <gmock/gmock.h>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "orvu/Typed.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "typed/Sides.h"
#include "wire/Latch.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::ElementsAre;

namespace {

/// What handlers have heard, in its order.
class Heard {
public:
    void add(const std::string& what)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        all_.push_back(what);
        grown_.notify_all();
    }
    std::vector<std::string> all()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return all_;
    }
    /// The first of them, once there are so many; all that there are after 60 s.
    std::vector<std::string> first(std::size_t count)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        grown_.wait_for(lock, std::chrono::seconds(60), [&] { return all_.size() >= count; });
        return {all_.begin(), all_.begin() + static_cast<std::ptrdiff_t>(std::min(count, all_.size()))};
    }

private:
    std::mutex mutex_;
    std::condition_variable grown_;
    std::vector<std::string> all_;
};

/// A listener, and a publisher that pushes whatever a test wants.
struct AListener : testing::Test {
    ~AListener() override { listener.reset(); }

    bool listen() { return listener->listen("127.0.0.1", publisher.port(), ChannelTcp); }
    /// The publisher's side of the connection.
    RawPeer attached()
    {
        EXPECT_TRUE(listen()) << listener->reason();
        return publisher.accept();
    }
    /// Has a message of this type heard under its name.
    template <class Message>
    void hear(const char* name)
    {
        EXPECT_TRUE(listener->on([this, name](const Message&) { heard.add(name); }));
    }

    LogCapture log;
    RawListener publisher;
    Heard heard;
    std::unique_ptr<Listener> listener = std::make_unique<Listener>();
};

TEST_F(AListener, HandsEachMessageToTheHandlerOfItsType)
{
    listener->on([this](const Service& service) { heard.add("service " + service.serviceName); });
    listener->on([this](const ServiceTime& time) { heard.add("time " + time.time); });
    hear<NoSignalError>("no signal");
    attached().send(R"({"HEADER":"currentService","serviceName":"Canal Um"}{"HEADER":"noSignal"}
                       {"HEADER":"serviceTime","time":"12:00"})");
    EXPECT_THAT(heard.first(3), ElementsAre("service Canal Um", "no signal", "time 12:00"));
}

TEST_F(AListener, HearsWhatAPublisherPushes)
{
    for (const auto& [protocol, channel] : {std::pair("tcp", ChannelTcp), {"websocket", ChannelWebSocket}}) {
        Publisher pushing(protocol);
        Latch isHeard;
        Listener hearing;
        hearing.on([&](const Service& service) {
            if (service.serviceName == "Canal Um") isHeard.open();
        });
        ASSERT_TRUE(hearing.listen("127.0.0.1", pushing.port(), channel)) << hearing.reason();
        ASSERT_TRUE(eventually([&] { return pushing.push(serviceNamed("Canal Um")); }));
        isHeard.wait();
        hearing.stop();
    }
    OrvuRestInterface::destroyInstance();
}

TEST_F(AListener, HandsOverTheRestAsTexts)
{
    hear<ServiceTime>("time");
    listener->on([this](const PushedMessage& rest) {
        if (rest.kind == PushedValue) heard.add("value " + std::string(rest.text, rest.size));
        if (rest.kind == PushedText) heard.add("text " + std::string(rest.text, rest.size));
    });
    attached().send(
        "[1]{\"HEADER\":\"noSignal\"}{\"HEADER\":\"nonsense\"}{\"HEADER\":\"serviceTime\"}hello\n"
        "{\"HEADER\":\"serviceTime\",\"time\":\"\"}");
    EXPECT_THAT(heard.first(6),
                ElementsAre("value [1]", "value {\"HEADER\":\"noSignal\"}", "value {\"HEADER\":\"nonsense\"}",
                            "value {\"HEADER\":\"serviceTime\"}", "text hello\n", "time"));
}

TEST_F(AListener, PassesOverWhatNobodyTakes)
{
    hear<NoSignalError>("no signal");
    attached().send("[1]{\"HEADER\":\"serviceTime\",\"time\":\"\"}hello\n{\"HEADER\":\"noSignal\"}");
    EXPECT_THAT(heard.first(1), ElementsAre("no signal"));
}

TEST_F(AListener, HearsClassesOfSeveralTypes)
{
    EXPECT_TRUE(listener->on<DataTypeBinaryNIT>([this](const BinaryData& table) {
        heard.add(std::string("NIT ") + reinterpret_cast<const char*>(table.buffer));
    }));
    EXPECT_TRUE(listener->on<DataTypeBinarySDT>([this](const BinaryData&) { heard.add("SDT"); }));
    listener->on([this](const PushedMessage&) { heard.add("the rest"); });
    const auto table = [](const std::string& type) {
        return R"({"HEADER":")" + type + R"(","serviceContextId":"","bufferSize":3,"buffer":"YWJj"})";
    };
    attached().send(table("binarySDT") + table("binaryNIT") + table("binaryPMT"));
    EXPECT_THAT(heard.first(3), ElementsAre("SDT", "NIT abc", "the rest"));
}

TEST_F(AListener, HandsBoundsToTheirHandler)
{
    listener->on([this](const Bounds& bounds) { heard.add(std::to_string(bounds.w)); });
    attached().send(R"({"HEADER":"bounds","w":1920,"h":1080})");
    EXPECT_THAT(heard.first(1), ElementsAre("1920"));
}

TEST_F(AListener, TellsItsState)
{
    listener->on([this](const ListenerStatus& status) {
        heard.add(std::to_string(status.state) + " " + status.reason);
        EXPECT_EQ(status.waitMilliseconds > 0, status.state == ListenerStateWaiting);
    });
    attached().close();
    EXPECT_THAT(heard.first(4), ElementsAre("1 ", "2 ", "3 it closed the connection", "4 it closed the connection"));
}

TEST_F(AListener, EndsAfterALossWhenItIsToldTo)
{
    listener->on([this](const ListenerStatus& status) { heard.add(std::to_string(status.state)); });
    listener->reconnect(false);
    attached().close();
    EXPECT_THAT(heard.first(4), ElementsAre("1", "2", "3", "5"));
}

TEST_F(AListener, GoesOnAfterAHandlerThatThrows)
{
    listener->on([](const Service&) { throw std::runtime_error("no screen"); });
    listener->on([](const PushedMessage&) { throw 1; });
    hear<NoSignalError>("no signal");
    attached().send(R"({"HEADER":"currentService"}[1]{"HEADER":"noSignal"})");
    EXPECT_THAT(heard.first(1), ElementsAre("no signal"));
    listener->stop();
    EXPECT_EQ(log.count("PushListener::listen: ERROR exception from the callback: no screen"), 1);
    EXPECT_EQ(log.count("PushListener::listen: ERROR exception from the callback: of an unknown kind"), 1);
}

TEST_F(AListener, TakesHandlersThatCanOnlyBeMoved)
{
    listener->on([this, kept = std::make_unique<int>(7)](const Service&) { heard.add(std::to_string(*kept)); });
    attached().send(R"({"HEADER":"currentService"})");
    EXPECT_THAT(heard.first(1), ElementsAre("7"));
}

TEST_F(AListener, TakesNoHandlerOnceItHasListened)
{
    ASSERT_TRUE(listen());
    listener->stop();
    EXPECT_FALSE(listener->on([](const Service&) {}));
    EXPECT_FALSE(listener->on([](const Position&) {}));
    EXPECT_FALSE(listener->on([](const PushedMessage&) {}));
    EXPECT_FALSE(listener->on([](const ListenerStatus&) {}));
    for (const std::string what : {"\"currentService\"", "\"pos\"", "the rest", "states"})
        EXPECT_EQ(log.count("Orvu::Listener: the handler for " + what + " comes too late: it has listened"), 1);
}

TEST_F(AListener, TakesOneHandlerForEach)
{
    EXPECT_TRUE(listener->on([this](const Service&) { heard.add("the first"); }));
    EXPECT_FALSE(listener->on([this](const Service&) { heard.add("the second"); }));
    EXPECT_TRUE(listener->on([](const PushedMessage&) {}));
    EXPECT_FALSE(listener->on([](const PushedMessage&) {}));
    EXPECT_TRUE(listener->on([](const ListenerStatus&) {}));
    EXPECT_FALSE(listener->on([](const ListenerStatus&) {}));
    for (const std::string what : {"\"currentService\"", "the rest", "states"})
        EXPECT_EQ(log.count("Orvu::Listener: there is a handler for " + what + " already"), 1);
    attached().send(R"({"HEADER":"currentService"})");
    EXPECT_THAT(heard.first(1), ElementsAre("the first"));
}

TEST_F(AListener, SaysWhyItCannotListen)
{
    const auto reason = [this](const char* host, int port, Channel channel) {
        EXPECT_FALSE(listener->listen(host, port, channel));
        EXPECT_THAT(log.lines(), Contains("Orvu::Listener: cannot listen: " + listener->reason()));
        return listener->reason();
    };
    EXPECT_EQ(reason("", 9000, ChannelTcp), "there is no host");
    EXPECT_EQ(reason("127.0.0.1", 0, ChannelTcp), "a port is 1 to 65535, not 0");
    EXPECT_EQ(reason("127.0.0.1", 65536, ChannelTcp), "a port is 1 to 65535, not 65536");
    EXPECT_EQ(reason("127.0.0.1", 9000, static_cast<Channel>(2)),
              "the channel is ChannelTcp or ChannelWebSocket, not 2");
    EXPECT_TRUE(listen());
    EXPECT_EQ(listener->reason(), "");
}

TEST_F(AListener, SaysWhenThereIsNoThreadForIt)
{
    {
        const NoThreadsLeft none;
        EXPECT_FALSE(listen());
    }
    EXPECT_EQ(listener->reason(), "there are no descriptors, threads or memory left");
    EXPECT_TRUE(listen());
}

TEST_F(AListener, CannotListenWithAHandlerForWhatIsNeverReceived)
{
    listener->on([](const Position&) {});
    EXPECT_FALSE(listen());
    EXPECT_EQ(listener->reason(), "there is a handler for \"pos\", and no message of this type can be received");
    Listener other;
    other.on([](const UnknowRequest&) {});  // what cannot be understood comes as a text
    EXPECT_FALSE(other.listen("127.0.0.1", publisher.port(), ChannelTcp));
    EXPECT_EQ(other.reason(), "there is a handler for \"unknown\", and no message of this type can be received");
}

TEST_F(AListener, DoesNotTakeBoundsForAPosition)
{
    EXPECT_TRUE(listener->on([](const Bounds&) {}));
    EXPECT_TRUE(listener->on([](const Position&) {}));
    EXPECT_FALSE(listen());
    EXPECT_EQ(listener->reason(), "there is a handler for \"pos\", and no message of this type can be received");
}

TEST_F(AListener, MayListenToAnotherPublisherLater)
{
    listener->on([this](const ServiceTime& time) { heard.add(time.time); });
    RawPeer first = attached();
    first.send(R"({"HEADER":"serviceTime","time":"first"})");
    EXPECT_THAT(heard.first(1), ElementsAre("first"));
    RawListener other;
    ASSERT_TRUE(listener->listen("127.0.0.1", other.port(), ChannelTcp));
    EXPECT_EQ(first.readToEnd(), "");
    other.accept().send(R"({"HEADER":"serviceTime","time":"second"})");
    EXPECT_THAT(heard.first(2), ElementsAre("first", "second"));
}

TEST_F(AListener, HasWaitedForItsHandlerWhenItHasStopped)
{
    for (const bool byItsDestructor : {false, true}) {
        Latch inHandler, mayEnd;
        bool hasEnded = false;
        Heard late;
        auto ending = std::make_unique<Listener>();
        ending->on([&](const Service&) {
            inHandler.open();
            mayEnd.wait();
            hasEnded = true;
        });
        ending->on([&](const PushedMessage&) { late.add("late"); });
        ASSERT_TRUE(ending->listen("127.0.0.1", publisher.port(), ChannelTcp));
        RawPeer connection = publisher.accept();
        connection.send(R"({"HEADER":"currentService"}[1][2])");
        inHandler.wait();
        std::thread leaving([&] { mayEnd.open(); });
        if (byItsDestructor)
            ending.reset();
        else
            ending->stop();
        EXPECT_TRUE(hasEnded);
        leaving.join();
        const std::vector<std::string> before = late.all();
        EXPECT_EQ(connection.readToEnd(), "");
        EXPECT_EQ(late.all(), before);
    }
}

TEST_F(AListener, MayBeStoppedByItsOwnHandler)
{
    listener->on([this](const Service&) {
        listener->stop();
        heard.add("stopped");
    });
    listener->on([this](const PushedMessage&) { heard.add("late"); });
    RawPeer connection = attached();
    connection.send(R"({"HEADER":"currentService"}[1])");
    EXPECT_EQ(connection.readToEnd(), "");
    EXPECT_THAT(heard.first(1), ElementsAre("stopped"));
    listener->stop();  // waits for the handler
    EXPECT_THAT(heard.all(), ElementsAre("stopped"));
}

TEST_F(AListener, MayBeDestroyedByItsOwnHandler)
{
    const auto kept = std::make_shared<std::string>("what it holds lives until it returns");
    listener->on([this, kept](const Service&) {
        listener.reset();
        heard.add(*kept);
    });
    listener->on([this](const PushedMessage&) { heard.add("late"); });
    RawPeer connection = attached();
    connection.send(R"({"HEADER":"currentService"}[1])");
    EXPECT_EQ(connection.readToEnd(), "");
    EXPECT_TRUE(eventually([&] { return kept.use_count() == 1; }));
    EXPECT_THAT(heard.all(), ElementsAre("what it holds lives until it returns"));
}

TEST_F(AListener, DestroysItsHandlersWhenItGoes)
{
    const auto kept = std::make_shared<int>(1);
    listener->on([kept](const PushedMessage&) {});
    ASSERT_TRUE(listen());
    listener.reset();
    EXPECT_EQ(kept.use_count(), 1);
}

}  // namespace
