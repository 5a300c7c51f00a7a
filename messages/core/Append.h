#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Orvu {

/// Appends to a list that a text fills. The first block has room for several small items: allocators give no smaller
/// one, and most lists need no other.
template <class Item>
void append(std::vector<Item>& list, Item item)
{
    constexpr std::size_t kSmallestBlock = 3 * sizeof(void*);
    constexpr std::size_t kItem = sizeof(Item);  // NOLINT(bugprone-sizeof-expression): an item may be a pointer
    if (list.capacity() == 0) list.reserve(std::max<std::size_t>(kSmallestBlock / kItem, 1));
    list.push_back(item);
}

}  // namespace Orvu
