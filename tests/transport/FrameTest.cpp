#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <utility>
#include <vector>

#include "support/RawPeer.h"
#include "transport/Frame.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Eq;
using testing::Optional;

namespace {

/// Gives `bytes`, at most `step` at a time, and then the end or an error. Keeps what was asked of it.
class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::string bytes, std::size_t step = 1000000, ssize_t last = 0)
        : bytes_(std::move(bytes)), step_(step), last_(last)
    {}
    ssize_t read(char* to, std::size_t size) override
    {
        asked.push_back(size);
        const std::size_t given = std::min({size, step_, bytes_.size() - at_});
        if (given == 0) return last_;
        std::memcpy(to, bytes_.data() + at_, given);
        at_ += given;
        return static_cast<ssize_t>(given);
    }

    std::vector<std::size_t> asked;

private:
    const std::string bytes_;
    std::size_t at_ = 0;
    const std::size_t step_;
    const ssize_t last_;
};

std::string readText(FrameReader& frame, std::size_t size)
{
    const FrameText text = frame.readText(size).value();
    EXPECT_EQ(text.c_str()[text.size()], '\0');
    return std::string(text.c_str(), text.size());
}

/// How many bytes come at a time.
class AFrameReader : public testing::TestWithParam<std::size_t> {};

TEST_P(AFrameReader, ReadsTheLengthAndTheText)
{
    MemorySource source(frameOf("hello"), GetParam());
    FrameReader frame(source);
    EXPECT_THAT(frame.readLength(), Optional(6U));
    EXPECT_EQ(readText(frame, 5), "hello");
}

TEST_P(AFrameReader, ShowsWhatCameOfTheTextAlongWithItsLength)
{
    MemorySource source(frameOf("hello"), GetParam());
    FrameReader frame(source);
    EXPECT_EQ(frame.early(), "");
    frame.readLength();
    const std::size_t came = (4 + GetParam() - 1) / GetParam() * GetParam();  // as many whole reads as the length needs
    EXPECT_EQ(frame.early(), std::string("hello").substr(0, came - 4));
}

TEST_P(AFrameReader, ReadsATextOfAMebibyte)
{
    std::string text;
    for (int i = 0; text.size() < 1u << 20; ++i)
        text += std::to_string(i);
    MemorySource source(frameOf(text), GetParam());
    FrameReader frame(source);
    ASSERT_THAT(frame.readLength(), Optional(Eq(text.size() + 1)));
    EXPECT_TRUE(readText(frame, text.size()) == text);
}

TEST_P(AFrameReader, FindsNoLengthInFewerThanFourBytes)
{
    for (const std::size_t size : {0, 1, 2, 3}) {
        MemorySource source(lengthBytes(6).substr(0, size), GetParam());
        EXPECT_EQ(FrameReader(source).readLength(), std::nullopt) << size;
    }
}

TEST_P(AFrameReader, GivesWhatHasComeOfATextThatIsCut)
{
    MemorySource source(lengthBytes(1000001) + "hello", GetParam());
    FrameReader frame(source);
    frame.readLength();
    EXPECT_EQ(readText(frame, 1000000), "hello");
}

TEST_P(AFrameReader, IgnoresWhatFollowsTheText)
{
    MemorySource source(frameOf("hello") + "and more", GetParam());
    FrameReader frame(source);
    frame.readLength();
    EXPECT_EQ(readText(frame, 5), "hello");
}

TEST_P(AFrameReader, KeepsBytesOfAnyValue)
{
    const std::string text("\0\xff\x80\n\0", 5);
    MemorySource source(frameOf(text), GetParam());
    FrameReader frame(source);
    frame.readLength();
    EXPECT_EQ(readText(frame, 5), text);
}

INSTANTIATE_TEST_SUITE_P(AtATime, AFrameReader, testing::Values(1, 3, 4, 5, 4096, 10000000));

TEST(AFrameReaderOfAFailingSource, TakesAnErrorForTheEnd)
{
    MemorySource source(lengthBytes(6) + "hel", 1000, -1);
    FrameReader frame(source);
    EXPECT_THAT(frame.readLength(), Optional(6U));
    EXPECT_EQ(readText(frame, 5), "hel");
}

TEST(AFrameReaderOfAShortFrame, ReadsOnce)
{
    MemorySource source(frameOf("hello"));
    FrameReader frame(source);
    frame.readLength();
    frame.readText(5);
    EXPECT_EQ(source.asked.size(), 1U);
}

TEST(AFrameReaderOfAFrameWithItsNul, ReadsTheNulToo)
{
    for (const std::size_t step : {1000000, 65540, 1}) {  // it comes with the text, behind a piece of it, or alone
        const std::string text(200000, 'x');
        MemorySource source(frameOf(text) + '\0', step);
        FrameReader frame(source);
        frame.readLength();
        EXPECT_TRUE(readText(frame, text.size()) == text);
        char left;
        EXPECT_EQ(source.read(&left, 1), step == 1 ? 1 : 0);  // alone it comes too late
    }
}

