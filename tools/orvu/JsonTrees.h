#pragma once

#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "messages/core/CJsonBridge.h"

namespace OrvuTool {

using Orvu::JsonTree;

/// A parsed text, or why it is not JSON.
struct ParsedText {
    JsonTree tree;      ///< Empty when the text is not JSON.
    std::string fault;  ///< Says where, by line and column.
    std::string rest;   ///< What follows the JSON value, white space before it left out; the library never reads it.
};

ParsedText parseText(const std::string& text);

/// `text` as a JSON string: safe to print, whatever it holds.
std::string quoted(const char* text);

/// The same JSON laid out for reading, two spaces per level, without a line feed at the end.
std::string pretty(const cJSON* tree);

/// A place where a text and the one written from it differ, such as "services[2].serviceName", and how, such as
/// `"A" becomes "B"`.
struct Difference {
    std::string path;
    std::string what;
};

/// All of them; the order of members does not count.
struct Differences {
    std::vector<Difference> lost;     ///< Only in the text.
    std::vector<Difference> changed;  ///< Other values.
    std::vector<Difference> added;    ///< Only in the written text, or there instead of a null: defaults.
};
Differences differences(const cJSON* read, const cJSON* written);

}  // namespace OrvuTool
