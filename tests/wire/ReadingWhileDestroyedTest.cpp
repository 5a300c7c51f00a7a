#include <atomic>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <unistd.h>

#include "orvu/OrvuRestInterface.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

/// Holds the first thread that logs a line with `part` in it until it is told to go on. One at a time.
class HeldAtALine {
public:
    explicit HeldAtALine(std::string part) : part_(std::move(part)) { current = this; }
    ~HeldAtALine()
    {
        current = nullptr;
        goOn();
    }
    HeldAtALine(const HeldAtALine&) = delete;
    HeldAtALine& operator=(const HeldAtALine&) = delete;

    void waitUntilHeld() { held_.wait(); }
    void goOn() { goingOn_.open(); }

    static void log(std::string_view line)
    {
        HeldAtALine* it = current;
        if (!it || line.find(it->part_) == line.npos || !current.compare_exchange_strong(it, nullptr)) return;
        it->held_.open();
        it->goingOn_.wait();
    }

private:
    static std::atomic<HeldAtALine*> current;

    const std::string part_;
    Latch held_;
    Latch goingOn_;
};

std::atomic<HeldAtALine*> HeldAtALine::current{nullptr};

}  // namespace

/// The system's, but for lines of the log that somebody holds.
extern "C" ssize_t write(int fd, const void* bytes, std::size_t size)
{
    if (fd == STDERR_FILENO) HeldAtALine::log({static_cast<const char*>(bytes), size});
    using Write = ssize_t (*)(int, const void*, std::size_t);
    static const auto kWrite = reinterpret_cast<Write>(dlsym(RTLD_NEXT, "write"));
    return kWrite(fd, bytes, size);
}

namespace {

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
