#pragma once

#include <mutex>
#include <random>

namespace OrvuTool {

/// What becomes of an answer.
enum class Fate {
    Sent,
    Closed,  ///< Nothing is sent; the connection closes.
    Cut      ///< A part is sent; the connection closes.
};

/// Draws the fate of one answer after the other. Any thread.
class Fates {
public:
    /// How many of a hundred answers are lost in each way, 100 together at most. The same seed draws the same fates.
    Fates(unsigned closePercent, unsigned cutPercent, unsigned seed)
        : closed_(closePercent), cut_(cutPercent), random_(seed)
    {}

    Fate next();

private:
    unsigned closed_;
    unsigned cut_;
    std::mutex mutex_;
    std::mt19937 random_;
};

}  // namespace OrvuTool
