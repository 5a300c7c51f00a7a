#include <atomic>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/RawPeer.h"
#include "transport/Frame.h"
#include "transport/MemorySource.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

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

}  // namespace
