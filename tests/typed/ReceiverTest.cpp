#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvu/Typed.h"
#include "support/PortLease.h"
#include "typed/Sides.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::Optional;

namespace {

struct AReceiver : testing::Test {
    ~AReceiver() override { OrvuRestInterface::destroyInstance(); }

    std::optional<std::string> ask(const std::string& type) { return answerTo(receiver.port(), headerOnly(type)); }

    LogCapture log;
    Receiver receiver;
};

TEST_F(AReceiver, AnswersByTheTypeThatAHandlerTakes)
{
    receiver.on([](const ServiceTime&) { return NoSignalError(); });
    receiver.on([](const Service&) { return TVServiceNotInUse(); });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(answerTo(receiver.port(), R"({"HEADER":"serviceTime","time":"now"})"),
                Optional(headerOnly("noSignal")));
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("tvServiceNotInUse")));
}

TEST_F(AReceiver, HandsTheMessageToItsHandler)
{
    receiver.on([](const ServiceSelection& wanted) {
        ServiceSelection selected;
        selected.serviceContextId = "got " + wanted.serviceContextId;
        return selected;
    });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(answerTo(receiver.port(), R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})"),
                Optional(testing::HasSubstr(R"("got 1.2.01")")));
}

Answer answerOf(const ServiceSelection& wanted)
{
    if (wanted.serviceContextId == "none") return ServiceNotFoundError();
    if (wanted.serviceContextId == "null") return std::unique_ptr<Service>();
    return std::make_unique<EmptyResponse>();
}

TEST_F(AReceiver, TakesEveryKindOfHandlerAndAnswer)
{
    receiver.on(answerOf);
    receiver.on([kept = std::make_unique<int>(7)](const Service&) { return serviceNamed(std::to_string(*kept)); });
    receiver.on([](const ServiceList&) noexcept { return ServiceList(); });
    receiver.on([](Request<ServiceTime> request) { request.answer(SuccessResponse()); });
    ASSERT_TRUE(receiver.listen(0));
    const auto selection = [&](const std::string& id) {
        return answerTo(receiver.port(), R"({"HEADER":"serviceSelection","serviceContextId":")" + id + "\"}");
    };
    EXPECT_THAT(selection("none"), Optional(headerOnly("serviceNotFound")));
    EXPECT_THAT(selection("one"), Optional(headerOnly("emptyResponse")));
    EXPECT_THAT(selection("null"), Optional(headerOnly("platformUnavailable")));
    EXPECT_THAT(ask("currentService"), Optional(testing::HasSubstr(R"("serviceName":	"7")")));
    EXPECT_THAT(answerTo(receiver.port(), R"({"HEADER":"serviceList","serviceList":[]})"),
                Optional(testing::HasSubstr(R"("serviceList":	[])")));
    EXPECT_THAT(answerTo(receiver.port(), R"({"HEADER":"serviceTime","time":""})"), Optional(headerOnly("success")));
}

TEST_F(AReceiver, AnswersWhatNobodyRegistered)
{
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("resourceNotFound")));
}

TEST_F(AReceiver, AnswersWhatCannotBeUnderstood)
{
    ASSERT_TRUE(receiver.listen(0));
    for (const char* text : {"no JSON", R"({"HEADER":"nonsense"})", "{}", R"({"HEADER":"serviceTime"})"})
        EXPECT_THAT(answerTo(receiver.port(), text), Optional(headerOnly("unknown"))) << text;
}

TEST_F(AReceiver, MayAnswerWhatCannotBeUnderstoodByItself)
{
    receiver.on([](const UnknowRequest&) { return IllegalArgument(); });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(ask("nonsense"), Optional(headerOnly("illegalArgument")));
}

TEST_F(AReceiver, AnswersForAHandlerThatThrows)
{
    receiver.on([](const Service&) -> SuccessResponse { throw std::runtime_error("no tuner"); });
    receiver.on([](Request<ServiceTime>) { throw 1; });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("platformUnavailable")));
    EXPECT_TRUE(log.waitFor("OrvuRestInterface::notifyCallback: ERROR exception from the callback: no tuner"));
    EXPECT_THAT(answerTo(receiver.port(), R"({"HEADER":"serviceTime","time":""})"),
                Optional(headerOnly("platformUnavailable")));
    EXPECT_TRUE(
        log.waitFor("OrvuRestInterface::notifyCallback: ERROR exception from the callback: of an unknown kind"));
}

TEST_F(AReceiver, ServesAClassOfSeveralTypes)
{
    EXPECT_TRUE(receiver.on<DataTypeBinaryNIT>([](const BinaryData& asked) {
        auto table = std::make_unique<BinaryData>(asked.getDataType());
        setBytes(*table, "abc");
        return table;
    }));
    EXPECT_TRUE(receiver.on<DataTypeBinarySDT>([](Request<BinaryData> request) { request.answer(TableNotFound()); }));
    ASSERT_TRUE(receiver.listen(0));
    const auto table = [](const std::string& type) {
        return R"({"HEADER":")" + type + R"(","serviceContextId":"","bufferSize":0,"buffer":""})";
    };
    EXPECT_THAT(answerTo(receiver.port(), table("binaryNIT")), Optional(testing::HasSubstr(R"("buffer":	"YWJj")")));
    EXPECT_THAT(answerTo(receiver.port(), table("binarySDT")), Optional(headerOnly("tableNotFound")));
    EXPECT_THAT(answerTo(receiver.port(), table("binaryPMT")), Optional(headerOnly("resourceNotFound")));
}

