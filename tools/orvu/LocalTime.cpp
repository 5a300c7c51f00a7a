#include "LocalTime.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace OrvuTool {

std::string localTime()
{
    const auto now = std::chrono::system_clock::now();
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    char day[32];
    char text[40];
    std::strftime(day, sizeof day, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(text, sizeof text, "%s.%03d", day, static_cast<int>(sinceEpoch.count() % 1000));
    return text;
}

}  // namespace OrvuTool
