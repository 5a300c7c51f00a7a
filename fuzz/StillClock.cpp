#include <ctime>

// The linker redirects the library's calls of `time` here, so that a message made a second later is the same.
extern "C" time_t __wrap_time(time_t* now)
{
    constexpr time_t kAlways = 1700000000;
    if (now) *now = kAlways;
    return kAlways;
}
