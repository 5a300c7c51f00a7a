#include <benchmark/benchmark.h>

#include "bench/CJsonMessages.h"
#include "bench/CJsonProgram.h"
#include "bench/OrvuProgram.h"
#include "bench/Rows.h"

namespace OrvuBench {
namespace {

const std::string kTimeRequest = writeTime("").get();
const std::string kTimeAnswer = writeTime(broadcastTime()).get();
const std::string kListRequest = writeList({}).get();
const std::string kListAnswer = writeList(channels()).get();

/// The same frames as the others exchange, made beforehand; nothing reads their texts.
template <PlainServer::Threads kThreads>
class Limit {
public:
    bool askTime() const { return ask(time_, kTimeRequest, kTimeAnswer); }
    bool askList() const { return ask(list_, kListRequest, kListAnswer); }

private:
    static bool ask(const PlainServer& server, const std::string& request, const std::string& answer)
    {
        AnswerRoom room;
        return exchange(server.port(), request, room).size() == answer.size();
    }

    PlainServer time_{[](int connection, const char*) { sendText(connection, kTimeAnswer); }, kThreads};
    PlainServer list_{[](int connection, const char*) { sendText(connection, kListAnswer); }, kThreads};
};

/// Started by the first row that asks it.
template <class Program>
const Program& program()
{
    static const Program kProgram;
    return kProgram;
}

template <class Program, bool (Program::*Ask)() const>
void runExchanges(benchmark::State& state)
{
    const Program& peer = program<Program>();
    for (auto _ : state) {
        if (!(peer.*Ask)()) return state.SkipWithError("the answer is not what it should be");
    }
}

template <class Program>
void addRows(const std::string& name)
{
    using Row = void (*)(benchmark::State&);
    const std::pair<const char*, Row> rows[] = {{"tiny exchange/", runExchanges<Program, &Program::askTime>},
                                                {"list exchange/", runExchanges<Program, &Program::askList>}};
    for (const auto& [subject, row] : rows) {
        auto* const added = benchmark::RegisterBenchmark((subject + name).c_str(), row);
        added->Threads(1)->Threads(4)->Threads(16)->MeasureProcessCPUTime()->UseRealTime();
    }
}

}  // namespace

void addExchangeRows(bool logging)
{
    if (logging) return addRows<OrvuProgram>("orvu, logging");
    addRows<Limit<PlainServer::OneEach>>("limit");
    addRows<Limit<PlainServer::Kept>>("limit, kept threads");
    addRows<CJsonProgram>("cJSON");
    addRows<OrvuProgram>("orvu");
}

}  // namespace OrvuBench
