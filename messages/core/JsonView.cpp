#include "messages/core/JsonView.h"

#include <algorithm>
#include <climits>

#include "messages/core/CJsonBridge.h"
#include "messages/core/JsonScan.h"

namespace Orvu {
namespace {

/// A whole number of up to 15 digits. Every cJSON prints one as it is, so that it is the same in a nested text.
int saturated(const char* digits, const char* end, bool isNegative)
{
    std::int64_t number = 0;
    for (; digits != end; ++digits)
        number = 10 * number + (*digits - '0');
    if (isNegative) number = -number;
    return static_cast<int>(std::clamp<std::int64_t>(number, INT_MIN, INT_MAX));
}

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

bool JsonView::isNumber() const
{
    return isDigit(first()) || first() == '-';
}

std::string JsonView::text() const
{
    std::string text;
    copyTo(text);
    return text;
}

void JsonView::copyTo(std::string& text) const
{
    text.clear();
    TextRuns runs(*this);
    for (std::string_view run = runs.next(); !run.empty(); run = runs.next())
        text.append(run);
}

bool JsonView::equals(std::string_view text) const
{
    if (!isText()) return false;
    TextRuns runs(*this);
    for (std::string_view run = runs.next(); !run.empty(); run = runs.next()) {
        if (text.substr(0, run.size()) != run) return false;
        text.remove_prefix(run.size());
    }
    return text.empty();
}

bool JsonView::integer(NumberIn place, int& value) const
{
    if (isBoolean()) {
        value = first() == 't';
        return true;
    }
    if (!isNumber()) return false;
    const bool isNegative = *at_ == '-';
    const char* const digits = at_ + isNegative;
    const char* const end = afterDigits(digits);
    const bool isShort = end != digits && end - digits <= 15 && *end != '.' && !isExponent(*end);
    if (!isShort) return integerInCJson(source(), place, value);
    value = saturated(digits, end, isNegative);
    return true;
}

JsonView JsonView::next() const
{
    if (!text_ || at_ == text_->root_) return {};
    std::uint32_t entry = entry_;
    const char* const at = text_->behindComma(at_, entry);
    if (!at) return {};
    const JsonView item(*text_, at, entry);
    if (*at != '"' || *afterWhite(text_->behindString(at, entry)) != ':') return item;
    const char* const value = text_->behindColon(at, entry = item.entry_);
    return {*text_, value, entry};
}

std::string_view JsonView::source() const
{
    if (!text_) return {};
    std::uint32_t entry = entry_;
    return {at_, static_cast<std::size_t>(text_->behind(at_, entry) - at_)};
}

JsonItems::Iterator::Iterator(JsonView container) : isKeyed_(container.isObject())
{
    if (!isKeyed_ && !container.isArray()) return;
    std::uint32_t entry = container.entry_;
    const char* const first = container.text_->inside(container.at_, entry);
    take(*container.text_, first, entry);
}

JsonItems::Iterator& JsonItems::Iterator::operator++()
{
    const CheckedText& text = *member_.value.text_;
    std::uint32_t entry = member_.value.entry_;
    const char* const next = text.behindComma(member_.value.at_, entry);
    take(text, next, entry);
    return *this;
}

/// Takes the item or the member that begins at `place`; none is the end.
void JsonItems::Iterator::take(const CheckedText& text, const char* place, std::uint32_t entry)
{
    member_.value.text_ = nullptr;
    if (!place) return;
    if (isKeyed_) {
        member_.key = {text, place, entry};
        place = text.behindColon(place, entry);
    }
    member_.value = {text, place, entry};
}

TextRuns::TextRuns(JsonView text)
{
    if (!text.isText()) return;
    at_ = text.at_ + 1;
    end_ = text.text_->end_;
}

std::string_view TextRuns::next()
{
    const char* const run = at_;
    at_ = plainEnd(at_, end_);
    if (at_ != run) return {run, static_cast<std::size_t>(at_ - run)};
    if (at_ == end_ || *at_ == '"') return {};
    const Escape escape = escapeAt(at_, end_);
    if (escape.character == 0) return {};
    at_ += escape.size;
    return {decoded_, encode(escape.character, decoded_)};
}

}  // namespace Orvu