TEST_F(AReceiver, HandsBoundsToTheirHandler)
{
    int width = 0;
    receiver.on([&](const Bounds& bounds) {
        width = bounds.w;
        return SuccessResponse();
    });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(answerTo(receiver.port(), R"({"HEADER":"bounds","w":1920,"h":1080})"), Optional(headerOnly("success")));
    receiver.stop();
    EXPECT_EQ(width, 1920);
}

TEST_F(AReceiver, CannotListenWithAHandlerForWhatIsNeverReceived)
{
    receiver.on([](const Position&) { return SuccessResponse(); });
    EXPECT_FALSE(receiver.listen(0));
    EXPECT_EQ(receiver.reason(), "there is a handler for \"pos\", and no message of this type can be received");
    EXPECT_EQ(receiver.port(), 0);
    EXPECT_THAT(log.lines(), Contains("Orvu::Receiver: cannot listen: " + receiver.reason()));
}

TEST_F(AReceiver, DoesNotTakeBoundsForAPosition)
{
    EXPECT_TRUE(receiver.on([](const Bounds&) { return SuccessResponse(); }));
    EXPECT_TRUE(receiver.on([](const Position&) { return SuccessResponse(); }));
    EXPECT_FALSE(receiver.listen(0));
    EXPECT_EQ(receiver.reason(), "there is a handler for \"pos\", and no message of this type can be received");
}

TEST_F(AReceiver, SendsNoAnswerWithoutAType)
{
    receiver.on([](const Service&) { return Bounds(1, 2); });
    receiver.on([](const PlatformCapabilities&) { return std::make_unique<DisplayLayer>(); });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("platformUnavailable")));
    EXPECT_TRUE(log.waitFor("Orvu::Request: \"pos\" cannot be sent by itself: it has no \"HEADER\""));
}

TEST_F(AReceiver, SendsATypeAlsoForWhatWasOnceInAList)
{
    receiver.on([](const Service&) {
        auto service = serviceNamed("Canal Um");
        service->serializeHeader(false);  // which a list does
        return service;
    });
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(ask("currentService"), Optional(testing::StartsWith("{\n\t\"HEADER\":\t\"currentService\"")));
}

TEST_F(AReceiver, TakesNoHandlerOnceItHasListened)
{
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_FALSE(receiver.on([](const Service&) { return SuccessResponse(); }));
    EXPECT_THAT(log.lines(),
                Contains("Orvu::Receiver: the handler for \"currentService\" comes too late: it has listened"));
    receiver.stop();
    EXPECT_FALSE(receiver.on([](const Service&) { return SuccessResponse(); }));
}

TEST_F(AReceiver, TakesOneHandlerForAType)
{
    EXPECT_TRUE(receiver.on([](const Service&) { return SuccessResponse(); }));
    EXPECT_FALSE(receiver.on([](Request<Service>) {}));
    EXPECT_THAT(log.lines(), Contains("Orvu::Receiver: there is a handler for \"currentService\" already"));
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("success")));
}

TEST_F(AReceiver, ListensOnThePortThatItIsGiven)
{
    const PortLease lease;
    EXPECT_EQ(receiver.port(), 0);
    ASSERT_TRUE(receiver.listen(lease.port()));
    EXPECT_EQ(receiver.port(), lease.port());
    EXPECT_EQ(receiver.reason(), "");
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("resourceNotFound")));
    receiver.stop();
    EXPECT_EQ(receiver.port(), 0);
    EXPECT_GE(RawPeer(boundSocket(lease.port(), true)).fd(), 0);
}

TEST_F(AReceiver, SaysWhenItsPortIsTaken)
{
    const RawListener other;
    EXPECT_FALSE(receiver.listen(other.port()));
    EXPECT_EQ(receiver.reason(), "TCP port " + std::to_string(other.port()) + " is not available");
    EXPECT_FALSE(receiver.listen(65536));
    EXPECT_EQ(receiver.reason(), "TCP port 65536 is not available");
    EXPECT_TRUE(receiver.listen(0));
    EXPECT_EQ(receiver.reason(), "");
}

TEST_F(AReceiver, IsTheOnlyOneThatListens)
{
    Receiver other;
    ASSERT_TRUE(receiver.listen(0));
    EXPECT_FALSE(other.listen(0));
    EXPECT_EQ(other.reason(), "another receiver of this process listens");
    EXPECT_FALSE(receiver.listen(0));
    EXPECT_EQ(receiver.reason(), "this receiver listens already");
    EXPECT_THAT(ask("currentService"), Optional(headerOnly("resourceNotFound")));
    receiver.stop();
    EXPECT_TRUE(other.listen(0));
}

TEST_F(AReceiver, LeavesTheFacadeAlone)
{
    ASSERT_TRUE(OrvuRestInterface::getInstance()->startListenRequests(0));
    EXPECT_FALSE(receiver.listen(0));
    EXPECT_EQ(receiver.reason(), "this process listens for requests already, without a receiver");
    EXPECT_NE(OrvuRestInterface::getInstance()->requestPort(), 0);
}

TEST_F(AReceiver, ListensAgainWithItsHandlers)
{
    receiver.on([](const Service&) { return SuccessResponse(); });
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(receiver.listen(0));
        EXPECT_THAT(ask("currentService"), Optional(headerOnly("success")));
        receiver.stop();
    }
}

}  // namespace
