#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "messages/core/JsonValue.h"

namespace Orvu {

/// Pieces of text, one after the other.
std::string joined(std::initializer_list<std::string_view> pieces);

/// A place in a text as people count it, each from 1.
struct TextPlace {
    unsigned line = 1;
    unsigned column = 1;  ///< In characters of UTF-8.
};
TextPlace placeOf(std::string_view text, std::size_t offset);

/// The way from `root` to the value that begins at `offset`, such as "schedule[2].name"; empty for the root itself.
std::string pathOf(JsonValue root, std::size_t offset);

/// The way to a member of what `path` leads to.
std::string memberPath(const std::string& path, std::string_view key);

/// The JSON of a value for one line of a report: its first 40 bytes or so, without control characters.
std::string excerptOf(JsonValue value);

/// A text of a peer for one line of a report, in quotes, as short and as harmless.
std::string quoted(std::string_view text);

}  // namespace Orvu
