#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tools/Peer.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::Not;

const char* const kService =
    "{\n\t\"HEADER\":\t\"currentService\",\n\t\"serviceContextId\":\t\"1840.1840.01\",\n\t\"serviceName\":\t\"Canal Um "
    "HD\",\n\t\"transportStreamId\":\t1840,\n\t\"originalNetworkId\":\t1840,\n\t\"serviceId\":\t58880\n}";

std::vector<std::string> asking(const std::string& type, const std::string& port)
{
    return orvu({"ask", type, "--port", port});
}

TEST(Asking, PrintsTheAnswerLaidOut)
{
    Receiver receiver;
    receiver.answers().write("currentService.json", kService);
    const Ended ended = run(asking("currentService", receiver.portText()));
    EXPECT_EQ(ended.out,
              "{\n"
              "  \"HEADER\": \"currentService\",\n"
              "  \"serviceContextId\": \"1840.1840.01\",\n"
              "  \"serviceName\": \"Canal Um HD\",\n"
              "  \"transportStreamId\": 1840,\n"
              "  \"originalNetworkId\": 1840,\n"
              "  \"serviceId\": 58880\n"
              "}\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(Asking, LaysOutListsAndWhatIsEmpty)
{
    Receiver receiver;
    receiver.answers().write(
        "screenDescription.json",
        R"({"HEADER":"screenDescription","screen_items":[{"type":"a \"b\"\n","content":"é"},{}]})");
    EXPECT_EQ(run(asking("screenDescription", receiver.portText())).out,
              "{\n"
              "  \"HEADER\": \"screenDescription\",\n"
              "  \"screen_items\": [\n"
              "    {\n"
              "      \"type\": \"a \\\"b\\\"\\n\",\n"
              "      \"visible\": false,\n"
              "      \"enabled\": false,\n"
              "      \"focused\": false,\n"
              "      \"content\": \"é\"\n"
              "    },\n"
              "    {\n"
              "      \"type\": \"\",\n"
              "      \"visible\": false,\n"
              "      \"enabled\": false,\n"
              "      \"focused\": false,\n"
              "      \"contentList\": []\n"
              "    }\n"
              "  ]\n"
              "}\n");
}

TEST(Asking, PrintsExactlyWhatTheAnswerWritesWhenItIsToBeRaw)
{
    Receiver receiver;
    receiver.answers().write("currentService.json", R"({"serviceId":58880,"transportStreamId":1840,"unknownKey":1,
        "originalNetworkId":1840,"serviceName":"Canal Um HD","serviceContextId":"1840.1840.01","HEADER":"currentService"})");
    const Ended ended = run(orvu({"ask", "currentService", "--raw", "--port", receiver.portText()}));
    EXPECT_EQ(ended.out, kService);
    EXPECT_EQ(ended.code, 0);
}

TEST(Asking, SendsTheEmptyRequestOfTheType)
{
    Peer peer([] { return frame(headerOnly("success")); });
    EXPECT_EQ(run(asking("serviceSelection", peer.portText())).code, 0);
    EXPECT_EQ(peer.frames(), std::vector<std::string>{
                                 frame("{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"\"\n}")});
}

TEST(Asking, TakesAHostByItsName)
{
    Receiver receiver;
    receiver.answers().write("currentService.json", kService);
    EXPECT_EQ(run(orvu({"ask", "currentService", "--host", "localhost", "--port", receiver.portText()})).code, 0);
}

using Outcome = std::pair<const char*, int>;

class AnAnswer : public testing::TestWithParam<Outcome> {};

TEST_P(AnAnswer, DecidesTheExitCode)
{
    Receiver receiver;
    receiver.answers().write("currentService.json", headerOnly(GetParam().first));
    const Ended ended = run(asking("currentService", receiver.portText()));
    EXPECT_EQ(ended.code, GetParam().second);
    EXPECT_EQ(ended.out, std::string("{\n  \"HEADER\": \"") + GetParam().first + "\"\n}\n");
    EXPECT_EQ(ended.err, "");
}

