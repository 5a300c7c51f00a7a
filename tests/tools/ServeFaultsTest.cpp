#include <algorithm>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/RawPeer.h"
#include "tools/Tool.h"
#include "tools/orvu/Fates.h"

namespace OrvuTests {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

const std::string kService = R"({"HEADER":"currentService","serviceId":1})";

/// What a peer receives that asks for the current service.
std::string asked(const ServingTool& receiver)
{
    return rawExchange(receiver.port(), frame(R"({"HEADER":"currentService"})"));
}

std::string numbered(int number)
{
    return R"({"HEADER":"currentService","serviceId":)" + std::to_string(number) + "}";
}

/// The first bytes of the frame: the length of the whole text, and half of it.
std::string halfOf(const std::string& text)
{
    return frame(text).substr(0, 4 + text.size() / 2);
}

/// The files of its folder answer in turn.
class AReceiverWithTurns : public testing::Test {
protected:
    AReceiverWithTurns()
    {
        for (const int turn : {1, 2, 3})
            receiver_.answers().write("currentService." + std::to_string(turn) + ".json", numbered(turn));
    }

    ServingTool receiver_;
};

TEST_F(AReceiverWithTurns, AnswersFromThemRoundAndRound)
{
    for (const int turn : {1, 2, 3, 1, 2, 3, 1})
        EXPECT_EQ(asked(receiver_), frame(numbered(turn)));
    EXPECT_EQ(receiver_.end().err, "");
}

TEST_F(AReceiverWithTurns, CountsForEachTypeAlone)
{
    receiver_.answers().write("unknown.1.json", headerOnly("noSignal"));
    EXPECT_EQ(asked(receiver_), frame(numbered(1)));
    EXPECT_EQ(rawExchange(receiver_.port(), frame("nonsense")), frame(headerOnly("noSignal")));
    EXPECT_EQ(asked(receiver_), frame(numbered(2)));
}

TEST_F(AReceiverWithTurns, AnswersFromTheFileWithoutANumberAsLongAsThereIsOne)
{
    EXPECT_EQ(asked(receiver_), frame(numbered(1)));
    receiver_.answers().write("currentService.json", numbered(0));
    EXPECT_EQ(asked(receiver_), frame(numbered(0)));
    EXPECT_EQ(asked(receiver_), frame(numbered(0)));
    receiver_.answers().remove("currentService.json");
    EXPECT_EQ(asked(receiver_), frame(numbered(2)));
}

TEST_F(AReceiverWithTurns, BeginsAgainWhereOneIsMissing)
{
    receiver_.answers().remove("currentService.2.json");
    EXPECT_EQ(asked(receiver_), frame(numbered(1)));
    EXPECT_EQ(asked(receiver_), frame(numbered(1)));
    receiver_.answers().remove("currentService.1.json");
    EXPECT_EQ(asked(receiver_), frame(headerOnly("resourceNotFound")));
    receiver_.answers().write("currentService.1.json", numbered(1));
    EXPECT_EQ(asked(receiver_), frame(numbered(1)));
}

TEST(TheReceiver, ReportsAtTheStartWhichNumberedFilesAnswerNothing)
{
    const Folder folder;
    const PortLease port;
    for (const char* name : {"currentService.json", "currentService.1.json", "serviceTime.1.json", "serviceTime.2.json",
                             "serviceTime.4.json", "serviceTimes.1.json", "serviceTime.01.json"})
        folder.write(name, headerOnly("success"));
    Process process(orvu({"serve", std::to_string(port.port()), "--answers", folder.path()}));
    ASSERT_TRUE(process.waitForOutput("listening"));
    process.signal(SIGTERM);
    const std::string err = process.wait().err;
    const auto report = [&](const std::string& name, const std::string& why) {
        return "orvu: " + folder.file(name) + ": answers nothing" + why + "\n";
    };
    EXPECT_THAT(err, HasSubstr(report("currentService.1.json", " as long as there is currentService.json")));
    EXPECT_THAT(err, HasSubstr(report("serviceTime.4.json", ": there is no serviceTime.3.json")));
    EXPECT_THAT(err,
                HasSubstr(report("serviceTimes.1.json", R"(: no type has this name; did you mean "serviceTime"?)")));
    EXPECT_THAT(err, HasSubstr(report("serviceTime.01.json", ": no type has this name")));
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 4);
}

TEST(TheReceiver, WaitsBeforeEachAnswerWhenAsked)
{
    ServingTool receiver({"--delay", "300"});
    receiver.answers().write("currentService.json", kService);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(asked(receiver), frame(kService));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
    ASSERT_TRUE(receiver.process().waitForOutput(" ms\n"));
    EXPECT_THAT(receiver.process().out(), ContainsRegex(" bytes [3-9][0-9][0-9]+\\.[0-9]+ ms\n"));
}

TEST(TheReceiver, EndsDuringADelay)
{
    ServingTool receiver({"--delay", "86400000"});
    RawPeer peer = RawPeer::connectedTo(receiver.port());
    peer.send(frame(R"({"HEADER":"currentService"})"));
    receiver.process().signal(SIGTERM);
    EXPECT_EQ(receiver.process().wait().code, 0);
    EXPECT_EQ(peer.readToEnd(), "");
}

