#include <atomic>
#include <cerrno>
#include <memory>
#include <thread>

#include "faults/FaultTest.h"
#include "orvu/ExchangeReport.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "orvu/Services.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

const std::string kAnswer = R"({"HEADER":"serviceSelection","serviceContextId":"a text beyond any small buffer"})";

const std::string kRequest =
    "{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"a text beyond any small buffer\"\n}";

/// Answers every request, on its own thread.
class AnsweringPeer {
public:
    AnsweringPeer() : thread_([this] { answerAll(); }) {}
    ~AnsweringPeer()
    {
        isLeaving_ = true;
        RawPeer::connectedTo(port());
        thread_.join();
    }
    int port() const { return listener_.port(); }

private:
    void answerAll()
    {
        while (!isLeaving_) {
            RawPeer client = listener_.accept();
            if (client.readFrame()) client.send(frameOf(kAnswer));
        }
    }

    RawListener listener_;
    std::atomic<bool> isLeaving_{false};
    std::thread thread_;
};

/// The peer answers well, so where the exchange did not come to its answer the report has an error, unless no peer
/// was configured, or a message could not be made, written or read.
void expectTruth(const ExchangeReport& report, bool isConfigured, const std::string& answer)
{
    const ExchangePhase phase = report.phase;
    EXPECT_EQ(phase == ExchangePhaseAnswered, answer == "serviceSelection");
    if (answer == "cannotConnectToServer") {
        EXPECT_TRUE(phase >= ExchangePhaseNoPeer && phase <= ExchangePhaseNotConnected) << "phase " << phase;
    }
    EXPECT_EQ(phase >= ExchangePhaseNoAnswer, report.sentBytes == 4 + kRequest.size());
    EXPECT_EQ(report.mayHaveArrived, report.sentBytes > 0);
    const bool isOfMessages = phase == ExchangePhaseNothingToSend || phase == ExchangePhaseAnswerNotUnderstood;
    const bool hasNoPeer = phase == ExchangePhaseNoPeer && !isConfigured;
    if (phase != ExchangePhaseAnswered && !isOfMessages && !hasNoPeer) {
        EXPECT_NE(report.errorNumber, 0) << "phase " << phase;
    }
    if (report.errorNumber != ENOMEM && phase >= ExchangePhaseAnswerNotUnderstood) {
        EXPECT_EQ(*report.receivedText, kAnswer);
    }
}

class ARequestClient : public FaultTest {
protected:
    ARequestClient() : FaultTest("request client", "serviceSelection")
    {
        request_.serviceContextId = "a text beyond any small buffer";
    }

    std::string exchange() override
    {
        OrvuRestInterface* const facade = inLibrary(OrvuRestInterface::getInstance);
        if (!facade) return kNoFacade;
        const bool isConfigured = inLibrary([&] { return facade->configureClient("127.0.0.1", peer_.port()); });
        std::string text;
        ExchangeReport report;
        report.receivedText = &text;
        const std::unique_ptr<Serializable> answer(inLibrary([&] { return facade->sendRequest(&request_, report); }));
        std::string type = answer ? Serializable::dataTypeString(answer->getDataType()) : "none";
        expectTruth(report, isConfigured, type);
        if (report.phase == ExchangePhaseAnswered && report.errorNumber == ENOMEM) type += " without its text";
        return isConfigured ? type : "not configured, " + type;
    }

    void end() override
    {
        inLibrary([] { OrvuRestInterface::destroyInstance(); });
    }

private:
    AnsweringPeer peer_;
    ServiceSelection request_;
};

TEST_P(ARequestClient, OutlivesEveryFaultOf)
{
    tryEachFault();
}

const Outcomes kUnconnected = {"not configured, serviceSelection", "cannotConnectToServer"};

const FaultsOf kClientFaults[] = {
    {"allocations",
     &allocations,
     {kNoFacade, "not configured, serviceSelection", "not configured, cannotConnectToServer", "emptyData", "unknown",
      "serviceSelection without its text"}},
    {"socket", &calls.socket, kUnconnected},
    {"connect", &calls.connect, kUnconnected},
    {"setsockopt", &calls.setsockopt, kUnconnected},
    {"getsockopt_when_configured", &calls.getsockopt, kUnconnected, {}, {{&calls.connect, 1, EINTR}}},
    {"getsockopt_when_sending", &calls.getsockopt, kUnconnected, {}, {{&calls.connect, 2, EINTR}}},
    {"poll_to_connect",
     &calls.poll,
     {"not configured, serviceSelection", "cannotConnectToServer", "emptyData"},
     {},
     {{&calls.connect, 2, EINTR}}},
    {"poll_to_send", &calls.poll, {"serviceSelection", "emptyData"}, {}, {{&calls.send, 1, EAGAIN}}},
    {"poll_to_receive", &calls.poll, {"emptyData"}, {}, {{&calls.recv, 1, EAGAIN}}},
    {"recv", &calls.recv, {"emptyData"}},
    {"send", &calls.send, {"emptyData"}},
    {"close", &calls.close, {"serviceSelection"}},
    {"write", &calls.write, {"serviceSelection"}},
};
INSTANTIATE_TEST_SUITE_P(Each, ARequestClient, testing::ValuesIn(kClientFaults), nameOfCall);

}  // namespace
