#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <syslog.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"

/// log-child WHAT: a program that logs, for the tests of where its lines go.

// Takes the place of the system's: writes what it is given to standard output.
extern "C" void syslog(int priority, const char* format, ...)
{
    std::printf("<%d>", priority);
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::printf("\n");
}

namespace {

using Orvu::OrvuRestInterface;

void logFromManyThreads()
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([i] {
            const std::string filling(static_cast<std::size_t>(500 * i), static_cast<char>('a' + i));
            for (int turn = 0; turn < 500; ++turn)
                OrvuRestInterface::log("<%d %s>", i, filling.c_str());
        });
    for (std::thread& thread : threads)
        thread.join();
}

void logToNobody()
{
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
    OrvuRestInterface::log("nobody reads this");
    sigset_t pending;
    sigpending(&pending);
    std::printf("alive, %s\n", sigismember(&pending, SIGPIPE) == 1 ? "with a signal pending" : "without a signal");
}

void logWithoutFormatting()
{
    const auto* const wouldCrash = reinterpret_cast<const char*>(1);
    OrvuRestInterface::log("%s", wouldCrash);
    std::printf("alive\n");
}

}  // namespace

int main(int, char** arguments)
{
    const std::string what = arguments[1];
    if (what == "line") OrvuRestInterface::log("a %s of %d", "line", 1);
    if (what == "threads") logFromManyThreads();
    if (what == "nobody") logToNobody();
    if (what == "unformatted") logWithoutFormatting();
}
