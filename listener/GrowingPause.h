#pragma once

#include <chrono>

namespace Orvu {

/// The pauses between attempts to connect: 1 s first, twice as long after each failure, 30 s at most.
class GrowingPause {
public:
    /// The next pause. `random`, from 0 to 1, leaves out up to a quarter of it, so that the clients of a restarted
    /// server do not all come back at once.
    std::chrono::milliseconds next(double random);

    /// An attempt succeeded: the next pause is the first again.
    void reset() { whole_ = kFirst; }

private:
    static constexpr std::chrono::milliseconds kFirst{1000};
    static constexpr std::chrono::milliseconds kLongest{30000};

    std::chrono::milliseconds whole_ = kFirst;
};

}  // namespace Orvu
