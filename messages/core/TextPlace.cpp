#include "messages/core/TextPlace.h"

#include <algorithm>

namespace Orvu {
namespace {

constexpr std::size_t kMostShown = 40;  // bytes

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool isPlainKey(std::string_view key)
{
    const auto isPlain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '-';
    };
    return !key.empty() && key.size() <= kMostShown && std::all_of(key.begin(), key.end(), isPlain);
}

std::string harmless(std::string_view text)
{
    std::size_t size = std::min(text.size(), kMostShown);
    while (size > 0 && size < text.size() && isContinuation(text[size]))
        --size;
    std::string shown(text.substr(0, size));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
    if (size < text.size()) shown += "...";
    return shown;
}

bool isInside(JsonValue value, std::size_t offset)
{
    return value.offset() <= offset && offset < value.offset() + value.source().size();
}

}  // namespace

std::string joined(std::initializer_list<std::string_view> pieces)
{
    std::string text;
    for (const std::string_view piece : pieces)
        text += piece;
    return text;
}

TextPlace placeOf(std::string_view text, std::size_t offset)
{
    const std::string_view before = text.substr(0, offset);
    const std::size_t lineFeed = before.rfind('\n');
    const std::string_view line = lineFeed == std::string_view::npos ? before : before.substr(lineFeed + 1);
    TextPlace place;
    place.line += static_cast<unsigned>(std::count(before.begin(), before.end(), '\n'));
    place.column += static_cast<unsigned>(line.size() - std::count_if(line.begin(), line.end(), isContinuation));
    return place;
}

std::string memberPath(const std::string& path, std::string_view key)
{
    if (!isPlainKey(key)) return joined({path, "[", quoted(key), "]"});
    return joined({path, path.empty() ? "" : ".", key});
}

std::string pathOf(JsonValue root, std::size_t offset)
{
    std::string path;
    for (JsonValue value = root; value && value.offset() != offset;) {
        JsonValue inner;
        std::size_t index = 0;
        std::string step;
        for (const JsonMember& member : value.members()) {
            if (!isInside(member.value, offset)) continue;
            inner = member.value;
            step = memberPath(path, member.key.text());
        }
        if (value.isArray()) {
            for (const JsonValue item : value.items()) {
                if (isInside(item, offset)) {
                    inner = item;
                    step = joined({path, "[", std::to_string(index), "]"});
                }
                ++index;
            }
        }
        path = step;
        value = inner;
    }
    return path;
}

std::string excerptOf(JsonValue value)
{
    return harmless(value.source());
}

std::string quoted(std::string_view text)
{
    return joined({"\"", harmless(text), "\""});
}

}  // namespace Orvu
