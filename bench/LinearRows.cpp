#include <benchmark/benchmark.h>
#include <functional>
#include <string>
#include <utility>

#include "bench/CJsonEvents.h"
#include "bench/OrvuMessages.h"
#include "bench/Rows.h"

namespace OrvuBench {
namespace {

using TextOf = std::function<std::string(int size)>;

std::string repeated(const std::string& part, int count)
{
    std::string text;
    text.reserve(part.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        text += part;
    return text;
}

/// `part`, repeated, as the items of an array.
std::string arrayOf(const std::string& part, int count)
{
    return "[" + part + repeated("," + part, count - 1) + "]";
}

// Texts of one service. Its keys come last, so that each is searched for in all of the text.

constexpr const char* kKeys = R"("serviceContextId": "1840.1840.58880", "serviceName": "TV Brasil Central HD",)"
                              R"( "transportStreamId": 1840, "originalNetworkId": 1840, "serviceId": 58880})";

bool isWhole(const std::string& name, int serviceId)
{
    return !name.empty() && serviceId == 58880;
}

std::string chains(int count)
{
    constexpr std::size_t kLevels = 900;
    return R"({"chains": )" + arrayOf(std::string(kLevels, '[') + std::string(kLevels, ']'), count) + "," + kKeys;
}

std::string members(int count)
{
    std::string text = "{";
    for (int i = 0; i < count; ++i)
        text += "\"member" + std::to_string(i) + "\": " + std::to_string(i) + ",";
    return text + kKeys;
}

std::string oneKey(int count)
{
    return "{" + repeated(R"("serviceName": "TV Brasil Central HD",)", count) + kKeys;
}

std::string emptyArrays(int count)
{
    return R"({"arrays": )" + arrayOf("[]", count) + "," + kKeys;
}

std::string longString(int bytes)
{
    return R"({"string": ")" + std::string(static_cast<std::size_t>(bytes), 'a') + R"(",)" + kKeys;
}

std::string whiteSpace(int bytes)
{
    return "{" + std::string(static_cast<std::size_t>(bytes), ' ') + kKeys;
}

std::string escapes(int count)
{
    return R"({"serviceName": ")" + repeated(R"(\u00e7)", count) + R"(",)" + kKeys;
}

void checkServiceWithCJson(benchmark::State& state, const TextOf& textOf, int size)
{
    const std::string text = textOf(size);
    for (auto _ : state) {
        const Tree tree(cJSON_Parse(text.c_str()));
        const Channel channel = readChannel(tree.get());
        if (!isWhole(channel.name, channel.serviceId)) return state.SkipWithError("the service was not read");
    }
}

void checkService(benchmark::State& state, const TextOf& textOf, int size)
{
    const std::string text = textOf(size);
    for (auto _ : state) {
        Orvu::Service service;
        if (!service.deserialize(text.c_str()) || !isWhole(service.serviceName, service.serviceId))
            return state.SkipWithError("the service was not read");
    }
}

// Texts of many services.

std::string listOf(const std::string& service, int count)
{
    return R"({"serviceList": )" + arrayOf(service, count) + "}";
}

std::string reversedServices(int count)
{
    return listOf(R"({"serviceId": 58880, "originalNetworkId": 1840, "transportStreamId": 1840,)"
                  R"( "serviceName": "TV Brasil Central HD", "serviceContextId": "1840.1840.58880"})",
                  count);
}

std::string fractions(int count)
{
    return listOf(R"({"serviceContextId": "1840.1840.58880", "serviceName": "TV Brasil Central HD",)"
                  R"( "transportStreamId": 1840.25, "originalNetworkId": 1840.5, "serviceId": 58880.75})",
                  count);
}

void checkServicesWithCJson(benchmark::State& state, const TextOf& textOf, int size)
{
    const std::string text = textOf(size);
    for (auto _ : state) {
        const Tree tree(cJSON_Parse(text.c_str()));
        const auto list = readList(tree.get());
        if (!list || list->size() != static_cast<std::size_t>(size) ||
            !isWhole(list->back().name, list->back().serviceId))
            return state.SkipWithError("the services were not read");
    }
}

void checkServices(benchmark::State& state, const TextOf& textOf, int size)
{
    const std::string text = textOf(size);
    for (auto _ : state) {
        Orvu::ServiceList list;
        if (!list.deserialize(text.c_str()) || list.services.size() != static_cast<std::size_t>(size) ||
            !isWhole(list.services.back()->serviceName, list.services.back()->serviceId))
            return state.SkipWithError("the services were not read");
    }
}

// Texts of many events, whose keys are changed.

using Change = void (*)(cJSON* event);

void reverseKeys(cJSON* event)
{
    const Tree reversed(cJSON_CreateObject());
    while (cJSON* const member = cJSON_DetachItemFromArray(event, 0))
        cJSON_InsertItemInArray(reversed.get(), 0, member);
    std::swap(event->child, reversed->child);
}

void dropEverySecondKey(cJSON* event)
{
    for (int i = 1; i < cJSON_GetArraySize(event); ++i)
        cJSON_DeleteItemFromArray(event, i);
}

template <Change kChange>
std::string changedEvents(int count)
{
    const Tree tree(cJSON_Parse(Text(orvuEvents(count)->serialize()).get()));
    cJSON* event = nullptr;
    cJSON_ArrayForEach(event, cJSON_GetObjectItem(tree.get(), "schedule")) kChange(event);
    return Text(cJSON_Print(tree.get())).get();
}

/// The tree of the text leaves the allocator with work that the first reading would have to do, and that grows faster
/// than the text. So one reading comes before those that count.
template <class Read>
void timeReading(benchmark::State& state, Read read)
{
    bool isRead = read();
    for (auto _ : state)
        isRead = read() && isRead;
    if (!isRead) state.SkipWithError("the events were not read");
}

void checkEventsWithCJson(benchmark::State& state, const TextOf& textOf, int size)
{
    const std::string text = textOf(size);
    timeReading(state, [&] {
        EventList list;
        const Tree tree(cJSON_Parse(text.c_str()));
        readFields(tree.get(), list);
        return list.schedule.size() == static_cast<std::size_t>(size) && !list.schedule.back().startTime.empty();
    });
}

void checkEvents(benchmark::State& state, const TextOf& textOf, int size)
{
    const std::string text = textOf(size);
    timeReading(state, [&] {
        Orvu::EventInfoList list;
        return list.deserialize(text.c_str()) && list.schedule.size() == static_cast<std::size_t>(size) &&
               !list.schedule.back()->startTime.empty();
    });
}

using Check = void (*)(benchmark::State& state, const TextOf& textOf, int size);

void addRow(const std::string& name, Check check, const TextOf& textOf, int size)
{
    constexpr int kFew = 3;  // the large ones take a tenth of a second
    benchmark::RegisterBenchmark(name.c_str(), check, textOf, size)->Iterations(kFew);
}

void addRows(const std::string& subject, const TextOf& textOf, int size, Check check, Check checkWithCJson)
{
    addRow(subject + "/cJSON", checkWithCJson, textOf, size);
    addRow(subject + "/orvu", check, textOf, size);
    addRow(subject + "/orvu, a quarter", check, textOf, size / 4);
}

}  // namespace

void addLinearRows()
{
    constexpr int kMegabyte = 1000000;
    const auto addService = [](const char* subject, const TextOf& textOf, int size) {
        addRows(subject, textOf, size, checkService, checkServiceWithCJson);
    };
    addService("checking chains", chains, 2000);
    addService("checking members", members, 1000000);
    addService("checking one key", oneKey, 1000000);
    addService("checking arrays", emptyArrays, 2000000);
    addService("checking a string", longString, 32 * kMegabyte);
    addService("checking white space", whiteSpace, 30 * kMegabyte);
    addService("checking escapes", escapes, 2000000);
    addRows("checking reversed keys", reversedServices, 40000, checkServices, checkServicesWithCJson);
    addRows("checking fractions", fractions, 40000, checkServices, checkServicesWithCJson);
    addRows("checking reversed events", changedEvents<reverseKeys>, 2000, checkEvents, checkEventsWithCJson);
    addRows("checking half events", changedEvents<dropEverySecondKey>, 2000, checkEvents, checkEventsWithCJson);
}

}  // namespace OrvuBench
