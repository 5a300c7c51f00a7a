#include <atomic>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

#include "orvu/OrvuRestRequest.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/SocketPair.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"
#include "wire/Throwing.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::ElementsAre;

namespace {

/// A request with the peer's end of its connection.
struct ARequestObject : testing::Test {
    const SocketPair pair;
    RawPeer peer{pair.ends[0]};
    int connection = pair.ends[1];  // a request takes it
    SuccessResponse success;
};

TEST_F(ARequestObject, OwnsItsMessageAndShowsIt)
{
    int destroyed = 0;
    auto* const message = new Counted<SuccessResponse>(destroyed);
    {
        OrvuRestRequest request(connection, message);
        EXPECT_EQ(request.getData(), message);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST_F(ARequestObject, MayHaveNoMessage)
{
    OrvuRestRequest request(connection, nullptr);
    EXPECT_EQ(request.getData(), nullptr);
}

TEST_F(ARequestObject, SendsAFrameAndCloses)
{
    OrvuRestRequest request(connection, nullptr);
    EXPECT_EQ(request.sendResponse(&success), 24);
    EXPECT_EQ(peer.readToEnd(), lengthBytes(25) + "{\n\t\"HEADER\":\t\"success\"\n}");
}

TEST_F(ARequestObject, AnswersOnce)
{
    OrvuRestRequest request(connection, nullptr);
    request.sendResponse(&success);
    EXPECT_EQ(request.sendResponse(&success), 0);
    EXPECT_EQ(peer.readToEnd(), frameOf(kSuccess));
}

TEST_F(ARequestObject, LeavesADescriptorAloneThatSomebodyElseOpenedAfterTheAnswer)
{
    OrvuRestRequest request(connection, nullptr);
    request.sendResponse(&success);
    const RawPeer sameNumber(dup(peer.fd()));
    ASSERT_EQ(sameNumber.fd(), connection);
    request.sendResponse(&success);
    EXPECT_THAT(openDescriptors(), testing::Contains(connection));
}

TEST_F(ARequestObject, ClosesWithoutAWordOnANullResponse)
{
    OrvuRestRequest request(connection, nullptr);
    EXPECT_EQ(request.sendResponse(nullptr), 0);
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_EQ(request.sendResponse(&success), 0);
}

TEST_F(ARequestObject, ClosesWithoutAWordOnAResponseThatWritesNothing)
{
    LogCapture log;
    OrvuRestRequest request(connection, nullptr);
    Silent<SuccessResponse> silent;
    EXPECT_EQ(request.sendResponse(&silent), 0);
    EXPECT_THAT(log.lines(), testing::Contains("OrvuRestRequest::sendResponse: ERROR cannot serialize response!"));
    EXPECT_EQ(peer.readToEnd(), "");
}

TEST_F(ARequestObject, ClosesWithoutAWordOnAnEmptyResponse)
{
    OrvuRestRequest request(connection, nullptr);
    Saying<SuccessResponse> empty("");
    EXPECT_EQ(request.sendResponse(&empty), 0);
    EXPECT_EQ(peer.readToEnd(), "");
}

TEST_F(ARequestObject, ClosesWithoutAWordOnAResponseThatThrows)
{
    OrvuRestRequest request(connection, nullptr);
    Throwing throwing;
    EXPECT_EQ(request.sendResponse(&throwing), 0);
    EXPECT_EQ(peer.readToEnd(), "");
}

TEST_F(ARequestObject, LeavesTheResponseToItsCaller)
{
    int destroyed = 0;
    Counted<SuccessResponse> response(destroyed);
    {
        OrvuRestRequest request(connection, nullptr);
        request.sendResponse(&response);
    }
    EXPECT_EQ(destroyed, 0);
}

TEST_F(ARequestObject, ShutsDownAndClosesWhenItIsDeletedUnanswered)
{
    const RawPeer heldElsewhere(dup(connection));  // closing alone would not end the traffic
    delete new OrvuRestRequest(connection, nullptr);
    EXPECT_EQ(peer.readToEnd(), "");
    EXPECT_THAT(openDescriptors(), testing::Not(testing::Contains(connection)));
}

TEST_F(ARequestObject, TakesValuesBelowOneForNoConnection)
{
    const RawPeer unused(connection);
    for (const int none : {0, -1}) {
        OrvuRestRequest request(none, nullptr);
        EXPECT_EQ(request.sendResponse(&success), 0);
    }
    EXPECT_THAT(openDescriptors(), testing::Contains(STDIN_FILENO));
}

TEST_F(ARequestObject, LogsWhatItDoes)
{
    LogCapture log;
    {
        OrvuRestRequest request(connection, nullptr);
        request.sendResponse(&success);
    }
    EXPECT_THAT(log.lines(),
                ElementsAre("OrvuRestRequest::OrvuRestRequest: OK", "OrvuRestRequest::sendResponse: -- init",
                            "OrvuRestRequest::sendResponse: -- end", "OrvuRestRequest::~OrvuRestRequest: -- init",
                            "OrvuRestRequest::~OrvuRestRequest: -- end"));
}

TEST_F(ARequestObject, SendsNothingToAPeerThatIsGoneAndRaisesNoSignal)
{
    LogCapture log;
    static volatile std::sig_atomic_t raised;
    raised = 0;
    const auto before = std::signal(SIGPIPE, [](int) { raised = 1; });
    peer.close();
    OrvuRestRequest request(connection, nullptr);
    EXPECT_EQ(request.sendResponse(&success), 0);
    EXPECT_EQ(raised, 0);
    EXPECT_THAT(log.lines(), testing::Contains("OrvuRestRequest::sendResponse: ERROR writing to socket"));
    std::signal(SIGPIPE, before);
}

/// Takes its time to be written.
class Slow : public SuccessResponse {
public:
    Slow(Latch& begun, Latch& goOn) : begun_(begun), goOn_(goOn) {}
    char* serialize() override
    {
        begun_.open();
        goOn_.wait();
        return SuccessResponse::serialize();
    }

private:
    Latch& begun_;
    Latch& goOn_;
};

/// Whether the thread waits for something.
bool sleeps(pid_t thread)
{
    std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/status");
    for (std::string word; status >> word;)
        if (word == "State:" && status >> word) return word == "S";
    return false;
}

class Deletion {
public:
    explicit Deletion(OrvuRestRequest* request)
        : thread_([this, request] {
              number_ = static_cast<pid_t>(syscall(SYS_gettid));
              delete request;
              done_ = true;
          })
    {}
    ~Deletion() { thread_.join(); }

    /// Waits until it is done, or can go no further.
    void waitUntilItStands() const
    {
        while (!done_ && (number_ == 0 || !sleeps(number_)))
            std::this_thread::yield();
    }
    bool isDone() const { return done_; }

private:
    std::atomic<bool> done_{false};
    std::atomic<pid_t> number_{0};
    std::thread thread_;
};

TEST_F(ARequestObject, IsDeletedOnlyAfterTheAnswerThatAnotherThreadIsSending)
{
    Latch begun;
    Latch goOn;
    auto* const request = new OrvuRestRequest(connection, new SuccessResponse);
    std::thread answering([&] {
        Slow slow(begun, goOn);
        EXPECT_EQ(request->sendResponse(&slow), 24);
    });
    begun.wait();
    {
        const Deletion deletion(request);
        deletion.waitUntilItStands();
        EXPECT_FALSE(deletion.isDone());
        goOn.open();
    }
    answering.join();
    EXPECT_EQ(peer.readToEnd(), frameOf(kSuccess));
}

}  // namespace
