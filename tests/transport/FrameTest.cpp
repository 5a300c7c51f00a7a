#include <algorithm>
#include <cerrno>
#include <gmock/gmock.h>
#include <string>
#include <thread>

#include "support/RawPeer.h"
#include "support/SocketPair.h"
#include "transport/Frame.h"
#include "transport/MemorySource.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Eq;
using testing::Optional;

namespace {

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
    for (const std::size_t step : {1000000, 65540, 1}) {  // it comes with the text, after a piece of it, or alone
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

struct AConnectedPair : testing::Test {
    const SocketPair pair;
    RawPeer ours{pair.ends[0]};
    RawPeer theirs{pair.ends[1]};
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
