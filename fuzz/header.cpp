#include <cstring>
#include <string>

#include "fuzz/Fuzz.h"
#include "messages/core/CJsonBridge.h"
#include "orvu/Serializable.h"

using namespace Orvu;

/// \file
/// What routes a message: Serializable::deserializeHeader() and Serializable::removeHeader(), on any text.

namespace OrvuFuzz {
namespace {

void checkType(const std::string& text, const cJSON* tree)
{
    const DataType type = Serializable::deserializeHeader(text.c_str());
    const cJSON* const header = cJSON_GetObjectItem(tree, "HEADER");
    const char* const name = cJSON_GetStringValue(header);
    require(type == DataTypeUnknown || (name && std::strcmp(name, Serializable::dataTypeString(type)) == 0),
            "a type is the one that the header names");
}

void checkRemoval(const std::string& text, const cJSON* tree)
{
    const JsonText without(Serializable::removeHeader(strdup(text.c_str())));
    require(!without == !tree, "the header is removed from any JSON, and from nothing else");
    if (!tree) return;
    const JsonTree rest = parseJson(without.get());
    require(rest != nullptr, "what is left is JSON");
    const int removed = cJSON_GetObjectItem(tree, "HEADER") ? 1 : 0;
    require(cJSON_GetArraySize(rest.get()) == cJSON_GetArraySize(tree) - removed, "only the header is removed");
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text = OrvuFuzz::textOf(bytes, size);
    const JsonTree tree = parseJson(text.c_str());
    OrvuFuzz::checkType(text, tree.get());
    OrvuFuzz::checkRemoval(text, tree.get());
    return 0;
}
