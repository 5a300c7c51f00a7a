#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/BuiltProgram.h"
#include "support/Sanitizers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

constexpr int kWarmUp = 1000;
constexpr bool kIsWatched = kUnderASanitizer || kEmulated;  // by what makes everything slow and keeps memory of its own
constexpr int kRequests = kIsWatched ? 5000 : 100000;
constexpr long long kTolerance = 2u << 20;

/// Peers of every kind, in turn. Each is done when the server has closed its connection.
void exchange(const Receiver& receiver, int turn)
{
    static const std::string kGood = frameOf(R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})");
    static const std::string kLarge = frameOf(R"({"HEADER":"serviceTime","time":")" + std::string(100000, 'x') + "\"}");
    RawPeer peer = receiver.connect();
    switch (turn % 10) {
        case 0:
            peer.send(lengthBytes(0));
            break;
        case 1:
            peer.send(lengthBytes(0xFFFFFFFF) + "{\"HEA");
            break;
        case 2:
            peer.send(kGood.substr(0, 20));
            break;
        case 3:
            peer.send(frameOf("no JSON"));
            break;
        case 4:
            peer.send(frameOf(R"({"HEADER":"pos"})"));
            break;
        case 5:
            peer.send(frameOf(R"({"HEADER":"serviceTime"})"));
            break;
        case 6:
            peer.send(turn % 100 == 6 ? kLarge : kGood);
            break;
        case 7:
            peer.send(kGood);
            return peer.vanish();
        default:
            peer.send(kGood);
    }
    peer.finishSending();
    peer.readToEnd();
}

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
        exchange(receiver, turn);
    settle(threads);
    const std::vector<int> descriptors = openDescriptors();
    const std::size_t memory = residentMemory();
    for (int turn = kWarmUp; turn < kRequests; ++turn)
        exchange(receiver, turn);
    settle(threads);
    EXPECT_EQ(openDescriptors(), descriptors);
    const auto more = static_cast<long long>(residentMemory()) - static_cast<long long>(memory);
    RecordProperty("bytesMore", std::to_string(more));
    if (kIsWatched) return;
    EXPECT_LT(more, kTolerance);
}

}  // namespace
