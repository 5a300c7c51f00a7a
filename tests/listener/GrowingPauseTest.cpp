#include <chrono>
#include <gtest/gtest.h>

#include "listener/GrowingPause.h"

namespace OrvuTests {
namespace {

using Orvu::GrowingPause;
using std::chrono::milliseconds;

TEST(TheGrowingPause, DoublesUpToThirtySeconds)
{
    GrowingPause pause;
    for (const int expected : {1000, 2000, 4000, 8000, 16000, 30000, 30000})
        EXPECT_EQ(pause.next(0), milliseconds(expected));
}

TEST(TheGrowingPause, LeavesOutUpToAQuarter)
{
    GrowingPause pause;
    EXPECT_EQ(pause.next(1), milliseconds(750));
    EXPECT_EQ(pause.next(0.5), milliseconds(1750));
    EXPECT_EQ(pause.next(0), milliseconds(4000));
}

TEST(TheGrowingPause, BeginsAgainAfterASuccess)
{
    GrowingPause pause;
    pause.next(0);
    pause.next(0);
    pause.reset();
    EXPECT_EQ(pause.next(0), milliseconds(1000));
}

}  // namespace
}  // namespace OrvuTests
