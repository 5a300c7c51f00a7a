#include "support/Observed.h"

#include <csignal>
#include <dirent.h>
#include <fstream>
#include <unistd.h>

#include "support/BuiltProgram.h"

namespace OrvuTests {
namespace {

std::string folderOf(const std::string& process)
{
    return "/proc/" + process + "/task/";
}

std::string firstLineOf(const std::string& path)
{
    std::string line;
    std::getline(std::ifstream(path) >> std::ws, line);
    return line;
}

/// The text after `key` in a thread's status; empty when the thread is gone.
std::string statusOf(const std::string& process, int thread, const std::string& key)
{
    std::ifstream status(folderOf(process) + std::to_string(thread) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, key.size(), key) == 0) return line.substr(line.find_first_not_of(" \t", key.size()));
    return "";
}

/// Not of a fault, and none that no thread can block.
bool asksForSomething(int signal)
{
    for (const int other : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS, SIGPROF, SIGKILL, SIGSTOP})
        if (signal == other) return false;
    return true;
}

std::vector<int> threadsOf(const std::string& process)
{
    std::vector<int> threads;
    DIR* const folder = opendir(folderOf(process).c_str());
    if (!folder) return threads;
    while (const dirent* const entry = readdir(folder))
        if (entry->d_name[0] != '.') threads.push_back(std::stoi(entry->d_name));
    closedir(folder);
    return threads;
}

}  // namespace

std::vector<int> threadsNamed(const std::string& process, const std::string& name)
{
    std::vector<int> named;
    for (const int thread : threadsOf(process))
        if (firstLineOf(folderOf(process) + std::to_string(thread) + "/comm") == name) named.push_back(thread);
    return named;
}

int threadCount()
{
    return static_cast<int>(threadsOf("self").size());
}

long waitsOf(const std::string& process, int thread)
{
    const std::string number = statusOf(process, thread, "voluntary_ctxt_switches:");
    return number.empty() ? 0 : std::stol(number);
}

double processorTimeOf(const std::string& process)
{
    std::ifstream stat("/proc/" + process + "/stat");
    std::string field;
    std::getline(stat, field, ')');  // the name may hold blanks
    double ticks = 0;
    for (int i = 3; stat >> field && i <= 15; ++i)
        if (i >= 14) ticks += std::stod(field);
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

bool hasDescriptor(const std::string& process, int descriptor)
{
    char target[64];
    return readlink(("/proc/" + process + "/fd/" + std::to_string(descriptor)).c_str(), target, sizeof target) > 0;
}

bool hasTheLibrarysSignals(const std::string& process, int thread)
{
    const std::string blocked = statusOf(process, thread, "SigBlk:");
    const unsigned long long mask = blocked.empty() ? 0 : std::stoull(blocked, nullptr, 16);
    for (int number = 1; number < 32; ++number)
        if (asksForSomething(number) != ((mask >> (number - 1) & 1) == 1)) return false;
    return true;
}

}  // namespace OrvuTests
