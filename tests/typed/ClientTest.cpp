#include <cerrno>
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

#include "orvu/Typed.h"
#include "support/PortLease.h"
#include "typed/Sides.h"
#include "wire/Latch.h"

using namespace Orvu;
using namespace OrvuTests;
using std::chrono::hours;
using std::chrono::milliseconds;

namespace {

/// A client whose peer does what the test says.
struct AClient : testing::Test {
    ~AClient() override
    {
        if (acting.joinable()) acting.join();
        OrvuRestInterface::destroyInstance();
    }

    /// The peer reads one request, keeps its text, and sends `text`.
    void answerWith(const std::string& text)
    {
        if (acting.joinable()) acting.join();
        acting = std::thread([this, text] {
            RawPeer connection = peer.accept();
            request = connection.readFrame().value_or("");
            connection.send(frameOf(text));
        });
    }

    LogCapture log;
    RawListener peer;
    Client tv{"127.0.0.1", peer.port()};
    std::thread acting;
    std::string request;
};

template <class Message>
std::string textOf(const Reply<Message>& reply)
{
    std::ostringstream out;
    out << reply.reason();
    return out.str();
}

TEST_F(AClient, GetsTheTypeThatItAsksFor)
{
    answerWith(R"({"HEADER":"serviceList","serviceList":[{"serviceName":"Canal Um"}]})");
    const auto services = tv.ask<ServiceList>();
    acting.join();
    ASSERT_TRUE(services.ok());
    EXPECT_EQ(services->services.at(0)->serviceName, "Canal Um");
    EXPECT_EQ((*services).services.size(), 1U);
    EXPECT_EQ(services.phase(), ExchangePhaseAnswered);
    EXPECT_TRUE(services.mayHaveArrived());
    EXPECT_FALSE(services.isCancelled());
    EXPECT_GT(services.report().receivedBytes, 0U);
    EXPECT_EQ(request, "{\n\t\"HEADER\":\t\"serviceList\",\n\t\"serviceList\":\t[]\n}");
}

TEST_F(AClient, GetsAReasonInstead)
{
    answerWith(R"({"HEADER":"noSignal"})");
    const auto services = tv.ask<ServiceList>();
    EXPECT_FALSE(services);
    EXPECT_EQ(textOf(services), "noSignal");
    EXPECT_TRUE(services.reason() == DataTypeNoSignal);
    EXPECT_TRUE(DataTypeServiceList != services.reason());
    EXPECT_TRUE(services.reason().is<NoSignalError>());
    EXPECT_FALSE(services.reason().is<ServiceNotFoundError>());
    EXPECT_EQ(services.phase(), ExchangePhaseAnswered);
}

TEST_F(AClient, TakesNothingElseForWhatItAskedFor)
{
    answerWith(R"({"HEADER":"currentService"})");
    EXPECT_EQ(textOf(tv.ask<ServiceList>()), "currentService");
    answerWith(R"({"HEADER":"nonsense"})");
    const auto nonsense = tv.send<UnknowRequest>(ServiceTime());
    EXPECT_FALSE(nonsense);
    EXPECT_EQ(nonsense.phase(), ExchangePhaseAnswerNotUnderstood);
}

TEST_F(AClient, KnowsWhenNobodyListens)
{
    const PortLease nobody;
    Client lonely("127.0.0.1", nobody.port());
    const auto services = lonely.send<CannotConnectToServer>(ServiceList());
    EXPECT_FALSE(services);
    EXPECT_EQ(textOf(services), "cannotConnectToServer");
    EXPECT_EQ(services.phase(), ExchangePhaseNotConnected);
    EXPECT_EQ(services.report().errorNumber, ECONNREFUSED);
    EXPECT_FALSE(services.mayHaveArrived());
}

TEST_F(AClient, SendsARequestOfAnotherTypeThanTheAnswer)
{
    ServiceSelection selection;
    selection.serviceContextId = "1.2.01";
    answerWith(headerOnly("success"));
    EXPECT_TRUE(tv.send<SuccessResponse>(selection).ok());
    acting.join();
    EXPECT_EQ(request, "{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"1.2.01\"\n}");
    answerWith(headerOnly("success"));
    EXPECT_TRUE(tv.send(selection));  // a success is what it expects when it is told nothing else
    const ServiceSelection constant = selection;
    answerWith(headerOnly("success"));
    EXPECT_TRUE(tv.send(constant));
    answerWith(headerOnly("success"));
    EXPECT_TRUE(tv.send(std::make_unique<ServiceSelection>()));
}

TEST_F(AClient, SendsATypeAlsoForWhatWasOnceInAList)
{
    Service service;
    service.serializeHeader(false);
    answerWith(headerOnly("success"));
    EXPECT_TRUE(tv.send(service));
    acting.join();
    EXPECT_THAT(request, testing::StartsWith("{\n\t\"HEADER\":\t\"currentService\""));
}

TEST_F(AClient, AsksForATypeWhoseClassHasSeveral)
{
    const std::string table = R"({"HEADER":"binaryNIT","serviceContextId":"","bufferSize":3,"buffer":"YWJj"})";
    answerWith(table);
    const auto network = tv.ask<DataTypeBinaryNIT>();
    ASSERT_TRUE(network);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(network->buffer), network->bufferSize), "abc");
    answerWith(table);
    EXPECT_EQ(textOf(tv.ask<DataTypeBinaryPMT>()), "binaryNIT");
    answerWith(table);
    EXPECT_TRUE(tv.send<DataTypeBinaryNIT>(ServiceSelection()));
}

