#include "orvu/Keyset.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {
namespace {

constexpr char kInteractiveKeyset[] = "interactive_keys";

/// Appends the names, but for empty ones; all of them or, out of memory, none.
void appendNamed(std::vector<std::string>& keys, std::vector<std::string> names)
{
    names.erase(std::remove(names.begin(), names.end(), std::string()), names.end());
    keys.insert(keys.end(), std::make_move_iterator(names.begin()), std::make_move_iterator(names.end()));
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
    addIfMemoryAllows([&] { appendNamed(keys, std::move(names)); });
}

std::vector<std::string> GingaKeyset::getKeySetByName(std::string name)
{
    if (isInteractiveKeyset(name)) return {COLORED_KEYSET, SELECTION_KEYSET, CURSOR_KEYSET};  // no numeric keys
    const bool isBasic =
        isNumericKeyset(name) || isColoredKeyset(name) || isSelectionKeyset(name) || isCursorKeyset(name);
    return isBasic ? std::vector<std::string>{name} : std::vector<std::string>{};
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
    appendNamed(keyset.keys, std::move(names));
}

MESSAGE(GingaKeyset, Formatted)

}  // namespace Orvu
