#include <chrono>
#include <csignal>
#include <filesystem>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "support/RawPeer.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

std::string askedFor(const std::string& type)
{
    return frame("{\"HEADER\":\"" + type + "\"}");
}

TEST(TheReceiver, SaysWhereItListens)
{
    ServingTool receiver;
    EXPECT_EQ(receiver.process().out(),
              "listening on port " + receiver.portText() + ", answers from " + receiver.answers().path() + "\n");
}

TEST(TheReceiver, AnswersWithTheFileByteForByte)
{
    const std::string service =
        " { \"serviceName\":\"Notícias\\u0041\",\r\n\t\"serviceId\" : 1e3, \"HEADER\":\"currentService\"}\n\n";
    const std::string time = R"({"HEADER":"serviceTime","time":"now","more":[1.50, null]})";
    ServingTool receiver;
    receiver.answers().write("currentService.json", service);
    receiver.answers().write("serviceTime.json", time);
    receiver.answers().write("serviceList.json", "{\"HEADER\":\"noSignal\"}");
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(service));
    EXPECT_EQ(rawExchange(receiver.port(), frame(R"({"HEADER":"serviceTime","time":""})")), frame(time));
    EXPECT_EQ(rawExchange(receiver.port(), frame(R"({"HEADER":"serviceList","serviceList":[]})")),
              frame("{\"HEADER\":\"noSignal\"}"));
    EXPECT_EQ(receiver.end().err, "");
}

TEST(TheReceiver, AnswersATextLongerThanASocketTakesAtOnce)
{
    const std::string text = R"({"HEADER":"currentService","serviceName":")" + std::string(8000000, 'x') + R"("})";
    ServingTool receiver;
    receiver.answers().write("currentService.json", text);
    EXPECT_TRUE(rawExchange(receiver.port(), askedFor("currentService")) == frame(text));
}

TEST(TheReceiver, AnswersResourceNotFoundWithoutAFile)
{
    ServingTool receiver;
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(headerOnly("resourceNotFound")));
    EXPECT_EQ(receiver.end().err, "");
}

TEST(TheReceiver, AnswersARequestThatItCannotUnderstandFromTheFileOfUnknown)
{
    ServingTool receiver;
    receiver.answers().write("unknown.json", R"({"HEADER":"illegalArgument"})");
    EXPECT_EQ(rawExchange(receiver.port(), frame("no JSON")), frame(R"({"HEADER":"illegalArgument"})"));
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("nonsense")), frame(R"({"HEADER":"illegalArgument"})"));
}

TEST(TheReceiver, TakesEveryNameOfTheCatalogueAsAnAnswer)
{
    ServingTool receiver;
    for (const char* type : {"unknown", "emptyData", "pos", "codecsSupported", "siCacheUnavailable", "playerAction"}) {
        receiver.answers().write("currentService.json", headerOnly(type));
        EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(headerOnly(type)));
    }
    EXPECT_EQ(receiver.end().err, "");
}

struct Broken {
    const char* name;
    const char* text;
    const char* reason;
};

void PrintTo(const Broken& broken, std::ostream* out)
{
    *out << broken.name;
}

class ABrokenAnswer : public testing::TestWithParam<Broken> {};

TEST_P(ABrokenAnswer, IsReportedAndAnsweredResourceUnavailable)
{
    ServingTool receiver;
    const std::string file = receiver.answers().write("currentService.json", GetParam().text);
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(headerOnly("resourceUnavailable")));
    EXPECT_EQ(receiver.end().err, "orvu: " + file + ": " + GetParam().reason + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Serve, ABrokenAnswer,
    testing::Values(Broken{"Empty", "", "is empty"},
                    Broken{"CutShort", R"({"HEADER":"currentService")", "ends inside an object (line 1, column 27)"},
                    Broken{"WithTextAfterIt", R"({"HEADER":"currentService"} }})", R"(has text after the JSON: "}}")"},
                    Broken{"WithoutHeader", "{}", R"(names no type: "HEADER" is missing or holds no text)"},
                    Broken{"NoObject", "[]", R"(names no type: "HEADER" is missing or holds no text)"},
                    Broken{"WithANumberAsHeader", R"({"HEADER":8})",
                           R"(names no type: "HEADER" is missing or holds no text)"},
                    Broken{"WithAnEmptyHeader", R"({"HEADER":""})", R"(names an unknown type: "")"},
                    Broken{"InOtherLetters", R"({"HEADER":"CurrentService"})",
                           R"(names an unknown type: "CurrentService"; did you mean "currentService"?)"}));

TEST(TheReceiver, ReportsAFileWithANulByte)
{
    ServingTool receiver;
    const std::string file =
        receiver.answers().write("currentService.json", headerOnly("currentService") + std::string(1, '\0'));
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(headerOnly("resourceUnavailable")));
    EXPECT_EQ(receiver.end().err, "orvu: " + file + ": holds a NUL byte\n");
}

