#pragma once

#include <new>

#include "messages/core/Catalogue.h"
#include "messages/core/Json.h"
#include "orvu/Serializable.h"

namespace Orvu {

/// \file
/// Calls into messages on behalf of an exchange, where an exception is a failure like any other.

/// The text of `message`; none for null and for what cannot be written. A class of the application's may throw anything.
inline JsonText textOf(Serializable* message)
{
    try {
        return JsonText(message ? message->serialize() : nullptr);
    } catch (...) {
        return nullptr;
    }
}

/// Whether `message` could be read from the tree of `text`. Throws only std::bad_alloc.
inline bool fill(Serializable& message, const cJSON* tree, const char* text)
{
    try {
        return fillFromTree(message, tree, text);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return false;
    }
}

}  // namespace Orvu
