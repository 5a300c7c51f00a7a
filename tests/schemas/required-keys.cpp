#include <cstdio>
#include <stdexcept>

#include <cjson/cJSON.h>

#include "support/Messages.h"
#include "support/Samples.h"

/// Writes one JSON object into a file: for every message class the keys without which its filled text cannot be read,
/// as the library itself behaves.

namespace OrvuTests {
namespace {

bool reads(const Sample& sample, const cJSON* tree)
{
    char* const text = cJSON_PrintUnformatted(tree);
    bool result = false;
    try {
        result = sample.empty()->deserialize(text);
    } catch (const std::logic_error&) {
    }
    cJSON_free(text);
    return result;
}

/// The object under `path`, the tree itself for "".
cJSON* at(const Tree& tree, const std::string& path)
{
    return path.empty() ? tree.get() : cJSON_GetObjectItemCaseSensitive(tree.get(), path.c_str());
}

/// Adds the members of the object under `path` without which `text` cannot be read.
void addRequired(cJSON* names, const Sample& sample, const std::string& text, const std::string& path)
{
    const Tree whole = treeOf(text);
    for (const cJSON* member = at(whole, path)->child; member; member = member->next) {
        const Tree without = treeOf(text);
        cJSON_DeleteItemFromObjectCaseSensitive(at(without, path), member->string);
        const std::string name = path.empty() ? member->string : path + "." + member->string;
        if (!reads(sample, without.get())) cJSON_AddItemToArray(names, cJSON_CreateString(name.c_str()));
        if (member->string == sample.name && cJSON_IsObject(member)) addRequired(names, sample, text, member->string);
    }
}

void writeTo(std::FILE* file)
{
    cJSON* const all = cJSON_CreateObject();
    for (const Sample& sample : writtenSamples()) {
        addRequired(cJSON_AddArrayToObject(all, sample.name.c_str()), sample, textOf(*sample.filled()), "");
    }
    char* const text = cJSON_Print(all);
    std::fputs(text, file);
    cJSON_free(text);
    cJSON_Delete(all);
}

}  // namespace
}  // namespace OrvuTests

int main(int argc, char** argv)
{
    std::FILE* const file = argc == 2 ? std::fopen(argv[1], "w") : nullptr;  // some messages write to standard output
    if (!file) {
        std::fprintf(stderr, "usage: required-keys FILE\n");
        return 64;
    }
    OrvuTests::writeTo(file);
    return std::fclose(file) == 0 ? 0 : 74;
}
