#pragma once

#include <string_view>
#include <vector>

namespace OrvuTool {

/// The candidate that `word` is most likely meant to be; empty when none is near enough.
///
/// One that differs in the case of its letters alone comes first; then the one with the fewest letters changed, left
/// out, added or swapped with their neighbour, one for every three letters at most. The first of equals. Letters are
/// ASCII.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& candidates);

}  // namespace OrvuTool
