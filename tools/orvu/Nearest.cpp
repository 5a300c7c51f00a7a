#include "Nearest.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace OrvuTool {
namespace {

constexpr std::size_t kLettersPerSlip = 3;

bool isSameLetter(char one, char other)
{
    return std::tolower(static_cast<unsigned char>(one)) == std::tolower(static_cast<unsigned char>(other));
}

/// How many letters are changed, left out, added or swapped with their neighbour between the two words.
class Slips {
public:
    Slips(std::string_view one, std::string_view other)
        : one_(one), other_(other), width_(other.size() + 1), counts_((one.size() + 1) * width_)
    {
        for (std::size_t i = 0; i <= one.size(); ++i)
            for (std::size_t j = 0; j <= other.size(); ++j)
                at(i, j) = fewest(i, j);
    }

    std::size_t count() { return counts_.back(); }

private:
    std::size_t& at(std::size_t i, std::size_t j) { return counts_[i * width_ + j]; }

    /// Between the first `i` letters of the one and the first `j` of the other.
    std::size_t fewest(std::size_t i, std::size_t j)
    {
        if (i == 0 || j == 0) return i + j;
        const bool isSame = isSameLetter(one_[i - 1], other_[j - 1]);
        const std::size_t least = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (isSame ? 0 : 1)});
        const bool isSwapped =
            i > 1 && j > 1 && isSameLetter(one_[i - 1], other_[j - 2]) && isSameLetter(one_[i - 2], other_[j - 1]);
        return isSwapped ? std::min(least, at(i - 2, j - 2) + 1) : least;
    }

    std::string_view one_;
    std::string_view other_;
    std::size_t width_;
    std::vector<std::size_t> counts_;
};

}  // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& candidates)
{
    std::string_view found;
    std::size_t allowed = word.size() / kLettersPerSlip + 1;  // the next one must have fewer
    for (const std::string_view candidate : candidates) {
        const std::size_t longer = std::max(word.size(), candidate.size());
        if (candidate.empty() || longer - std::min(word.size(), candidate.size()) >= allowed) continue;
        const std::size_t slips = Slips(word, candidate).count();
        if (slips >= allowed) continue;
        found = candidate;
        allowed = slips;
    }
    return found;
}

}  // namespace OrvuTool
