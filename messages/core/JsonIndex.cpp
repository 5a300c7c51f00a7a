#include "messages/core/JsonIndex.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace Orvu {

JsonIndex::~JsonIndex()
{
    if (entries_ != inline_) std::free(entries_);
}

bool JsonIndex::grow()
{
    constexpr std::uint32_t kFirstHeapEntries = 64;  // allocators have small blocks at hand
    const std::uint32_t capacity = std::min(std::max(2 * capacity_, kFirstHeapEntries), most_);
    const bool isInline = entries_ == inline_;
    void* const block = std::realloc(isInline ? nullptr : entries_, capacity * sizeof(Entry));
    if (!block) return false;
    if (isInline) std::memcpy(block, inline_, sizeof inline_);
    entries_ = static_cast<Entry*>(block);
    capacity_ = capacity;
    return true;
}

}  // namespace Orvu
