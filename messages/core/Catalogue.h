#pragma once

#include <string_view>
#include <vector>

#include "messages/core/CheckedText.h"
#include "messages/core/Contract.h"
#include "orvu/Serializable.h"

namespace Orvu {

/// What the "HEADER" of a text names, in the two ways that the library needs. Logs as deserializeHeader() does.
/// `mapped` follows the header mapping; `named` is the catalogue's type of that name, also where the mapping leaves it
/// out. Both are DataTypeUnknown for a text that was refused, a missing "HEADER", one that is not a text, and any other
/// name; `isName` tells these from a "HEADER" that is "unknown".
struct HeaderTypes {
    DataType mapped = DataTypeUnknown;
    DataType named = DataTypeUnknown;
    bool isName = false;
};
HeaderTypes headerTypes(const CheckedText& checked);

/// Fills a message that factory(type) made from `text`, without checking it again where the class allows it. The
/// result, and the exceptions, are those of `message.deserialize(text)`.
bool fill(Serializable& message, const CheckedText& checked, const char* text);

/// What the catalogue says about a type.
struct CatalogueEntry {
    const char* wireName;
    Serializable* (*make)(
        DataType type);             ///< Also where factory() does not; null without a class. Throws std::bad_alloc.
    const Contract& (*contract)();  ///< Null without a class.
    DataType type;
    bool isFromHeader;  ///< Whether a received "HEADER" may name it.
    bool isMade;        ///< Whether factory() makes it.
};

/// Null for a value outside the catalogue, or a name that it does not have.
const CatalogueEntry* entryOf(DataType type);
const CatalogueEntry* entryNamed(std::string_view wireName);

/// Every wire name.
std::vector<std::string_view> wireNames();

}  // namespace Orvu
