#include <cstdlib>

namespace {

/// Wherever the log of whoever runs the tests goes, that of the test programs goes where they expect it. Before
/// QuietLog.cpp, which a program may have beside this.
[[gnu::constructor(101)]] void forgetLogPlace()
{
    unsetenv("ORVU_LOG");
}

}  // namespace
