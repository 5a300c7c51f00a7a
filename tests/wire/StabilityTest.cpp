#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "support/BuiltProgram.h"
#include "support/Sanitizers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"
#include "wire/Visits.h"

using namespace OrvuTests;

namespace {

constexpr int kWarmUp = 1000;
constexpr bool kIsWatched = kUnderASanitizer || kEmulated;  // by what makes everything slow and keeps memory of its own
constexpr int kRequests = kIsWatched ? 5000 : 100000;
constexpr long long kTolerance = 2u << 20;

std::size_t threadsOfThisProcess()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::size_t count = 0;
        if (word == "Threads:" && status >> count) return count;
    }
    return 0;
}

/// Waits for the workers whose peers are gone.
void settle(std::size_t threads)
{
    while (threadsOfThisProcess() > threads)
        std::this_thread::yield();
}

TEST(AServerThatRunsForMonths, KeepsItsDescriptorsAndItsMemory)
{
    const Receiver receiver;
    receiver.ask(kSuccess);
    while (listenerOn(receiver.port()) < 0)
        std::this_thread::yield();
    const std::size_t threads = threadsOfThisProcess();
    for (int turn = 0; turn < kWarmUp; ++turn)
        ASSERT_TRUE(visit(receiver.port(), turn)) << turn;
    settle(threads);
    const std::vector<int> descriptors = openDescriptors();
    const std::size_t memory = residentMemory();
    for (int turn = kWarmUp; turn < kRequests; ++turn)
        ASSERT_TRUE(visit(receiver.port(), turn)) << turn;
    settle(threads);
    EXPECT_EQ(openDescriptors(), descriptors);
    const auto more = static_cast<long long>(residentMemory()) - static_cast<long long>(memory);
    RecordProperty("bytesMore", std::to_string(more));
    if (kIsWatched) return;
    EXPECT_LT(more, kTolerance);
}

}  // namespace