TEST(AFrameReaderOfATextAroundThePieceThatItReadsAtOnce, KeepsAPlaceForTheNul)
{
    for (std::size_t size = 64 * 1024 - 2; size <= 64 * 1024 + 2; ++size) {
        const std::string text(size, 'x');
        MemorySource source(frameOf(text) + '\0');
        FrameReader frame(source);
        frame.readLength();
        EXPECT_TRUE(readText(frame, size) == text) << size;
        char left;
        EXPECT_EQ(source.read(&left, 1), 0) << size;  // it would still be there if a byte of the text had its place
    }
}

TEST(AFrameReaderOfAnAnnouncedText, AsksForNoMoreThanASmallPieceUntilSomethingComes)
{
    MemorySource source(lengthBytes(kLongestText + 1));
    FrameReader frame(source);
    frame.readLength();
    EXPECT_EQ(readText(frame, kLongestText), "");
    EXPECT_LE(*std::max_element(source.asked.begin(), source.asked.end()), 64U * 1024 + 1);
}

constexpr std::size_t kKibibyte = 1024;
constexpr std::size_t kUncounted = 64 * kKibibyte;

TEST(RoomForTexts, IsTakenUpToItsLastByteAndGivenBack)
{
    TextRoom room(100);
    EXPECT_TRUE(room.take(60));
    EXPECT_FALSE(room.take(41));
    EXPECT_TRUE(room.take(40));
    EXPECT_FALSE(room.take(1));
    EXPECT_TRUE(room.take(0));
    room.giveBack(30);
    EXPECT_FALSE(room.take(31));
    EXPECT_TRUE(room.take(30));
}

TEST(RoomForTexts, IsNeverGivenTwice)
{
    constexpr int kThreads = 4;
    constexpr std::size_t kPieces = 20000;
    TextRoom room(kPieces * 3);
    std::atomic<std::size_t> taken{0};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&] {
            while (room.take(3))
                ++taken;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(taken, kPieces);
}

TEST(TheShareOfAText, DoesNotCountItsFirst64KiB)
{
    TextRoom none(0);
    TextShare share(&none);
    EXPECT_TRUE(share.growTo(1));
    EXPECT_TRUE(share.growTo(kUncounted));
    EXPECT_FALSE(share.growTo(kUncounted + 1));
    TextShare another(&none);
    EXPECT_TRUE(another.growTo(kUncounted));
}

TEST(TheShareOfAText, CountsWhatTheTextGrowsBy)
{
    TextRoom room(100);
    TextShare share(&room);
    EXPECT_TRUE(share.growTo(kUncounted + 60));
    EXPECT_TRUE(share.growTo(kUncounted + 10));  // less takes nothing, and gives nothing back
    EXPECT_FALSE(room.take(41));
    EXPECT_TRUE(share.growTo(kUncounted + 100));
    EXPECT_FALSE(room.take(1));
}

TEST(TheShareOfAText, StaysAsItIsWhenThereIsNoRoomForMore)
{
    TextRoom room(100);
    {
        TextShare share(&room);
        EXPECT_TRUE(share.growTo(kUncounted + 60));
        EXPECT_FALSE(share.growTo(kUncounted + 101));
        EXPECT_TRUE(room.take(40));
        EXPECT_FALSE(room.take(1));
    }
    EXPECT_FALSE(room.take(61));
    EXPECT_TRUE(room.take(60));
}

TEST(TheShareOfAText, IsGivenBackOnceAlsoWhenItMoves)
{
    TextRoom room(100);
    {
        TextShare share(&room);
        EXPECT_TRUE(share.growTo(kUncounted + 100));
        const TextShare moved(std::move(share));
        EXPECT_FALSE(room.take(1));
    }
    EXPECT_TRUE(room.take(100));
    EXPECT_FALSE(room.take(1));
}

TEST(TheShareOfAText, HasNoBoundWithoutARoom)
{
    TextShare share(nullptr);
    EXPECT_TRUE(share.growTo(~std::size_t{0}));
}

/// Reads a text of `size` bytes that fits `room`, or does not.
std::optional<FrameText> readBeside(TextRoom& room, std::size_t size)
{
    MemorySource source(frameOf(std::string(size, 'x')));
    FrameReader frame(source, &room);
    frame.readLength();
    std::optional<FrameText> text = frame.readText(size);
    EXPECT_TRUE(!text || text->size() == size);
    return text;
}

TEST(TextsThatShareARoom, AreReadWhileTheyFitBesideEachOther)
{
    TextRoom room(300 * kKibibyte);
    const std::optional<FrameText> first = readBeside(room, 200 * kKibibyte);
    EXPECT_TRUE(first);
    EXPECT_FALSE(readBeside(room, 300 * kKibibyte));
    EXPECT_TRUE(readBeside(room, 228 * kKibibyte));  // two times 64 KiB do not count
    EXPECT_FALSE(readBeside(room, 228 * kKibibyte + 1));
}

