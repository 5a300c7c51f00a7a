#include <gmock/gmock.h>
#include <memory>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Services.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Eq;
using testing::Optional;

namespace {

const std::string kWorker = "OrvuRestServerSocket::workerThread";

/// The number of the connection that the accept thread reported last.
int lastConnection(LogCapture& log)
{
    const std::string mark = "OrvuRestServerSocket::serverThread: clientSockfd: ";
    return std::stoi(linesWith(log, mark).back().substr(mark.size()));
}

std::string withNumber(const std::string& line, int number)
{
    return line + "(" + std::to_string(number) + ")";
}

TEST(ARequestServer, HandsTheRequestToTheApplicationAndSendsItsAnswer)
{
    const Receiver receiver([](OrvuRestRequest* received) {
        const std::unique_ptr<OrvuRestRequest> request(received);
        const auto* const asked = dynamic_cast<ServiceSelection*>(request->getData());
        Service answer;
        if (asked) answer.serviceContextId = asked->serviceContextId;
        answer.serviceName = "Canal";
        request->sendResponse(&answer);
    });
    EXPECT_THAT(receiver.ask(R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})"),
                Optional(Eq("{\n\t\"HEADER\":\t\"currentService\",\n\t\"serviceContextId\":\t\"1.2.01\",\n"
                            "\t\"serviceName\":\t\"Canal\",\n\t\"transportStreamId\":\t0,\n"
                            "\t\"originalNetworkId\":\t0,\n\t\"serviceId\":\t0\n}")));
}

TEST(ARequestServer, WritesLengthInHostOrderThenTheTextWithoutItsNulAndCloses)
{
    const Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(frameOf(R"({"HEADER":"success"})"));
    EXPECT_EQ(peer.readToEnd(), lengthBytes(25) + "{\n\t\"HEADER\":\t\"success\"\n}");
}

TEST(ARequestServer, LogsEveryStepOfAnExchange)
{
    LogCapture log;
    const Receiver receiver;
    receiver.ask(R"({"HEADER":"serviceTime","time":"now"})");
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    const int number = lastConnection(log);
    EXPECT_TRUE(
        areInOrder(log.lines(), {"startListenRequests", "OrvuRestServerSocket::serverThread -- init",
                                 "OrvuRestServerSocket::serverThread: clientSockfd: " + std::to_string(number)}));
    EXPECT_TRUE(areInOrder(
        log.lines(), {kWorker + ": clientSockfd: " + std::to_string(number), "deserializeHeader: HEADER: serviceTime",
                      "factory: dataType: serviceTime", "OrvuRestRequest::OrvuRestRequest: OK",
                      "OrvuRestInterface::notifyCallback", "OrvuRestRequest::sendResponse: -- init",
                      "OrvuRestRequest::sendResponse: -- end", "OrvuRestRequest::~OrvuRestRequest: -- init",
                      "OrvuRestRequest::~OrvuRestRequest: -- end", withNumber(kWorker + " -- end ", number)}));
}

TEST(ARequestServer, ClosesWithoutAWordWhenNothingIsSent)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.finishSending();
    EXPECT_EQ(peer.readToEnd(), "");
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    const int number = lastConnection(log);
    EXPECT_TRUE(areInOrder(log.lines(), {withNumber(kWorker + ": No data will be read. Skipping...", number),
                                         withNumber(kWorker + " -- end ", number)}));
    EXPECT_EQ(receiver.calls(), 0);
}

TEST(ARequestServer, TakesFewerThanFourBytesOfLengthForNone)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(lengthBytes(21).substr(0, 3));
    peer.finishSending();
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_TRUE(log.waitFor(withNumber(kWorker + ": No data will be read. Skipping...", lastConnection(log))));
    EXPECT_EQ(receiver.calls(), 0);
}

TEST(ARequestServer, ClosesWithoutAWordOnALengthOfZero)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(lengthBytes(0) + "more");
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_TRUE(log.waitFor(withNumber(kWorker + ": Buffer size == 0. Skipping...", lastConnection(log))));
    EXPECT_EQ(receiver.calls(), 0);
}

