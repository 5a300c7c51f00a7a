#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
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

/// The example receiver, listening on a port of its own.
struct ExampleReceiver {
    ExampleReceiver() { process.waitForOutput("listening on port " + port + "\n"); }

    const PortLease lease;
    const std::string port = std::to_string(lease.port());
    Process process{command(ORVU_EXAMPLE_RECEIVER, {port, ORVU_EXAMPLE_CHANNELS}), withoutLog()};
};

/// The port that the receiver names for listeners of this kind.
int pushPortOf(ExampleReceiver& receiver, const std::string& kind)
{
    const std::string line = receiver.process.out();
    const std::size_t end = line.find(" (" + kind + ")");
    return std::stoi(line.substr(line.rfind(' ', end - 1) + 1));
}

TEST(TheExamplePrograms, TalkToEachOther)
{
    ExampleReceiver receiver;
    const Ended client = run(command(ORVU_EXAMPLE_CLIENT, {receiver.port}), withoutLog());
    EXPECT_EQ(client.out,
              "3 services\n"
              "  1840.1840.01  Canal Um HD\n"
              "  1840.1840.02  Canal Um Notícias\n"
              "  1848.1848.01  Canal Dois HD\n"
              "selecting 1848.1848.01: done\n"
              "now on: Canal Dois HD\n"
              "selecting 9.9.09: the receiver says serviceNotFound\n"
              "the guide: Jornal do Canal Dois HD\n"
              "the model: Example\n"
              "pairing with Celular da Ana: agreed\n"
              "the time: the receiver says resourceNotFound\n");
    EXPECT_EQ(client.err, "");
    EXPECT_EQ(client.code, 0);
    receiver.process.signal(SIGINT);
    const Ended ended = receiver.process.wait();
    EXPECT_THAT(ended.out, testing::EndsWith("\nlistening on port " + receiver.port + "\nended\n"));
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(TheExampleReceiver, PushesWhatIsSelected)
{
    ExampleReceiver receiver;
    RawPeer listener = RawPeer::connectedTo(pushPortOf(receiver, "tcp"));
    const std::string beginning = "{\n\t\"HEADER\":\t\"currentService\"";
    std::atomic<bool> isPushed{false};
    std::thread listening([&] {
        EXPECT_EQ(listener.receive(beginning.size()), beginning);
        isPushed = true;
    });
    while (!isPushed)  // the listener may not be attached yet
        EXPECT_EQ(rawExchange(receiver.lease.port(),
                              frame(R"({"HEADER":"serviceSelection","serviceContextId":"1848.1848.01"})")),
                  frame(headerOnly("success")));
    listening.join();
}

TEST(TheFacadesPrograms, TalkToEachOther)
{
    const PortLease lease;
    const std::string port = std::to_string(lease.port());
    Process receiver(command(ORVU_FACADE_RECEIVER, {port}), withoutLog());
    ASSERT_TRUE(receiver.waitForOutput("listening on port " + port + "\n"));
    EXPECT_EQ(run(command(ORVU_FACADE_CLIENT, {port}), withoutLog()).out,
              "3 services\n"
              "  1840.1840.01  Canal Um HD\n"
              "  1840.1840.02  Canal Um Notícias\n"
              "  1848.1848.01  Canal Dois HD\n"
              "now on Canal Um HD\n"
              "selecting 1848.1848.01: success\n"
              "now on Canal Dois HD\n"
              "selecting 9.9.09: serviceNotFound\n");
    receiver.signal(SIGTERM);
    EXPECT_EQ(receiver.wait().code, 0);
}

TEST(TheExampleReceiver, AnswersItsUsersQuestionsWhenItEnds)
{
    ExampleReceiver receiver;
    RawPeer peer = RawPeer::connectedTo(std::stoi(receiver.port));
    peer.send(frameOf(R"({"HEADER":"confirmationScreen","displayName":"phone"})"));
    EXPECT_EQ(rawExchange(std::stoi(receiver.port), frame(headerOnly("success"))),
              frame(headerOnly("resourceNotFound")));
    receiver.process.signal(SIGTERM);
    EXPECT_EQ(peer.readFrame(), headerOnly("platformUnavailable"));
    EXPECT_EQ(receiver.process.wait().code, 0);
}

TEST(TheExampleReceiver, SaysWhenItHasNoChannels)
{
    const Ended ended = run(command(ORVU_EXAMPLE_RECEIVER, {"7575", "/dev/null"}), withoutLog());
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "receiver: there are no channels in /dev/null\n");
}

TEST(TheExampleReceiver, AnswersWhatItDoesNotUnderstandOrLike)
{
    ExampleReceiver receiver;
    const PortLease& lease = receiver.lease;
    EXPECT_EQ(rawExchange(lease.port(), frame("no JSON")), frame(headerOnly("unknown")));
    EXPECT_EQ(rawExchange(lease.port(), frame(R"({"HEADER":"serviceSelection","serviceContextId":"one"})")),
              frame(headerOnly("illegalArgument")));
    EXPECT_EQ(rawExchange(lease.port(), frame(R"({"HEADER":"serviceSelection","serviceContextId":"current-service"})")),
              frame(headerOnly("success")));
}

TEST(TheExampleReceiver, SaysWhenThePortIsTaken)
{
    ServingTool other;
    const Ended ended = run(command(ORVU_EXAMPLE_RECEIVER, {other.portText(), ORVU_EXAMPLE_CHANNELS}), withoutLog());
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "receiver: TCP port " + other.portText() + " is not available\n");
}

