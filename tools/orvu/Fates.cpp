#include "Fates.h"

namespace OrvuTool {

Fate Fates::next()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto drawn = static_cast<unsigned>(random_() % 100);  // not a distribution: those differ between systems
    if (drawn < closed_) return Fate::Closed;
    return drawn < closed_ + cut_ ? Fate::Cut : Fate::Sent;
}

}  // namespace OrvuTool
