#pragma once

#include <bitset>
#include <cstdint>
#include <string_view>

#include "messages/core/JsonValue.h"

namespace Orvu {

/// Finds the members of one object by their keys, as cJSON_GetObjectItem does: the first of that name, letter case
/// ignored (in ASCII). Keys that are asked for in the order of the text cost one comparison each. The places of the
/// first 32 members are remembered, so that another order costs little more; after them, a key may cost a walk through
/// the rest.
class MemberFinder {
public:
    /// A value that is not an object has no members.
    explicit MemberFinder(JsonValue object);

    /// The value of the member; none without one. The keys of contracts have no quotes or backslashes in them.
    JsonValue find(const char* key);

private:
    static constexpr unsigned kKept = 32;

    /// The key of a member in the text.
    struct Place {
        std::uint32_t at;     // its quote; 0 after the last one
        std::uint32_t entry;  // as in a value
    };
    struct Key : Place {
        std::uint32_t size;  // kOdd where its bytes must be decoded, or are many
    };
    static constexpr std::uint32_t kOdd = ~0u;
    static constexpr std::uint32_t kUnmeasured = kOdd - 1;

    const char* bytes(const Key& key) const;
    Key key(const char* at, std::uint32_t entry) const;
    Key measured(Key key) const;
    bool isNext(std::string_view name);
    Key keyAfter(JsonValue value) const;
    JsonValue value(const Key& key) const;
    bool isNamed(const Key& key, std::string_view name) const;
    unsigned sumOf(const Key& key) const;

    JsonValue search(std::string_view name, unsigned sum);
    JsonValue searchPassed(std::string_view name, unsigned sum) const;
    JsonValue pass(unsigned sum);

    const CheckedText* text_;
    bool nested_;
    Key next_{};               // the first that was not passed
    Key unkept_{};             // the first that was passed without being kept
    std::bitset<256> passed_;  // the sums of those that were passed
    unsigned count_ = 0;       // how many of them are kept
    std::uint8_t sums_[kKept];
    Place kept_[kKept];  // made without values: they would cost more than most objects do
};

}  // namespace Orvu
