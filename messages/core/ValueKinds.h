#pragma once

#include "messages/core/JsonValue.h"
#include "messages/core/ReadingWitness.h"

namespace Orvu {

/// \file
/// The kinds of values, as reports name them, and which of them a contract's line takes.

/// What a value is, such as "a text".
const char* nameOf(JsonValue value);
/// What is expected, such as "a number".
const char* nameOf(Expected::Kind kind);

/// Whether a list is expected.
bool isList(Expected::Kind kind);

/// Whether a value is of a kind that is taken where `kind` is expected.
bool accepts(Expected::Kind kind, JsonValue value);

}  // namespace Orvu
