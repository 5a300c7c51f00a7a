#include <csignal>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/Observed.h"
#include "support/Process.h"
#include "support/RawPeer.h"
#include "tools/Pushing.h"
#include "tools/Tool.h"

/// The programs that the page on shutting down shows.
namespace OrvuTests {
namespace {

const std::string kQuestion = R"({"HEADER":"currentService"})";

/// One of the programs, running.
struct PageProgram {
    explicit PageProgram(const std::string& name, const std::vector<std::string>& arguments = {},
                         const std::string& input = "")
        : process(command(name, arguments, input), withoutLog())
    {}

    static std::vector<std::string> command(const std::string& name, const std::vector<std::string>& arguments,
                                            const std::string& input)
    {
        std::vector<std::string> words = commandOf(ORVU_EMULATOR "|" ORVU_PAGE_PROGRAMS "/shutting-down-" + name);
        words.insert(words.end(), arguments.begin(), arguments.end());
        if (!input.empty()) words.insert(words.begin(), {"/bin/sh", "-c", "exec \"$@\" <'" + input + "'", "sh"});
        return words;
    }

    static ProcessOptions withoutLog()
    {
        ProcessOptions options;
        options.environment = {"ORVU_LOG=none"};
        return options;
    }

    /// The port that its first line ends with.
    int port()
    {
        if (!process.waitForOutput("\n")) throw std::runtime_error("it does not come up: " + process.err());
        const std::string line = process.out().substr(0, process.out().find('\n'));
        return std::stoi(line.substr(line.rfind(' ') + 1));
    }

    Ended end(int signal)
    {
        process.signal(signal);
        return process.wait();
    }

    Process process;
};

TEST(TheProgramThatAnswers, EndsWithConnectionsOpenThatNeverAsk)
{
    PageProgram program("answers", {"0"});
    const RawPeer silent = RawPeer::connectedTo(program.port());
    EXPECT_EQ(rawExchange(program.port(), frame(kQuestion)), frame(headerOnly("resourceNotFound")));
    const Ended ended = program.end(SIGTERM);
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "listening on port " + std::to_string(program.port()) + "\nended\n");
}

TEST(TheProgramThatAsks, EndsThoughNobodyAnswers)
{
    RawListener receiver;
    PageProgram program("asks", {std::to_string(receiver.port())});
    receiver.accept().close();  // the test whether it can be reached
    RawPeer question = receiver.accept();
    question.receive(4);
    const Ended ended = program.end(SIGINT);
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "emptyData\nended\n");
}

TEST(TheProgramThatPushes, EndsWithAListenerConnected)
{
    PageProgram program("pushes");
    RawPeer listener = RawPeer::connectedTo(program.port());
    EXPECT_EQ(listener.receive(22), R"({"HEADER": "noSignal"})");
    const Ended ended = program.end(SIGTERM);
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "pushing on port " + std::to_string(program.port()) + "\nended\n");
}

TEST(TheProgramThatDoesAllOfIt, Ends)
{
    PageProgram program("all");
    RawPeer listener = RawPeer::connectedTo(program.port());
    EXPECT_EQ(listener.receive(8), "noSignal");
    const Ended ended = program.end(SIGINT);
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.out, "pushing on port " + std::to_string(program.port()) + "\nended\n");
}

/// The program that keeps its requests, and its input.
class TheProgramThatKeepsRequests : public testing::Test {
protected:
    /// Says a line and returns the line that answers it.
    std::string say(const std::string& line)
    {
        const std::string before = program.process.out();
        const auto answer = [&] { return program.process.out().substr(before.size()); };
        input.write(line + "\n");
        EXPECT_TRUE(eventually([&] { return answer().find('\n') != std::string::npos; }));
        return answer();
    }

    bool waitFor(int count)
    {
        return eventually([&] { return say("count") == std::to_string(count) + " waiting\n"; });
    }

    RawPeer asking()
    {
        RawPeer peer = RawPeer::connectedTo(program.port());
        peer.send(frame(kQuestion));
        return peer;
    }

    Pipe input;
    PageProgram program{"keeps", {"0"}, input.path()};
};

TEST_F(TheProgramThatKeepsRequests, DropsThoseThatNobodyWaitsForAndAnswersTheOthers)
{
    RawPeer patient = asking();
    RawPeer impatient = asking();
    ASSERT_TRUE(waitFor(2));
    impatient.close();
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(say("answer"), "1 waiting\n");
    EXPECT_EQ(patient.readFrame(), headerOnly("success"));
    EXPECT_TRUE(waitFor(0));
}

TEST_F(TheProgramThatKeepsRequests, AnswersAtItsEndThatItCannotServe)
{
    RawPeer peer = asking();
    ASSERT_TRUE(waitFor(1));
    input.close();
    EXPECT_EQ(peer.readFrame(), headerOnly("platformUnavailable"));
    EXPECT_EQ(program.process.wait().code, 0);
}

}  // namespace
}  // namespace OrvuTests
