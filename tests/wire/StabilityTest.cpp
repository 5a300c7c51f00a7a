#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/BuiltProgram.h"
#include "support/Observed.h"
#include "support/Sanitizers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"
#include "wire/Visits.h"

using namespace OrvuTests;

namespace {

constexpr int kWarmUp = 1000;
constexpr bool kIsWatched = kUnderASanitizer || kEmulated;  // by what makes everything slow and keeps memory of its own
constexpr int kRequests = kIsWatched ? 5000 : 100000;
constexpr int kIdleWorkers = 8;
constexpr long long kTolerance = 2u << 20;

TEST(AServerThatRunsForMonths, KeepsItsDescriptorsAndItsMemory)
{
    const Receiver receiver;
    const int threads = threadCount();
    const auto isAtRest = [threads] { return threadCount() <= threads + kIdleWorkers; };
    for (int turn = 0; turn < kWarmUp; ++turn)
        ASSERT_TRUE(visit(receiver.port(), turn)) << turn;
    ASSERT_TRUE(eventually(isAtRest));
    const std::vector<int> descriptors = openDescriptors();
    const std::size_t memory = residentMemory();
    for (int turn = kWarmUp; turn < kRequests; ++turn)
        ASSERT_TRUE(visit(receiver.port(), turn)) << turn;
    ASSERT_TRUE(eventually(isAtRest));
    EXPECT_EQ(openDescriptors(), descriptors);
    const auto more = static_cast<long long>(residentMemory()) - static_cast<long long>(memory);
    RecordProperty("bytesMore", std::to_string(more));
    if (kIsWatched) return;
    EXPECT_LT(more, kTolerance);
}

}  // namespace
