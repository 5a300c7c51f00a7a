#include <algorithm>
#include <cstdio>
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
/// The files are Google Benchmark's JSON. Ends with 1 when a row failed or one that is to be compared is missing.

namespace {

/// One row: what was done, with how many clients at once, and by which program.
struct Row {
    std::string subject;
    int clients;
    std::string program;

    bool operator<(const Row& other) const
    {
        return std::tie(subject, clients, program) < std::tie(other.subject, other.clients, other.program);
    }
};

/// What was measured of a row, in microseconds, one number a repetition.
struct Samples {
    std::vector<double> processor;
    std::vector<double> wall;
};

using Rows = std::map<Row, Samples>;

/// Two programs to compare.
struct Comparison {
    const char* subject;
    const char* program;
    const char* beside;
    double toReach;  // the ratio of the processor times; 0 where none is set
};

constexpr Comparison kComparisons[] = {
    {"tiny exchange", "orvu", "cJSON", 1.15},  {"tiny exchange", "orvu, logging", "cJSON", 0},
    {"tiny exchange", "orvu", "limit", 0},     {"tiny exchange", "cJSON", "limit", 0},
    {"list exchange", "orvu", "limit", 5.5},   {"list exchange", "orvu, logging", "limit", 0},
    {"list exchange", "cJSON", "limit", 0},    {"reading a list", "orvu", "cJSON", 1.15},
    {"writing a list", "orvu", "cJSON", 0.30},
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

/// From "subject/program/process_time/real_time/threads:4".
Row rowNamed(const std::string& name, int clients)
{
    const std::size_t subject = name.find('/');
    const std::size_t program = name.find('/', subject + 1);
    return {name.substr(0, subject), clients, name.substr(subject + 1, program - subject - 1)};
}

void add(Rows& rows, const cJSON* run)
{
    if (text(run, "run_type") != "iteration") return;
    const std::string name = text(run, "run_name");
    if (cJSON_GetObjectItem(run, "error_occurred")) throw std::runtime_error(name + ": " + text(run, "error_message"));
    constexpr double kMicroseconds = 1e-3;  // in a nanosecond
    Samples& samples = rows[rowNamed(name, static_cast<int>(number(run, "threads")))];
    samples.processor.push_back(number(run, "cpu_time") * kMicroseconds);
    samples.wall.push_back(number(run, "real_time") * kMicroseconds);
}

void addFile(Rows& rows, const char* path)
{
    std::ifstream file(path);
    const std::string json{std::istreambuf_iterator<char>(file), {}};
    const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> tree(cJSON_Parse(json.c_str()), cJSON_Delete);
    const cJSON* const runs = cJSON_GetObjectItem(tree.get(), "benchmarks");
    if (!runs) throw std::runtime_error(std::string(path) + " holds no rows");
    const cJSON* run = nullptr;
    cJSON_ArrayForEach(run, runs) add(rows, run);
}

std::string titleOf(const Row& row)
{
    return row.subject + ", " + std::to_string(row.clients) + (row.clients == 1 ? " client" : " clients");
}

std::string spread(const std::vector<double>& values)
{
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    char line[80];
    std::snprintf(line, sizeof line, "%8.1f (%.1f to %.1f)", median(values), *least, *most);
    return line;
}

void printRows(const Rows& rows)
{
    std::printf("Microseconds for one, median (least to most)\n\n%-28s%-16s%-32s%s\n", "", "", "   processor time",
                "   wall time");
    for (const auto& [row, samples] : rows) {
        std::printf("%-28s%-16s%-32s%s\n", titleOf(row).c_str(), row.program.c_str(), spread(samples.processor).c_str(),
                    spread(samples.wall).c_str());
    }
}

void printRatio(const Comparison& wanted, const Row& row, const Samples& samples, const Samples& beside)
{
    const double processor = median(samples.processor) / median(beside.processor);
    const double wall = median(samples.wall) / median(beside.wall);
    std::printf("%-28s%-26s%8.2f%8.2f", titleOf(row).c_str(), (row.program + " / " + wanted.beside).c_str(), processor,
                wall);
    if (wanted.toReach > 0)
        std::printf("   %.2f  %s", wanted.toReach, processor <= wanted.toReach ? "reached" : "missed");
    std::printf("\n");
}

/// Prints the comparison for every number of clients; how many those are.
int compare(const Rows& rows, const Comparison& wanted)
{
    int found = 0;
    for (const auto& [row, samples] : rows) {
        if (row.subject != wanted.subject || row.program != wanted.program) continue;
        const auto beside = rows.find({row.subject, row.clients, wanted.beside});
        if (beside == rows.end()) continue;
        printRatio(wanted, row, samples, beside->second);
        ++found;
    }
    return found;
}

void printRatios(const Rows& rows)
{
    std::printf("\nRatios of the medians\n\n%-28s%-26s%8s%8s   to reach\n", "", "", "proc.", "wall");
    for (const Comparison& wanted : kComparisons) {
        if (compare(rows, wanted) == 0)
            throw std::runtime_error(std::string(wanted.subject) + ", " + wanted.program + ": no such rows");
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        Rows rows;
        for (int i = 1; i < argc; ++i)
            addFile(rows, argv[i]);
        printRows(rows);
        printRatios(rows);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench-report: %s\n", error.what());
        return 1;
    }
}
