#pragma once

#include <typeinfo>
#include <vector>

#include "orvu/Serializable.h"

namespace OrvuTests {

enum Mapping { Fallback, Mapped, NotMapped };

struct CatalogueRow {
    unsigned value;
    Orvu::DataType type;
    const char* wireName;
    Mapping mapping;              ///< Whether the header mapping knows the name.
    const std::type_info* makes;  ///< The class of what the factory makes; null for nothing.
};

/// The catalogue of messages as peers know it, written out: the tests hold the library's own against it.
extern const std::vector<CatalogueRow> kCatalogue;

}  // namespace OrvuTests
