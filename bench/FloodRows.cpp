#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <sched.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <vector>

#include "bench/Publishers.h"
#include "bench/Rows.h"

namespace OrvuBench {
namespace {

constexpr Load kLoads[] = {
    {"without pause to 1", "tcp", 1, 1024},
    {"without pause to 8", "tcp", 8, 1024},
    {"without pause to 64", "tcp", 64, 1024},
    {"frames, no pause, 1 KB", "websocket", 1, 1024},
    {"frames, no pause, 64 KB", "websocket", 1, 65536},
};

const std::string kLast = "!";

/// A thread for each listener. It reads as fast as it can, until kLast has come.
class Readers {
public:
    explicit Readers(const Sockets& sockets) : sockets_(sockets)
    {
        for (const int fd : sockets)
            threads_.emplace_back(read, fd, std::ref(taken_.emplace_back(0)));
    }
    ~Readers()
    {
        for (const int fd : sockets_)
            shutdown(fd, SHUT_RDWR);
        join();
    }
    Readers(const Readers&) = delete;
    Readers& operator=(const Readers&) = delete;

    /// Waits until each has received kLast. Whether each received that many bytes in all.
    bool took(std::uint64_t bytes)
    {
        join();
        return std::all_of(taken_.begin(), taken_.end(), [bytes](std::uint64_t taken) { return taken == bytes; });
    }

private:
    static void read(int fd, std::uint64_t& taken)
    {
        char room[64 * 1024];
        ssize_t got;
        do {
            got = recv(fd, room, sizeof room, 0);
            if (got <= 0) return;
            taken += static_cast<std::uint64_t>(got);
        } while (room[got - 1] != kLast[0]);
    }

    void join()
    {
        for (std::thread& thread : threads_)
            thread.join();
        threads_.clear();
    }

    const Sockets& sockets_;
    std::deque<std::uint64_t> taken_;
    std::vector<std::thread> threads_;
};

/// Pushes without pause, and counts the bytes.
template <class Publisher>
class Flood {
public:
    Flood(const Load& load, const Publisher& publisher)
        : load_(load), publisher_(publisher), prepared_(publisher.prepared(message_))
    {}

    /// Enough bytes, over all listeners, to fill the buffers as far as they will be filled.
    bool begin()
    {
        constexpr std::size_t kFull = 4 * 1024 * 1024;
        for (std::size_t bytes = 0; bytes < kFull; bytes += load_.size * load_.listeners) {
            if (!push()) return false;
        }
        return true;
    }

    bool push() { return send(prepared_, message_.size()); }

    bool end()
    {
        std::string prepared = publisher_.prepared(kLast);
        return send(prepared, kLast.size());
    }

    /// To each listener.
    std::uint64_t bytes() const { return bytes_; }

private:
    /// A frame that finds no room is refused, and pushed again.
    bool send(std::string& prepared, std::size_t size)
    {
        constexpr int kTries = 1000 * 1000;
        for (int i = 0; i < kTries; ++i) {
            if (publisher_.push(prepared)) {
                bytes_ += sizeOnTheWire(load_, size);
                return true;
            }
            sched_yield();
        }
        return false;
    }

    const Load& load_;
    const Publisher& publisher_;
    const std::string message_ = std::string(load_.size, 'x');
    std::string prepared_;
    std::uint64_t bytes_ = 0;
};

template <class Publisher>
void runFlood(benchmark::State& state, const Load& load)
{
    Publisher publisher(load);
    const std::unique_ptr<Listeners> listeners = publisher.attached();
    Readers readers(listeners->sockets());
    Flood<Publisher> flood(load, publisher);
    if (!flood.begin()) return state.SkipWithError("a push failed");
    for (auto _ : state) {
        if (!flood.push()) return state.SkipWithError("a push failed");
    }
    if (!flood.end() || !readers.took(flood.bytes())) return state.SkipWithError("something else came");
}

/// Longer than other rows, so that the contents of the buffers at the start and the end do not matter.
template <class Publisher>
void addRow(const Load& load, const char* name)
{
    constexpr double kSeconds = 0.1;
    const std::string row = load.subject + std::string("/") + name;
    auto* const added = benchmark::RegisterBenchmark(
        row.c_str(), [&load](benchmark::State& state) { runFlood<Publisher>(state, load); });
    added->MinTime(kSeconds)->MeasureProcessCPUTime()->UseRealTime();
}

}  // namespace

void addFloodRows()
{
    for (const Load& load : kLoads) {
        addRow<BareLoop>(load, "limit");
        addRow<OrvuPublisher>(load, "orvu");
    }
}

}  // namespace OrvuBench
