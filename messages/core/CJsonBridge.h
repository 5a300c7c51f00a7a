#pragma once

#include <cstddef>
#include <string_view>

#include "messages/core/Json.h"

namespace Orvu {

/// \file
/// What is left to cJSON when a text is read without its tree: it reads copies of what is rare, so that the result is
/// its own. All of them throw std::bad_alloc when out of memory.

enum class NumberIn;

/// How many characters of a number every cJSON reads. Some releases read no more of it.
constexpr std::size_t kSureNumberSize = 63;

/// Whether the installed cJSON reads numbers of any length.
bool cJsonReadsLongNumbers();

/// Whether numbers are written with "." in the current locale. Where they are not, it depends on how cJSON was built
/// what it makes of a number with a ".".
bool pointIsUsual();

/// How many of these characters the installed cJSON takes for a number; 0 when they do not begin with one.
std::size_t numberSizeInCJson(std::string_view characters);

/// The integer value that cJSON gives a number: truncated, and saturated at the ends of 32 bits. False, and `value`
/// stays, for a nested one that prints as no number.
bool integerInCJson(std::string_view number, NumberIn place, int& value);

/// The tree of one value, whose text this is.
JsonTree treeInCJson(std::string_view value);

}  // namespace Orvu
