#include <benchmark/benchmark.h>

#include "bench/CJsonEvents.h"
#include "bench/CJsonNodes.h"
#include "bench/CJsonPlatform.h"
#include "bench/CJsonTokens.h"
#include "bench/OrvuMessages.h"
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

/// One message in both forms: the library's object, and plain structs for cJSON alone.
template <class PlainStruct, class OrvuMessage, std::unique_ptr<OrvuMessage> (*make)()>
struct Both {
    using Plain = PlainStruct;
    using Message = OrvuMessage;
    static std::unique_ptr<Message> message() { return make(); }
    static std::string text() { return Text(message()->serialize()).get(); }
};

template <int kCount>
std::unique_ptr<Orvu::EventInfoList> manyEvents()
{
    return orvuEvents(kCount);
}

template <int kCount>
using Events = Both<EventList, Orvu::EventInfoList, manyEvents<kCount>>;
using CanDo = Both<Capabilities, Orvu::PlatformCapabilities, orvuCapabilities>;
using Nodes = Both<Node, Orvu::NCLNode, orvuNodes>;
using Tokens = Both<BoundServices, Orvu::ServiceBindTokensList, orvuTokens>;

template <class Plain>
Plain readPlain(const std::string& text)
{
    Plain plain;
    const Tree tree(cJSON_Parse(text.c_str()));
    readFields(tree.get(), plain);
    return plain;
}

/// What is written but not read.
template <class Plain>
void complete(Plain&)
{}

constexpr int kGenre[] = {3, 0, 15, 15};
constexpr const char* kLinkageData = "0x00";

void complete(EventList& list)
{
    for (Event& event : list.schedule) {
        event.genre.assign(std::begin(kGenre), std::end(kGenre));
        event.linkage.data = kLinkageData;
    }
}

void complete(Orvu::EventInfoList& list)
{
    for (Orvu::EventInfo* event : list.schedule) {
        std::copy(std::begin(kGenre), std::end(kGenre), event->contentDescription->content);
        event->linkage->data = kLinkageData;
    }
}

template <class Each>
Text printedAgain(const std::string& text)
{
    typename Each::Plain plain = readPlain<typename Each::Plain>(text);
    complete(plain);
    return print(plain);
}

template <class Each>
void readTreeOf(benchmark::State& state)
{
    const std::string text = Each::text();
    if (printedAgain<Each>(text).get() != text) return state.SkipWithError("the message was not read");
    for (auto _ : state)
        benchmark::DoNotOptimize(readPlain<typename Each::Plain>(text));
}

template <class Each>
void readMessage(benchmark::State& state)
{
    const std::string text = Each::text();
    typename Each::Message first;
    const bool read = first.deserialize(text.c_str());
    complete(first);
    if (!read || Text(first.serialize()).get() != text) return state.SkipWithError("the message was not read");
    for (auto _ : state) {
        typename Each::Message message;
        if (!message.deserialize(text.c_str())) return state.SkipWithError("the message was not read");
    }
}

template <class Each>
void writeTreeOf(benchmark::State& state)
{
    typename Each::Plain plain = readPlain<typename Each::Plain>(Each::text());
    complete(plain);
    if (print(plain).get() != Each::text()) return state.SkipWithError("the texts differ");
    for (auto _ : state)
        benchmark::DoNotOptimize(print(plain).get());
}

template <class Each>
void writeMessage(benchmark::State& state)
{
    const std::unique_ptr<typename Each::Message> message = Each::message();
    for (auto _ : state)
        benchmark::DoNotOptimize(Text(message->serialize()).get());
}

template <class Each>
void addReadingRows(const std::string& subject)
{
    benchmark::RegisterBenchmark(("reading " + subject + "/cJSON").c_str(), readTreeOf<Each>);
    benchmark::RegisterBenchmark(("reading " + subject + "/orvu").c_str(), readMessage<Each>);
}

template <class Each>
void addRows(const std::string& subject)
{
    addReadingRows<Each>(subject);
    benchmark::RegisterBenchmark(("writing " + subject + "/cJSON").c_str(), writeTreeOf<Each>);
    benchmark::RegisterBenchmark(("writing " + subject + "/orvu").c_str(), writeMessage<Each>);
}

}  // namespace

void addMessageRows()
{
    benchmark::RegisterBenchmark("reading a list/cJSON", readWithCJson);
    benchmark::RegisterBenchmark("reading a list/orvu", readWithOrvu);
    benchmark::RegisterBenchmark("writing a list/cJSON", writeWithCJson);
    benchmark::RegisterBenchmark("writing a list/orvu", writeWithOrvu);
    addRows<Events<500>>("events");
    addReadingRows<Events<1000>>("1000 events");
    addReadingRows<Events<10000>>("10000 events");
    addRows<CanDo>("capabilities");
    addRows<Nodes>("nodes");
    addRows<Tokens>("tokens");
}

}  // namespace OrvuBench
