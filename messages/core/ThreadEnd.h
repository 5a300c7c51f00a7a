#pragma once

#include <exception>

namespace Orvu {

/// For `catch (...)` around an application's code: pthread_exit() and cancelling may end a thread by unwinding its
/// stack, which is not a C++ exception and must go on.
inline void passThreadEndOn()
{
    if (!std::current_exception()) throw;
}

}  // namespace Orvu
