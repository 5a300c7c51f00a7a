#pragma once

#include <chrono>
#include <cstdlib>
#include <string>

namespace OrvuTests {

/// How long a stress goes on: as many seconds as the environment variable ORVU_STRESS_SECONDS says, or two.
inline std::chrono::milliseconds stressTime()
{
    const char* const seconds = std::getenv("ORVU_STRESS_SECONDS");
    return std::chrono::seconds(seconds ? std::stoi(seconds) : 2);
}

}  // namespace OrvuTests