TEST(ARequestServer, AnswersALengthWithoutATextWithEmptyData)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(lengthBytes(21));
    peer.finishSending();
    EXPECT_THAT(peer.readFrame(), Optional(kEmptyData));
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    EXPECT_TRUE(areInOrder(log.lines(),
                           {kWorker + ": Server received empty request data", "OrvuRestRequest::OrvuRestRequest: OK",
                            "OrvuRestRequest::sendResponse: -- init", "OrvuRestRequest::sendResponse: -- end",
                            "OrvuRestRequest::~OrvuRestRequest: -- init", "OrvuRestRequest::~OrvuRestRequest: -- end",
                            withNumber(kWorker + " -- end ", lastConnection(log))}));
    EXPECT_EQ(log.count(kWorker + ": ERROR No request to send"), 0);
    EXPECT_EQ(receiver.calls(), 0);
}

TEST(ARequestServer, AnswersALengthOfOneWithEmptyDataAtOnce)
{
    const Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(lengthBytes(1) + "more");
    EXPECT_THAT(peer.readFrame(), Optional(kEmptyData));
}

class ATypeWithoutAMessage : public testing::TestWithParam<const char*> {};

TEST_P(ATypeWithoutAMessage, GetsNoAnswerAndReachesNobody)
{
    LogCapture log;
    Receiver receiver;
    EXPECT_EQ(receiver.ask(std::string(R"({"HEADER":")") + GetParam() + R"("})"), std::nullopt);
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    EXPECT_TRUE(areInOrder(
        log.lines(), {std::string("deserializeHeader: HEADER: ") + GetParam(),
                      std::string("factory: dataType: ") + GetParam(), kWorker + ": Serializable class not found!",
                      kWorker + ": ERROR No request to send", withNumber(kWorker + " -- end ", lastConnection(log))}));
    EXPECT_EQ(receiver.calls(), 0);
}

INSTANTIATE_TEST_SUITE_P(OfTheCatalogue, ATypeWithoutAMessage,
                         testing::Values("emptyData", "pos", "codecsSupported", "persistentVariableValue",
                                         "contentDescription", "linkageDescriptor", "hyperlinkDescriptor",
                                         "seriesDescriptor", "eventGroupDescriptor", "eventGroup", "componentGroup",
                                         "componentGroupDescriptor", "cAUnit", "siCacheUnavailable"));

TEST(ARequestServer, AnswersWhatItsClassCannotReadWithUnknown)
{
    LogCapture log;
    Receiver receiver;
    EXPECT_THAT(receiver.ask(R"({"HEADER":"serviceTime"})"), Optional(kUnknown));
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    EXPECT_TRUE(areInOrder(
        log.lines(), {kWorker + ": Cannot deserialize!", "OrvuRestRequest::OrvuRestRequest: OK",
                      "OrvuRestRequest::sendResponse: -- init", "OrvuRestRequest::sendResponse: -- end",
                      kWorker + ": ERROR No request to send", withNumber(kWorker + " -- end ", lastConnection(log))}));
    EXPECT_EQ(receiver.calls(), 0);
}

TEST(ARequestServer, LogsWhoSentWhatItsClassCannotReadAndWhy)
{
    LogCapture log;
    Receiver receiver;
    RawPeer peer = receiver.connect();
    peer.send(frameOf("{\"HEADER\":\"serviceTime\",\n\"times\":\"20:30\"}"));
    EXPECT_THAT(peer.readFrame(), Optional(kUnknown));
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    EXPECT_TRUE(areInOrder(log.lines(), {kWorker + ": Cannot deserialize!",
                                         kWorker + ": 127.0.0.1:" + std::to_string(peer.ownPort()) +
                                             ": serviceTime: line 1, column 1: time: required, missing; "
                                             "there is \"times\"",
                                         "OrvuRestRequest::OrvuRestRequest: OK"}));
}

TEST(ARequestServer, AnswersANumberThatCannotBeConvertedWithUnknown)
{
    LogCapture log;
    Receiver receiver;
    const char* const noNumber = R"({"HEADER":"serviceComponent","componentTag":"0x"})";
    const char* const tooLarge = R"({"HEADER":"serviceComponent","componentTag":"0x1FFFFFFFF"})";
    EXPECT_THAT(receiver.ask(noNumber), Optional(kUnknown));
    EXPECT_THAT(receiver.ask(tooLarge), Optional(kUnknown));
    EXPECT_EQ(log.count(kWorker + ": Cannot deserialize!"), 2);
    EXPECT_EQ(receiver.calls(), 0);
}

class ATextOfNoKnownType : public testing::TestWithParam<const char*> {};

TEST_P(ATextOfNoKnownType, ReachesTheApplicationAsAnUnknowRequest)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        EXPECT_EQ(request->getData()->getDataType(), DataTypeUnknown);
        answerWithSuccess(request);
    });
    EXPECT_THAT(receiver.ask(GetParam()), Optional(kSuccess));
}

