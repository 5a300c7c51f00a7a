#include "JsonLines.h"

namespace OrvuTool {
namespace {

bool isWhite(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

/// Appends a JSON text without the white space between its parts.
void appendCompact(std::string_view json, std::string& shown)
{
    bool inString = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (!inString && isWhite(json[i])) continue;
        if (json[i] == '"') inString = !inString;
        if (json[i] == '\\') shown += json[i++];
        shown += json[i];
    }
}

}  // namespace

void JsonLines::add(const Orvu::PushedMessage& message, std::string& shown)
{
    const std::string_view bytes(message.text, message.size);
    if (message.kind == Orvu::PushedText) return show(bytes, shown);
    endLine(shown);
    if (message.kind != Orvu::PushedValue) return;
    startLine(shown);
    appendCompact(bytes, shown);
    endLine(shown);
}

void JsonLines::show(std::string_view bytes, std::string& shown)
{
    if (bytes.empty()) return;
    startLine(shown);
    shown += bytes;
    isLineBegun_ = bytes.back() != '\n';
}

void JsonLines::startLine(std::string& shown)
{
    if (!isLineBegun_) shown += start_;
    isLineBegun_ = true;
}

void JsonLines::endLine(std::string& shown)
{
    if (isLineBegun_) shown += '\n';
    isLineBegun_ = false;
}

}  // namespace OrvuTool
