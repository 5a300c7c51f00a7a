#include "messages/core/Catalogue.h"

#include <new>
#include <string>
#include <string_view>

#include "log/Log.h"
#include "messages/core/Exact.h"
#include "messages/core/MemberFinder.h"
#include "messages/core/Message.h"
#include "messages/core/NewMessage.h"
#include "orvu/BinaryData.h"
#include "orvu/ClientApplications.h"
#include "orvu/Codecs.h"
#include "orvu/EventDescriptors.h"
#include "orvu/EventInformation.h"
#include "orvu/Files.h"
#include "orvu/GingaApps.h"
#include "orvu/GingaEditCommand.h"
#include "orvu/Keyset.h"
#include "orvu/MediaPlayers.h"
#include "orvu/Ncl.h"
#include "orvu/PairingScreens.h"
#include "orvu/PlatformCapabilities.h"
#include "orvu/Position.h"
#include "orvu/Properties.h"
#include "orvu/Results.h"
#include "orvu/ServiceComponents.h"
#include "orvu/Services.h"
#include "orvu/StreamEvents.h"
#include "orvu/TargetApplications.h"

namespace Orvu {
namespace {

enum HeaderMapping : bool { NeverFromHeader = false, FromHeader = true };
enum Making : bool { NeverMade = false, Made = true };

template <class Message>
Serializable* make(DataType type)
{
    return newMessage<Message>(type);
}

constexpr CatalogueEntry kRows[] = {
#define ORVU_ROW_AS(Type, Class, wireName, mapping, making) \
    {wireName, make<Class>, contractOf<Class>, Type, mapping == FromHeader, making == Made},
#define ORVU_ROW_WITHOUT_CLASS(Type, wireName, mapping) \
    {wireName, nullptr, nullptr, Type, mapping == FromHeader, false},
#include "orvu/Catalogue.def"
};

constexpr std::size_t kRowCount = sizeof kRows / sizeof kRows[0];

constexpr bool rowsStandAtTheirTypes()
{
    for (std::size_t i = 0; i < kRowCount; ++i) {
        if (kRows[i].type != i) return false;
    }
    return true;
}
static_assert(rowsStandAtTheirTypes());

// Logging a line takes most of a worker's stack. So what is on the stack beside it has functions of its own.

[[gnu::noinline]] JsonValue headerOf(const CheckedText& checked)
{
    return MemberFinder(checked.value()).find("HEADER");
}

[[gnu::noinline]] const CatalogueEntry* entryIn(JsonValue wireName)
{
    std::string room;
    return entryNamed(wireName.text(room));
}

void logHeader(const char* name)
{
    logLine("deserializeHeader: %s: %s", "HEADER", name);
}

[[gnu::noinline]] void logHeaderOfNoRow(JsonValue name)
{
    logHeader(name.text().c_str());
}

}  // namespace

const CatalogueEntry* entryOf(DataType type)
{
    return type < kRowCount ? &kRows[type] : nullptr;
}

const CatalogueEntry* entryNamed(std::string_view wireName)
{
    for (const CatalogueEntry& row : kRows) {
        if (row.wireName == wireName) return &row;
    }
    return nullptr;
}

std::vector<std::string_view> wireNames()
{
    std::vector<std::string_view> names;
    for (const CatalogueEntry& row : kRows)
        names.emplace_back(row.wireName);
    return names;
}

const char* Serializable::dataTypeString(DataType type)
{
    const CatalogueEntry* const row = entryOf(type);
    return row ? row->wireName : "";
}

DataType Serializable::deserializeHeader(const char* text)
{
    return headerTypes(CheckedText(text)).mapped;
}

HeaderTypes headerTypes(const CheckedText& checked)
{
    if (!checked) return {};
    const JsonValue header = headerOf(checked);
    if (!header) {
        logLine("deserializeHeader: Cannot found '%s' in json!", "HEADER");
        return {};
    }
    if (!header.isText()) return {};
    const CatalogueEntry* const row = entryIn(header);
    if (!row) {
        logHeaderOfNoRow(header);
        return {};
    }
    logHeader(row->wireName);
    return {row->isFromHeader ? row->type : DataTypeUnknown, row->type, true};
}

Serializable* Serializable::factory(DataType type)
{
    logLine("factory: dataType: %s", dataTypeString(type));
    const CatalogueEntry* const row = entryOf(type);
    if (!row || !row->isMade) return nullptr;
    if (type == DataTypeUnknown) logLine("factory: Unknown");
    try {
        return row->make(type);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool fill(Serializable& message, const CheckedText& checked, const char* text)
{
    const CatalogueEntry* const row = entryOf(message.getDataType());
    const Contract* const contract = row && row->contract ? &row->contract() : nullptr;
    // Bounds have the type of a position, and a class of an application any that it likes.
    if (!checked || !contract || !isExactly(message, *contract->type)) return message.deserialize(text);
    return readValue(message, contract->read, checked.value());
}

}  // namespace Orvu
