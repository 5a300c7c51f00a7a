#include "listener/GrowingPause.h"

#include <algorithm>

namespace Orvu {

std::chrono::milliseconds GrowingPause::next(double random)
{
    const std::chrono::milliseconds whole = whole_;
    whole_ = std::min(2 * whole, kLongest);
    return std::chrono::duration_cast<std::chrono::milliseconds>(whole * (1 - random / 4));
}

}  // namespace Orvu
