#include <gtest/gtest.h>
#include <map>
#include <vector>

#include "tools/orvu/Fates.h"

namespace OrvuTests {
namespace {

using OrvuTool::Fate;
using OrvuTool::Fates;

std::vector<Fate> drawn(unsigned closePercent, unsigned cutPercent, unsigned seed, int count = 1000)
{
    Fates fates(closePercent, cutPercent, seed);
    std::vector<Fate> all;
    for (int i = 0; i < count; ++i)
        all.push_back(fates.next());
    return all;
}

TEST(TheFates, AreAllTheSameAtNoneAndAtAHundredPercent)
{
    EXPECT_EQ(drawn(0, 0, 1), std::vector<Fate>(1000, Fate::Sent));
    EXPECT_EQ(drawn(100, 0, 1), std::vector<Fate>(1000, Fate::Closed));
    EXPECT_EQ(drawn(0, 100, 1), std::vector<Fate>(1000, Fate::Cut));
}

TEST(TheFates, HaveTheSharesThatAreAskedFor)
{
    std::map<Fate, int> counts;
    for (const Fate fate : drawn(20, 30, 1, 100000))
        ++counts[fate];
    EXPECT_NEAR(counts[Fate::Closed], 20000, 1000);
    EXPECT_NEAR(counts[Fate::Cut], 30000, 1000);
}

TEST(TheFates, AreTheSameForTheSameSeed)
{
    EXPECT_EQ(drawn(30, 30, 7), drawn(30, 30, 7));
    EXPECT_NE(drawn(30, 30, 7), drawn(30, 30, 8));
}

TEST(TheFates, AreTheSameOnEverySystem)
{
    EXPECT_EQ(drawn(30, 30, 3, 8), (std::vector<Fate>{Fate::Sent, Fate::Cut, Fate::Cut, Fate::Sent, Fate::Sent,
                                                      Fate::Sent, Fate::Cut, Fate::Closed}));
}

}  // namespace
}  // namespace OrvuTests
