#include "messages/core/JsonPrinter.h"

#include <array>
#include <charconv>
#include <cstring>

#include "messages/core/Json.h"

namespace Orvu {
namespace {

constexpr std::size_t kDigits = 11;  // of a 32-bit number, its sign included

/// The letter after the backslash for the characters that JSON must escape, 'u' where cJSON has no short form, else 0.
constexpr std::array<char, 256> kEscapes = [] {
    std::array<char, 256> escapes{};
    for (int c = 0; c < 0x20; ++c)
        escapes[c] = 'u';
    escapes['\b'] = 'b';
    escapes['\f'] = 'f';
    escapes['\n'] = 'n';
    escapes['\r'] = 'r';
    escapes['\t'] = 't';
    escapes['"'] = '"';
    escapes['\\'] = '\\';
    return escapes;
}();

}  // namespace

void JsonPrinter::beginObject()
{
    enter('{');
    if (formatted_) text_.append('\n');
}

void JsonPrinter::endObject()
{
    if (formatted_ && !first_) text_.append('\n');
    --depth_;
    first_ = false;
    indent();
    text_.append('}');
}

void JsonPrinter::beginArray()
{
    enter('[');
}

void JsonPrinter::endArray()
{
    --depth_;
    first_ = false;
    text_.append(']');
}

void JsonPrinter::enter(char bracket)
{
    if (++depth_ > kMaxDepth) text_.fail();
    first_ = true;
    text_.append(bracket);
}

void JsonPrinter::key(const char* key)
{
    newMember();
    text_.append('"');
    text_.append(key, std::strlen(key));
    text_.append('"');
    colon();
}

void JsonPrinter::anyKey(const char* key)
{
    newMember();
    text(key);
    colon();
}

void JsonPrinter::newMember()
{
    if (!first_) text_.append(",\n", formatted_ ? 2 : 1);
    first_ = false;
    indent();
}

void JsonPrinter::colon()
{
    text_.append(":\t", formatted_ ? 2 : 1);
}

void JsonPrinter::indent()
{
    if (formatted_) text_.append(static_cast<std::size_t>(depth_), '\t');
}

void JsonPrinter::element()
{
    if (!first_) text_.append(", ", formatted_ ? 2 : 1);
    first_ = false;
}

void JsonPrinter::text(const char* value)
{
    text_.append('"');
    const char* plain = value ? value : "";
    for (const char* end = plain;; plain = ++end) {
        while (!kEscapes[static_cast<unsigned char>(*end)])
            ++end;
        text_.append(plain, static_cast<std::size_t>(end - plain));
        if (*end == '\0') break;
        escaped(static_cast<unsigned char>(*end));
    }
    text_.append('"');
}

void JsonPrinter::escaped(unsigned char c)
{
    constexpr char kHex[] = "0123456789abcdef";
    const char text[] = {'\\', kEscapes[c], '0', '0', kHex[c >> 4], kHex[c & 15]};
    text_.append(text, kEscapes[c] == 'u' ? 6 : 2);
}

void JsonPrinter::number(int value)
{
    if (char* const to = text_.room(kDigits)) text_.endAt(std::to_chars(to, to + kDigits, value).ptr);
}

void JsonPrinter::number(unsigned value)
{
    if (char* const to = text_.room(kDigits)) text_.endAt(std::to_chars(to, to + kDigits, value).ptr);
}

void JsonPrinter::boolean(bool value)
{
    value ? text_.append("true", 4) : text_.append("false", 5);
}

void JsonPrinter::null()
{
    text_.append("null", 4);
}

void JsonPrinter::raw(const char* json)
{
    text_.append(json, std::strlen(json));
}

void JsonPrinter::backTo(Mark mark)
{
    text_.cut(mark.size);
    first_ = mark.first;
}

}  // namespace Orvu
