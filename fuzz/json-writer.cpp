#include <cstring>
#include <string>

#include "fuzz/Fuzz.h"
#include "messages/core/CJsonBridge.h"

using namespace Orvu;

/// \file
/// JsonPrinter beside cJSON: any tree is written byte for byte as cJSON prints it.

namespace OrvuFuzz {
namespace {

JsonText written(const cJSON& tree, PrintStyle style)
{
    JsonPrinter json(style);
    printTree(json, tree);
    return JsonText(json.take());
}

void requireSame(const JsonText& ours, const JsonText& theirs)
{
    require(ours && theirs && std::strcmp(ours.get(), theirs.get()) == 0, "a tree is written as cJSON prints it");
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using namespace OrvuFuzz;
    const JsonTree tree = parseJson(textOf(bytes, size).c_str());
    if (!tree) return 0;
    requireSame(written(*tree, PrintStyle::Formatted), JsonText(cJSON_Print(tree.get())));
    requireSame(written(*tree, PrintStyle::Compact), JsonText(cJSON_PrintUnformatted(tree.get())));
    return 0;
}
