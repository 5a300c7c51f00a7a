#include "messages/core/JsonValue.h"

#include <algorithm>
#include <climits>

#include "messages/core/CJsonBridge.h"
#include "messages/core/JsonScan.h"

namespace Orvu {
namespace {

/// Writes the character as UTF-8, and returns how many bytes it took.
std::size_t encode(std::uint32_t character, char* to)
{
    const auto tail = [character](int shift) { return static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        to[0] = static_cast<char>(character);
        return 1;
    }
    if (character < 0x800) {
        to[0] = static_cast<char>(0xC0 | character >> 6);
        to[1] = tail(0);
        return 2;
    }
    if (character < 0x10000) {
        to[0] = static_cast<char>(0xE0 | character >> 12);
        to[1] = tail(6);
        to[2] = tail(0);
        return 3;
    }
    to[0] = static_cast<char>(0xF0 | character >> 18);
    to[1] = tail(12);
    to[2] = tail(6);
    to[3] = tail(0);
    return 4;
}

}  // namespace

bool JsonValue::isNumber() const
{
    return isDigit(first()) || first() == '-';
}

std::string JsonValue::text() const
{
    if (isText() && text_->isPlain(at())) return {at() + 1, text_->plain_.size};  // one step: made as it is to be
    std::string text;
    copyTo(text);
    return text;
}

std::string_view JsonValue::text(std::string& room) const
{
    if (!isText()) return {};
    if (text_->isPlain(at())) return {at() + 1, text_->plain_.size};
    copyTo(room);
    return room;
}

void JsonValue::copyTo(std::string& field) const
{
    if (text_) text_->keepFrom(field);
    if (isText() && text_->isPlain(at())) {
        field.assign(at() + 1, text_->plain_.size);
        return;
    }
    field.clear();
    TextRuns runs(*this);
    for (std::string_view run = runs.next(); !run.empty(); run = runs.next()) {
        // Decoding makes a text no longer: room is made once, for all that may come.
        if (!runs.isAtEnd() && field.empty()) field.reserve(source().size());
        field.append(run);
    }
}

bool JsonValue::equals(std::string_view text) const
{
    if (!isText()) return false;
    TextRuns runs(*this);
    for (std::string_view run = runs.next(); !run.empty(); run = runs.next()) {
        if (text.substr(0, run.size()) != run) return false;
        text.remove_prefix(run.size());
    }
    return text.empty();
}

bool JsonValue::integer(int& value) const
{
    if (!isNumber()) {
        if (!isBoolean()) return false;
        value = first() == 't';
        return true;
    }
    const bool isNegative = first() == '-';
    const char* const digits = at() + isNegative;
    const char* end = digits;
    std::uint64_t number = 0;
    for (; isDigit(*end); ++end)
        number = 10 * number + static_cast<unsigned>(*end - '0');
    // Every cJSON prints a whole number of up to 15 digits as it is, so that it is the same in a nested text.
    const bool isShort = end != digits && end - digits <= 15 && *end != '.' && !isExponent(*end);
    if (!isShort) return integerInCJson(source(), nested_ != 0, value);
    const auto signedNumber = isNegative ? -static_cast<std::int64_t>(number) : static_cast<std::int64_t>(number);
    value = static_cast<int>(std::clamp<std::int64_t>(signedNumber, INT_MIN, INT_MAX));
    return true;
}

JsonValue JsonValue::next() const
{
    if (!text_ || at_ == text_->root_) return {};
    std::uint32_t entry = entry_;
    const char* const place = text_->afterComma(at(), entry);
    if (!place) return {};
    const JsonValue item(*text_, place, entry, nested_ != 0);
    if (*place != '"' || *text_->skipWhite(text_->afterString(place, entry), entry) != ':') return item;
    const char* const value = text_->afterColon(place, entry = item.entry_);
    return {*text_, value, entry, nested_ != 0};
}

JsonValue JsonValue::nested() const
{
    JsonValue same = *this;
    same.nested_ = true;
    return same;
}

std::string_view JsonValue::source() const
{
    if (!text_) return {};
    std::uint32_t entry = entry_;
    return {at(), static_cast<std::size_t>(text_->afterValue(at(), entry) - at())};
}

JsonItems::Iterator::Iterator(JsonValue container) : isKeyed_(container.isObject()), nested_(container.nested_ != 0)
{
    if (!isKeyed_ && !container.isArray()) return;
    std::uint32_t entry = container.entry_;
    const char* const first = container.text_->inside(container.at(), entry);
    take(*container.text_, first, entry);
}

JsonItems::Iterator& JsonItems::Iterator::operator++()
{
    const CheckedText& text = *member_.value.text_;
    std::uint32_t entry = member_.value.entry_;
    const char* const next = text.afterComma(member_.value.at(), entry);
    take(text, next, entry);
    return *this;
}

/// Takes the item or the member that begins at `place`; none is the end.
void JsonItems::Iterator::take(const CheckedText& text, const char* place, std::uint32_t entry)
{
    member_.value.text_ = nullptr;
    if (!place) return;
    if (isKeyed_) {
        member_.key = {text, place, entry, nested_};
        place = text.afterColon(place, entry);
    }
    member_.value = {text, place, entry, nested_};
}

std::size_t JsonItems::size() const
{
    std::size_t count = 0;
    for (Iterator item = begin(); item != end(); ++item)
        ++count;
    return count;
}

TextRuns::TextRuns(JsonValue text)
{
    if (!text.isText()) return;
    at_ = text.at() + 1;
    end_ = text.text_->end();
}

std::string_view TextRuns::next()
{
    const char* const run = at_;
    const char* const escape = plainEnd(at_, end_);
    if (escape == end_ || *escape == '"' || escape - run >= kFewPlain) {
        at_ = escape;
        return {run, static_cast<std::size_t>(escape - run)};
    }
    return {decoded_, gather()};
}

/// Decodes what follows into decoded_, as much as there is room for. Returns how much it is.
std::size_t TextRuns::gather()
{
    const char* at = at_;
    char* to = decoded_;
    while (hasRoom(to) && end_ - at > 1 && *at != '"') {
        if (*at != '\\') {
            *to++ = *at++;
        } else if (const char character = kShortEscapes[at[1]]) {
            *to++ = character;
            at += 2;
        } else {
            const char* const escape = at;
            at = decodeUnicodes(at, to);
            if (at == escape) break;
        }
    }
    at_ = at;
    return static_cast<std::size_t>(to - decoded_);
}

bool TextRuns::hasRoom(const char* to) const
{
    return decoded_ + sizeof decoded_ - to >= kMostBytes;
}

/// Decodes `\u` escapes for which there is room. Returns what follows; of U+0000 itself.
const char* TextRuns::decodeUnicodes(const char* at, char*& to) const
{
    const std::ptrdiff_t count = (decoded_ + sizeof decoded_ - to) / kMostBytes;
    const char* const most = at + std::min(end_ - at, count * kUnicodeSize);
    const char* const next = takeUnicodes(at, most, [&to](std::uint32_t each) { to += encode(each, to); });
    if (next != at) return next;
    const Escape escape = escapeAt(at, end_);
    if (escape.character == 0) return at;
    to += encode(escape.character, to);
    return at + escape.size;
}

}  // namespace Orvu
