#include "JsonTrees.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "orvu/Explanation.h"

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
            add(cJSON_IsNull(read) ? found.added : found.changed, path, compact(read) + " becomes " + compact(written));
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
        if (read == nullptr) return add(found.added, path, compact(written));
        if (!cJSON_IsNull(read)) add(found.lost, path, compact(read));  // null says nothing
    }

    static void add(std::vector<Difference>& differences, const std::string& path, const std::string& what)
    {
        differences.push_back({path.empty() ? "(the whole text)" : path, what});
    }
};

std::string faultOf(const Orvu::Finding& finding)
{
    if (finding.offset == 0) return finding.message;
    return finding.message + " (line " + std::to_string(finding.line) + ", column " + std::to_string(finding.column) +
           ")";
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
    if (parsed.tree)
        parsed.rest = text.substr(std::min(text.find_first_not_of(" \t\r\n", end - text.c_str()), text.size()));
    else
        parsed.fault = faultOf(Orvu::explain(text.c_str()).findings.front());
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
