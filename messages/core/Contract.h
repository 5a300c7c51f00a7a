#pragma once

#include <cstddef>
#include <typeinfo>

#include "orvu/Serializable.h"

namespace Orvu {

class JsonReader;
class JsonWriter;

/// The two styles of cJSON: cJSON_Print's and cJSON_PrintUnformatted's.
enum class PrintStyle { Formatted, Compact };

/// The wire contract of a message class: the one function that writes its members and the one that reads them.
struct Contract {
    void (*write)(JsonWriter& json, Serializable& message);
    void (*read)(JsonReader& json, Serializable& message);
    PrintStyle style;            ///< Of a text of its own; a child takes the style of its holder.
    std::size_t size;            ///< Of a new object in memory, with those that its constructor makes.
    const std::type_info* type;  ///< The class itself; objects of classes derived from it write and read themselves.
};

/// The contract of a class, by which other messages embed it. CONTRACT (see Message.h) defines it in the class's own
/// file; a class without one does not compile as a child.
template <class Message>
const Contract& contractOf() = delete;

/// The size of the objects that the constructor of a class makes, where it makes any.
template <class Message>
constexpr std::size_t kHeldSize = 0;

// Every class of the catalogue has one.
#define ORVU_ROW_AS(Type, Class, ...) \
    class Class;                      \
    template <>                       \
    const Contract& contractOf<Class>();
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"

}  // namespace Orvu