INSTANTIATE_TEST_SUITE_P(Sent, ATextOfNoKnownType,
                         testing::Values(R"({"HEADER":"nonsense"})", R"({"HEADER":"unknown"})", R"({"HEADER":""})",
                                         R"({"HEADER":26})", R"({"HEADER":"Success"})", R"({"name":"value"})", "[1, 2]",
                                         "no JSON", "{\"HEADER\":\"success\"", "\xff\xfe"));

TEST(ARequestServer, EndsARequestThatNobodyRegisteredFor)
{
    LogCapture log;
    const Receiver receiver;
    OrvuRestInterface::getInstance()->registerRequestCallback(nullptr);
    EXPECT_EQ(receiver.ask(kSuccess), std::nullopt);
    ASSERT_TRUE(waitForLines(log, kWorker + " -- end", 1));
    EXPECT_TRUE(areInOrder(log.lines(),
                           {"OrvuRestInterface::notifyCallback", "Register a callback to receive requests!",
                            "OrvuRestRequest::~OrvuRestRequest: -- init", "OrvuRestRequest::~OrvuRestRequest: -- end",
                            withNumber(kWorker + " -- end ", lastConnection(log))}));
}

TEST(ARequestServer, ServesOnWithoutThoseThatFailed)
{
    const Receiver receiver;
    for (const char* const bad : {"no JSON", R"({"HEADER":"pos"})", R"({"HEADER":"serviceTime"})", ""})
        receiver.ask(bad);
    EXPECT_THAT(receiver.ask(kSuccess), Optional(kSuccess));
}

TEST(ARequestServer, CallsTheApplicationOnSeveralThreadsAtOnce)
{
    std::mutex mutex;
    std::condition_variable bothHere;
    int here = 0;
    const Receiver receiver([&](OrvuRestRequest* request) {
        std::unique_lock<std::mutex> lock(mutex);
        ++here;
        bothHere.notify_all();
        bothHere.wait(lock, [&] { return here == 2; });
        answerWithSuccess(request);
    });
    RawPeer first = receiver.connect();
    RawPeer second = receiver.connect();
    first.send(frameOf(kSuccess));
    second.send(frameOf(kSuccess));
    EXPECT_THAT(first.readFrame(), Optional(kSuccess));
    EXPECT_THAT(second.readFrame(), Optional(kSuccess));
}

TEST(ARequestServer, LetsTheApplicationAnswerFromAnotherThreadLater)
{
    OrvuRestRequest* kept = nullptr;
    std::mutex mutex;
    std::condition_variable received;
    const Receiver receiver([&](OrvuRestRequest* request) {
        const std::lock_guard<std::mutex> lock(mutex);
        kept = request;
        received.notify_all();
    });
    RawPeer peer = receiver.connect();
    peer.send(frameOf(kSuccess));
    {
        std::unique_lock<std::mutex> lock(mutex);
        received.wait(lock, [&] { return kept != nullptr; });
    }
    answerWithSuccess(kept);
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

}  // namespace
