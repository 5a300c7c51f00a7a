#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// A fuzz target: reads any bytes, and ends the program when a check fails.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace OrvuFuzz {

/// Ends the program, and so makes its input a finding, unless `holds`.
inline void require(bool holds, const char* sentence)
{
    if (holds) return;
    std::fprintf(stderr, "Does not hold: %s\n", sentence);
    std::abort();
}

inline std::string textOf(const std::uint8_t* bytes, std::size_t size)
{
    return std::string(reinterpret_cast<const char*>(bytes), size);
}

}  // namespace OrvuFuzz
