#include "orvu/Keyset.h"

#include "messages/core/Forms.h"
#include "messages/core/Message.h"

namespace Orvu {
namespace {

constexpr char kInteractiveKeyset[] = "interactive_keys";

}  // namespace

const char* const GingaKeyset::NUMERIC_KEYSET = "numeric_keys";
const char* const GingaKeyset::COLORED_KEYSET = "colored_keys";
const char* const GingaKeyset::SELECTION_KEYSET = "selection_keys";
const char* const GingaKeyset::CURSOR_KEYSET = "cursor_keys";

GingaKeyset::GingaKeyset() : Serializable(kDataType) {}
GingaKeyset::~GingaKeyset() = default;

void GingaKeyset::addKeyset(std::vector<std::string> names)
{
    for (std::string& name : names) {
        if (!name.empty()) keys.push_back(std::move(name));
    }
}

std::vector<std::string> GingaKeyset::getKeySetByName(std::string name)
{
    std::vector<std::string> names;
    for (const char* basic : {NUMERIC_KEYSET, COLORED_KEYSET, SELECTION_KEYSET, CURSOR_KEYSET}) {
        const bool isOneOfThem = name == kInteractiveKeyset && basic != NUMERIC_KEYSET;  // without the numeric keys
        if (name == basic || isOneOfThem) names.emplace_back(basic);
    }
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
    keyset.addKeyset(std::move(names));  // which leaves empty names out
}

MESSAGE(GingaKeyset, Formatted)

}  // namespace Orvu
