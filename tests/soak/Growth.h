#pragma once

#include <string>
#include <vector>

/// \file
/// Whether a process that did the same for a long time takes more at the end than after warming up.

namespace OrvuTests {

/// What a process at rest takes of the system.
struct Sample {
    double seconds = 0;   ///< Since the beginning.
    double resident = 0;  ///< Memory, in MiB.
    double descriptors = 0;
    double threads = 0;
};

/// Two medians of one thing that was sampled: in the second fifth of the run, and in the last one. The first fifth is
/// there to warm up.
struct Course {
    double early = 0;
    double late = 0;
};

/// Of at least five samples.
Course courseOf(double Sample::*value, const std::vector<Sample>& samples);

/// Whether there are more descriptors or threads, by a single one; or more memory, by 5 % or 1 MiB, whichever is more:
/// allocators keep what they are given back, and how much of it moves with the order of the threads.
bool grows(const std::vector<Sample>& samples);

}  // namespace OrvuTests