TEST(TextsThatShareARoom, MakeRoomWhenTheyGo)
{
    TextRoom room(300 * kKibibyte);
    for (int round = 0; round < 3; ++round) {
        std::optional<FrameText> first = readBeside(room, 364 * kKibibyte);
        EXPECT_TRUE(first);
        const std::optional<FrameText> moved = std::move(first);
        EXPECT_FALSE(readBeside(room, 364 * kKibibyte));
    }
    EXPECT_TRUE(readBeside(room, 364 * kKibibyte));
    EXPECT_FALSE(readBeside(room, 364 * kKibibyte + 1));
}

TEST(TextsThatShareARoom, AreReadWhateverOthersTakeWhenTheyAreShort)
{
    TextRoom room(300 * kKibibyte);
    const std::optional<FrameText> first = readBeside(room, 364 * kKibibyte);
    EXPECT_TRUE(first);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, 2 * kKibibyte, kUncounted - 1, kUncounted})
        EXPECT_TRUE(readBeside(room, size)) << size;
    EXPECT_FALSE(readBeside(room, kUncounted + 1));
}

TEST(TextsThatShareARoom, TakeOnlyWhatHasCome)
{
    TextRoom room(300 * kKibibyte);
    MemorySource source(lengthBytes(kLongestText + 1) + "hello");
    FrameReader frame(source, &room);
    frame.readLength();
    const std::optional<FrameText> cut = frame.readText(kLongestText);
    ASSERT_TRUE(cut);
    EXPECT_STREQ(cut->c_str(), "hello");
    EXPECT_TRUE(readBeside(room, 364 * kKibibyte));
}

struct AConnectedPair : testing::Test {
    AConnectedPair() : ours(-1), theirs(-1)
    {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw std::runtime_error("no sockets");
        ours = RawPeer(ends[0]);
        theirs = RawPeer(ends[1]);
    }

    RawPeer ours;
    RawPeer theirs;
};

using ASocketSource = AConnectedPair;

TEST_F(ASocketSource, GivesWhatHasCome)
{
    theirs.send("hello");
    SocketSource source(ours.fd(), Seconds(5), kNever);
    char bytes[10];
    EXPECT_EQ(source.read(bytes, sizeof bytes), 5);
}

TEST_F(ASocketSource, EndsWhenThePeerCloses)
{
    theirs.close();
    SocketSource source(ours.fd(), Seconds(5), kNever);
    char byte;
    EXPECT_EQ(source.read(&byte, 1), 0);
}

TEST_F(ASocketSource, EndsWhenItsTimeIsOver)
{
    const Deadline end = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
    SocketSource source(ours.fd(), Seconds(5), end);
    char byte;
    EXPECT_EQ(source.read(&byte, 1), -1);
    EXPECT_GE(std::chrono::steady_clock::now(), end);
}

using ASentFrame = AConnectedPair;

TEST_F(ASentFrame, IsTheLengthPlusOneAndTheText)
{
    EXPECT_EQ(sendFrame(ours.fd(), "hello", 5, Seconds(5)), FrameSent::Whole);
    ours.close();
    EXPECT_EQ(theirs.readToEnd(), std::string("\x06\0\0\0hello", 9));  // as little-endian machines write it
}

TEST_F(ASentFrame, IsContinuedAfterShortWrites)
{
    const std::string text(4u << 20, 'x');  // far more than the socket holds
    std::string received;
    std::thread reading([&] { received = theirs.readToEnd(1000); });
    EXPECT_EQ(sendFrame(ours.fd(), text.data(), text.size(), Seconds(5)), FrameSent::Whole);
    ours.close();
    reading.join();
    EXPECT_TRUE(received == frameOf(text));
}

TEST_F(ASentFrame, FailsWhenThePeerIsGone)
{
    theirs.close();
    std::size_t sent = 1;
    EXPECT_EQ(sendFrame(ours.fd(), "hello", 5, Seconds(5), &sent), FrameSent::Nothing);
    EXPECT_EQ(errno, EPIPE);
    EXPECT_EQ(sent, 0U);
}

TEST_F(ASentFrame, CountsTheBytesThatHaveGoneOut)
{
    std::size_t sent = 0;
    EXPECT_EQ(sendFrame(ours.fd(), "hello", 5, Seconds(5), &sent), FrameSent::Whole);
    EXPECT_EQ(sent, 9U);
}

TEST_F(ASentFrame, CannotCarryTwoGibibytes)
{
    EXPECT_EQ(sendFrame(ours.fd(), "", 0x7FFFFFFF, Seconds(5)),
              FrameSent::Nothing);  // refused before the text is looked at
    EXPECT_EQ(errno, EMSGSIZE);
    ours.close();
    EXPECT_EQ(theirs.readToEnd(), "");
}

}  // namespace
