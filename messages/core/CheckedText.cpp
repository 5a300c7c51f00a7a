#include "messages/core/CheckedText.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "messages/core/CJsonBridge.h"
#include "messages/core/JsonScan.h"
#include "messages/core/JsonValue.h"

namespace Orvu {
namespace {

constexpr std::size_t kRoom = 16u << 20;  // bytes of objects, beside twice the text

/// The first byte after the byte order mark and white space.
const char* valueBegin(const char* text, const char* end)
{
    constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
    const bool isMarked = std::strncmp(text, kByteOrderMark, 3) == 0;
    return afterWhite(isMarked ? text + 3 : text, end);
}

/// The first byte after the longest number that begins here; null when none does.
const char* numberEnd(const char* at)
{
    const char* const whole = at + (*at == '-');
    at = afterDigits(whole);
    bool hasDigits = at != whole;
    if (*at == '.') {
        const char* const fraction = at + 1;
        at = afterDigits(fraction);
        hasDigits = hasDigits || at != fraction;
    }
    if (!hasDigits) return nullptr;
    if (!isExponent(*at)) return at;
    const char* const exponent = at + 1 + (at[1] == '+' || at[1] == '-');
    const char* const end = afterDigits(exponent);
    return end != exponent ? end : at;
}

}  // namespace

CheckedText::CheckedText(const char* text)
    : begin_(text ? text : ""),
      size_(std::strlen(begin_)),
      room_(kRoom + 2 * size_),
      index_(kMaxContainers + static_cast<std::uint32_t>(size_ / JsonIndex::kLong))
{
    try {
        offset(end()) == size_ ? check() : static_cast<void>(refuse(Refusal::TooLarge));
    } catch (const std::bad_alloc&) {
        refuse(Refusal::OutOfMemory);
    }
}

JsonValue CheckedText::value() const
{
    return refusal_ == Refusal::None ? JsonValue(*this, begin_ + root_, 0, false) : JsonValue();
}

void CheckedText::keep() const
{
    if (kept_) return;
    kept_.reset(static_cast<char*>(std::malloc(size_ + 1)));
    if (!kept_) throw std::bad_alloc();
    std::memcpy(kept_.get(), begin_, size_ + 1);
    begin_ = kept_.get();
}

void CheckedText::keepFrom(const std::string& field) const
{
    const std::less_equal<const char*> notAfter;
    if (notAfter(field.data(), begin_) && notAfter(begin_, field.data() + field.size())) keep();
}

void CheckedText::takeRoom(std::size_t size) const
{
    if (size > room_) throw TooMuch();
    room_ -= size;
}

void CheckedText::setWitness(ReadingWitness* witness)
{
    witness_ = witness;
    room_ = kRoom + 2 * size_;
}

/// Goes from the beginning of each value to that of the next.
void CheckedText::check()
{
    const char* at = valueBegin(begin_, end());
    root_ = offset(at);
    while (at)
        at = *at == '{' || *at == '[' ? enter(at) : next(scalar(at));
}

/// The value after a finished one, out of everything that ends here. Null at the end of the text's value, and where
/// the finished one was refused.
const char* CheckedText::next(const char* at)
{
    while (at && closer_) {
        at = overWhite(at);
        if (*at == ',') {
            at = overWhite(at + 1);
            return closer_ == '}' ? key(at) : at;
        }
        at = *at == closer_ ? leave(at) : refuse(at);
    }
    return nullptr;
}

/// The first value of an object or array. Its entry keeps what is needed to leave it again.
inline const char* CheckedText::enter(const char* at)
{
    if (depth_ == kMaxDepth) return refuse(at);
    if (containers_ == kMaxContainers) return refuse(Refusal::TooLarge);
    if (!index_.add({static_cast<unsigned char>(closer_), open_})) return refuse(Refusal::OutOfMemory);
    open_ = index_.count() - 1;
    ++containers_;
    ++depth_;
    closer_ = *at == '{' ? '}' : ']';
    at = overWhite(at + 1);
    if (*at == closer_) return next(at);
    return closer_ == '}' ? key(at) : at;
}

const char* CheckedText::leave(const char* at)
{
    JsonIndex::Entry& left = index_[open_];
    closer_ = static_cast<char>(left.end);
    open_ = left.next;
    --depth_;
    left = {offset(++at), index_.count()};
    return at;
}

/// The value of a key.
const char* CheckedText::key(const char* at)
{
    if (*at != '"') return refuse(at);
    at = string(at);
    if (!at) return nullptr;
    at = overWhite(at);
    return *at == ':' ? overWhite(at + 1) : refuse(at);
}

/// Long white space gets an entry, so that readers do not walk it again. When memory runs out they do.
const char* CheckedText::overMuchWhite(const char* at)
{
    const char* const begin = at;
    at = afterWhite(at, end());
    if (static_cast<std::size_t>(at - begin) > JsonIndex::kLong) index_.add({offset(at), offset(begin)});
    return at;
}

const char* CheckedText::scalar(const char* at)
{
    if (*at == '"') return string(at);
    return isDigit(*at) || *at == '-' ? number(at) : word(at);
}

const char* CheckedText::word(const char* at)
{
    for (const char* word : {"true", "false", "null"}) {
        const std::size_t size = std::strlen(word);
        if (std::strncmp(at, word, size) == 0) return at + size;
    }
    return refuse(at);
}

const char* CheckedText::number(const char* at)
{
    const char* const digits = at + (*at == '-');
    const char* const end = afterDigits(digits);
    const bool isWhole = end != digits && *end != '.' && !isExponent(*end);
    return isWhole && static_cast<std::size_t>(end - at) <= kSureNumberSize ? end : rareNumber(at);
}

const char* CheckedText::rareNumber(const char* at)
{
    const char* const end = numberEnd(at);
    if (!end) return refuse(at);
    auto size = static_cast<std::size_t>(end - at);
    if (size > kSureNumberSize && !cJsonReadsLongNumbers()) size = kSureNumberSize;
    if (std::memchr(at, '.', size) && !pointIsUsual()) size = numberSizeInCJson({at, size});
    return size != 0 ? at + size : refuse(at);
}

const char* CheckedText::string(const char* at)
{
    const char* const quote = plainEnd(at + 1, end());
    return *quote == '"' ? indexed(at, quote + 1) : escapedString(at, quote);
}

/// The same from its first escape on; from the end of the text for a string that has none.
const char* CheckedText::escapedString(const char* begin, const char* at)
{
    while (at != end()) {
        const char* const first = at;
        at = takeUnicodes(afterShortEscapes(at), end(), [](std::uint32_t) {});
        if (at == first) {
            const Escape escape = escapeAt(at, end());
            if (escape.size == 0) return refuse(at);
            if (escape.character == 0) return oddString(begin);
            at += escape.size;
        }
        if (*at != '\\') at = plainEnd(at, end());
        if (*at == '"') return indexed(begin, at + 1);
    }
    return refuse(at);
}

/// A string with a U+0000 in it, whose escape may have taken a backslash that covers the byte after it, even a quote.
/// So its end is looked for first.
const char* CheckedText::oddString(const char* begin)
{
    const char* const quote = closingQuote(begin + 1, end());
    if (quote == end()) return refuse(quote);
    for (const char* at = begin + 1; at < quote; ++at) {
        if (*at != '\\') continue;
        const Escape escape = escapeAt(at, quote);
        if (escape.size == 0) return refuse(at);
        at += escape.size - 1;
    }
    return indexed(begin, quote + 1);
}

/// The first byte after a string, which gets an entry when it is long.
const char* CheckedText::indexed(const char* begin, const char* end)
{
    const bool isLong = static_cast<std::size_t>(end - begin) > JsonIndex::kLong + 2;
    return !isLong || index_.add({offset(end), offset(begin)}) ? end : refuse(Refusal::OutOfMemory);
}

/// The first byte after a value.
const char* CheckedText::afterValue(const char* at, std::uint32_t& entry) const
{
    switch (*at) {
        case '"':
            return afterString(at, entry);
        case '{':
        case '[':
            at = begin_ + index_[entry].end;
            entry = index_[entry].next;
            return at;
        case 't':
        case 'n':
            return at + 4;
        case 'f':
            return at + 5;
        default:
            return afterNumberCharacters(at);
    }
}

/// The same for a text or key.
const char* CheckedText::afterString(const char* at, std::uint32_t& entry) const
{
    if (const char* const end = afterLong(at, entry)) return end;
    return isPlain(at) ? at + plain_.size + 2 : closingQuote(at + 1, end()) + 1;
}

/// The first byte after a long text, key or white space, which has an entry; null for others. The entry is its own when
/// it begins here: that of an object or array has another number there.
const char* CheckedText::afterLong(const char* at, std::uint32_t& entry) const
{
    if (entry >= index_.count() || index_[entry].next != offset(at)) return nullptr;
    const char* const end = begin_ + index_[entry].end;
    if (end[-1] == '}' || end[-1] == ']') return nullptr;
    ++entry;
    return end;
}

const char* CheckedText::skipMuchWhite(const char* at, std::uint32_t& entry) const
{
    if (!isWhite(*at)) return at;  // the entry that begins here is that of a long text
    const char* const end = afterLong(at, entry);
    return end ? end : afterWhite(at, this->end());
}

/// Whether a text has no escapes; plain_ is that text then.
bool CheckedText::isPlain(const char* at) const
{
    if (plain_.at == offset(at)) return true;
    const char* const quote = plainEnd(at + 1, end());
    if (*quote != '"') return false;
    plain_ = {offset(at), static_cast<std::uint32_t>(quote - at - 1)};
    return true;
}

/// The first item of an array, or the first key of an object; null when it is empty.
const char* CheckedText::inside(const char* at, std::uint32_t& entry) const
{
    ++entry;
    at = skipWhite(at + 1, entry);
    return *at != '}' && *at != ']' ? at : nullptr;
}

/// The item or key that follows a value in its array or object; null after the last.
const char* CheckedText::afterComma(const char* at, std::uint32_t& entry) const
{
    at = skipWhite(afterValue(at, entry), entry);
    return *at == ',' ? skipWhite(at + 1, entry) : nullptr;
}

/// The value of a key.
const char* CheckedText::afterColon(const char* at, std::uint32_t& entry) const
{
    const char* const colon = skipWhite(afterString(at, entry), entry);
    return skipWhite(colon + 1, entry);
}

/// Null, with which the check ends.
const char* CheckedText::refuse(const char* at)
{
    root_ = offset(at);
    refusal_ = Refusal::NotJson;
    return nullptr;
}

const char* CheckedText::refuse(Refusal why)
{
    refusal_ = why;
    return nullptr;
}

}  // namespace Orvu
