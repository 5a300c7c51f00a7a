#include "Answers.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "JsonTrees.h"
#include "Output.h"
#include "TextMessage.h"
#include "Types.h"
#include "orvu/JsonAccess.h"
#include "orvu/Results.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::Serializable;

/// What a file answers, or why it cannot.
struct Answer {
    std::optional<DataType> type;
    std::string fault;
};

Answer answerIn(const Input& input)
{
    if (!input.fault.empty()) return {std::nullopt, input.fault};
    const ParsedText parsed = parseText(input.text);
    if (!parsed.tree) return {std::nullopt, parsed.fault};
    if (!parsed.rest.empty()) return {std::nullopt, "has text after the JSON: " + quoted(parsed.rest.c_str())};
    const cJSON* header = cJSON_GetStringItem(parsed.tree.get(), "HEADER");
    if (header == nullptr) return {std::nullopt, "names no type: \"HEADER\" is missing or holds no text"};
    const std::optional<DataType> type = typeNamed(header->valuestring);
    if (!type)
        return {std::nullopt,
                "names an unknown type: " + quoted(header->valuestring) + didYouMean(nearestType(header->valuestring))};
    return {type, ""};
}

void report(const std::string& file, const std::string& fault)
{
    complain(file + ": " + fault);
}

/// Whether `text` counts from 1 on, as in "currentService.2.json".
bool isTurn(const std::string& text)
{
    return !text.empty() && text.front() != '0' && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string nameOfTurn(const std::string& wireName, int turn)
{
    return wireName + "." + std::to_string(turn);
}

}  // namespace

Answers::Answers(std::string folder) : folder_(std::move(folder)) {}

std::string Answers::pathOf(const std::string& name) const
{
    return (std::filesystem::path(folder_) / (name + ".json")).string();
}

bool Answers::exists(const std::string& name) const
{
    std::error_code ignored;
    return std::filesystem::exists(pathOf(name), ignored);
}

std::string Answers::checkFolder() const
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder_, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::filesystem::path file = entry->path();
        if (file.extension() != ".json") continue;
        std::string fault = faultOfName(file.stem().string());
        if (fault.empty()) fault = answerIn(readRegularFile(file.string())).fault;
        if (!fault.empty()) report(file.string(), fault);
    }
    return error ? error.message() : "";
}

/// Why no request is ever answered from `<name>.json`; empty when one is.
std::string Answers::faultOfName(const std::string& name) const
{
    const std::size_t dot = name.rfind('.');
    const std::string turn = dot == std::string::npos ? "" : name.substr(dot + 1);
    const std::string wireName = isTurn(turn) ? name.substr(0, dot) : name;
    if (!typeNamed(wireName)) return "answers nothing: no type has this name" + didYouMean(nearestType(wireName));
    return isTurn(turn) ? faultOfTurn(wireName, turn) : "";
}

std::string Answers::faultOfTurn(const std::string& wireName, const std::string& turn) const
{
    if (exists(wireName)) return "answers nothing as long as there is " + wireName + ".json";
    for (int before = 1; std::to_string(before) != turn; ++before)
        if (!exists(nameOfTurn(wireName, before)))
            return "answers nothing: there is no " + nameOfTurn(wireName, before) + ".json";
    return "";
}

Answers::File Answers::read(const std::string& name) const
{
    const std::string path = pathOf(name);
    return {path, readRegularFile(path)};
}

Answers::File Answers::next(DataType request)
{
    const std::string wireName = Serializable::dataTypeString(request);
    File file = read(wireName);
    if (!file.input.missing) return file;
    const std::lock_guard<std::mutex> lock(mutex_);
    int& turn = turns_[request];
    file = read(nameOfTurn(wireName, ++turn));
    if (!file.input.missing) return file;
    file = read(nameOfTurn(wireName, 1));
    turn = file.input.missing ? 0 : 1;
    return file;
}

std::unique_ptr<Serializable> Answers::answerTo(DataType request)
{
    const File file = next(request);
    if (file.input.missing) return std::make_unique<Orvu::ResourceNotFound>();
    const Answer answer = answerIn(file.input);
    if (answer.type) return std::make_unique<TextMessage>(*answer.type, file.input.text);
    report(file.path, answer.fault);
    return std::make_unique<Orvu::ResourceUnavailable>();
}

}  // namespace OrvuTool
