#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/RawPeer.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

std::vector<std::string> command(const std::string& program, const std::vector<std::string>& arguments)
{
    std::vector<std::string> words = commandOf(program);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

ProcessOptions withoutLog()
{
    ProcessOptions options;
    options.environment = {"ORVU_LOG=none"};
    return options;
}

TEST(TheExamplePrograms, TalkToEachOther)
{
    const PortLease lease;
    const std::string port = std::to_string(lease.port());
    Process receiver(command(ORVU_EXAMPLE_RECEIVER, {port}), withoutLog());
    ASSERT_TRUE(receiver.waitForOutput("listening on port " + port + "\n"));

    const Ended client = run(command(ORVU_EXAMPLE_CLIENT, {port}), withoutLog());
    EXPECT_EQ(client.out,
              "3 services\n"
              "  1840.1840.01  Canal Um HD\n"
              "  1840.1840.02  Canal Um Notícias\n"
              "  1848.1848.01  Canal Dois HD\n"
              "now on Canal Um HD\n"
              "selecting 1848.1848.01: success\n"
              "now on Canal Dois HD\n"
              "selecting 9.9.09: serviceNotFound\n"
              "pairing with Celular da Ana: agreed\n"
              "the time: resourceNotFound\n");
    EXPECT_EQ(client.err, "");
    EXPECT_EQ(client.code, 0);

    receiver.signal(SIGINT);
    const Ended ended = receiver.wait();
    EXPECT_EQ(ended.out, "listening on port " + port + "\nended\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(TheExampleReceiver, AnswersWhatItDoesNotUnderstandOrLike)
{
    const PortLease lease;
    Process receiver(command(ORVU_EXAMPLE_RECEIVER, {std::to_string(lease.port())}), withoutLog());
    ASSERT_TRUE(receiver.waitForOutput("listening"));
    EXPECT_EQ(rawExchange(lease.port(), frame("no JSON")), frame(headerOnly("unknown")));
    EXPECT_EQ(rawExchange(lease.port(), frame(R"({"HEADER":"serviceSelection","serviceContextId":"one"})")),
              frame(headerOnly("illegalArgument")));
    EXPECT_EQ(rawExchange(lease.port(), frame(R"({"HEADER":"serviceSelection","serviceContextId":"current-service"})")),
              frame(headerOnly("success")));
}

TEST(TheExampleReceiver, SaysWhenThePortCannotBeHad)
{
    Receiver other;
    const Ended ended = run(command(ORVU_EXAMPLE_RECEIVER, {other.portText()}), withoutLog());
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "receiver: port " + other.portText() + " is not available\n");
}

TEST(TheExampleClient, SaysWhenNobodyListens)
{
    const PortLease lease;
    const std::string port = std::to_string(lease.port());
    const Ended ended = run(command(ORVU_EXAMPLE_CLIENT, {port, "127.0.0.1"}), withoutLog());
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "client: nobody answers on port " + port + "\n");
}

TEST(TheExampleClient, TalksToAReceiverOfAnswersToo)
{
    Receiver receiver;
    const Ended ended = run(command(ORVU_EXAMPLE_CLIENT, {receiver.portText()}), withoutLog());
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "client: no list: the receiver says resourceNotFound\n");
}

TEST(TheExampleClient, SaysWhenNothingComesBack)
{
    RawListener silent;
    Process client(command(ORVU_EXAMPLE_CLIENT, {std::to_string(silent.port())}), withoutLog());
    silent.accept().close();  // the test whether it can be reached
    RawPeer question = silent.accept();
    question.readFrame();
    question.close();
    const Ended ended = client.wait();
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "client: no list: the receiver closed the connection\n");
}

TEST(TheExampleReceiver, EndsWithConnectionsOpenThatNeverAsk)
{
    const PortLease lease;
    Process receiver(command(ORVU_EXAMPLE_RECEIVER, {std::to_string(lease.port())}), withoutLog());
    ASSERT_TRUE(receiver.waitForOutput("listening"));
    const RawPeer silent = RawPeer::connectedTo(lease.port());
    receiver.signal(SIGTERM);
    EXPECT_EQ(receiver.wait().code, 0);
}