INSTANTIATE_TEST_SUITE_P(Ask, AnAnswer,
                         testing::Values(Outcome{"success", 0}, Outcome{"emptyResponse", 0}, Outcome{"unknown", 2},
                                         Outcome{"illegalArgument", 2}, Outcome{"platformUnavailable", 2},
                                         Outcome{"formatNotSupported", 2}, Outcome{"actionNotSupported", 2},
                                         Outcome{"parameterNotSupported", 2}, Outcome{"emptyChannelList", 2},
                                         Outcome{"serviceNotFound", 2}, Outcome{"resourceNotFound", 2},
                                         Outcome{"resourceUnavailable", 2}, Outcome{"noSignal", 2},
                                         Outcome{"tableNotFound", 2}, Outcome{"missingArgument", 2},
                                         Outcome{"tvServiceNotInUse", 2}, Outcome{"cannotConnectToServer", 3}),
                         [](const auto& outcome) { return std::string(outcome.param.first); });

TEST(Asking, TakesAnAnswerThatCannotBeUnderstoodAsUnknown)
{
    Receiver receiver;
    receiver.answers().write("currentService.json", headerOnly("pos"));
    const Ended ended = run(asking("currentService", receiver.portText()));
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"unknown\"\n}\n");
}

TEST(Asking, TakesAConnectionThatEndsWithoutAnAnswerAsEmptyData)
{
    Peer peer([] { return ""; });
    const Ended ended = run(asking("currentService", peer.portText()));
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"emptyData\"\n}\n");
}

TEST(Asking, SaysWhenNobodyListens)
{
    const PortLease port;
    const Ended ended = run(asking("currentService", std::to_string(port.port())));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: cannot connect to 127.0.0.1:" + std::to_string(port.port()) + "\n");
}

TEST(Asking, SaysWhenTheHostIsUnknown)
{
    const Ended ended = run(orvu({"ask", "currentService", "--host", "no-such-host.invalid", "--port", "9000"}));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, "orvu: cannot connect to no-such-host.invalid:9000\n");
}

TEST(Asking, RefusesATypeOfWhichNoMessageIsMade)
{
    for (const char* type : {"pos", "emptyData", "codecsSupported", "siCacheUnavailable"}) {
        const Ended ended = run(orvu({"ask", type}));
        EXPECT_EQ(ended.code, 64);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, std::string("orvu: ") + type +
                                 ": cannot be asked for, since no message is made from this type alone\n");
    }
}

TEST(Asking, RefusesATypeThatDoesNotExist)
{
    for (const std::string type : {"nonsense", "9"}) {
        const Ended ended = run(orvu({"ask", type}));
        EXPECT_EQ(ended.code, 64);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "orvu: " + type + ": no such type; \"orvu types\" lists them\n");
    }
}

TEST(Asking, NamesTheTypeThatIsMeant)
{
    for (const std::string type : {"servicelist", "ServiceList", "servicesList", "serivceList"}) {
        const Ended ended = run(orvu({"ask", type}));
        EXPECT_EQ(ended.code, 64);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "orvu: " + type + ": no such type; did you mean \"serviceList\"?\n");
    }
}

TEST(Asking, KeepsTheLibrarysLinesToItselfUnlessAsked)
{
    Receiver receiver;
    receiver.answers().write("currentService.json", kService);
    ProcessOptions loud;
    loud.environment = {"ORVU_LOG=stderr"};
    EXPECT_EQ(run(asking("currentService", receiver.portText()), loud).err, "");

    const Ended ended = run(orvu({"ask", "currentService", "--raw", "--log", "stderr", "--port", receiver.portText()}));
    EXPECT_EQ(ended.out, kService);
    EXPECT_THAT(ended.err, HasSubstr("I/OrVU: OrvuRestClientSocket::configure: -- init\n"));
    EXPECT_THAT(ended.err, Not(HasSubstr("orvu: ")));

    EXPECT_EQ(run(orvu({"ask", "currentService", "--log", "syslog", "--port", receiver.portText()})).err, "");
}

}  // namespace
}  // namespace OrvuTests
