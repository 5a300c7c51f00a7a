#include <gmock/gmock.h>
#include <string>

#include "tools/orvu/LineCheck.h"

namespace OrvuTests {
namespace {

using OrvuTool::LineCheck;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ALineCheck, TellsWhatReadingEachLineMeets)
{
    LineCheck check(0);
    EXPECT_THAT(check.add("{\"HEADER\":\"success\"}\n"), IsEmpty());
    EXPECT_THAT(check.add("{\"HEADER\":\"serviceTime\"}\n{\"HEADER\":\"noSignal\",\"why\":1}\nhello\n"),
                ElementsAre("not read: serviceTime: time: required, missing", "noSignal: why: not read",
                            "not read: is not JSON from here on: \"hello\""));
}

TEST(ALineCheck, PutsLinesTogetherThatAreCut)
{
    LineCheck check(3);
    EXPECT_THAT(check.add("12 {\"HEADER\":\"serv"), IsEmpty());
    EXPECT_THAT(check.add("iceTime\"}"), IsEmpty());
    EXPECT_THAT(check.add("\n\n12 "), ElementsAre("not read: serviceTime: time: required, missing"));
}

}  // namespace
}  // namespace OrvuTests
