#include "messages/core/JsonWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

#include "messages/core/Exact.h"

namespace Orvu {
namespace {

constexpr std::size_t kFirstCapacity = 512;
constexpr std::size_t kDigits = 11;  // of a 32-bit number, its sign included

/// The letter behind the backslash for the characters that JSON must escape, 'u' where cJSON has no short form, else 0.
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

void JsonWriter::header(const Serializable& message)
{
    put("HEADER", Serializable::dataTypeString(message.getDataType()));
}

void JsonWriter::headerIfSet(const Serializable& message)
{
    if (message.headerFlag_) header(message);
}

void JsonWriter::put(const char* key, const char* value)
{
    member(key);
    string(value);
}

void JsonWriter::put(const char* key, int value)
{
    member(key);
    integer(value);
}

void JsonWriter::put(const char* key, unsigned value)
{
    member(key);
    integer(value);
}

void JsonWriter::put(const char* key, bool value)
{
    member(key);
    value ? append("true", 4) : append("false", 5);
}

void JsonWriter::putNull(const char* key)
{
    member(key);
    null();
}

void JsonWriter::emptyList(const char* key)
{
    member(key);
    beginArray();
    endArray();
}

void JsonWriter::message(Serializable& message, const Contract& contract)
{
    beginObject();
    if (!failed_) contract.write(*this, message);  // nesting without end stops here
    endObject();
}

bool JsonWriter::embedMember(const char* key, Serializable& child, const Contract& contract, TextOfChild how)
{
    const Mark mark = here();
    member(key);
    return embed(child, contract, mark, how);
}

bool JsonWriter::embedElement(Serializable& child, const Contract& contract)
{
    const Mark mark = here();
    element();
    return embed(child, contract, mark);
}

bool JsonWriter::embed(Serializable& child, const Contract& contract, Mark mark, TextOfChild how)
{
    bool hasText = true;
    if (isExactly(child, *contract.type)) {
        const bool holderGaveUp = std::exchange(gaveUp_, false);
        message(child, contract);
        hasText = !std::exchange(gaveUp_, holderGaveUp);
    } else {
        const JsonText text(child.serialize());
        if (how == TextOfChild::Minified) cJSON_Minify(text.get());
        const JsonTree parsed = parseJson(text.get());
        if (parsed) tree(*parsed);
        hasText = parsed != nullptr;
    }
    if (!hasText) backTo(mark);
    return hasText;
}

void JsonWriter::tree(const cJSON& value)
{
    if (cJSON_IsObject(&value)) return objectTree(value);
    if (cJSON_IsArray(&value)) return arrayTree(value);
    if (cJSON_IsString(&value)) return string(value.valuestring);
    if (cJSON_IsNumber(&value)) return number(value);
    if (cJSON_IsTrue(&value)) return append("true", 4);
    if (cJSON_IsFalse(&value)) return append("false", 5);
    if (cJSON_IsNull(&value)) return append("null", 4);
    if (!cJSON_IsRaw(&value) || !value.valuestring) return static_cast<void>(fail());
    append(value.valuestring, std::strlen(value.valuestring));
}

void JsonWriter::objectTree(const cJSON& object)
{
    beginObject();
    for (const cJSON* item = object.child; item && !failed_; item = item->next) {
        newMember();
        string(item->string);
        colon();
        tree(*item);
    }
    endObject();
}

void JsonWriter::arrayTree(const cJSON& array)
{
    beginArray();
    for (const cJSON* item = array.child; item && !failed_; item = item->next) {
        element();
        tree(*item);
    }
    endArray();
}

char* JsonWriter::take()
{
    append('\0');
    if (failed_ || gaveUp_) return nullptr;
    return std::exchange(text_, nullptr);
}

void JsonWriter::backTo(Mark mark)
{
    size_ = mark.size;
    first_ = mark.first;
}

void JsonWriter::beginObject()
{
    enter('{');
    if (formatted_) append('\n');
}

void JsonWriter::endObject()
{
    if (formatted_ && !first_) append('\n');
    --depth_;
    first_ = false;
    indent();
    append('}');
}

void JsonWriter::beginArray()
{
    enter('[');
}

void JsonWriter::endArray()
{
    --depth_;
    first_ = false;
    append(']');
}

void JsonWriter::member(const char* key)
{
    newMember();
    append('"');
    append(key, std::strlen(key));  // our own keys need no escapes
    append('"');
    colon();
}

void JsonWriter::newMember()
{
    if (!first_) append(",\n", formatted_ ? 2 : 1);
    first_ = false;
    indent();
}

void JsonWriter::colon()
{
    append(":\t", formatted_ ? 2 : 1);
}

void JsonWriter::element()
{
    if (!first_) append(", ", formatted_ ? 2 : 1);
    first_ = false;
}

void JsonWriter::string(const char* value)
{
    append('"');
    const char* plain = value ? value : "";
    for (const char* end = plain;; plain = ++end) {
        while (!kEscapes[static_cast<unsigned char>(*end)])
            ++end;
        append(plain, static_cast<std::size_t>(end - plain));
        if (*end == '\0') break;
        escaped(static_cast<unsigned char>(*end));
    }
    append('"');
}

void JsonWriter::escaped(unsigned char c)
{
    constexpr char kHex[] = "0123456789abcdef";
    const char text[] = {'\\', kEscapes[c], '0', '0', kHex[c >> 4], kHex[c & 15]};
    append(text, kEscapes[c] == 'u' ? 6 : 2);
}

void JsonWriter::integer(int value)
{
    if (char* const to = room(kDigits))
        size_ = static_cast<std::size_t>(std::to_chars(to, to + kDigits, value).ptr - text_);
}

void JsonWriter::integer(unsigned value)
{
    if (char* const to = room(kDigits))
        size_ = static_cast<std::size_t>(std::to_chars(to, to + kDigits, value).ptr - text_);
}

void JsonWriter::number(const cJSON& value)
{
    char text[64] = "";  // cJSON writes at most 26
    const bool printed = cJSON_PrintPreallocated(const_cast<cJSON*>(&value), text, sizeof text, false);
    failed_ = failed_ || !printed;
    append(text, std::strlen(text));
}

void JsonWriter::enter(char bracket)
{
    if (++depth_ > kMaxDepth) fail();
    first_ = true;
    append(bracket);
}

void JsonWriter::append(char byte)
{
    if (char* const to = room(1)) {
        *to = byte;
        ++size_;
    }
}

void JsonWriter::append(const char* bytes, std::size_t size)
{
    if (char* const to = room(size)) {
        std::memcpy(to, bytes, size);
        size_ += size;
    }
}

void JsonWriter::indent()
{
    if (!formatted_) return;
    const std::size_t tabs = static_cast<std::size_t>(depth_);
    if (char* const to = room(tabs)) {
        std::memset(to, '\t', tabs);
        size_ += tabs;
    }
}

/// Where the next `size` bytes go; null after a failure.
char* JsonWriter::room(std::size_t size)
{
    if (failed_) return nullptr;
    if (size > capacity_ - size_ && !grow(size)) return nullptr;
    return text_ + size_;
}

bool JsonWriter::grow(std::size_t size)
{
    const std::size_t capacity = std::max({kFirstCapacity, 2 * capacity_, size_ + size});
    char* const text = static_cast<char*>(std::realloc(text_, capacity));
    if (!text) return fail();
    text_ = text;
    capacity_ = capacity;
    return true;
}

char* printed(const cJSON& value)
{
    JsonWriter json(PrintStyle::Formatted);
    json.tree(value);
    return json.take();
}

}  // namespace Orvu
