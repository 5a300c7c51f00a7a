#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tools/Peer.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::ElementsAre;
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
    ServingTool receiver;
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
    ServingTool receiver;
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
    ServingTool receiver;
    receiver.answers().write("currentService.json", R"({"serviceId":58880,"transportStreamId":1840,"unknownKey":1,
        "originalNetworkId":1840,"serviceName":"Canal Um HD","serviceContextId":"1840.1840.01",
        "HEADER":"currentService"})");
    const Ended ended = run(orvu({"ask", "currentService", "--raw", "--port", receiver.portText()}));
    EXPECT_EQ(ended.out, kService);
    EXPECT_EQ(ended.err, "orvu: 1 thing was lost in reading; --wire shows the text that came\n");
    EXPECT_EQ(ended.code, 0);
}

TEST(Asking, PrintsExactlyTheTextThatCameWhenTheWireIsToBeShown)
{
    const std::string text = "{ \"unknownKey\": 1,\r\n\"serviceId\": 58880, \"HEADER\":\"currentService\" } and more\n";
    Peer peer([&] { return frame(text); });
    const Ended ended = run(orvu({"ask", "currentService", "--wire", "--port", peer.portText()}));
    EXPECT_EQ(ended.out, text);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(Asking, SendsTheFieldsThatAreGiven)
{
    Peer peer([] { return frame(R"({"HEADER":"success"})"); });
    const Ended ended = run(orvu({"ask", "serviceSelection", "serviceContextId=1.2.01", "--port", peer.portText()}));
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_THAT(peer.frames(),
                ElementsAre(frame("{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"1.2.01\"\n}")));
}

TEST(Asking, SendsNothingWhenAFieldIsWrong)
{
    const Ended wrong = run(orvu({"ask", "serviceTime", "tme=20:30"}));
    EXPECT_EQ(wrong.code, 64);
    EXPECT_EQ(wrong.err, "orvu: tme: there is no key \"tme\"; did you mean \"time\"?\n");
    const Ended missing = run(orvu({"ask", "qrCodeScreen", "displayName=Ana"}));
    EXPECT_EQ(missing.code, 64);
    EXPECT_EQ(missing.err, "orvu: qrCodeScreen: qrCodeData: required, missing\n");
}

TEST(Asking, SaysHowMuchWasLostInReading)
{
    const std::string service = R"({"HEADER":"currentService","serviceName":7,"serviceId":1,"more":true,"other":[{}]})";
    Peer peer([&] { return frame(service); });
    const Ended ended = run(asking("currentService", peer.portText()));
    EXPECT_EQ(ended.err, "orvu: 3 things were lost in reading; --wire shows the text that came\n");
    EXPECT_EQ(ended.code, 0);
}

TEST(Asking, CountsWhatFollowsTheJsonAsLost)
{
    Peer peer([] { return frame(headerOnly("success") + " and more"); });
    const Ended ended = run(asking("currentService", peer.portText()));
    EXPECT_EQ(ended.err, "orvu: 1 thing was lost in reading; --wire shows the text that came\n");
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"success\"\n}\n");
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
    ServingTool receiver;
    receiver.answers().write("currentService.json", kService);
    EXPECT_EQ(run(orvu({"ask", "currentService", "--host", "localhost", "--port", receiver.portText()})).code, 0);
}

using Outcome = std::pair<const char*, int>;

class AnAnswer : public testing::TestWithParam<Outcome> {};

TEST_P(AnAnswer, DecidesTheExitCode)
{
    ServingTool receiver;
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
    ServingTool receiver;
    receiver.answers().write("currentService.json", headerOnly("pos"));
    const Ended ended = run(asking("currentService", receiver.portText()));
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"unknown\"\n}\n");
    EXPECT_EQ(ended.err,
              "orvu: answered, but not understood: line 2, column 12: HEADER: \"pos\" names a type that cannot be "
              "received; what came: \"{\\n\\t\\\"HEADER\\\":"
              "\\t\\\"pos\\\"\\n}\"\n");
}

TEST(Asking, TakesAConnectionThatEndsWithoutAnAnswerAsEmptyData)
{
    Peer peer([] { return ""; });
    const Ended ended = run(asking("currentService", peer.portText()));
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"emptyData\"\n}\n");
    EXPECT_EQ(ended.err, "orvu: closed without an answer: nothing listens to requests here?\n");
}

/// What a server sends that is no whole message, and what is said of it.
struct Broken {
    std::string bytes;
    std::string text;
    std::string line;
};

TEST(Asking, PrintsWhatCameOnTheWireThoughItIsNoAnswer)
{
    const Broken all[] = {
        {frame("no JSON"), "no JSON",
         "answered, but not understood: line 1, column 1: is not JSON from here on: \"no JSON\"; what came: \"no "
         "JSON\""},
        {frame("{\"HEADER\"").substr(0, 7), "{\"H",
         R"(answered, but cut: 3 of 9 bytes came (the server closed the connection); what came: "{\"H")"},
        {std::string(4, '\xFF') + "\r\n", "\r\n",
         R"(answered, but too long: 4294967294 bytes are announced, the most is 64 MiB; what came: "\r\n")"},
        {"\x01", "", "answered, but cut: 1 of the first 4 bytes came (the server closed the connection)"},
        {"", "", "closed without an answer: nothing listens to requests here?"},
    };
    for (const Broken& broken : all) {
        Peer peer([&] { return broken.bytes; });
        const Ended ended = run(orvu({"ask", "currentService", "--wire", "--port", peer.portText()}));
        EXPECT_EQ(ended.out, broken.text);
        EXPECT_EQ(ended.err, "orvu: " + broken.line + "\n");
        EXPECT_EQ(ended.code, 2);
    }
}

TEST(Asking, ShowsEitherTheWireOrTheRawAnswer)
{
    const Ended ended = run(orvu({"ask", "currentService", "--wire", "--raw"}));
    EXPECT_EQ(ended.code, 64);
    EXPECT_THAT(ended.err, HasSubstr("--raw"));
}

TEST(Asking, SaysWhenNobodyListens)
{
    const PortLease port;
    const Ended ended = run(asking("currentService", std::to_string(port.port())));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: cannot connect to 127.0.0.1:" + std::to_string(port.port()) + ": Connection refused\n");
}

TEST(Asking, SaysWhenTheHostIsUnknown)
{
    const Ended ended = run(orvu({"ask", "currentService", "--host", "no-such-host.invalid", "--port", "9000"}));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, "orvu: cannot resolve no-such-host.invalid\n");
}

TEST(Asking, SaysThatItTakesIPv4AddressesAlone)
{
    const Ended ended = run(orvu({"ask", "currentService", "--host", "::1", "--port", "9000"}));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: ::1: IPv4 only\n");
}

TEST(Asking, SaysThatTheHostIsEmpty)
{
    const Ended ended = run(orvu({"ask", "currentService", "--host", "", "--port", "9000"}));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, "orvu: no host is named\n");
}

TEST(Asking, RefusesATypeOfWhichNoMessageIsMade)
{
    for (const char* type : {"pos", "emptyData", "codecsSupported", "siCacheUnavailable"}) {
        const Ended ended = run(orvu({"ask", type}));
        EXPECT_EQ(ended.code, 64);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, std::string("orvu: ") + type +
                                 ": cannot be requested: the library makes no message from this type alone\n");
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
    ServingTool receiver;
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
