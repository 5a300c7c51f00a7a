#pragma once

#include <chrono>
#include <string>
#include <thread>
#include <vector>

/// \file
/// What the system reports of a process. `process` is "self" or a process's number.

namespace OrvuTests {

using Clock = std::chrono::steady_clock;

/// Waits until `holds()`; false after 30 s.
template <class Condition>
bool eventually(Condition holds)
{
    const auto end = Clock::now() + std::chrono::seconds(30);
    while (!holds()) {
        if (Clock::now() > end) return false;
        std::this_thread::yield();
    }
    return true;
}

/// The threads of a process that carry this name, by their numbers.
std::vector<int> threadsNamed(const std::string& process, const std::string& name);

int threadCount();

/// How often a thread gave the processor away because it had to wait.
long waitsOf(const std::string& process, int thread);

/// The processor time that a process has used, in seconds.
double processorTimeOf(const std::string& process);

/// Whether a process has this descriptor open.
bool hasDescriptor(const std::string& process, int descriptor);

/// Whether a thread has all signals blocked that ask a process for something, and those of a fault and SIGPROF open.
bool hasTheLibrarysSignals(const std::string& process, int thread);

}  // namespace OrvuTests
