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

void JsonLines::add(std::string_view bytes, std::string& shown)
{
    for (const char byte : bytes)
        while (!take(byte, shown)) {
        }
}

/// False when the byte ended what was before it, and is to be taken once more.
bool JsonLines::take(char byte, std::string& shown)
{
    if (isOther_) return takeOther(byte, shown);
    if (!began_ && isWhite(byte)) return skip(byte, shown);
    began_ = true;
    switch (scanner_.take(byte)) {
        case JsonScanner::Verdict::More:
            hold(byte, shown);
            return true;
        case JsonScanner::Verdict::Whole:
            hold(byte, shown);
            endValue(shown);
            return true;
        case JsonScanner::Verdict::Before:
            endValue(shown);
            return false;
        default:
            giveUp(shown);
            return false;
    }
}

bool JsonLines::takeOther(char byte, std::string& shown)
{
    isOther_ = byte != '\n' && byte != '{' && byte != '[';
    if (!isOther_ && byte != '\n') return false;
    show({&byte, 1}, shown);
    return true;
}

/// Blanks are held until it is known whether they belong to something that is no JSON.
bool JsonLines::skip(char byte, std::string& shown)
{
    if (byte != '\n') {
        held_ += byte;
        if (held_.size() > longest_) giveUp(shown);
        return true;
    }
    held_.clear();
    return true;
}

void JsonLines::hold(char byte, std::string& shown)
{
    if (isTooLong_) return show({&byte, 1}, shown);
    held_ += byte;
    if (held_.size() <= longest_) return;
    isTooLong_ = true;
    show(held_, shown);
    held_.clear();
}

void JsonLines::endValue(std::string& shown)
{
    if (!isTooLong_) {
        endLine(shown);
        startLine(shown);
        appendCompact(held_, shown);
    }
    endLine(shown);
    held_.clear();
    scanner_ = JsonScanner();
    began_ = isTooLong_ = false;
}

void JsonLines::giveUp(std::string& shown)
{
    show(held_, shown);
    held_.clear();
    scanner_ = JsonScanner();
    began_ = isTooLong_ = false;
    isOther_ = true;
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

void JsonLines::finish(std::string& shown)
{
    if (began_ && scanner_.isWhole())
        endValue(shown);
    else if (began_)
        giveUp(shown);
    held_.clear();
    isOther_ = false;
    endLine(shown);
}

}  // namespace OrvuTool
