#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include "bench/Publishers.h"
#include "bench/Rows.h"

namespace OrvuBench {
namespace {

/// Pushes between two pauses.
struct Burst {
    Load load;
    int pushes;  // until the listeners read: as many as the system keeps for them without waiting
};
constexpr Burst kBursts[] = {
    {{"pushing to 1", "tcp", 1, 1024}, 16},
    {{"pushing to 8", "tcp", 8, 1024}, 16},
    {{"pushing to 64", "tcp", 64, 1024}, 16},
    {{"pushing a frame, 1 KB", "websocket", 1, 1024}, 16},
    {{"pushing a frame, 64 KB", "websocket", 1, 65536}, 1},
};

/// So that no push ever waits for a listener.
template <class Publisher>
void runPushes(benchmark::State& state, const Burst& burst)
{
    Publisher publisher(burst.load);
    const std::unique_ptr<Listeners> listeners = publisher.attached();
    const std::string message(burst.load.size, 'x');
    std::string prepared = publisher.prepared(message);
    const std::string expected = onTheWire(burst.load, message);
    for (auto _ : state) {
        for (int i = 0; i < burst.pushes; ++i) {
            if (!publisher.push(prepared)) return state.SkipWithError("a push failed");
        }
        state.PauseTiming();
        if (!listeners->take(expected, burst.pushes)) return state.SkipWithError("something else came");
        state.ResumeTiming();
    }
}

template <class Publisher>
void addRow(const Burst& burst, const char* name)
{
    benchmark::RegisterBenchmark((burst.load.subject + std::string("/") + name).c_str(),
                                 [&burst](benchmark::State& state) { runPushes<Publisher>(state, burst); });
}

}  // namespace

void addPushRows()
{
    for (const Burst& burst : kBursts) {
        addRow<BareLoop>(burst, "limit");
        addRow<OrvuPublisher>(burst, "orvu");
    }
}

}  // namespace OrvuBench
