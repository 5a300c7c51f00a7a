#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <string>

#include "listener/Heard.h"
#include "orvu/PushListener.h"
#include "support/BuiltProgram.h"
#include "support/Observed.h"
#include "support/Sanitizers.h"
#include "wire/Sockets.h"

namespace OrvuTests {
namespace {

using namespace Orvu;

constexpr bool kIsWatched = kUnderASanitizer || kEmulated;  // by what makes everything slow and keeps memory of its own
constexpr std::size_t kMebibyte = 1u << 20;

/// A JSON value of `size` bytes.
std::string valueOf(std::size_t size)
{
    return "[\"" + std::string(size - 4, 'x') + "\"]";
}

/// `payload` as a text frame of a server.
std::string serverFrame(const std::string& payload)
{
    std::string frame = "\x81\x7f";
    for (int shift = 56; shift >= 0; shift -= 8)
        frame += static_cast<char>(payload.size() >> shift & 0xff);
    return frame + payload;
}

/// Counts what comes, and the most memory that the process had while a value was handed over.
class Watch {
public:
    explicit Watch(PushListener& listener)
    {
        listener.onMessage([](PushedMessage& message, void* watch) { static_cast<Watch*>(watch)->add(message); }, this);
    }

    std::atomic<int> values{0};
    std::atomic<std::size_t> mostMemory{0};

private:
    void add(const PushedMessage& message)
    {
        if (message.size >= kMebibyte || values % 1000 == 0)
            mostMemory = std::max<std::size_t>(mostMemory, residentMemory());
        ++values;
    }
};

/// A listener, its publisher and the channel between them.
class TheMemoryOfAListener : public testing::TestWithParam<Channel> {
protected:
    RawPeer attached()
    {
        EXPECT_TRUE(listener_.listen("127.0.0.1", publisher_.port(), GetParam()));
        return GetParam() == ChannelTcp ? publisher_.accept() : openedWebSocket(publisher_);
    }

    /// Pushes `value` so many times and waits until all have come; gives how much memory the process took meanwhile.
    std::size_t memoryFor(RawPeer& connection, const std::string& value, int times)
    {
        const std::string bytes = GetParam() == ChannelTcp ? value : serverFrame(value);
        const std::size_t before = residentMemory();
        watch_.values = 0;
        watch_.mostMemory = before;
        for (int i = 0; i < times; ++i)
            EXPECT_TRUE(connection.send(bytes));
        EXPECT_TRUE(eventually([&] { return watch_.values == times; }));
        return watch_.mostMemory - before;
    }

    RawListener publisher_;
    PushListener listener_;
    Watch watch_{listener_};
};

INSTANTIATE_TEST_SUITE_P(OnEachChannel, TheMemoryOfAListener, testing::Values(ChannelTcp, ChannelWebSocket),
                         [](const auto& channel) { return channel.param == ChannelTcp ? "Tcp" : "WebSocket"; });

TEST_P(TheMemoryOfAListener, FollowsTheLargestValueAndNotTheStream)
{
    RawPeer connection = attached();
    memoryFor(connection, valueOf(1024), 1000);  // what is kept from now on
    const std::size_t small = memoryFor(connection, valueOf(1024), kIsWatched ? 2000 : 50000);
    const std::size_t large = memoryFor(connection, valueOf(8 * kMebibyte), kIsWatched ? 2 : 20);
    RecordProperty("bytesForSmallValues", std::to_string(small));
    RecordProperty("bytesForLargeValues", std::to_string(large));
    if (kIsWatched) return;
    EXPECT_LT(small, kMebibyte);
    EXPECT_LT(large, 3 * 8 * kMebibyte);  // a value that grows is copied once more
}

}  // namespace
}  // namespace OrvuTests
