#include <gmock/gmock.h>
#include <string>

#include "log/Log.h"
#include "support/LogCapture.h"

// The library's log as it is built for Android, with the log library that Debian has of it: lines go to standard error
// there.

using Orvu::logLine;
using namespace OrvuTests;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

struct TheLogOfAndroid : testing::Test {
    LogCapture log;
};

TEST_F(TheLogOfAndroid, GetsTheTagThePriorityAndTheText)
{
    logLine("a %s of %d", "line", 1);
    const std::string line = log.text();
    EXPECT_THAT(line, AllOf(HasSubstr("OrVU"), HasSubstr(" I "), EndsWith("a line of 1\n")));
}

TEST_F(TheLogOfAndroid, TakesNothingItIsGivenForAFormat)
{
    logLine("%s", "%s%n%d");
    EXPECT_THAT(log.text(), EndsWith("%s%n%d\n"));
}

TEST_F(TheLogOfAndroid, GetsALineOf4095BytesAtMost)
{
    logLine("%s", std::string(1000000, 'x').c_str());
    const std::string line = log.text();
    const std::size_t first = line.find('x');
    EXPECT_LE(line.find_last_of('x') - first + 1, 4095U);
    EXPECT_GE(line.find_last_of('x') - first + 1, 1000U);
}

}  // namespace
