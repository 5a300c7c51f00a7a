#include <cerrno>
#include <gmock/gmock.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "support/BuiltProgram.h"
#include "support/LogCapture.h"
#include "support/Process.h"

using Orvu::OrvuRestInterface;
using namespace OrvuTests;
using testing::ElementsAre;

namespace {

/// What the child does when ORVU_LOG is `place`.
Ended child(const char* what, const std::string& place)
{
    ProcessOptions options;
    options.environment = {"ORVU_LOG=" + place};
    return run(builtProgram(LOG_CHILD, {what}), options);
}

TEST(TheLog, IsAMarkedLineOnStandardError)
{
    for (const char* const place : {"stderr", "", "anything else"}) {
        const Ended ended = child("line", place);
        EXPECT_EQ(ended.err, "I/OrVU: a line of 1\n") << place;
        EXPECT_EQ(ended.out, "") << place;
    }
}

TEST(TheLog, IsOnStandardErrorWhenNoPlaceIsNamed)
{
    std::vector<std::string> command = builtProgram(LOG_CHILD, {"line"});
    command.insert(command.begin(), {"env", "-u", "ORVU_LOG"});
    const Ended ended = run(command);
    EXPECT_EQ(ended.err, "I/OrVU: a line of 1\n");
}

TEST(TheLog, MayGoToTheSystemsLog)
{
    const Ended ended = child("line", "syslog");
    EXPECT_EQ(ended.out, "<6>OrVU: a line of 1\n");  // LOG_INFO
    EXPECT_EQ(ended.err, "");
}

TEST(TheLog, MayGoNowhere)
{
    const Ended ended = child("line", "none");
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(TheLog, IsNotEvenFormattedWhenItGoesNowhere)
{
    const Ended ended = child("unformatted", "none");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "alive\n");
}

TEST(TheLog, DoesNotEndAProcessWhoseStandardErrorNobodyReads)
{
    const Ended ended = child("nobody", "stderr");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "alive, without a signal\n");
}

TEST(TheLog, KeepsLinesWholeFromManyThreads)
{
    std::istringstream lines(child("threads", "stderr").err);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_EQ(line.substr(0, 9), "I/OrVU: <");
        const int thread = line[9] - '0';
        ASSERT_EQ(line.substr(10),
                  " " + std::string(static_cast<std::size_t>(500 * thread), static_cast<char>('a' + thread)) + ">");
    }
    EXPECT_EQ(count, 8 * 500);
}

struct ALogLine : testing::Test {
    LogCapture log;
};

TEST_F(ALogLine, MayBeAsLongAsItsBuffer)
{
    const std::string text(4095, 'x');
    OrvuRestInterface::log("%s", text.c_str());
    EXPECT_THAT(log.lines(), ElementsAre(text));
}

TEST_F(ALogLine, IsCutWhereItsBufferEnds)
{
    OrvuRestInterface::log("%s", std::string(1000000, 'x').c_str());
    EXPECT_THAT(log.lines(), ElementsAre(std::string(4095, 'x')));
}

TEST_F(ALogLine, TakesNothingItIsGivenForAFormat)
{
    OrvuRestInterface::log("%s", "%s%n%d");
    EXPECT_THAT(log.lines(), ElementsAre("%s%n%d"));
}

TEST_F(ALogLine, MayBeEmpty)
{
    OrvuRestInterface::log("%s", "");
    EXPECT_EQ(log.text(), "I/OrVU: \n");
}

TEST(ALogLineThatCannotBeWritten, LeavesTheErrorNumberAlone)
{
    const int kept = dup(STDERR_FILENO);
    close(STDERR_FILENO);
    errno = EMFILE;
    OrvuRestInterface::log("a line");
    const int after = errno;
    dup2(kept, STDERR_FILENO);
    close(kept);
    EXPECT_EQ(after, EMFILE);
}

}  // namespace
