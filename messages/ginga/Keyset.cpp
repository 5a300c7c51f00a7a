#include "orvu/Keyset.h"

#include <cstddef>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"

namespace Orvu {
namespace {

constexpr char kInteractiveKeyset[] = "interactive_keys";

/// Appends the names, but for empty ones.
void appendNamed(std::vector<std::string>& keys, std::vector<std::string>& names)
{
    for (std::string& name : names) {
        if (!name.empty()) keys.push_back(std::move(name));
    }
}

}  // namespace

const char* const GingaKeyset::NUMERIC_KEYSET = "numeric_keys";
const char* const GingaKeyset::COLORED_KEYSET = "colored_keys";
const char* const GingaKeyset::SELECTION_KEYSET = "selection_keys";
const char* const GingaKeyset::CURSOR_KEYSET = "cursor_keys";

GingaKeyset::GingaKeyset() : Serializable(kDataType) {}
GingaKeyset::~GingaKeyset() = default;

void GingaKeyset::addKeyset(std::vector<std::string> names)
{
    const std::size_t before = keys.size();
    try {
        appendNamed(keys, names);
    } catch (...) {  // all of them, or none
        while (keys.size() > before)
            keys.pop_back();
    }
}

std::vector<std::string> GingaKeyset::getKeySetByName(std::string name)
{
    const bool isInteractive = name == kInteractiveKeyset;
    const std::pair<const char*, bool> groups[] = {
        {NUMERIC_KEYSET, name == NUMERIC_KEYSET},  // not one of the interactive keys
        {COLORED_KEYSET, isInteractive || name == COLORED_KEYSET},
        {SELECTION_KEYSET, isInteractive || name == SELECTION_KEYSET},
        {CURSOR_KEYSET, isInteractive || name == CURSOR_KEYSET},
    };
    std::vector<std::string> names;
    for (const auto& [group, isNamed] : groups)
        if (isNamed) names.emplace_back(group);
    return names;
}

bool GingaKeyset::isNumericKeyset(std::string name)
{
    return name == NUMERIC_KEYSET;
}
bool GingaKeyset::isColoredKeyset(std::string name)
{
    return name == COLORED_KEYSET;
}
bool GingaKeyset::isSelectionKeyset(std::string name)
{
    return name == SELECTION_KEYSET;
}
bool GingaKeyset::isCursorKeyset(std::string name)
{
    return name == CURSOR_KEYSET;
}
bool GingaKeyset::isInteractiveKeyset(std::string name)
{
    return name == kInteractiveKeyset;
}

void write(JsonWriter& json, GingaKeyset& keyset)
{
    json.header(keyset);
    json.list("keyset", keyset.keys);
    json.putIf(keyset.releaseKeyset, "releaseKeyset", true);  // a flag that is off is never written
}

void read(JsonReader& json, GingaKeyset& keyset)
{
    std::vector<std::string> names;
    json.required("keyset", names);
    json.optional("releaseKeyset", keyset.releaseKeyset);
    appendNamed(keyset.keys, names);
}

MESSAGE(GingaKeyset, Formatted)

}  // namespace Orvu
