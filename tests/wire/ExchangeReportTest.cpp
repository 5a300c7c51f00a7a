#include <cerrno>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "orvu/ExchangeReport.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/ReportFixture.h"
#include "wire/Sockets.h"
#include "wire/Throwing.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::AnyOf;
using testing::Contains;

namespace {

constexpr std::size_t kLengthSize = 4;
constexpr std::uint32_t kFirstSize =
    offsetof(ExchangeReport, group);  // of a program that was built before there were groups

/// What a peer sends, and what the report says of it.
struct Sent {
    std::string name;
    std::string bytes;
    ExchangePhase phase;
    DataType answer;
    std::string text;
    std::uint32_t announced;
};

void PrintTo(const Sent& sent, std::ostream* out)
{
    *out << sent.name;
}

Sent whole(const char* name, const std::string& text, ExchangePhase phase, DataType answer)
{
    return {name, frameOf(text), phase, answer, text, static_cast<std::uint32_t>(text.size())};
}

const std::uint32_t kTooLong = (64u << 20) + 2;

const Sent kSent[] = {
    {"Nothing", "", ExchangePhaseNoAnswer, DataTypeEmptyData, "", 0},
    {"HalfALength", lengthBytes(25).substr(0, 2), ExchangePhaseAnswerCut, DataTypeEmptyData, "", 0},
    {"NoMoreThanALength", lengthBytes(25), ExchangePhaseAnswerCut, DataTypeEmptyData, "", 24},
    {"HalfAText", lengthBytes(25) + kSuccess.substr(0, 9), ExchangePhaseAnswerCut, DataTypeEmptyData,
     kSuccess.substr(0, 9), 24},
    {"TooLongALength", lengthBytes(kTooLong) + "{\"HEA", ExchangePhaseAnswerTooLong, DataTypeEmptyData, "{\"HEA",
     kTooLong - 1},
    {"ALengthOfZero", lengthBytes(0), ExchangePhaseAnswerNotUnderstood, DataTypeEmptyData, "", 0},
    whole("AnEmptyText", "", ExchangePhaseAnswerNotUnderstood, DataTypeEmptyData),
    whole("NoJson", "no JSON", ExchangePhaseAnswerNotUnderstood, DataTypeUnknown),
    whole("NoHeader", "{}", ExchangePhaseAnswerNotUnderstood, DataTypeUnknown),
    whole("AHeaderThatIsANumber", R"({"HEADER":7})", ExchangePhaseAnswerNotUnderstood, DataTypeUnknown),
    whole("AnUnknownHeader", R"({"HEADER":"nonsense"})", ExchangePhaseAnswerNotUnderstood, DataTypeUnknown),
    whole("ATypeThatIsNoAnswer", R"({"HEADER":"pos"})", ExchangePhaseAnswerNotUnderstood, DataTypeUnknown),
    whole("ATypeWithoutAMessage", R"({"HEADER":"siCacheUnavailable"})", ExchangePhaseAnswerNotUnderstood,
          DataTypeUnknown),
    whole("AMissingKey", R"({"HEADER":"serviceTime"})", ExchangePhaseAnswerNotUnderstood, DataTypeUnknown),
    whole("ABadNumber", R"({"HEADER":"serviceComponent","componentTag":"0x"})", ExchangePhaseAnswerNotUnderstood,
          DataTypeUnknown),
    whole("Success", kSuccess, ExchangePhaseAnswered, DataTypeSuccess),
    whole("AnError", R"({"HEADER":"noSignal"})", ExchangePhaseAnswered, DataTypeNoSignal),
    whole("Unknown", kUnknown, ExchangePhaseAnswered, DataTypeUnknown),
    whole("CannotConnectToServer", R"({"HEADER":"cannotConnectToServer"})", ExchangePhaseAnswered,
          DataTypeCannotConnectToServer),
    whole("MoreThanJson", kSuccess + " and more", ExchangePhaseAnswered, DataTypeSuccess),
};

class AReportOfAPeerThatSends : public AReport, public testing::WithParamInterface<Sent> {
protected:
    static void answer(RawPeer& connection)
    {
        EXPECT_EQ(connection.readFrame(), kSuccess);
        connection.send(GetParam().bytes);
    }
};

TEST_P(AReportOfAPeerThatSends, SaysWhereTheExchangeEndedAndWhatCame)
{
    SuccessResponse request;
    EXPECT_EQ(ask(request, answer)->getDataType(), GetParam().answer);
    EXPECT_EQ(report.phase, GetParam().phase);
    EXPECT_EQ(text, GetParam().text);
    EXPECT_EQ(report.announcedBytes, GetParam().announced);
    EXPECT_EQ(report.receivedBytes, GetParam().bytes.size());
    EXPECT_EQ(report.sentBytes, kLengthSize + kSuccess.size());
    EXPECT_TRUE(report.mayHaveArrived);
    EXPECT_FALSE(report.cancelled);
    EXPECT_EQ(report.errorNumber, 0);
}

TEST_P(AReportOfAPeerThatSends, ChangesNoLineOfTheLog)
{
    SuccessResponse request;
    send(&request, answer);
    const std::vector<std::string> without = log.lines();
    log.clear();
    ask(request, answer);
    EXPECT_EQ(log.lines(), without);
}

INSTANTIATE_TEST_SUITE_P(Each, AReportOfAPeerThatSends, testing::ValuesIn(kSent),
                         [](const auto& sent) { return sent.param.name; });

TEST_F(AReport, KnowsAReset)
{
    SuccessResponse request;
    ask(request, [](RawPeer& connection) {
        connection.readFrame();
        connection.vanish();
    });
    EXPECT_EQ(report.phase, ExchangePhaseNoAnswer);
    EXPECT_EQ(report.errorNumber, ECONNRESET);
    EXPECT_TRUE(report.mayHaveArrived);
}

/// What an exchange that nothing was sent in leaves, whatever the report held before.
void expectNothingSent(const ExchangeReport& report, ExchangePhase phase, int error)
{
    EXPECT_EQ(report.phase, phase);
    EXPECT_EQ(report.errorNumber, error);
    EXPECT_FALSE(report.mayHaveArrived);
    EXPECT_FALSE(report.cancelled);
    EXPECT_EQ(report.sentBytes, 0U);
    EXPECT_EQ(report.receivedBytes, 0U);
    EXPECT_EQ(report.announcedBytes, 0U);
    EXPECT_EQ(report.sendingMicroseconds, 0);
    EXPECT_EQ(report.waitingMicroseconds, 0);
    EXPECT_EQ(report.receivingMicroseconds, 0);
    EXPECT_EQ(*report.receivedText, "");
}

TEST_F(AReport, KnowsAPortWhereNobodyListens)
{
    const PortLease nobody;
    client().configureClient("127.0.0.1", nobody.port());
    SuccessResponse request;
    const std::unique_ptr<Serializable> answer(client().sendRequest(&request, report));
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    expectNothingSent(report, ExchangePhaseNotConnected, ECONNREFUSED);
}

TEST_F(AReport, KnowsWhatIsNoPort)
{
    client().configureClient("127.0.0.1", 65536);
    SuccessResponse request;
    const std::unique_ptr<Serializable> answer(client().sendRequest(&request, report));
    expectNothingSent(report, ExchangePhaseNotConnected, EINVAL);
}

TEST_F(AReport, KnowsAProcessWithoutDescriptors)
{
    SuccessResponse request;
    std::unique_ptr<Serializable> answer;
    {
        const NoDescriptorsLeft none;
        answer.reset(client().sendRequest(&request, report));
    }
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    expectNothingSent(report, ExchangePhaseNotConnected, EMFILE);
}

TEST_F(AReport, KnowsAnIPv6Address)
{
    SuccessResponse request;
    for (const char* host : {"::1", "fe80::1%lo", "2001:db8::7"}) {
        client().configureClient(host, peer.port());
        const std::unique_ptr<Serializable> answer(client().sendRequest(&request, report));
        EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
        expectNothingSent(report, ExchangePhaseNotResolved, EAFNOSUPPORT);
    }
}

TEST_F(AReport, KnowsAClientWithoutAPeer)
{
    OrvuRestInterface::destroyInstance();
    SuccessResponse request;
    const std::unique_ptr<Serializable> answer(client().sendRequest(&request, report));
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    expectNothingSent(report, ExchangePhaseNoPeer, 0);
}

TEST_F(AReport, KnowsANullRequest)
{
    const std::unique_ptr<Serializable> answer(client().sendRequest(nullptr, report));
    EXPECT_EQ(answer->getDataType(), DataTypeUnknown);
    expectNothingSent(report, ExchangePhaseNothingToSend, 0);
}

TEST_F(AReport, KnowsARequestWithoutAText)
{
    Silent<SuccessResponse> silent;
    Throwing throwing;
    Saying<SuccessResponse> empty("");
    for (Serializable* request : std::vector<Serializable*>{&silent, &throwing, &empty}) {
        ask(*request, [](RawPeer& connection) { EXPECT_EQ(connection.readToEnd(), ""); });
        expectNothingSent(report, ExchangePhaseNothingToSend, 0);
    }
}

TEST_F(AReport, KnowsATypeOfWhichNoMessageIsMade)
{
    EXPECT_EQ(client().sendRequest(DataTypeEmptyData, report), nullptr);
    expectNothingSent(report, ExchangePhaseNothingToSend, 0);
}

TEST_F(AReport, IsFilledForABareTypeAsWell)
{
    const auto answer = whilePeerActs(
        [](RawPeer& connection) {
            connection.readFrame();
            connection.send(frameOf(kSuccess));
        },
        [&] { return client().sendRequest(DataTypeServiceTime, report); });
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
    EXPECT_EQ(report.phase, ExchangePhaseAnswered);
    EXPECT_EQ(text, kSuccess);
}

TEST_F(AReport, KnowsAPeerThatIsGoneBeforeTheRequestIsSent)
{
    Latch gone;
    struct Waiting : SuccessResponse {
        explicit Waiting(Latch& latch) : gone(latch) {}
        char* serialize() override
        {
            gone.wait();
            return SuccessResponse::serialize();
        }
        Latch& gone;
    } request(gone);
    ask(request, [&](RawPeer& connection) {
        connection.vanish();
        gone.open();
    });
    EXPECT_EQ(report.phase, ExchangePhaseNotSent);
    EXPECT_THAT(report.errorNumber, AnyOf(EPIPE, ECONNRESET));
    EXPECT_FALSE(report.mayHaveArrived);
}

TEST_F(AReport, KnowsAPeerThatVanishesInTheMiddleOfARequest)
{
    ServiceTime request;
    request.time.assign(16u << 20, 'x');
    ask(request, [](RawPeer& connection) {
        connection.receive(1000);
        connection.vanish();
    });
    EXPECT_EQ(report.phase, ExchangePhaseNotSent);
    EXPECT_THAT(report.errorNumber, AnyOf(EPIPE, ECONNRESET));
    EXPECT_GE(report.sentBytes, 1000U);
    EXPECT_LT(report.sentBytes, 16u << 20);
    EXPECT_TRUE(report.mayHaveArrived);
}

void answerSuccess(RawPeer& connection)
{
    connection.readFrame();
    connection.send(frameOf(kSuccess));
}

TEST_F(AReport, ServesOneExchangeAfterTheOther)
{
    SuccessResponse request;
    ask(request, answerSuccess);
    EXPECT_EQ(report.phase, ExchangePhaseAnswered);
    client().sendRequest(DataTypeEmptyData, report);
    expectNothingSent(report, ExchangePhaseNothingToSend, 0);
    EXPECT_EQ(report.resolvingMicroseconds + report.connectingMicroseconds, 0);
    EXPECT_EQ(report.receivedText, &text);
}

TEST_F(AReport, NeedsNoTextToReceive)
{
    report.receivedText = nullptr;
    SuccessResponse request;
    ask(request, answerSuccess);
    EXPECT_EQ(report.phase, ExchangePhaseAnswered);
    EXPECT_EQ(report.receivedText, nullptr);
    EXPECT_EQ(text, "of an exchange before");
}

TEST_F(AReport, KeepsItsSizeAndWhatIsBeyondTheLibrarysOwn)
{
    struct {
        ExchangeReport report;
        std::uint64_t later = 1234;
    } larger;
    larger.report.size = sizeof larger;
    SuccessResponse request;
    send(&request, larger.report, answerSuccess);
    EXPECT_EQ(larger.report.phase, ExchangePhaseAnswered);
    EXPECT_EQ(larger.report.size, sizeof larger);
    EXPECT_EQ(larger.later, 1234U);
}

TEST_F(AReport, MayBeOfAProgramThatKnowsNoGroups)
{
    const int other = 0;
    report.size = kFirstSize;
    report.group = &other;  // no field of such a program's, but whatever comes after its report
    ConfirmationScreen request("phone");
    ask(request, [&](RawPeer& connection) {
        connection.readFrame();
        client().cancelRequests(&other);
        connection.send(frameOf(kSuccess));
    });
    EXPECT_EQ(report.phase, ExchangePhaseAnswered);
    EXPECT_EQ(report.size, kFirstSize);
    EXPECT_EQ(report.group, &other);
}

TEST_F(AReport, IsLeftAloneWhenItIsTooSmall)
{
    for (const std::uint32_t size : {0U, 4U, kFirstSize - 1}) {
        log.clear();
        report.size = size;
        const ExchangeReport before = report;
        SuccessResponse request;
        EXPECT_EQ(ask(request, answerSuccess)->getDataType(), DataTypeSuccess);
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): every byte, whichever member it belongs to
        EXPECT_EQ(std::memcmp(&report, &before, sizeof report), 0);
        EXPECT_EQ(text, "of an exchange before");
        EXPECT_THAT(log.lines(), Contains("OrvuRestClientSocket::sendRequest: ERROR a report of " +
                                          std::to_string(size) + " bytes is too small!"));
    }
}

}  // namespace
