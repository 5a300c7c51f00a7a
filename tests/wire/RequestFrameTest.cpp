#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Services.h"
#include "support/Sanitizers.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Optional;

namespace {

constexpr std::uint32_t kLongestText = 64u << 20;
constexpr std::size_t kMebibyte = 1u << 20;

std::string timeText(const std::string& time)
{
    return R"({"HEADER":"serviceTime","time":")" + time + R"("})";
}

/// Answers with the time that was sent.
void answerWithItself(OrvuRestRequest* received)
{
    const std::unique_ptr<OrvuRestRequest> request(received);
    request->sendResponse(request->getData());
}

std::string answerTo(const std::string& time)
{
    return "{\n\t\"HEADER\":\t\"serviceTime\",\n\t\"time\":\t\"" + time + "\"\n}";
}

TEST(ARequest, MayComeInSegmentsOfOneByte)
{
    const Receiver receiver(answerWithItself);
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(peer.sendByteByByte(frameOf(timeText("2024-02-29T12:00:00"))));
    EXPECT_EQ(peer.readToEnd(1), frameOf(answerTo("2024-02-29T12:00:00")));
}

class ARequestCutInTwo : public testing::TestWithParam<std::size_t> {};

TEST_P(ARequestCutInTwo, IsPutTogether)
{
    LogCapture log;
    const Receiver receiver(answerWithItself);
    const std::string frame = frameOf(timeText("now"));
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(peer.send(frame.substr(0, GetParam())));
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread: clientSockfd: ", 1));
    ASSERT_TRUE(peer.send(frame.substr(GetParam())));
    EXPECT_THAT(peer.readFrame(), Optional(answerTo("now")));
}

INSTANTIATE_TEST_SUITE_P(After, ARequestCutInTwo, testing::Values(1, 2, 3, 4, 5, 30));

TEST(ARequest, MayBeLargerThanAMebibyteAndSoMayItsAnswer)
{
    const std::string time(3 * kMebibyte + 7, 'x');
    const Receiver receiver(answerWithItself);
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(peer.send(frameOf(timeText(time))));
    EXPECT_TRUE(peer.readToEnd() == frameOf(answerTo(time)));  // without printing three megabytes
}

TEST(ARequest, MayHaveAnAnswerThatItsPeerReadsOneByteAtATime)
{
    const std::string time(kMebibyte, 'y');
    const Receiver receiver(answerWithItself);
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(peer.send(frameOf(timeText(time))));
    EXPECT_TRUE(peer.readToEnd(1) == frameOf(answerTo(time)));
}

TEST(ARequest, EndsAtItsLength)
{
    const Receiver receiver(answerWithItself);
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(peer.send(frameOf(timeText("now")) + "more than was announced"));
    EXPECT_EQ(peer.readToEnd(), frameOf(answerTo("now")));
}

TEST(ARequest, MayBringItsNulAlong)
{
    const std::string time(kMebibyte, 'z');
    const Receiver receiver(answerWithItself);
    RawPeer peer = receiver.connect();
    ASSERT_TRUE(peer.send(frameOf(timeText(time)) + '\0'));
    EXPECT_TRUE(peer.readToEnd() == frameOf(answerTo(time)));
}

TEST(ARequest, EndsAtANulInItsText)
{
    const Receiver receiver(answerWithItself);
    EXPECT_THAT(receiver.ask(timeText("now") + '\0' + "no JSON"), Optional(answerTo("now")));
}

TEST(ARequest, IsWhatHasComeWhenItsPeerStopsSending)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        EXPECT_EQ(request->getData()->getDataType(), DataTypeServiceTime);
        answerWithItself(request);
    });
    RawPeer peer = receiver.connect();
    const std::string text = timeText("now");
    peer.send(lengthBytes(static_cast<std::uint32_t>(text.size()) + 1000) + text);
    peer.finishSending();
    EXPECT_THAT(peer.readFrame(), Optional(answerTo("now")));
}

TEST(ARequest, ThatIsCutWithinItsTextReachesTheApplicationAsAnUnknowRequest)
{
    const Receiver receiver([](OrvuRestRequest* request) {
        EXPECT_EQ(request->getData()->getDataType(), DataTypeUnknown);
        answerWithSuccess(request);
    });
    RawPeer peer = receiver.connect();
    const std::string frame = frameOf(timeText("now"));
    peer.send(frame.substr(0, frame.size() - 1));
    peer.finishSending();
    EXPECT_THAT(peer.readFrame(), Optional(kSuccess));
}

/// Lengths that announce more than the bound.
class ALengthBeyondTheBound : public testing::TestWithParam<std::uint32_t> {};