TEST(TheReceiver, ClosesConnectionsWithoutAnAnswerWhenAsked)
{
    ServingTool receiver({"--close", "100"});
    receiver.answers().write("currentService.json", kService);
    EXPECT_EQ(asked(receiver), "");
    ASSERT_TRUE(receiver.process().waitForOutput(" ms\n"));
    EXPECT_THAT(receiver.process().out(), ContainsRegex(" currentService -> closed without an answer [0-9.]+ ms\n"));
}

TEST(TheReceiver, CutsAnswersWhenAsked)
{
    ServingTool receiver({"--cut", "100"});
    receiver.answers().write("currentService.json", kService);
    EXPECT_EQ(asked(receiver), halfOf(kService));
    ASSERT_TRUE(receiver.process().waitForOutput(" ms\n"));
    EXPECT_THAT(receiver.process().out(),
                ContainsRegex(" currentService -> currentService cut, 20 of 41 bytes [0-9.]+ ms\n"));
    EXPECT_EQ(run(orvu({"ask", "serviceTime", "--port", receiver.portText(), "--raw"})).out, headerOnly("emptyData"));
    EXPECT_EQ(receiver.end().err, "");
}

TEST(TheReceiver, LosesTheSameAnswersForTheSameSeed)
{
    ServingTool receiver({"--cut", "40", "--close", "30", "--seed", "11"});
    receiver.answers().write("currentService.json", kService);
    OrvuTool::Fates fates(30, 40, 11);
    for (int i = 0; i < 20; ++i) {
        const OrvuTool::Fate fate = fates.next();
        const std::string expected = fate == OrvuTool::Fate::Sent     ? frame(kService)
                                     : fate == OrvuTool::Fate::Closed ? ""
                                                                      : halfOf(kService);
        EXPECT_EQ(asked(receiver), expected) << i;
    }
}

/// It could cut answers, but this seed's first ones go out whole.
class AReceiverThatMayCut : public testing::Test {
protected:
    ServingTool receiver_{{"--cut", "1", "--seed", "1"}};
};

TEST_F(AReceiverThatMayCut, SendsTheOthersWhole)
{
    const std::string text = R"({"HEADER":"currentService","serviceName":")" + std::string(8000000, 'x') + R"("})";
    receiver_.answers().write("currentService.json", text);
    EXPECT_TRUE(asked(receiver_) == frame(text));
}

TEST_F(AReceiverThatMayCut, ReadsARequestWhereverItIsCut)
{
    receiver_.answers().write("currentService.json", kService);
    RawPeer peer = RawPeer::connectedTo(receiver_.port());
    peer.sendByteByByte(frame(R"({"HEADER":"currentService"})"));
    EXPECT_EQ(peer.readToEnd(), frame(kService));
}

TEST_F(AReceiverThatMayCut, ClosesAConnectionThatEndsBeforeItAsks)
{
    RawPeer peer = RawPeer::connectedTo(receiver_.port());
    peer.finishSending();
    EXPECT_EQ(peer.readToEnd(), "");
}

TEST_F(AReceiverThatMayCut, EndsWithAConnectionOpenThatNeverAsks)
{
    RawPeer silent = RawPeer::connectedTo(receiver_.port());
    EXPECT_EQ(receiver_.end().code, 0);
    EXPECT_EQ(silent.readToEnd(), "");
    EXPECT_EQ(asked(receiver_), "(nobody listens)");
}

TEST_F(AReceiverThatMayCut, SaysWhenThePortIsNotAvailable)
{
    const Ended second =
        run(orvu({"serve", receiver_.portText(), "--answers", receiver_.answers().path(), "--cut", "1"}));
    EXPECT_EQ(second.code, 69);
    EXPECT_EQ(second.out, "");
    EXPECT_EQ(second.err, "orvu: port " + receiver_.portText() + " is not available\n");
}

TEST(TheReceiver, CutsAnswersOnOneAddressAlone)
{
    ServingTool receiver({"--listen", "127.0.0.2", "--cut", "100"});
    EXPECT_EQ(asked(receiver), "(nobody listens)");
    EXPECT_EQ(run(orvu({"ask", "currentService", "--host", "127.0.0.2", "--port", receiver.portText(), "--raw"})).out,
              headerOnly("emptyData"));
}

TEST(TheReceiver, TakesItsPortAndAddressByNameToo)
{
    const Folder folder;
    const PortLease port;
    Process process(
        orvu({"serve", "--answers", folder.path(), "--host", "127.0.0.2", "--port", std::to_string(port.port())}));
    EXPECT_TRUE(process.waitForOutput("listening on port " + std::to_string(port.port()) + " of 127.0.0.2, "));
}

TEST(TheReceiver, ListensOnPort7575WithoutAnother)
{
    const Folder folder;
    const int id = getpid();  // an address that no other test takes
    const std::string address = "127." + std::to_string(id / 250 % 250) + "." + std::to_string(id % 250) + ".9";
    Process process(orvu({"serve", "--answers", folder.path(), "--listen", address}));
    if (process.waitForOutput("listening on port 7575 of " + address)) return;
    EXPECT_EQ(process.err(), "orvu: port 7575 is not available on " + address + "\n");  // taken on every address
}

}  // namespace
}  // namespace OrvuTests