TEST(TheExampleClient, SaysWhenNobodyListens)
{
    const PortLease lease;
    const std::string port = std::to_string(lease.port());
    const Ended ended = run(command(ORVU_EXAMPLE_CLIENT, {port, "127.0.0.1"}), withoutLog());
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "client: no list: Connection refused\n");
}

TEST(TheExampleClient, TalksToAReceiverOfAnswersToo)
{
    ServingTool receiver;
    const Ended ended = run(command(ORVU_EXAMPLE_CLIENT, {receiver.portText()}), withoutLog());
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "client: no list: the receiver says resourceNotFound\n");
}

TEST(TheExampleClient, SaysWhenNothingComesBack)
{
    RawListener silent;
    Process client(command(ORVU_EXAMPLE_CLIENT, {std::to_string(silent.port())}), withoutLog());
    RawPeer question = silent.accept();
    question.readFrame();
    question.close();
    const Ended ended = client.wait();
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "client: no list: the receiver closed the connection\n");
}

TEST(TheExampleReceiver, EndsWithConnectionsOpenThatNeverAsk)
{
    ExampleReceiver receiver;
    const RawPeer silent = RawPeer::connectedTo(receiver.lease.port());
    receiver.process.signal(SIGTERM);
    EXPECT_EQ(receiver.process.wait().code, 0);
}

TEST(TheExampleClient, EndsAtASignalThoughNobodyAnswers)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        RawListener silent;
        Process client(command(ORVU_EXAMPLE_CLIENT, {std::to_string(silent.port())}), withoutLog());
        RawPeer question = silent.accept();
        question.receive(4);
        client.signal(signal);
        const Ended ended = client.wait();
        EXPECT_EQ(ended.code, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err, "client: no list: cancelled\n");
    }
}

class AnExamplePublisher : public testing::TestWithParam<const char*> {};

TEST_P(AnExamplePublisher, PushesToWhoeverConnects)
{
    Process publisher(command(GetParam(), {"tcp"}), withoutLog());
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

INSTANTIATE_TEST_SUITE_P(Over, AnExamplePublisher, testing::Values(ORVU_EXAMPLE_PUBLISHER, ORVU_FACADE_PUBLISHER),
                         [](const auto& program) { return program.index == 0 ? "TheTypedInterface" : "TheFacade"; });

TEST(TheExamplePublisher, SaysWhyItCannotPush)
{
    const RawListener other;
    const std::string port = std::to_string(other.port());
    const std::string taken = "publisher: TCP port " + port + " is not available\n";
    const std::string strange = "publisher: the protocol is \"tcp\" or \"websocket\", not \"udp\"\n";
    for (const auto& [protocol, why] : {std::pair("tcp", taken), {"websocket", taken}, {"udp", strange}}) {
        const Ended ended = run(command(ORVU_EXAMPLE_PUBLISHER, {protocol, port, port}), withoutLog());
        EXPECT_EQ(ended.code, 1);
        EXPECT_EQ(ended.err, why);
    }
}

class AnExampleListener : public testing::TestWithParam<const char*> {};

TEST_P(AnExampleListener, PrintsWhatThePublisherPushes)
{
    for (const std::string channel : {"tcp", "websocket"}) {
        Process publisher(command(ORVU_EXAMPLE_PUBLISHER, {channel}), withoutLog());
        ASSERT_TRUE(publisher.waitForOutput("\n"));
        const std::string line = publisher.out();
        const std::string port = line.substr(line.find(':') + 1, line.find('\n') - line.find(':') - 1);
        Process listener(command(GetParam(), {channel, port}), withoutLog());
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

TEST_P(AnExampleListener, PrintsWhatHasNoType)
{
    RawListener publisher;
    Process listener(command(GetParam(), {"tcp", std::to_string(publisher.port())}), withoutLog());
    publisher.accept().send("[1]hello");
    ASSERT_TRUE(listener.waitForOutput("attached\na message of 3 bytes\nnot JSON: hello\n"));
}

TEST_P(AnExampleListener, SaysHowItIsUsed)
{
    EXPECT_EQ(run(command(GetParam(), {"tcp"})).err, "usage: listener tcp|websocket PORT [HOST]\n");
    EXPECT_EQ(run(command(GetParam(), {"udp", "9000"})).code, 64);
    EXPECT_EQ(run(command(GetParam(), {"tcp", "0"}), withoutLog()).code, 1);
}

INSTANTIATE_TEST_SUITE_P(Over, AnExampleListener, testing::Values(ORVU_EXAMPLE_LISTENER, ORVU_FACADE_LISTENER),
                         [](const auto& program) { return program.index == 0 ? "TheTypedInterface" : "TheFacade"; });

TEST(TheExampleListener, SaysWhyItCannotListen)
{
    EXPECT_EQ(run(command(ORVU_EXAMPLE_LISTENER, {"tcp", "0"}), withoutLog()).err,
              "listener: a port is 1 to 65535, not 0\n");
}

TEST(TheExamplePrograms, SayHowTheyAreUsed)
{
    EXPECT_EQ(run(command(ORVU_EXAMPLE_PUBLISHER, {})).err, "usage: publisher tcp|websocket [MIN-PORT MAX-PORT]\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_PUBLISHER, {"tcp", "9000"})).code, 64);
    EXPECT_EQ(run(command(ORVU_EXAMPLE_RECEIVER, {})).err, "usage: receiver PORT CHANNELS-FILE\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_RECEIVER, {"web", ORVU_EXAMPLE_CHANNELS})).code, 64);
    EXPECT_EQ(run(command(ORVU_EXAMPLE_CLIENT, {})).err, "usage: client PORT [HOST]\n");
    EXPECT_EQ(run(command(ORVU_EXAMPLE_CLIENT, {"0"})).code, 64);
}

}  // namespace
}  // namespace OrvuTests
