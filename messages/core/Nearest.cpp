#include "messages/core/Nearest.h"

#include <algorithm>
#include <cstddef>

namespace Orvu {
namespace {

constexpr std::size_t kLongest = 64;  // bytes of a word that anybody compares

bool isSame(char a, char b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
    return lower(a) == lower(b);
}

/// How many letters have to be changed, added, left out or exchanged with their neighbour.
std::size_t distance(std::string_view a, std::string_view b)
{
    using Row = std::size_t[kLongest + 1];
    Row rows[3] = {};
    for (std::size_t j = 0; j <= b.size(); ++j)
        rows[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        Row& row = rows[i % 3];
        const Row& above = rows[(i - 1) % 3];
        const Row& twoAbove = rows[(i + 1) % 3];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + !isSame(a[i - 1], b[j - 1])});
            const bool isExchanged = i > 1 && j > 1 && isSame(a[i - 1], b[j - 2]) && isSame(a[i - 2], b[j - 1]);
            if (isExchanged) row[j] = std::min(row[j], twoAbove[j - 2] + 1);
        }
    }
    return rows[a.size() % 3][b.size()];
}

}  // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& words)
{
    std::string_view found;
    std::size_t least = word.size() < 6 ? 1 : 2;  // with more changes it is another word
    if (word.size() > kLongest) return found;
    for (const std::string_view candidate : words) {
        if (candidate.empty() || candidate.size() > kLongest) continue;
        const std::size_t changes = distance(word, candidate);
        if (changes > least || (changes == least && !found.empty()) || changes >= candidate.size()) continue;
        least = changes;
        found = candidate;
    }
    return found;
}

}  // namespace Orvu
