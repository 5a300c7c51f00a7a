#include "Answers.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "Input.h"
#include "JsonText.h"
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
    if (!parsed.rest.empty()) return {std::nullopt, "has text behind the JSON: " + quoted(parsed.rest.c_str())};
    const cJSON* header = cJSON_GetStringItem(parsed.tree.get(), "HEADER");
    if (header == nullptr) return {std::nullopt, "names no type: there is no text under \"HEADER\""};
    const std::optional<DataType> type = typeNamed(header->valuestring);
    if (!type) return {std::nullopt, "names an unknown type: " + quoted(header->valuestring)};
    return {type, ""};
}

void report(const std::string& file, const std::string& fault)
{
    complain(file + ": " + fault);
}

}  // namespace

Answers::Answers(std::string folder) : folder_(std::move(folder)) {}

std::string Answers::fileOf(const std::string& wireName) const
{
    return (std::filesystem::path(folder_) / (wireName + ".json")).string();
}

std::string Answers::checkFolder() const
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder_, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::filesystem::path file = entry->path();
        if (file.extension() != ".json") continue;
        const std::string fault = typeNamed(file.stem().string()) ? answerIn(readRegularFile(file.string())).fault
                                                                  : "answers nothing: no type has this name";
        if (!fault.empty()) report(file.string(), fault);
    }
    return error ? error.message() : "";
}

std::unique_ptr<Serializable> Answers::answerTo(DataType request) const
{
    const std::string file = fileOf(Serializable::dataTypeString(request));
    const Input input = readRegularFile(file);
    if (input.missing) return std::make_unique<Orvu::ResourceNotFound>();
    const Answer answer = answerIn(input);
    if (answer.type) return std::make_unique<TextMessage>(*answer.type, input.text);
    report(file, answer.fault);
    return std::make_unique<Orvu::ResourceUnavailable>();
}

}  // namespace OrvuTool
