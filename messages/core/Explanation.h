#pragma once

#include <string>

#include "messages/core/CheckedText.h"
#include "orvu/Explanation.h"

namespace Orvu {

/// The first fault of a text that was accepted and could not be read as `type`, in one line; it is read once more for
/// that. Throws std::bad_alloc.
std::string firstFault(CheckedText& checked, DataType type);

}  // namespace Orvu
