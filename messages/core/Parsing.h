#pragma once

#include "orvu/Serializable.h"

namespace Orvu {

/// A new message of the type that a text's "HEADER" names, filled from the text, which is checked once; the caller's.
/// Null when it names none that is made, when the text cannot be read as that type, and when out of memory.
Serializable* messageIn(const char* text);

}  // namespace Orvu