TEST(TheReceiver, DoesNotWaitAtAFileThatIsNone)
{
    ServingTool receiver;
    std::filesystem::create_directory(receiver.answers().file("currentService.json"));
    ASSERT_EQ(mkfifo(receiver.answers().file("serviceList.json").c_str(), 0600), 0);
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(headerOnly("resourceUnavailable")));
    EXPECT_EQ(rawExchange(receiver.port(), frame(R"({"HEADER":"serviceList","serviceList":[]})")),
              frame(headerOnly("resourceUnavailable")));
    EXPECT_EQ(receiver.end().err,
              "orvu: " + receiver.answers().file("currentService.json") + ": is not a regular file\n" +
                  "orvu: " + receiver.answers().file("serviceList.json") + ": is not a regular file\n");
}

TEST(TheReceiver, RereadsAFileThatChanged)
{
    const auto answerOf = [](ServingTool& receiver) {
        return rawExchange(receiver.port(), askedFor("currentService"));
    };
    ServingTool receiver;
    EXPECT_EQ(answerOf(receiver), frame(headerOnly("resourceNotFound")));
    receiver.answers().write("currentService.json", R"({"HEADER":"currentService","serviceId":1})");
    EXPECT_EQ(answerOf(receiver), frame(R"({"HEADER":"currentService","serviceId":1})"));
    receiver.answers().write("currentService.json", R"({"HEADER":"currentService","serviceId":2})");
    EXPECT_EQ(answerOf(receiver), frame(R"({"HEADER":"currentService","serviceId":2})"));
    receiver.answers().write("currentService.json", "broken");
    EXPECT_EQ(answerOf(receiver), frame(headerOnly("resourceUnavailable")));
    receiver.answers().remove("currentService.json");
    EXPECT_EQ(answerOf(receiver), frame(headerOnly("resourceNotFound")));
}

TEST(TheReceiver, PrintsOneLineForEachExchange)
{
    ServingTool receiver;
    receiver.answers().write("currentService.json", R"({"HEADER":"currentService"})");
    rawExchange(receiver.port(), askedFor("currentService"));
    ASSERT_TRUE(receiver.process().waitForOutput("ms\n"));
    rawExchange(receiver.port(), askedFor("serviceSelection"));
    ASSERT_TRUE(receiver.process().waitForOutput("resourceNotFound"));
    const std::string time = "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} ";
    const std::string took = " [0-9]+\\.[0-9]{2} ms\n";
    EXPECT_THAT(receiver.end().out,
                MatchesRegex("listening [^\n]*\n" + time + "currentService -> currentService 27 bytes" + took + time +
                             "serviceSelection -> resourceNotFound 33 bytes" + took));
}

TEST(TheReceiver, KeepsTheLinesThatAMessagePrintsOutOfItsOutput)
{
    ServingTool receiver;
    receiver.answers().write("serviceCompTagAction.json", headerOnly("success"));
    EXPECT_EQ(rawExchange(receiver.port(), frame(R"({"HEADER":"serviceCompTagAction","componentTag":1,)"
                                                 R"("pos":{"x":0,"y":0,"w":640,"h":"50%"}})")),
              frame(headerOnly("success")));
    ASSERT_TRUE(receiver.process().waitForOutput("ms\n"));
    EXPECT_THAT(receiver.end().out,
                MatchesRegex("listening [^\n]*\n[^\n]* serviceCompTagAction -> success [^\n]* ms\n"));
}

TEST(TheReceiver, AnswersManyAtOnce)
{
    ServingTool receiver;
    receiver.answers().write("currentService.json", headerOnly("currentService"));
    std::vector<std::future<std::string>> answers;
    answers.reserve(16);
    for (int i = 0; i < 16; ++i)
        answers.push_back(
            std::async(std::launch::async, [&] { return rawExchange(receiver.port(), askedFor("currentService")); }));
    for (auto& answer : answers)
        EXPECT_EQ(answer.get(), frame(headerOnly("currentService")));
}

class AnEndingSignal : public testing::TestWithParam<int> {};

TEST_P(AnEndingSignal, EndsTheReceiverCleanly)
{
    ServingTool receiver;
    receiver.process().signal(GetParam());
    const Ended ended = receiver.process().wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), "(nobody listens)");
}

INSTANTIATE_TEST_SUITE_P(Serve, AnEndingSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(TheReceiver, EndsWithAConnectionOpenThatNeverAsks)
{
    ServingTool receiver;
    const int silent = connectedTo(receiver.port());
    ASSERT_GE(silent, 0);
    EXPECT_EQ(receiver.end().code, 0);
    close(silent);
}

TEST(TheReceiver, DoesNotWaitForAPeerThatDoesNotTakeItsAnswer)
{
    const std::string part(8000000, 'x');
    const std::string name = part + part + part + part;  // more than the system keeps for a peer
    const std::string text = R"({"HEADER":"currentService","serviceName":")" + name + R"("})";
    ServingTool receiver;
    receiver.answers().write("currentService.json", text);
    RawPeer silent = RawPeer::connectedTo(receiver.port());
    silent.send(askedFor("currentService"));
    silent.receive(1);  // the answer is on its way
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(receiver.end().code, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));  // it gives up at 5 s otherwise
}

