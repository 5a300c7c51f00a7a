#include <benchmark/benchmark.h>

#include "bench/CJsonMessages.h"
#include "bench/OrvuProgram.h"
#include "bench/Rows.h"

namespace OrvuBench {
namespace {

bool haveAll(std::size_t read)
{
    return read == channels().size();
}

void readWithCJson(benchmark::State& state)
{
    const Text text = writeList(channels());
    for (auto _ : state) {
        const Tree tree(cJSON_Parse(text.get()));
        const std::optional<std::vector<Channel>> list = readList(tree.get());
        if (!list || !haveAll(list->size())) return state.SkipWithError("the list was not read");
    }
}

void readWithOrvu(benchmark::State& state)
{
    const Text text = writeList(channels());
    for (auto _ : state) {
        Orvu::ServiceList list;
        if (!list.deserialize(text.get()) || !haveAll(list.services.size()))
            return state.SkipWithError("the list was not read");
    }
}

void writeWithCJson(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(writeList(channels()).get());
}

void writeWithOrvu(benchmark::State& state)
{
    const std::unique_ptr<Orvu::ServiceList> list = orvuList();
    if (std::string(Text(list->serialize()).get()) != writeList(channels()).get())
        return state.SkipWithError("the texts differ");
    for (auto _ : state)
        benchmark::DoNotOptimize(Text(list->serialize()).get());
}

}  // namespace

void addMessageRows()
{
    benchmark::RegisterBenchmark("reading a list/cJSON", readWithCJson);
    benchmark::RegisterBenchmark("reading a list/orvu", readWithOrvu);
    benchmark::RegisterBenchmark("writing a list/cJSON", writeWithCJson);
    benchmark::RegisterBenchmark("writing a list/orvu", writeWithOrvu);
}

}  // namespace OrvuBench
