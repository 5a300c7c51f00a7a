#pragma once

#include <mutex>
#include <random>

namespace OrvuTool {

/// What happens to an answer.
enum class Fate {
    Sent,
    Closed,  ///< Nothing is sent; the connection closes.
    Cut      ///< A part is sent; the connection closes.
};

/// Chooses the fate of each answer at random. Any thread.
class Fates {
public:
    /// The percentages of answers that are lost in each way, together at most 100. The same seed gives the same fates.
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
