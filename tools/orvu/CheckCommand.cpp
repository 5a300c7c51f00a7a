#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "ExitCode.h"
#include "Input.h"
#include "JsonTrees.h"
#include "Output.h"
#include "Types.h"
#include "orvu/Explanation.h"
#include "orvu/JsonAccess.h"
#include "orvu/Serializable.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::Explanation;
using Orvu::Finding;
using Orvu::Serializable;

struct CheckOptions {
    std::string file;
    bool all = false;
};

std::string typeLines(const std::string& text, const Explanation& explanation)
{
    const ParsedText parsed = parseText(text);
    const cJSON* header = cJSON_GetStringItem(parsed.tree.get(), "HEADER");
    if (header == nullptr) return parsed.tree ? "type     none\n" : "";
    const std::string name = header->valuestring;
    const std::string line = "type     " + (typeNamed(name) ? name : quoted(name.c_str()));
    const bool isOfType = name == Serializable::dataTypeString(explanation.type);
    const std::unique_ptr<Serializable> message(isOfType ? Serializable::factory(explanation.type) : nullptr);
    if (!message) return line + "\n";
    return line + " (" + std::to_string(explanation.type) + "), class " + className(*message) + "\nschema   " + name +
           ".schema.json\n";
}

/// A line about a place of a text.
struct PlaceLine {
    std::string path;
    std::string line;
};

/// The path without the numbers of items.
std::string patternOf(const std::string& path)
{
    std::string pattern;
    for (const char c : path) {
        const bool isNumber =
            c >= '0' && c <= '9' && !pattern.empty() && (pattern.back() == '[' || pattern.back() == '#');
        if (!isNumber) pattern += c;
        if (isNumber && pattern.back() == '[') pattern += '#';
    }
    return pattern;
}

/// One line for all places that differ only in the numbers of items, in the order of the first of each.
std::string grouped(const std::vector<PlaceLine>& places)
{
    std::vector<std::pair<const PlaceLine*, std::size_t>> groups;
    std::map<std::string, std::size_t> groupOf;
    for (const PlaceLine& place : places) {
        const auto [found, isNew] = groupOf.emplace(patternOf(place.path), groups.size());
        if (isNew) groups.emplace_back(&place, 0);
        ++groups[found->second].second;
    }
    std::string lines;
    for (const auto& [first, count] : groups) {
        const std::string others = count > 1 ? "  (" + std::to_string(count) + " such places)" : "";
        lines += "\n  " + first->line + others;
    }
    return lines;
}

/// Whether the text can be read, and what reading it finds.
std::string readLines(const Explanation& explanation)
{
    const std::vector<Finding>& findings = explanation.findings;
    std::string lines = explanation.isRead ? "read     yes" : "read     no: " + toString(findings.front());
    if (explanation.isRead && !findings.empty()) lines += ", but:";
    std::vector<PlaceLine> others;
    for (std::size_t i = explanation.isRead ? 0 : 1; i < findings.size(); ++i)
        others.push_back({findings[i].path + "\n" + findings[i].message, toString(findings[i])});
    lines += grouped(others);
    if (explanation.further != 0) lines += "\n  and " + std::to_string(explanation.further) + " more";
    return lines + "\n";
}

std::string listOf(const std::string& title, const std::vector<Difference>& differences)
{
    if (differences.empty()) return "";
    std::vector<PlaceLine> places;
    for (const Difference& difference : differences)
        places.push_back({difference.path, difference.path + ": " + difference.what});
    return title + std::to_string(differences.size()) + grouped(places) + "\n";
}

std::string defaultsOf(const Differences& found, bool all)
{
    if (found.added.empty()) return "";
    if (all) return listOf("added    ", found.added);
    return "added    " + std::to_string(found.added.size()) + (found.added.size() == 1 ? " default" : " defaults") +
           "; --all lists what was added\n";
}

int tellDifferences(const ParsedText& read, const std::string& written, bool all, Output& output)
{
    Differences found = differences(read.tree.get(), parseText(written).tree.get());
    if (!read.rest.empty()) found.lost.push_back({"(after the JSON)", quoted(read.rest.c_str())});
    const bool isLess = !found.lost.empty() || !found.changed.empty();
    std::string report = isLess                ? "written  not the same content\n"
                         : found.added.empty() ? "written  the same content, laid out differently\n"
                                               : "written  the same content, and more\n";
    report += listOf("lost     ", found.lost) + listOf("changed  ", found.changed) + defaultsOf(found, all);
    if (all) report += "\n" + written + "\n";
    output.write(report);
    return isLess ? ExitDiffers : ExitOk;
}

int tellWriting(const std::string& text, DataType type, bool all, Output& output)
{
    const std::unique_ptr<Serializable> message(Serializable::factory(type));
    message->deserialize(text.c_str());
    char* const written = message->serialize();
    if (written == nullptr) {
        output.write("written  no: the message cannot be written\n");
        return ExitDiffers;
    }
    const std::string copy = written;
    std::free(written);
    if (copy != text) return tellDifferences(parseText(text), copy, all, output);
    output.write("written  the same text\n");
    return ExitOk;
}

int checkText(const std::string& text, bool all, Output& output)
{
    const Explanation explanation = Orvu::explain(text.c_str());
    output.write(typeLines(text, explanation) + readLines(explanation));
    return explanation.isRead ? tellWriting(text, explanation.type, all, output) : ExitRefused;
}

int check(const CheckOptions& options, Output& output)
{
    return withInput(options.file, [&](const std::string& text) { return checkText(text, options.all, output); });
}

}  // namespace

void addCheck(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "Show what the library reads from a message text");
    addFileArgument(*command, options->file, "text");
    command->add_flag("--all", options->all, "Also list the defaults, and print the text that is written");
    addLogOption(*command, chosen);
    command->footer(
        "Prints the type and the name of its JSON Schema; whether the text can be read, and every fault and ignored\n"
        "part with its line and column; then what the message writes again: which parts of the text are lost or\n"
        "changed, and how many defaults are added.\n"
        "Exit codes:\n"
        "  0   the text can be read, and nothing of it is lost or changed\n"
        "  1   the text can be read, but something is lost or changed\n"
        "  2   the text cannot be read\n"
        "  64  wrong arguments\n"
        "  66  FILE cannot be read, or holds a NUL byte\n"
        "  74  standard output cannot be written");
    runs(*command, chosen, options, check);
}

}  // namespace OrvuTool
