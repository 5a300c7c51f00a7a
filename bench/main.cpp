#include <benchmark/benchmark.h>
#include <cstdlib>
#include <sched.h>
#include <string>
#include <string_view>

#include "bench/PlainSockets.h"
#include "bench/Rows.h"

namespace {

/// The CPUs on which this process may run.
int usableCpus()
{
    cpu_set_t cpus;
    return sched_getaffinity(0, sizeof cpus, &cpus) == 0 ? CPU_COUNT(&cpus) : 0;
}

}  // namespace

/// Runs the rows with Google Benchmark's options. With ORVU_LOG=none it runs all but those of the library with its
/// log; with any other value it runs only these.
int main(int argc, char** argv)
{
    const char* const log = std::getenv("ORVU_LOG");
    const bool logging = !log || std::string_view(log) != "none";
    OrvuBench::addExchangeRows(logging);
    if (!logging) {
        OrvuBench::addMessageRows();
        OrvuBench::addLinearRows();
        OrvuBench::addScheduleRows();
        OrvuBench::addPushRows();
        OrvuBench::addFloodRows();
        OrvuBench::addListeningRows();
    }

    // Allocating costs more in a process with several threads, which every receiver is.
    const OrvuBench::PlainServer anotherThread([](int, const char*) {});

    benchmark::AddCustomContext("usable_cpus", std::to_string(usableCpus()));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 64;
    return benchmark::RunSpecifiedBenchmarks() == 0;
}
