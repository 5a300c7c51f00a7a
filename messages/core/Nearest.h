#pragma once

#include <string_view>
#include <vector>

namespace Orvu {

/// The word that `word` may have been meant for: the one with the fewest letters changed, added, left out or
/// exchanged with their neighbour, letter case aside. Empty when none is near. `words` may hold `word` itself.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& words);

}  // namespace Orvu
