#pragma once

#include <cstring>
#include <typeinfo>

#include "orvu/Serializable.h"

namespace Orvu {

/// The type of the object that `message` points to; null when its class comes from code built without run-time type
/// information, where `typeid` and `dynamic_cast` would read through a null pointer.
inline const std::type_info* typeOf(const Serializable& message)
{
    // Itanium C++ ABI, 2.5.2: the type information stands right before the first function of the virtual table.
    const std::type_info* const* virtualTable = nullptr;
    std::memcpy(&virtualTable, static_cast<const void*>(&message), sizeof virtualTable);
    return virtualTable[-1];
}

/// Whether `message` is of the class `type` itself, and not of a class derived from it, which an application may have
/// written. "No" for objects of unknown type.
inline bool isExactly(const Serializable& message, const std::type_info& type)
{
    const std::type_info* const found = typeOf(message);
    return found && *found == type;
}

}  // namespace Orvu