TEST(TheExampleClient, EndsAtASignalThoughNobodyAnswers)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        RawListener silent;
        Process client(command(ORVU_EXAMPLE_CLIENT, {std::to_string(silent.port())}), withoutLog());
        silent.accept().close();  // the test whether it can be reached
        RawPeer question = silent.accept();
        question.receive(4);
        client.signal(signal);
        const Ended ended = client.wait();
        EXPECT_EQ(ended.code, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "client: no list: cancelled\nclient: stopped\n");
    }
}

TEST(TheExamplePublisher, PushesToWhoeverConnects)
{
    Process publisher(command(ORVU_EXAMPLE_PUBLISHER, {"tcp"}), withoutLog());
    ASSERT_TRUE(publisher.waitForOutput("\n"));
    const std::string line = publisher.out();
    ASSERT_THAT(line, testing::MatchesRegex("tcp server on [0-9.]+:[0-9]+\n"));
    RawPeer listener = RawPeer::connectedTo(std::stoi(line.substr(line.find(':') + 1)));
    const std::string beginning = "{\n\t\"HEADER\":\t\"currentService\"";
    EXPECT_EQ(listener.receive(beginning.size()), beginning);
    publisher.signal(SIGTERM);
    const Ended ended = publisher.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, line + "ended\n");
}

TEST(TheExamplePublisher, SaysWhenNoServerCanBeHad)
{
    const RawListener other;
    const std::string port = std::to_string(other.port());
    for (const std::string protocol : {"tcp", "websocket", "udp"}) {
        const Ended ended = run(command(ORVU_EXAMPLE_PUBLISHER, {protocol, port, port}), withoutLog());
        EXPECT_EQ(ended.code, 1);
        EXPECT_EQ(ended.err, "publisher: cannot create the server\n");
    }
}

TEST(TheExampleListener, PrintsWhatThePublisherPushes)
{
    for (const std::string channel : {"tcp", "websocket"}) {
        Process publisher(command(ORVU_EXAMPLE_PUBLISHER, {channel}), withoutLog());
        ASSERT_TRUE(publisher.waitForOutput("\n"));
        const std::string line = publisher.out();
        const std::string port = line.substr(line.find(':') + 1, line.find('\n') - line.find(':') - 1);
        Process listener(command(ORVU_EXAMPLE_LISTENER, {channel, port}), withoutLog());
        ASSERT_TRUE(listener.waitForOutput("now on Canal "));
        publisher.signal(SIGTERM);
        publisher.wait();
        ASSERT_TRUE(listener.waitForOutput("it closed the connection; trying again in 1 s\n"));
        listener.signal(SIGINT);
        const Ended ended = listener.wait();
        EXPECT_EQ(ended.code, 0);
        EXPECT_EQ(ended.err, "");
        EXPECT_THAT(ended.out, testing::MatchesRegex("attached\n(now on Canal [^\n]*\n)+"
                                                     "it closed the connection; trying again in 1 s\n(.*\n)*ended\n"));
    }
}

TEST(TheExamplePrograms, SayHowTheyAreUsed)
{
    EXPECT_EQ(run(command(ORVU_EXAMPLE_LISTENER, {"tcp"})).err, "usage: listener tcp|websocket PORT [HOST]\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_LISTENER, {"udp", "9000"})).code, 64);
    EXPECT_EQ(run(command(ORVU_EXAMPLE_LISTENER, {"tcp", "0"}), withoutLog()).code, 1);
    EXPECT_EQ(run(command(ORVU_EXAMPLE_PUBLISHER, {})).err, "usage: publisher tcp|websocket [MIN-PORT MAX-PORT]\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_PUBLISHER, {"tcp", "9000"})).code, 64);
    EXPECT_EQ(run(command(ORVU_EXAMPLE_RECEIVER, {})).err, "usage: receiver PORT\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_RECEIVER, {"web"})).code, 64);
    EXPECT_EQ(run(command(ORVU_EXAMPLE_CLIENT, {})).err, "usage: client PORT [HOST]\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_CLIENT, {"0"})).code, 64);
}

}  // namespace
}  // namespace OrvuTests
