#include "JsonText.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace OrvuTool {
namespace {

std::string compact(const cJSON* item)
{
    char* const text = cJSON_PrintUnformatted(item);
    const std::string copy = text != nullptr ? text : "";
    std::free(text);
    return copy;
}

void layOut(const cJSON* item, const std::string& indent, std::string& out)
{
    if (item->child == nullptr) {
        out += compact(item);
        return;
    }
    const bool object = cJSON_IsObject(item);
    const std::string deeper = indent + "  ";
    out += object ? "{" : "[";
    for (const cJSON* child = item->child; child != nullptr; child = child->next) {
        out += (child == item->child ? "\n" : ",\n") + deeper;
        if (object) out += quoted(child->string) + ": ";
        layOut(child, deeper, out);
    }
    out += "\n" + indent + (object ? "}" : "]");
}

bool isPlainWord(const char* key)
{
    if (*key == '\0') return false;
    for (; *key != '\0'; ++key)
        if (!std::isalnum(static_cast<unsigned char>(*key)) && *key != '_' && *key != '-') return false;
    return true;
}

std::string memberPath(const std::string& path, const char* key)
{
    if (!isPlainWord(key)) return path + "[" + quoted(key) + "]";
    return path.empty() ? key : path + "." + key;
}

/// Whether nothing is said: zero, an empty text, false, null, and what holds only such values.
bool isEmpty(const cJSON* item)
{
    if (cJSON_IsNumber(item)) return item->valuedouble == 0;
    if (cJSON_IsString(item)) return *item->valuestring == '\0';
    if (cJSON_IsTrue(item)) return false;
    for (const cJSON* child = item->child; child != nullptr; child = child->next)
        if (!isEmpty(child)) return false;
    return true;
}

/// Whether a null became an object that says nothing.
bool isDefault(const cJSON* read, const cJSON* written)
{
    return cJSON_IsNull(read) && cJSON_IsObject(written) && isEmpty(written);
}

/// Walks two trees side by side and collects where they differ.
class Comparison {
public:
    void compare(const std::string& path, const cJSON* read, const cJSON* written)
    {
        if (cJSON_IsObject(read) && cJSON_IsObject(written))
            compareMembers(path, read, written);
        else if (cJSON_IsArray(read) && cJSON_IsArray(written))
            compareItems(path, read->child, written->child);
        else if (!cJSON_Compare(read, written, true))
            add(isDefault(read, written) ? found.added : found.changed, path,
                compact(read) + " becomes " + compact(written));
    }

    Differences found;

private:
    void compareMembers(const std::string& path, const cJSON* read, const cJSON* written)
    {
        for (const cJSON* member = read->child; member != nullptr; member = member->next) {
            const cJSON* other = cJSON_GetObjectItemCaseSensitive(written, member->string);
            compareOrMiss(memberPath(path, member->string), member, other);
        }
        for (const cJSON* member = written->child; member != nullptr; member = member->next)
            if (cJSON_GetObjectItemCaseSensitive(read, member->string) == nullptr)
                compareOrMiss(memberPath(path, member->string), nullptr, member);
    }

    void compareItems(const std::string& path, const cJSON* read, const cJSON* written)
    {
        for (int i = 0; read != nullptr || written != nullptr; ++i) {
            compareOrMiss(path + "[" + std::to_string(i) + "]", read, written);
            if (read != nullptr) read = read->next;
            if (written != nullptr) written = written->next;
        }
    }

    void compareOrMiss(const std::string& path, const cJSON* read, const cJSON* written)
    {
        if (read != nullptr && written != nullptr) return compare(path, read, written);
        read != nullptr ? add(found.lost, path, compact(read)) : add(found.added, path, compact(written));
    }

    static void add(std::vector<Difference>& differences, const std::string& path, const std::string& what)
    {
        differences.push_back({path.empty() ? "(the whole text)" : path, what});
    }
};

/// A place in a text as a reader counts, both from 1 on; a column is a character of UTF-8.
std::string placeIn(const std::string& text, size_t at)
{
    const size_t lineFeed = at > 0 ? text.rfind('\n', at - 1) : std::string::npos;
    const size_t lineBegin = lineFeed == std::string::npos ? 0 : lineFeed + 1;
    const auto begin = text.begin();
    const auto line = std::count(begin, begin + static_cast<std::ptrdiff_t>(lineBegin), '\n') + 1;
    const auto characters =
        std::count_if(begin + static_cast<std::ptrdiff_t>(lineBegin), begin + static_cast<std::ptrdiff_t>(at),
                      [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0) != 0x80; });
    return "line " + std::to_string(line) + ", column " + std::to_string(characters + 1);
}

/// Follows brackets and quotes only, whatever stands between them.
class OpenParts {
public:
    void take(std::string_view bytes)
    {
        for (const char byte : bytes)
            take(byte);
    }

    bool isInString() const { return inString_; }

    /// The innermost part that has not ended.
    std::string innermost() const
    {
        if (inString_) return "a string";
        if (open_.empty()) return "a value";
        return open_.back() == '{' ? "an object" : "a list";
    }

private:
    void take(char byte)
    {
        if (isEscaped_ || (inString_ && byte != '"')) {
            isEscaped_ = !isEscaped_ && byte == '\\';
        } else if (byte == '"') {
            inString_ = !inString_;
        } else if (byte == '{' || byte == '[') {
            open_ += byte;
        } else if ((byte == '}' || byte == ']') && !open_.empty()) {
            open_.pop_back();
        }
    }

    std::string open_;  // the brackets without an end
    bool inString_ = false;
    bool isEscaped_ = false;
};

/// Whether a string that began before `bytes` ends in them.
bool endsString(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '"') return true;
        if (bytes[i] == '\\') ++i;
    }
    return false;
}

constexpr char kWhite[] = " \t\r\n";

/// Why `text` is not JSON, of which the parser read the first `at` bytes.
std::string faultOfText(const std::string& text, std::size_t at)
{
    const std::size_t end = text.find_last_not_of(kWhite) + 1;  // 0 without anything else
    if (end == 0) return "is empty";
    OpenParts parts;
    parts.take(std::string_view(text).substr(0, at));
    // A string without an end stops the parser where it begins.
    if (parts.isInString() && !endsString(std::string_view(text).substr(at))) at = text.size();
    if (at < end) return "is not JSON from " + placeIn(text, at) + " on";
    return "ends inside " + parts.innermost() + ", " + placeIn(text, end);
}

}  // namespace

std::string quoted(const char* text)
{
    const JsonTree string(cJSON_CreateString(text));
    return compact(string.get());
}

ParsedText parseText(const std::string& text)
{
    const char* end = nullptr;
    ParsedText parsed{JsonTree(cJSON_ParseWithOpts(text.c_str(), &end, false)), "", ""};
    const size_t at = end != nullptr ? static_cast<size_t>(end - text.c_str()) : 0;
    if (parsed.tree)
        parsed.rest = text.substr(std::min(text.find_first_not_of(kWhite, at), text.size()));
    else
        parsed.fault = faultOfText(text, at);
    return parsed;
}

std::string pretty(const cJSON* tree)
{
    std::string out;
    layOut(tree, "", out);
    return out;
}

Differences differences(const cJSON* read, const cJSON* written)
{
    Comparison comparison;
    comparison.compare("", read, written);
    return std::move(comparison.found);
}

}  // namespace OrvuTool
