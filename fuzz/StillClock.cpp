#include <ctime>

// The linker sends here what the library asks of `time`, so that a message that was made a second later is the same.
extern "C" time_t __wrap_time(time_t* now)
{
    constexpr time_t kAlways = 1700000000;
    if (now) *now = kAlways;
    return kAlways;
}