TEST_P(ALengthBeyondTheBound, IsRefusedAtOnce)
{
    LogCapture log;
    Receiver receiver;
    resetPeakMemory();
    const std::size_t before = peakMemory();
    RawPeer peer = receiver.connect();
    peer.send(lengthBytes(GetParam()) + "{\"HEA");
    EXPECT_EQ(peer.readToEnd(), "");
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 1));
    EXPECT_EQ(linesWith(log, "OrvuRestServerSocket::workerThread: ERROR request of " + std::to_string(GetParam()) +
                                 " bytes is too long. Skipping...(")
                  .size(),
              1U);
    EXPECT_EQ(receiver.calls(), 0);
    EXPECT_LT(peakMemory(), before + 4 * kMebibyte);
}

INSTANTIATE_TEST_SUITE_P(Of, ALengthBeyondTheBound, testing::Values(kLongestText + 2, 0x7FFFFFFFu, 0xFFFFFFFFu));

TEST(ALengthWithinTheBound, TakesNoMemoryUntilItsTextComes)
{
    LogCapture log;
    const Receiver receiver;
    resetPeakMemory();
    const std::size_t before = peakMemory();
    std::vector<RawPeer> peers;
    for (int i = 0; i < 20; ++i) {
        peers.push_back(receiver.connect());
        peers.back().send(lengthBytes(kLongestText + 1) + "{\"HEA");
        peers.back().finishSending();
    }
    for (RawPeer& peer : peers)
        EXPECT_THAT(peer.readFrame(), Optional(kSuccess));  // judged by what has come
    if (kUnderASanitizer) return;                           // which keeps memory of its own
    EXPECT_LT(peakMemory(), before + 16 * kMebibyte);       // and not 1,280 of them
}

/// A frame of 60 MiB, two of which leave no room for a third.
std::string largeFrame()
{
    const std::string around = timeText("");
    return frameOf(timeText(std::string(60 * kMebibyte - around.size(), 'x')));
}

const std::string kNoRoom = "OrvuRestServerSocket::workerThread: ERROR no room for a request of " +
                            std::to_string(60 * kMebibyte + 1) + " bytes beside others. Skipping...(";

/// A peer that has sent all of `frame` but its last byte: the system keeps so little of it that the server has room for
/// all.
RawPeer peerWithoutItsLastByte(const Receiver& receiver, const std::string& frame)
{
    RawPeer peer = receiver.connect();
    EXPECT_TRUE(peer.send(frame.substr(0, frame.size() - 1)));
    return peer;
}

TEST(LargeRequestsAtOnce, AreReceivedUpTo128MiBTogether)
{
    LogCapture log;
    const std::string frame = largeFrame();
    const Receiver receiver;
    RawPeer first = peerWithoutItsLastByte(receiver, frame);
    RawPeer second = peerWithoutItsLastByte(receiver, frame);
    RawPeer third = receiver.connect();
    EXPECT_FALSE(third.send(frame));  // closed in the middle of it
    EXPECT_TRUE(waitForLines(log, kNoRoom, 1));
    EXPECT_THAT(receiver.ask(timeText("now")), Optional(kSuccess));  // small ones are served beside them
    EXPECT_THAT(receiver.ask(timeText(std::string(60000, 'x'))), Optional(kSuccess));
    first.send(frame.substr(frame.size() - 1));
    EXPECT_THAT(first.readFrame(), Optional(kSuccess));
    second.send(frame.substr(frame.size() - 1));
    EXPECT_THAT(second.readFrame(), Optional(kSuccess));
    EXPECT_EQ(linesWith(log, kNoRoom).size(), 1U);
}

TEST(LargeRequestsAtOnce, MakeRoomForOthersWhenTheyHaveGone)
{
    LogCapture log;
    const std::string frame = largeFrame();
    const Receiver receiver;
    for (int round = 1; round <= 2; ++round) {
        {
            const RawPeer first = peerWithoutItsLastByte(receiver, frame);
            const RawPeer second = peerWithoutItsLastByte(receiver, frame);
            RawPeer third = receiver.connect();
            EXPECT_FALSE(third.send(frame));
        }
        ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 4 * round - 1));
        RawPeer next = receiver.connect();
        EXPECT_TRUE(next.send(frame));
        EXPECT_THAT(next.readFrame(), Optional(kSuccess));
        ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 4 * round));
    }
    EXPECT_EQ(linesWith(log, kNoRoom).size(), 2U);
}

TEST(LargeRequestsAtOnce, AreEachServedOrClosedHoweverTheyMeet)
{
    LogCapture log;
    const std::string frame = largeFrame();
    const Receiver receiver;
    std::atomic<int> served{0};
    std::vector<std::thread> peers;
    for (int i = 0; i < 3; ++i)
        peers.emplace_back([&] {
            RawPeer peer = receiver.connect();
            if (peer.send(frame) && peer.readFrame() == kSuccess) ++served;
        });
    for (std::thread& peer : peers)
        peer.join();
    ASSERT_TRUE(waitForLines(log, "OrvuRestServerSocket::workerThread -- end", 3));
    EXPECT_GE(served, 1);
    EXPECT_EQ(served + static_cast<int>(linesWith(log, kNoRoom).size()), 3);
}

}  // namespace
