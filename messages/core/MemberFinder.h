#pragma once

#include <bitset>
#include <cstdint>
#include <string_view>

#include "messages/core/JsonView.h"

namespace Orvu {

/// Finds the members of one object by their keys, as cJSON_GetObjectItem does: the first of that name, letter case
/// ignored (in ASCII). Keys that are asked for in the order of the text cost one comparison each. The places of the
/// first 32 members are remembered, so that another order costs little more; behind them, a key may cost a walk through
/// the rest.
class MemberFinder {
public:
    /// A value that is no object has no members.
    explicit MemberFinder(JsonView object);

    /// The value of the member; none without one.
    JsonView find(const char* key);

private:
    static constexpr unsigned kKept = 32;

    /// The key of a member in the text.
    struct Key {
        const char* at;       // its quote; null behind the last one
        std::uint32_t entry;  // as in a view
        std::uint32_t size;   // kOdd where its bytes must be decoded, or are many
    };
    static constexpr std::uint32_t kOdd = ~0u;

    Key key(const char* at, std::uint32_t entry) const;
    Key behind(JsonView value) const;
    JsonView value(const Key& key) const;
    bool isNamed(const Key& key, std::string_view name) const;
    unsigned sumOf(const Key& key) const;

    JsonView search(std::string_view name, unsigned sum);
    JsonView searchPassed(std::string_view name, unsigned sum) const;
    JsonView pass(unsigned sum);

    const CheckedText* text_;
    Key next_{};               // the first that was not passed
    Key unkept_{};             // the first that was passed without being kept
    std::bitset<256> passed_;  // the sums of those that were passed
    unsigned count_ = 0;       // how many of them are kept
    std::uint8_t sums_[kKept];
    Key kept_[kKept];  // made without values: they would cost more than most objects do
};

}  // namespace Orvu
