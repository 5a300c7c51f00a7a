#include "UnknownArgument.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "Types.h"
#include "messages/core/Nearest.h"

namespace OrvuTool {
namespace {

std::string noSuchCommand(const CLI::App& app, const std::string& word)
{
    std::vector<std::string_view> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return word + ": no such command" + didYouMean(Orvu::nearest(word, names));
}

std::string noSuchOption(const CLI::App& app, const std::string& word)
{
    std::vector<std::string_view> names;
    for (const CLI::Option* option : app.get_options())
        names.insert(names.end(), option->get_lnames().begin(), option->get_lnames().end());
    const std::string name = word.substr(0, word.find('='));
    const std::string_view letters = std::string_view(name).substr(std::min(name.find_first_not_of('-'), name.size()));
    const std::string_view near = Orvu::nearest(letters, names);
    return name + ": " + (app.get_parent() != nullptr ? app.get_name() + " has no such option" : "no such option") +
           didYouMean(near.empty() ? "" : "--" + std::string(near));
}

}  // namespace

std::string faultOfUnknownArgument(const CLI::App& app)
{
    const std::vector<std::string> unknown = app.remaining();
    if (!unknown.empty() && unknown.front().size() > 1 && unknown.front().front() == '-')
        return noSuchOption(app, unknown.front());
    if (!unknown.empty() && app.get_parent() == nullptr) return noSuchCommand(app, unknown.front());
    if (!unknown.empty()) return unknown.front() + ": " + app.get_name() + " does not take this argument";
    for (const CLI::App* command : app.get_subcommands())
        return faultOfUnknownArgument(*command);
    return "";
}

}  // namespace OrvuTool
