#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <cjson/cJSON.h>

#include "messages/core/Json.h"
#include "messages/core/JsonPrinter.h"

/// \file
/// What the library leaves to cJSON, in this file alone: numbers that are not a short run of digits, so that their
/// values are its own, and trees for the classes that applications write. It gets copies, never a place in a text: it
/// measures what it is given up to its NUL. Where nothing else is said, functions throw std::bad_alloc when out of
/// memory.

namespace Orvu {

struct DeleteTree {
    void operator()(cJSON* tree) const { cJSON_Delete(tree); }
};

/// Owns a parsed tree.
using JsonTree = std::unique_ptr<cJSON, DeleteTree>;

/// The tree of `text`; empty when `text` is null or not JSON, and when out of memory. What follows the first JSON value
/// is ignored.
inline JsonTree parseJson(const char* text)
{
    return JsonTree(text ? cJSON_Parse(text) : nullptr);
}

/// How many characters of a number every cJSON reads. Some releases read no more of it.
constexpr std::size_t kSureNumberSize = 63;

/// Whether the installed cJSON reads numbers of any length.
bool cJsonReadsLongNumbers();

/// Whether numbers are written with "." in the current locale. Otherwise cJSON
/// reads a number with a "." in a way that depends on how it was built.
bool pointIsUsual();

/// How many of these characters the installed cJSON takes for a number; 0 when they do not begin with one.
std::size_t numberSizeInCJson(std::string_view characters);

/// The integer value that cJSON gives a number: truncated, and saturated at the ends of 32 bits. False, and `value`
/// stays, for a nested one that does not print as a number.
bool integerInCJson(std::string_view number, bool nested, int& value);

/// The tree of one value, whose JSON this is.
JsonTree treeInCJson(std::string_view value);

/// Prints a parsed value as cJSON prints it.
void printTree(JsonPrinter& json, const cJSON& value);

/// The formatted text of a parsed value, as cJSON_Print gives it, but made by `malloc` whatever cJSON's hooks are. Null
/// for more than kMaxDepth levels and when out of memory.
char* printed(const cJSON& value);

/// Prints the value of a text as one value. False when the text is null or not JSON. `text` is changed where it is to
/// be minified first: comments may be in it then.
bool printParsed(JsonPrinter& json, char* text, bool isMinified);

/// Calls `child.deserializeObject` with the tree of one value; with `error` unless that is null.
bool readTree(Serializable& child, std::string_view value, unsigned char* error);

}  // namespace Orvu