TEST_F(AClient, AsksForAClassThatNeedsArgumentsToo)
{
    answerWith(R"({"HEADER":"confirmationScreen","displayName":"phone","confirmed":true})");
    const auto screen = tv.ask<ConfirmationScreen>();
    ASSERT_TRUE(screen);
    EXPECT_TRUE(screen->confirmed);
}

TEST_F(AClient, SendsNothingThatCannotBeSentByItself)
{
    const Reason reasons[] = {tv.ask<Bounds>().reason(),           tv.ask<DisplayLayer>().reason(),
                              tv.ask<NetworkInterface>().reason(), tv.ask<DrmSystem>().reason(),
                              tv.ask<NCLEvent>().reason(),         tv.send(Position()).reason(),
                              tv.send(Bounds()).reason()};
    for (const Reason& reason : reasons)
        EXPECT_STREQ(reason.text(), "a message of this type cannot be sent by itself");
    EXPECT_EQ(textOf(tv.ask<Position>()), "no message of this type can be received");
    EXPECT_EQ(textOf(tv.send(std::unique_ptr<Service>())), "there is no request");
    const auto nothing = tv.ask<Bounds>();
    EXPECT_EQ(nothing.phase(), ExchangePhaseNothingToSend);
    EXPECT_FALSE(nothing.mayHaveArrived());
}

TEST_F(AClient, LeavesTheConfiguredPeerAlone)
{
    const RawListener other;
    ASSERT_TRUE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", peer.port()));
    peer.accept();
    Client second("127.0.0.1", other.port());
    EXPECT_TRUE(second.isReachable());
    answerWith(headerOnly("success"));
    SuccessResponse success;
    const std::unique_ptr<Serializable> answer(OrvuRestInterface::getInstance()->sendRequest(&success));
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
}

TEST_F(AClient, CancelsItsOwnExchangesAlone)
{
    Client other("127.0.0.1", peer.port());
    std::optional<Reply<ConfirmationScreen>> replies[2];
    std::thread asking([&] { replies[0] = tv.send<ConfirmationScreen>(ConfirmationScreen("phone")); });
    RawPeer cancelled = peer.accept();
    cancelled.readFrame();
    std::thread otherAsking([&] { replies[1] = other.send<ConfirmationScreen>(ConfirmationScreen("phone")); });
    RawPeer answered = peer.accept();
    answered.readFrame();
    tv.cancel();
    asking.join();
    answered.send(frameOf(R"({"HEADER":"confirmationScreen","displayName":"phone"})"));
    otherAsking.join();
    EXPECT_FALSE(*replies[0]);
    EXPECT_TRUE(replies[0]->isCancelled());
    EXPECT_EQ(replies[0]->report().errorNumber, ECANCELED);
    EXPECT_TRUE(*replies[1]);
}

TEST_F(AClient, WaitsUntilItsPeerListens)
{
    EXPECT_TRUE(tv.waitUntilReachable(milliseconds(0)));
    const PortLease later;
    Client early("127.0.0.1", later.port());
    EXPECT_FALSE(early.waitUntilReachable(milliseconds(1)));
    std::thread waiting([&] { EXPECT_TRUE(early.waitUntilReachable(milliseconds::max())); });
    const std::string refused =
        "OrvuRestClientSocket::connectSocket: ERROR connecting to host: 127.0.0.1:" + std::to_string(later.port());
    const int before = log.count(refused);
    while (log.count(refused) == before)
        std::this_thread::yield();
    const RawPeer listener(boundSocket(later.port(), true));
    waiting.join();
}

TEST_F(AClient, WaitsNoLongerOnceItIsCancelled)
{
    const PortLease nobody;
    Client lonely("127.0.0.1", nobody.port());
    std::thread waiting([&] { EXPECT_FALSE(lonely.waitUntilReachable(hours(1))); });
    EXPECT_TRUE(log.waitFor("OrvuRestClientSocket::connectSocket: ERROR connecting to host: 127.0.0.1:" +
                            std::to_string(nobody.port())));
    lonely.cancel();
    waiting.join();
}

TEST_F(AClient, GivesItsMessageAway)
{
    answerWith(headerOnly("success"));
    auto reply = tv.send(ServiceSelection());
    EXPECT_NE(reply.take(), nullptr);
    EXPECT_FALSE(reply);
}

TEST_F(AClient, EndsTheProgramWhereAReplyWithoutAMessageIsUsed)
{
    const auto nothing = tv.ask<Position>();
    EXPECT_DEATH((void)nothing->x, "Orvu::Reply: there is no message: no message of this type can be received");
}

}  // namespace
