#include "messages/core/Explanation.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "messages/core/Catalogue.h"
#include "messages/core/Explainer.h"
#include "messages/core/JsonScan.h"
#include "messages/core/KeyLister.h"
#include "messages/core/MemberFinder.h"
#include "messages/core/TextPlace.h"

namespace Orvu {
namespace {

/// What ends the innermost object, list or text that is open at `offset` of a text that is JSON up to there; NUL when
/// none is. The depth counts objects and lists.
struct OpenAt {
    char closer = '\0';
    std::size_t depth = 0;
};
OpenAt openAt(std::string_view text, std::size_t offset)
{
    std::string closers;
    bool isText = false;
    for (std::size_t i = 0; i < offset; ++i) {
        const char c = text[i];
        if (c == '"') isText = !isText;
        if (isText && c == '\\') ++i;
        if (isText) continue;
        if (c == '{') closers += '}';
        if (c == '[') closers += ']';
        if (c == '}' || c == ']') closers.pop_back();
    }
    const char closer = closers.empty() ? '\0' : closers.back();
    return {isText ? '"' : closer, closers.size()};
}

std::string whereItEnds(char closer)
{
    switch (closer) {
        case '}':
            return "ends inside an object";
        case ']':
            return "ends inside a list";
        case '"':
            return "ends inside a text";
        default:
            return "is empty";
    }
}

/// After the last byte that is not white space.
std::size_t endOf(std::string_view text)
{
    return text.find_last_not_of(" \t\r\n") + 1;
}

std::string whyNoJson(std::string_view text, std::size_t offset)
{
    const OpenAt open = openAt(text, offset);
    if (offset >= text.size()) return whereItEnds(open.closer);
    const bool isTooDeep = open.depth == kMaxDepth && (text[offset] == '{' || text[offset] == '[');
    if (isTooDeep) return joined({"nests deeper than ", std::to_string(kMaxDepth), " levels"});
    return joined({"is not JSON from here on: ", quoted(text.substr(offset))});
}

Finding faultAt(std::string_view text, std::size_t offset, std::string message)
{
    const TextPlace place = placeOf(text, offset);
    return {Finding::Fault, offset, place.line, place.column, "", std::move(message)};
}

/// Why nothing can be read from a text.
Finding refusal(const CheckedText& checked)
{
    switch (checked.refusal()) {
        case CheckedText::Refusal::OutOfMemory:
            throw std::bad_alloc();
        case CheckedText::Refusal::TooLarge:
            return faultAt(checked.text(), 0, "holds more objects and lists, or bytes, than are read");
        default:
            return faultAt(checked.text(), std::min(checked.refusedAt(), endOf(checked.text())),
                           whyNoJson(checked.text(), checked.refusedAt()));
    }
}

Explanation refused(Finding finding)
{
    Explanation explanation;
    explanation.findings.push_back(std::move(finding));
    return explanation;
}

void explainRest(Explainer& explainer, const CheckedText& checked)
{
    const JsonValue value = checked.value();
    const std::string_view text = checked.text();
    const std::size_t rest = text.find_first_not_of(" \t\r\n", value.offset() + value.source().size());
    if (rest != std::string_view::npos) explainer.addAt(Finding::NotRead, rest, "text after the JSON is not read");
}

std::vector<std::string_view> namesOf(const std::vector<KeyDescription>& keys)
{
    std::vector<std::string_view> names;
    for (const KeyDescription& key : keys)
        names.emplace_back(key.key);
    return names;
}

Explanation explainAs(CheckedText& checked, const CatalogueEntry& entry)
{
    const std::vector<KeyDescription> keys = KeyLister().keysOf(entry);
    const std::unique_ptr<Serializable> scratch(entry.make(entry.type));
    Explainer explainer(checked, Explainer::Everything);
    explainer.read(entry.contract(), *scratch, namesOf(keys));
    explainRest(explainer, checked);
    Explanation explanation = explainer.take();
    explanation.type = entry.type;
    return explanation;
}

/// Why the "HEADER" names no message.
Explanation explainHeader(CheckedText& checked, JsonValue header, const CatalogueEntry* entry)
{
    Explainer explainer(checked, Explainer::FirstFault);
    if (!header) {
        const char* const what = checked.value().isObject() ? "required, missing: nothing names the type"
                                                            : "missing, since the text is not an object";
        explainer.add(Finding::Fault, checked.value(), what, "HEADER");
    } else if (!header.isText()) {
        explainer.add(Finding::Fault, header, joined({excerptOf(header), " is not the name of a type"}));
    } else if (!entry) {
        const std::string name = header.text();
        explainer.add(Finding::Fault, header, joined({quoted(name), " names no type", nearestHint(name, wireNames())}));
    } else {
        explainer.add(Finding::Fault, header,
                      joined({quoted(entry->wireName), " names a type that cannot be received"}));
    }
    return explainer.take();
}

}  // namespace

Explanation explain(const char* text)
{
    CheckedText checked(text);
    if (!checked) return refused(refusal(checked));
    const JsonValue header = MemberFinder(checked.value()).find("HEADER");
    const CatalogueEntry* const entry = header.isText() ? entryNamed(header.text()) : nullptr;
    const bool isReceived = entry && entry->isMade && (entry->isFromHeader || entry->type == DataTypeUnknown);
    return isReceived ? explainAs(checked, *entry) : explainHeader(checked, header, entry);
}

Explanation explain(const char* text, DataType type)
{
    CheckedText checked(text);
    if (!checked) return refused(refusal(checked));
    const CatalogueEntry* const entry = entryOf(type);
    if (entry && entry->make) return explainAs(checked, *entry);
    return refused(faultAt(checked.text(), 0, "is of a type that has no message"));
}

std::string toString(const Finding& finding)
{
    return joined({"line ", std::to_string(finding.line), ", column ", std::to_string(finding.column), ": ",
                   finding.path, finding.path.empty() ? "" : ": ", finding.message});
}

std::vector<KeyDescription> keysOf(DataType type)
{
    const CatalogueEntry* const entry = entryOf(type);
    if (!entry || !entry->make) return {};
    return KeyLister().keysOf(*entry);
}

std::string firstFault(CheckedText& checked, DataType type)
{
    const CatalogueEntry* const entry = entryOf(type);
    if (!entry || !entry->make) return "the type has no message";
    const std::unique_ptr<Serializable> scratch(entry->make(type));
    Explainer explainer(checked, Explainer::FirstFault);
    explainer.read(entry->contract(), *scratch, {});
    const Explanation explanation = explainer.take();
    if (explanation.isRead) return "refused";  // memory ran out while it was read
    return toString(explanation.findings.front());
}

}  // namespace Orvu
