#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "bench/OrvuMessages.h"
#include "bench/Rows.h"

namespace OrvuBench {
namespace {

constexpr int kAdded = 20000;

/// An event with nothing but a time: filling it is not measured.
Orvu::EventInfo* event(const std::string& startTime)
{
    auto event = std::make_unique<Orvu::EventInfo>();
    event->startTime = startTime;
    return event.release();
}

std::vector<std::string> ascendingTimes()
{
    const std::unique_ptr<Orvu::EventInfoList> list = orvuEvents(kAdded);
    std::vector<std::string> times;
    for (const Orvu::EventInfo* event : list->schedule)
        times.push_back(event->startTime);
    return times;
}

void addOneByOne(benchmark::State& state, const std::vector<std::string>& times)
{
    for (auto _ : state) {
        Orvu::EventInfoList list;
        for (const std::string& time : times)
            list.addScheduleEvent(event(time));
        if (list.schedule.size() != times.size()) return state.SkipWithError("an event was not added");
    }
}

void addAscending(benchmark::State& state)
{
    addOneByOne(state, ascendingTimes());
}

void addDescending(benchmark::State& state)
{
    const std::vector<std::string> times = ascendingTimes();
    addOneByOne(state, {times.rbegin(), times.rend()});
}

}  // namespace

void addScheduleRows()
{
    // Once each: they take seconds.
    benchmark::RegisterBenchmark("adding 20000, ascending/orvu", addAscending)->Iterations(1)->Repetitions(1);
    benchmark::RegisterBenchmark("adding 20000, descending/orvu", addDescending)->Iterations(1)->Repetitions(1);
}

}  // namespace OrvuBench
