#pragma once

#include <cstddef>
#include <cstdint>

namespace Orvu {

/// Where the long values of a text end: its objects, arrays, and texts, keys and white space above kLong bytes, in the
/// order in which they begin. The first few need no memory but this object.
class JsonIndex {
public:
    struct Entry {
        std::uint32_t end;   ///< One past its last byte.
        std::uint32_t next;  ///< Of an object or array: the first entry after it. Of others: where it begins.
    };
    static constexpr std::size_t kLong = 256;

    /// Never has room for more than `most` entries.
    explicit JsonIndex(std::uint32_t most) : most_(most) {}
    ~JsonIndex();
    JsonIndex(const JsonIndex&) = delete;
    JsonIndex& operator=(const JsonIndex&) = delete;

    std::uint32_t count() const { return count_; }
    Entry& operator[](std::uint32_t number) { return entries_[number]; }
    const Entry& operator[](std::uint32_t number) const { return entries_[number]; }

    /// False when out of memory.
    bool add(Entry entry)
    {
        if (count_ == capacity_ && !grow()) return false;
        entries_[count_++] = entry;
        return true;
    }

private:
    bool grow();

    static constexpr std::uint32_t kInlineEntries = 8;

    const std::uint32_t most_;
    std::uint32_t count_ = 0;
    std::uint32_t capacity_ = kInlineEntries;
    Entry* entries_ = inline_;
    Entry inline_[kInlineEntries];
};

}  // namespace Orvu
