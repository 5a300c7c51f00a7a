#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <cjson/cJSON.h>

/// \file
/// Prints the rows of one or more runs of orvu-bench side by side, and how their medians relate.
///
///     bench-report FILE...
///
/// The files are Google Benchmark's JSON. The exit code is 1 when a row failed, or when one to compare is missing.

namespace {

// In the order of the report.
const std::vector<std::string> kSubjects = {"tiny exchange",
                                            "list exchange",
                                            "reading a list",
                                            "writing a list",
                                            "reading events",
                                            "writing events",
                                            "reading capabilities",
                                            "writing capabilities",
                                            "reading nodes",
                                            "writing nodes",
                                            "reading tokens",
                                            "writing tokens",
                                            "reading 1000 events",
                                            "reading 10000 events",
                                            "checking chains",
                                            "checking members",
                                            "checking one key",
                                            "checking arrays",
                                            "checking a string",
                                            "checking white space",
                                            "checking escapes",
                                            "checking reversed keys",
                                            "checking fractions",
                                            "checking reversed events",
                                            "checking half events",
                                            "adding 20000, ascending",
                                            "adding 20000, descending",
                                            "pushing to 1",
                                            "pushing to 8",
                                            "pushing to 64",
                                            "pushing a frame, 1 KB",
                                            "pushing a frame, 64 KB",
                                            "without pause to 1",
                                            "without pause to 8",
                                            "without pause to 64",
                                            "frames, no pause, 1 KB",
                                            "frames, no pause, 64 KB",
                                            "listening, 1 KB"};
const std::vector<std::string> kPrograms = {"limit", "limit, kept threads", "cJSON",
                                            "orvu",  "orvu, logging",       "orvu, a quarter"};

/// Where the bound of a ratio applies.
enum Where { Anywhere, OnOneCpu };

/// Two programs to compare.
struct Comparison {
    const char* subject;
    const char* program;
    const char* beside;
    double toReach;  // the ratio of the processor times; 0 where none is set
    Where where = Anywhere;
};

// clang-format off
constexpr Comparison kComparisons[] = {
    {"tiny exchange",  "orvu",          "cJSON", 1.15},
    {"tiny exchange",  "orvu, logging", "cJSON", 0},
    {"tiny exchange",  "orvu",          "limit, kept threads", 1.15, OnOneCpu},
    {"tiny exchange",  "orvu",          "limit", 1.00, OnOneCpu},
    {"tiny exchange",  "limit, kept threads", "limit", 0},
    {"tiny exchange",  "cJSON",         "limit", 0},
    {"list exchange",  "orvu",          "cJSON", 0.43},
    {"list exchange",  "orvu",          "limit", 5.5},
    {"list exchange",  "orvu",          "limit, kept threads", 0},
    {"list exchange",  "orvu, logging", "limit", 0},
    {"list exchange",  "cJSON",         "limit", 0},
    {"reading a list", "orvu",          "cJSON", 0.40},
    {"writing a list", "orvu",          "cJSON", 0.30},
    {"reading events", "orvu",          "cJSON", 0.45},
    {"writing events", "orvu",          "cJSON", 0.30},
    {"reading capabilities", "orvu",    "cJSON", 0.50},
    {"writing capabilities", "orvu",    "cJSON", 0.30},
    {"reading nodes",  "orvu",          "cJSON", 0.40},
    {"writing nodes",  "orvu",          "cJSON", 0.30},
    {"reading tokens", "orvu",          "cJSON", 0.45},
    {"writing tokens", "orvu",          "cJSON", 0.30},
    {"reading 1000 events", "orvu",     "cJSON", 0.45},
    {"reading 10000 events", "orvu",    "cJSON", 0},
    {"checking chains", "orvu", "cJSON", 0.50},
    {"checking chains", "orvu", "orvu, a quarter", 4.5},
    {"checking members", "orvu", "cJSON", 0.50},
    {"checking members", "orvu", "orvu, a quarter", 4.5},
    {"checking one key", "orvu", "cJSON", 0.50},
    {"checking one key", "orvu", "orvu, a quarter", 4.5},
    {"checking arrays", "orvu", "cJSON", 0.50},
    {"checking arrays", "orvu", "orvu, a quarter", 4.5},
    {"checking a string", "orvu", "cJSON", 0.50},
    {"checking a string", "orvu", "orvu, a quarter", 4.5},
    {"checking white space", "orvu", "cJSON", 0.50},
    {"checking white space", "orvu", "orvu, a quarter", 4.5},
    {"checking escapes", "orvu", "cJSON", 0.50},
    {"checking escapes", "orvu", "orvu, a quarter", 4.5},
    {"checking reversed keys", "orvu", "cJSON", 0.50},
    {"checking reversed keys", "orvu", "orvu, a quarter", 4.5},
    {"checking fractions", "orvu", "cJSON", 6},
    {"checking fractions", "orvu", "orvu, a quarter", 4.5},
    {"checking reversed events", "orvu", "cJSON", 0.50},
    {"checking reversed events", "orvu", "orvu, a quarter", 4.5},
    {"checking half events", "orvu", "cJSON", 0.50},
    {"checking half events", "orvu", "orvu, a quarter", 4.5},
    {"pushing to 1",   "orvu",          "limit", 1.15},
    {"pushing to 8",   "orvu",          "limit", 1.15},
    {"pushing to 64",  "orvu",          "limit", 1.15},
    {"pushing a frame, 1 KB", "orvu",   "limit", 1.15},
    {"pushing a frame, 64 KB", "orvu",  "limit", 1.15},
    {"without pause to 1", "orvu",      "limit", 1.15},
    {"without pause to 8", "orvu",      "limit", 1.15},
    {"without pause to 64", "orvu",     "limit", 1.15},
    {"frames, no pause, 1 KB", "orvu",  "limit", 1.15},
    {"frames, no pause, 64 KB", "orvu", "limit", 1.15},
    {"listening, 1 KB", "orvu", "limit", 2.00},
};
// clang-format on

/// Two programs to compare by their requests a second, where all CPUs are used.
struct Throughput {
    const char* subject;
    int clients;
    const char* program;
    const char* beside;
    double toReach;  // so many times those of the program beside; 0 where none is set
};
constexpr Throughput kThroughputs[] = {
    {"tiny exchange", 16, "orvu", "limit", 1.6},
    {"tiny exchange", 16, "orvu", "limit, kept threads", 0},
    {"tiny exchange", 16, "limit, kept threads", "limit", 0},
};

/// One row: what was done, with how many clients at once (0 where there are none), and by which program.
struct Row {
    std::string subject;
    int clients;
    std::string program;
};

std::ptrdiff_t placeIn(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) - names.begin();
}

