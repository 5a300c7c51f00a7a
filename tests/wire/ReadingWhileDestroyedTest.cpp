#include <atomic>
#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <string_view>

#include "orvu/OrvuRestInterface.h"
#include "support/SystemCalls.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

/// Holds the first thread of the library that logs a line with `part` in it until it is told to go on. One at a time.
class HeldAtALine {
public:
    explicit HeldAtALine(std::string part)
        : part_(std::move(part)), writing_(calls.write, [this](int, const void* bytes, std::size_t size) {
              log({static_cast<const char*>(bytes), size});
              return std::nullopt;
          })
    {}
    ~HeldAtALine() { goOn(); }
    HeldAtALine(const HeldAtALine&) = delete;
    HeldAtALine& operator=(const HeldAtALine&) = delete;

    void waitUntilHeld() { held_.wait(); }
    void goOn() { goingOn_.open(); }

private:
    void log(std::string_view line)
    {
        if (line.find(part_) == std::string_view::npos || isTaken_.exchange(true)) return;
        held_.open();
        goingOn_.wait();
    }

    const std::string part_;
    std::atomic<bool> isTaken_{false};
    Latch held_;
    Latch goingOn_;
    const Instead writing_;
};

/// A place on the way of a request that has been received, and the line that is logged there.
struct Place {
    const char* name;
    std::string line;
    std::string text = kSuccess;
};

class AReceivedRequest : public testing::TestWithParam<Place> {};

TEST_P(AReceivedRequest, KeepsNobodyWaitingAndIsDroppedWhenEverythingIsDestroyed)
{
    LogCapture log;
    Receiver receiver;
    HeldAtALine held(GetParam().line);
    RawPeer peer = receiver.connect();
    peer.send(frameOf(GetParam().text));
    held.waitUntilHeld();
    OrvuRestInterface::destroyInstance();  // returns though the request cannot go on
    held.goOn();
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_TRUE(
        waitForLines(log, "OrvuRestServerSocket::workerThread: ERROR request dropped, the server goes away. (", 1));
    EXPECT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 1));
    EXPECT_EQ(receiver.calls(), 0);
}

INSTANTIATE_TEST_SUITE_P(That, AReceivedRequest,
                         testing::Values(Place{"IsChecked", "factory"},
                                         Place{"WasRead", "OrvuRestRequest::OrvuRestRequest: OK"},
                                         Place{"IsAboutToBeHandedOver", "OrvuRestInterface::notifyCallback"},
                                         Place{"CannotBeRead", "Cannot deserialize!", R"({"HEADER":"serviceList"})"},
                                         Place{"IsEmpty", "Server received empty request data", ""}),
                         [](const auto& place) { return place.param.name; });

}  // namespace
