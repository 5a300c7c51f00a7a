#include "messages/core/Catalogue.h"

#include <new>
#include <string>
#include <string_view>

#include "log/Log.h"
#include "messages/core/Exact.h"
#include "messages/core/MemberFinder.h"
#include "messages/core/Message.h"
#include "messages/core/NewMessage.h"
#include "orvu/Orvu.h"

namespace Orvu {
namespace {

enum HeaderMapping : bool { NeverFromHeader = false, FromHeader = true };
enum Making : bool { NeverMade = false, Made = true };

template <class Message>
Serializable* make(DataType type)
{
    return newMessage<Message>(type);
}

/// Nothing, for a class that is only built by applications or travels nested, or for no class at all.
constexpr Serializable* (*kNothing)(DataType) = nullptr;

struct Row {
    DataType type;
    const char* wireName;
    HeaderMapping mapping;
    Serializable* (*make)(DataType type);
    const Contract& (*contract)();  ///< Null without a class.
};

constexpr Row kRows[] = {
#define ROW_AS(Type, Class, wireName, mapping, making) \
    {Type, wireName, mapping, making == Made ? make<Class> : kNothing, contractOf<Class>},
#define ROW_WITHOUT_CLASS(Type, wireName, mapping) {Type, wireName, mapping, kNothing, nullptr},
#include "messages/core/Catalogue.def"
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

const Row* rowOf(DataType type)
{
    return type < kRowCount ? &kRows[type] : nullptr;
}

// Logging a line takes most of a worker's stack. So what is on the stack beside it has functions of its own.

[[gnu::noinline]] JsonValue headerOf(const CheckedText& checked)
{
    return MemberFinder(checked.value()).find("HEADER");
}

[[gnu::noinline]] const Row* rowNamed(JsonValue wireName)
{
    std::string room;
    const std::string_view name = wireName.text(room);
    for (const Row& row : kRows) {
        if (row.wireName == name) return &row;
    }
    return nullptr;
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

const char* Serializable::dataTypeString(DataType type)
{
    const Row* const row = rowOf(type);
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
    const Row* const row = rowNamed(header);
    if (!row) {
        logHeaderOfNoRow(header);
        return {};
    }
    logHeader(row->wireName);
    return {row->mapping == FromHeader ? row->type : DataTypeUnknown, row->type, true};
}

Serializable* Serializable::factory(DataType type)
{
    logLine("factory: dataType: %s", dataTypeString(type));
    const Row* const row = rowOf(type);
    if (!row || !row->make) return nullptr;
    if (type == DataTypeUnknown) logLine("factory: Unknown");
    try {
        return row->make(type);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool fill(Serializable& message, const CheckedText& checked, const char* text)
{
    const Row* const row = rowOf(message.getDataType());
    const Contract* const contract = row && row->contract ? &row->contract() : nullptr;
    // Bounds have the type of a position, and a class of an application any that it likes.
    if (!checked || !contract || !isExactly(message, *contract->type)) return message.deserialize(text);
    return readValue(message, contract->read, checked.value());
}

}  // namespace Orvu
