#include <atomic>
#include <benchmark/benchmark.h>
#include <memory>
#include <sched.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "bench/PlainSockets.h"
#include "bench/Rows.h"
#include "listener/ValueSplitter.h"
#include "orvu/PushListener.h"

namespace OrvuBench {
namespace {

constexpr std::size_t kMessageSize = 1024;
constexpr std::uint64_t kMessages = 1000;  // of one iteration

/// A JSON object of kMessageSize bytes, with keys and texts as messages have them.
std::string message()
{
    std::string text = R"({"HEADER":"serviceList","serviceList":[)";
    const std::string item = R"({"serviceContextId":"1840.1840.01","serviceName":"Canal Um HD","serviceId":1840},)";
    while (text.size() + item.size() + 40 < kMessageSize)
        text += item;
    text += R"({"serviceName":")";
    return text + std::string(kMessageSize - text.size() - 4, 'x') + "\"}]}";
}

/// Sends messages without pause to the client that connects, as many per send as fit.
class Saturation {
public:
    Saturation() : listening_(streamSocket()), port_(listenOnFreePort(listening_)), thread_([this] { sendOn(); }) {}
    ~Saturation()
    {
        isOver_ = true;
        shutdown(listening_, SHUT_RDWR);
        shutdown(connection_, SHUT_RDWR);  // a send that waits for a reader that has gone ends at once
        thread_.join();
        close(connection_);
        close(listening_);
    }
    Saturation(const Saturation&) = delete;
    Saturation& operator=(const Saturation&) = delete;

    int port() const { return port_; }

private:
    void sendOn()
    {
        connection_ = accept(listening_, nullptr, nullptr);
        std::string bytes;
        for (int i = 0; i < 64; ++i)
            bytes += message();
        std::size_t at = 0;
        while (!isOver_) {
            const ssize_t sent = send(connection_, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
            if (sent <= 0) break;
            at = (at + static_cast<std::size_t>(sent)) % bytes.size();
        }
    }

    std::atomic<bool> isOver_{false};
    std::atomic<int> connection_{-1};
    const int listening_;
    const int port_;
    std::thread thread_;
};

/// Counts the messages that came whole.
class Count : public Orvu::ValueSplitter::Sink {
public:
    void value(std::string_view json) override { count(json.size()); }
    void text(std::string_view) override { ++wrong; }
    void endText() override {}
    void count(std::size_t size)
    {
        if (size != kMessageSize) ++wrong;
        heard.fetch_add(1, std::memory_order_relaxed);
    }

    std::atomic<std::uint64_t> heard{0};
    std::atomic<int> wrong{0};
};

/// A loop of recv that divides the stream as the library does.
class BareListener {
public:
    BareListener(int port, Count& count) : fd_(streamSocket()), isConnected_(connectTo(port, fd_))
    {
        thread_ = std::thread([this, &count] { listen(count); });
    }
    ~BareListener()
    {
        shutdown(fd_, SHUT_RDWR);
        thread_.join();
        close(fd_);
    }
    bool listens() const { return isConnected_; }

private:
    void listen(Count& count) const
    {
        Orvu::ValueSplitter splitter(count);
        const auto room = std::make_unique<char[]>(65536 + 1);
        for (ssize_t got; (got = recv(fd_, room.get(), 65536, 0)) > 0;)
            splitter.add(room.get(), static_cast<std::size_t>(got));
    }

    const int fd_;
    const bool isConnected_;
    std::thread thread_;
};

class OrvuListener {
public:
    OrvuListener(int port, Count& count)
    {
        listener_.onMessage(
            [](Orvu::PushedMessage& message, void* context) { static_cast<Count*>(context)->count(message.size); },
            &count);
        listens_ = listener_.listen("127.0.0.1", port, Orvu::ChannelTcp);
    }
    bool listens() const { return listens_; }

private:
    Orvu::PushListener listener_;
    bool listens_ = false;
};

/// One iteration is kMessages received messages.
template <class Listener>
void runListening(benchmark::State& state)
{
    Saturation publisher;
    Count count;
    const Listener listener(publisher.port(), count);
    if (!listener.listens()) return state.SkipWithError("no connection");
    std::uint64_t awaited = kMessages;
    while (count.heard < awaited)
        sched_yield();
    for (auto _ : state) {
        for (awaited += kMessages; count.heard.load(std::memory_order_relaxed) < awaited;)
            usleep(50);
    }
    if (count.wrong != 0) return state.SkipWithError("something else came");
}

template <class Listener>
void addRow(const char* name)
{
    constexpr double kSeconds = 0.5;
    benchmark::RegisterBenchmark(name, runListening<Listener>)
        ->MinTime(kSeconds)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
}

}  // namespace

void addListeningRows()
{
    addRow<BareListener>("listening, 1 KB/limit");
    addRow<OrvuListener>("listening, 1 KB/orvu");
}

}  // namespace OrvuBench
