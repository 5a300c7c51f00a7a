#pragma once

#include <memory>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

namespace OrvuTool {

struct DeleteTree {
    void operator()(cJSON* tree) const { cJSON_Delete(tree); }
};

/// Owns a parsed tree.
using JsonTree = std::unique_ptr<cJSON, DeleteTree>;

/// A parsed text, or why it is no JSON.
struct ParsedText {
    JsonTree tree;      ///< Empty when the text is no JSON.
    std::string fault;  ///< Says where, in bytes from the start.
    std::string rest;   ///< What follows the JSON value, white space before it left out; the library never reads it.
};

ParsedText parseText(const std::string& text);

/// `text` as a JSON string: safe to print, whatever it holds.
std::string quoted(const char* text);

/// The same JSON laid out for reading, two blanks a level, without a line feed at the end.
std::string pretty(const cJSON* tree);

/// How `written` differs from `read`, one line for each place, such as `services[2].serviceName: "A" becomes "B"`. The order
/// of members does not count.
std::vector<std::string> differences(const cJSON* read, const cJSON* written);

/// How many of these places are lost or changed. What `written` only adds does not count, such as a default, or an
/// object in the place of a null.
std::size_t countLosses(const cJSON* read, const cJSON* written);

}  // namespace OrvuTool
