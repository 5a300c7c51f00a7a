#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/orvu/Nearest.h"

namespace OrvuTests {
namespace {

using OrvuTool::nearest;

const std::vector<std::string_view> kWords = {"serviceList", "serviceTime", "pos", "keyset", "eventList", "position"};

struct Meant {
    const char* word;
    const char* candidate;
};

void PrintTo(const Meant& meant, std::ostream* out)
{
    *out << '"' << meant.word << '"';
}

class AWord : public testing::TestWithParam<Meant> {};

TEST_P(AWord, StandsForTheNearestCandidate)
{
    EXPECT_EQ(nearest(GetParam().word, kWords), GetParam().candidate);
}

INSTANTIATE_TEST_SUITE_P(Nearest, AWord,
                         testing::Values(Meant{"serviceList", "serviceList"}, Meant{"SERVICELIST", "serviceList"},
                                         Meant{"serviceLst", "serviceList"}, Meant{"servicesList", "serviceList"},
                                         Meant{"serviceLost", "serviceList"}, Meant{"serviecList", "serviceList"},
                                         Meant{"serviceTme", "serviceTime"}, Meant{"keyste", "keyset"},
                                         Meant{"psoition", "position"}, Meant{"post", "pos"}, Meant{"Pos", "pos"},
                                         Meant{"ops", "pos"}));

INSTANTIATE_TEST_SUITE_P(NothingNear, AWord,
                         testing::Values(Meant{"", ""}, Meant{"p", ""}, Meant{"po", ""}, Meant{"xys", ""},
                                         Meant{"nonsense", ""}, Meant{"keyboard", ""}, Meant{"list", ""}));

TEST(TheNearestWord, IsTheOneInOtherLettersBeforeAnother)
{
    EXPECT_EQ(nearest("LIST", {"lost", "list"}), "list");
}

TEST(TheNearestWord, IsTheFirstOfEquals)
{
    EXPECT_EQ(nearest("lest", {"list", "lost"}), "list");
    EXPECT_EQ(nearest("lest", {"lost", "list"}), "lost");
}

TEST(TheNearestWord, IsNoneWithoutCandidates)
{
    EXPECT_EQ(nearest("list", {}), "");
    EXPECT_EQ(nearest("lis", {"", ""}), "");
}

TEST(TheNearestWord, IsFoundAtOnceForALongText)
{
    EXPECT_EQ(nearest(std::string(8000000, 'x'), kWords), "");
}

}  // namespace
}  // namespace OrvuTests
