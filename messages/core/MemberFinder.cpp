#include "messages/core/MemberFinder.h"

#include <algorithm>
#include <cstring>

#include "messages/core/JsonScan.h"

namespace Orvu {
namespace {

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

bool isSame(char a, char b)
{
    return a == b || lower(a) == lower(b);
}

bool isSame(std::string_view a, std::string_view b)
{
    return a.size() == b.size() &&
           (std::memcmp(a.data(), b.data(), a.size()) == 0 ||
            std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return isSame(x, y); }));
}

constexpr std::size_t kSummed = 64;  // bytes of a name

/// A number below 256 that names have in common when they are the same, letter case ignored. Others may share it.
unsigned sumOf(std::size_t size, char first, char last)
{
    return static_cast<unsigned>(size + 8 * (first & 0x1Fu) + 37 * (last & 0x1Fu)) & 0xFF;
}

unsigned sumOf(std::string_view name)
{
    if (name.empty()) return 0;
    const std::size_t size = std::min(name.size(), kSummed);
    return sumOf(size, name.front(), name[size - 1]);
}

unsigned sumOf(TextRuns name)
{
    std::string_view run = name.next();
    if (run.empty()) return 0;
    const char first = run.front();
    char last = first;
    std::size_t size = 0;
    for (; !run.empty() && size < kSummed; run = name.next()) {
        run = run.substr(0, kSummed - size);
        size += run.size();
        last = run.back();
    }
    return sumOf(size, first, last);
}

bool isSame(TextRuns text, std::string_view name)
{
    for (std::string_view run = text.next(); !run.empty(); run = text.next()) {
        if (!isSame(run, name.substr(0, run.size()))) return false;
        name.remove_prefix(run.size());
    }
    return name.empty();
}

/// The first `most` bytes from `at` on, or those that there are.
std::string_view upTo(std::size_t most, const char* at, const char* end)
{
    return {at, std::min(most, static_cast<std::size_t>(end - at))};
}

}  // namespace

MemberFinder::MemberFinder(JsonValue object) : text_(object.text_), nested_(object.nested_ != 0)
{
    if (!object.isObject()) return;
    std::uint32_t entry = object.entry_;
    const char* const first = text_->inside(object.at(), entry);
    next_ = key(first, entry);
}

JsonValue MemberFinder::find(const char* key)
{
    constexpr std::string_view kHeader = "HEADER";  // which nearly every message has, and hardly any asks for
    const std::string_view name = key;
    const unsigned sum = Orvu::sumOf(name);
    for (;;) {
        if (!passed_[sum] && isNext(name)) return pass(sum);
        if (!isNext(kHeader) || name == kHeader) return search(name, sum);
        pass(Orvu::sumOf(kHeader));
    }
}

/// Whether the next key is the name to the letter, as it usually is: that takes no look for its end.
bool MemberFinder::isNext(std::string_view name)
{
    if (!next_.at || name.size() > JsonIndex::kLong) return false;
    const char* const text = bytes(next_);
    const bool isSameText = static_cast<std::size_t>(text_->end() - text) > name.size() && text[name.size()] == '"' &&
                            std::memcmp(text, name.data(), name.size()) == 0;
    if (isSameText) next_.size = static_cast<std::uint32_t>(name.size());
    return isSameText;
}

/// The same for a name that is not the next, or that may have been passed before.
JsonValue MemberFinder::search(std::string_view name, unsigned sum)
{
    JsonValue found = passed_[sum] ? searchPassed(name, sum) : JsonValue();
    while (!found && next_.at) {
        next_ = measured(next_);
        const unsigned nextSum = sumOf(next_);
        const bool isFound = nextSum == sum && isNamed(next_, name);
        const JsonValue passed = pass(nextSum);
        if (isFound) found = passed;
    }
    return found;
}

JsonValue MemberFinder::searchPassed(std::string_view name, unsigned sum) const
{
    for (unsigned i = 0; i < count_; ++i) {
        if (sums_[i] != sum) continue;
        const Key kept = measured({kept_[i], kUnmeasured});
        if (isNamed(kept, name)) return value(kept);
    }
    for (Key other = unkept_; other.at && other.at != next_.at; other = measured(keyAfter(value(other)))) {
        if (isNamed(other, name)) return value(other);
    }
    return {};
}

/// Over the next member, whose value it returns.
JsonValue MemberFinder::pass(unsigned sum)
{
    passed_[sum] = true;
    if (count_ < kKept) {
        sums_[count_] = static_cast<std::uint8_t>(sum);
        kept_[count_++] = {next_.at, next_.entry};
    } else if (!unkept_.at) {
        unkept_ = next_;
    }
    const JsonValue passed = value(next_);
    next_ = keyAfter(passed);
    return passed;
}

/// After its quote.
const char* MemberFinder::bytes(const Key& key) const
{
    return text_->begin_ + key.at + 1;
}

bool MemberFinder::isNamed(const Key& key, std::string_view name) const
{
    const char* const text = bytes(key);
    if (key.size != kOdd) return isSame(std::string_view(text, key.size), name);
    // A byte of the name takes at most six of the key, and an escape twelve: of a longer key no more is looked at.
    const std::string_view most = upTo(6 * name.size() + 12, text, text_->end());
    return isSame(TextRuns(most.begin(), most.end()), name);
}

unsigned MemberFinder::sumOf(const Key& key) const
{
    const char* const text = bytes(key);
    if (key.size != kOdd) return Orvu::sumOf(std::string_view(text, key.size));
    return Orvu::sumOf(TextRuns(text, text_->end()));
}

MemberFinder::Key MemberFinder::key(const char* at, std::uint32_t entry) const
{
    if (!at) return {};
    return {{text_->offset(at), entry}, kUnmeasured};
}

MemberFinder::Key MemberFinder::measured(Key key) const
{
    if (!key.at || key.size != kUnmeasured) return key;
    const std::string_view most = upTo(JsonIndex::kLong, bytes(key), text_->end());
    const char* const end = plainEnd(most.begin(), most.end());
    key.size = *end == '"' ? static_cast<std::uint32_t>(end - most.begin()) : kOdd;
    return key;
}

/// The key after a member's value.
MemberFinder::Key MemberFinder::keyAfter(JsonValue value) const
{
    std::uint32_t entry = value.entry_;
    const char* const at = text_->afterComma(value.at(), entry);
    return key(at, entry);
}

JsonValue MemberFinder::value(const Key& key) const
{
    std::uint32_t entry = key.entry;
    if (key.size == kOdd) {
        const char* const at = text_->afterColon(bytes(key) - 1, entry);
        return {*text_, at, entry, nested_};
    }
    const char* const colon = text_->skipWhite(bytes(key) + key.size + 1, entry);
    const char* const at = text_->skipWhite(colon + 1, entry);
    return {*text_, at, entry, nested_};
}

}  // namespace Orvu