TEST(TheReceiver, SaysWhenThePortIsTaken)
{
    ServingTool first;
    const Ended second = run(orvu({"serve", first.portText(), "--answers", first.answers().path()}));
    EXPECT_EQ(second.code, 69);
    EXPECT_EQ(second.out, "");
    EXPECT_EQ(second.err, "orvu: port " + first.portText() + " is not available\n");
}

TEST(TheReceiver, SaysWhenTheAddressIsNotThisDevices)
{
    const Folder folder;
    const Ended ended = run(orvu({"serve", "9000", "--answers", folder.path(), "--listen", "192.0.2.1"}));
    EXPECT_EQ(ended.code, 69);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: port 9000 is not available on 192.0.2.1\n");
}

TEST(TheReceiver, ListensOnOneAddressAloneWhenAsked)
{
    ServingTool receiver({"--listen", "127.0.0.2"});
    EXPECT_EQ(receiver.process().out(), "listening on port " + receiver.portText() + " of 127.0.0.2, answers from " +
                                            receiver.answers().path() + "\n");
    EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), "(nobody listens)");
    EXPECT_EQ(run(orvu({"ask", "currentService", "--host", "127.0.0.2", "--port", receiver.portText(), "--raw"})).out,
              headerOnly("resourceNotFound"));
}

TEST(TheReceiver, SaysWhichPortTheSystemChose)
{
    const Folder folder;
    Process process(orvu({"serve", "0", "--answers", folder.path()}));
    ASSERT_TRUE(process.waitForOutput("\n"));
    const std::string beginning = "listening on port ";
    ASSERT_THAT(process.out(), testing::StartsWith(beginning));
    const int port = std::stoi(process.out().substr(beginning.size()));
    EXPECT_EQ(rawExchange(port, askedFor("currentService")), frame(headerOnly("resourceNotFound")));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().code, 0);
}

TEST(TheReceiver, SaysWhenTheFolderCannotBeRead)
{
    const Folder folder;
    const Ended ended = run(orvu({"serve", "9000", "--answers", folder.file("none")}));
    EXPECT_EQ(ended.code, 66);
    EXPECT_EQ(ended.err, "orvu: " + folder.file("none") + ": No such file or directory\n");
}

TEST(TheReceiver, ReportsAtTheStartWhatCouldNeverBeAnAnswer)
{
    const Folder folder;
    const PortLease port;
    folder.write("servicelist.json", headerOnly("serviceList"));
    folder.write("serviceTime.json", "{");
    folder.write("currentService.json", headerOnly("currentService"));
    folder.write("notes.txt", "nothing");
    Process process(orvu({"serve", std::to_string(port.port()), "--answers", folder.path()}));
    ASSERT_TRUE(process.waitForOutput("listening"));
    process.signal(SIGTERM);
    const std::string err = process.wait().err;
    EXPECT_THAT(err,
                HasSubstr("servicelist.json: answers nothing: no type has this name; did you mean \"serviceList\"?\n"));
    EXPECT_THAT(err, HasSubstr("serviceTime.json: ends inside an object (line 1, column 2)\n"));
    EXPECT_THAT(err, Not(HasSubstr("currentService.json")));
    EXPECT_THAT(err, Not(HasSubstr("notes.txt")));
}

TEST(TheReceiver, GoesOnAnsweringWhenNobodyReadsItsLines)
{
    ProcessOptions unread;
    unread.outputGone = true;
    ServingTool receiver({}, unread);
    receiver.answers().write("currentService.json", headerOnly("currentService"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(rawExchange(receiver.port(), askedFor("currentService")), frame(headerOnly("currentService")));
    const Ended ended = receiver.end();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
}

TEST(TheReceiver, KeepsTheLibrarysLinesToItselfUnlessAsked)
{
    ServingTool silent;
    rawExchange(silent.port(), askedFor("currentService"));
    EXPECT_EQ(silent.end().err, "");

    ServingTool talking({"--log", "stderr"});
    rawExchange(talking.port(), askedFor("currentService"));
    const Ended ended = talking.end();
    EXPECT_THAT(ended.err, HasSubstr("I/OrVU: startListenRequests\n"));
    EXPECT_THAT(ended.err, HasSubstr("I/OrVU: deserializeHeader: HEADER: currentService\n"));
    EXPECT_THAT(ended.out, Not(HasSubstr("OrVU")));
}

}  // namespace
}  // namespace OrvuTests
