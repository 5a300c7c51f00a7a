#include "orvu/Status.h"
#include "support/Vocabularies.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Statuses, AVocabulary,
    testing::Values(
        wordsOf<StatusType>("StatusType", &Status::statusTypeString, &Status::stringToStatus, 0,
                            {{0, "unknown", 0},
                             {1, "idle", 1},
                             {2, "prepare", 2},
                             {3, "start", 3},
                             {4, "pause", 4},
                             {5, "resume", 5},
                             {6, "stop", 6},
                             {7, "unload", 7},
                             {8, "select", 8},
                             {9, "set", 9},
                             {10, "abort", 10},
                             {11, "startPreparation", 11},
                             {12, "stopPreparation", 12},
                             {13, "abortPreparation", 13},
                             {14, "pausePreparation", 14},
                             {15, "resumePreparation", 15},
                             {16, "preparing", 16},
                             {17, "prepared", 17},
                             {18, "playing", 18},
                             {19, "paused", 19},
                             {20, "stopped", 20},
                             {21, "free", 21},
                             {22, "occurring", 22},
                             {23, "sleeping", 23},
                             {24, "uninstalled", 0},  // written, never read back
                             {25, "requesting", 0}}),
        wordsOf<TargetStatusType>(
            "TargetStatusType", &TargetStatus::targetStatusTypeString, &TargetStatus::targetStringToStatus, 0,
            {{0, "unknown", 0}, {1, "start", 1}, {2, "stop", 2}, {3, "uninstalled", 0}, {4, "requesting", 0}})),
    tableName);

namespace {

TEST(AComponentStatus, HasThreeWords)
{
    EXPECT_STREQ(ComponentStatus::componentStatusTypeString(ComponentStatusTypeStarted), "started");
    EXPECT_STREQ(ComponentStatus::componentStatusTypeString(ComponentStatusTypeStopped), "stopped");
    EXPECT_STREQ(ComponentStatus::componentStatusTypeString(ComponentStatusTypePaused), "paused");
}

TEST(AComponentStatus, HasAnEmptyWordForValuesBeyondItsTable)
{
    for (const int value : {3, 4, INT_MAX, -1, INT_MIN})
        EXPECT_STREQ(ComponentStatus::componentStatusTypeString(static_cast<ComponentStatusType>(value)), "") << value;
}

}  // namespace
}  // namespace OrvuTests