bool operator<(const Row& a, const Row& b)
{
    const auto key = [](const Row& row) {
        return std::make_tuple(placeIn(kSubjects, row.subject), row.clients, placeIn(kPrograms, row.program));
    };
    return key(a) < key(b);
}

/// The measurements of a row, in microseconds, one per repetition.
struct Samples {
    std::vector<double> processor;
    std::vector<double> wall;
};

using Rows = std::map<Row, Samples>;

struct Report {
    Rows rows;
    int cpus = 0;  // on which all of them ran
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

std::string text(const cJSON* run, const char* key)
{
    const cJSON* const item = cJSON_GetObjectItem(run, key);
    return cJSON_IsString(item) ? item->valuestring : "";
}

double number(const cJSON* run, const char* key)
{
    const cJSON* const item = cJSON_GetObjectItem(run, key);
    if (!cJSON_IsNumber(item)) throw std::runtime_error("a row without " + std::string(key));
    return item->valuedouble;
}

/// From "subject/program" or "subject/program/process_time/real_time/threads:4".
Row rowNamed(const std::string& name)
{
    const std::string kClients = "/threads:";
    const std::size_t program = name.find('/') + 1;
    const std::size_t clients = name.rfind(kClients);
    return {name.substr(0, program - 1),
            clients == std::string::npos ? 0 : std::atoi(name.c_str() + clients + kClients.size()),
            name.substr(program, name.find('/', program) - program)};
}

void add(Rows& rows, const cJSON* run)
{
    if (text(run, "run_type") != "iteration") return;
    const std::string name = text(run, "run_name");
    if (cJSON_GetObjectItem(run, "error_occurred")) throw std::runtime_error(name + ": " + text(run, "error_message"));
    constexpr double kMicroseconds = 1e-3;  // in a nanosecond
    Samples& samples = rows[rowNamed(name)];
    samples.processor.push_back(number(run, "cpu_time") * kMicroseconds);
    samples.wall.push_back(number(run, "real_time") * kMicroseconds);
}

void addFile(Report& report, const char* path)
{
    std::ifstream file(path);
    const std::string json{std::istreambuf_iterator<char>(file), {}};
    const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> tree(cJSON_Parse(json.c_str()), cJSON_Delete);
    const cJSON* const runs = cJSON_GetObjectItem(tree.get(), "benchmarks");
    if (!runs) throw std::runtime_error(std::string(path) + " holds no rows");
    const int cpus = std::atoi(text(cJSON_GetObjectItem(tree.get(), "context"), "usable_cpus").c_str());
    if (cpus == 0) throw std::runtime_error(std::string(path) + " does not say on how many CPUs it ran");
    if (report.cpus != 0 && report.cpus != cpus) throw std::runtime_error("the files ran on different numbers of CPUs");
    report.cpus = cpus;
    const cJSON* run = nullptr;
    cJSON_ArrayForEach(run, runs) add(report.rows, run);
}

std::string titleOf(const Row& row)
{
    if (row.clients == 0) return row.subject;
    return row.subject + ", " + std::to_string(row.clients) + (row.clients == 1 ? " client" : " clients");
}

std::string spread(const std::vector<double>& values)
{
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    char line[80];
    std::snprintf(line, sizeof line, "%7.1f (%.1f to %.1f)", median(values), *least, *most);
    return line;
}

void printRows(const Rows& rows)
{
    std::printf("Microseconds for one: the median (the least to the most), of so many samples\n\n");
    std::printf("%-26s%-20s%-33s%-33s%s\n", "", "", "processor time", "wall time", "samples");
    for (const auto& [row, samples] : rows) {
        std::printf("%-26s%-20s%-33s%-33s%7zu\n", titleOf(row).c_str(), row.program.c_str(),
                    spread(samples.processor).c_str(), spread(samples.wall).c_str(), samples.wall.size());
    }
}

void printNames(const Row& row, const char* beside)
{
    std::printf("%-28s%-32s", titleOf(row).c_str(), (row.program + " / " + beside).c_str());
}

void printTarget(double toReach, bool isReached)
{
    std::printf("   %.2f: %s", toReach, isReached ? "reached" : "missed");
}

void printRatio(const Comparison& wanted, const Row& row, const Samples& samples, const Samples& beside, int cpus)
{
    const double processor = median(samples.processor) / median(beside.processor);
    const double wall = median(samples.wall) / median(beside.wall);
    printNames(row, wanted.beside);
    std::printf("%9.2f%9.2f", processor, wall);
    const bool isWanted = wanted.toReach > 0 && (wanted.where == Anywhere || cpus == 1);
    if (isWanted) printTarget(wanted.toReach, processor <= wanted.toReach);
    std::printf("\n");
}

/// Prints the comparison for every number of clients; false without any.
bool compare(const Report& report, const Comparison& wanted)
{
    bool found = false;
    for (const auto& [row, samples] : report.rows) {
        if (row.subject != wanted.subject || row.program != wanted.program) continue;
        const auto beside = report.rows.find({row.subject, row.clients, wanted.beside});
        if (beside == report.rows.end()) continue;
        printRatio(wanted, row, samples, beside->second, report.cpus);
        found = true;
    }
    return found;
}

void printRatios(const Report& report)
{
    std::printf("\nRatios of the medians\n\n%-60s%9s%9s   to reach, in processor time\n", "", "processor", "wall");
    for (const Comparison& wanted : kComparisons) {
        if (!compare(report, wanted))
            throw std::runtime_error(std::string(wanted.subject) + ", " + wanted.program + ": no such rows");
    }
}

double wallTime(const Rows& rows, const Row& row)
{
    const auto place = rows.find(row);
    if (place == rows.end()) throw std::runtime_error(titleOf(row) + ", " + row.program + ": no such row");
    return median(place->second.wall);
}

void printThroughputs(const Rows& rows)
{
    std::printf("\nRequests a second, by the medians of the wall time\n\n%-60s%9s   to reach\n", "", "times");
    for (const Throughput& wanted : kThroughputs) {
        const Row row{wanted.subject, wanted.clients, wanted.program};
        const double times = wallTime(rows, {wanted.subject, wanted.clients, wanted.beside}) / wallTime(rows, row);
        printNames(row, wanted.beside);
        std::printf("%9.2f", times);
        if (wanted.toReach > 0) printTarget(wanted.toReach, times >= wanted.toReach);
        std::printf("\n");
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        Report report;
        for (int i = 1; i < argc; ++i)
            addFile(report, argv[i]);
        printRows(report.rows);
        printRatios(report);
        if (report.cpus > 1) printThroughputs(report.rows);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench-report: %s\n", error.what());
        return 1;
    }
}
