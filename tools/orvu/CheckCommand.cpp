#include <cstdlib>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include "Commands.h"
#include "ExitCode.h"
#include "Input.h"
#include "JsonText.h"
#include "Output.h"
#include "Types.h"
#include "orvu/JsonAccess.h"
#include "orvu/Serializable.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::Serializable;

struct CheckOptions {
    std::string file;
};

/// A message, or why there is none.
struct Made {
    std::unique_ptr<Serializable> message;
    std::string fault;
};

Made madeFrom(const cJSON* tree, const std::string& text)
{
    const cJSON* header = cJSON_GetStringItem(tree, "HEADER");
    if (header == nullptr) return {nullptr, "no text under \"HEADER\", so nothing tells the type"};
    const std::optional<DataType> named = typeNamed(header->valuestring);
    if (!named) return {nullptr, "the type is unknown"};
    const DataType mapped = Serializable::deserializeHeader(text.c_str());
    if (mapped != *named) return {nullptr, "no header is read as this type"};
    std::unique_ptr<Serializable> message(Serializable::factory(mapped));
    if (!message) return {nullptr, "no message is made from this type"};
    return {std::move(message), ""};
}

/// Why `message` does not read `text`; empty when it does.
std::string faultOfReading(Serializable& message, const std::string& text)
{
    try {
        return message.deserialize(text.c_str()) ? "" : className(message) + " refuses the text";
    } catch (const std::logic_error& error) {  // the number conversions that some messages let pass
        return readableName(typeid(error).name()) + " from " + error.what();
    }
}

std::string typeLines(const cJSON* tree, const Serializable* message)
{
    const cJSON* header = cJSON_GetStringItem(tree, "HEADER");
    if (header == nullptr) return "type     none\n";
    const std::string name = header->valuestring;
    const std::string line = "type     " + (typeNamed(name) ? name : quoted(name.c_str()));
    if (message == nullptr) return line + "\n";
    return line + " (" + std::to_string(message->getDataType()) + "), class " + className(*message) + "\nschema   " +
           name + ".schema.json\n";
}

std::vector<std::string> allDifferences(const ParsedText& read, const std::string& written)
{
    std::vector<std::string> lines = differences(read.tree.get(), parseText(written).tree.get());
    if (!read.rest.empty()) lines.push_back("(behind the JSON): " + quoted(read.rest.c_str()) + " is not read");
    return lines;
}

int tellDifferences(const ParsedText& read, const std::string& written, Output& output)
{
    const std::vector<std::string> lines = allDifferences(read, written);
    if (lines.empty()) {
        output.write("written  the same content, laid out differently\n");
        return ExitOk;
    }
    std::string report =
        "written  with " + std::to_string(lines.size()) + (lines.size() > 1 ? " differences" : " difference");
    for (const std::string& line : lines)
        report += "\n  " + line;
    output.write(report + "\n\n" + written + "\n");
    return ExitDiffers;
}

int tellWriting(Serializable& message, const ParsedText& read, const std::string& text, Output& output)
{
    char* const written = message.serialize();
    if (written == nullptr) {
        output.write("written  no: the message cannot be written\n");
        return ExitDiffers;
    }
    const std::string copy = written;
    std::free(written);
    if (copy != text) return tellDifferences(read, copy, output);
    output.write("written  the same text\n");
    return ExitOk;
}

int refused(const std::string& fault, Output& output)
{
    output.write("read     no: " + fault + "\n");
    return ExitRefused;
}

int checkText(const std::string& text, Output& output)
{
    const ParsedText parsed = parseText(text);
    if (!parsed.tree) return refused("the text " + parsed.fault, output);
    const Made made = madeFrom(parsed.tree.get(), text);
    output.write(typeLines(parsed.tree.get(), made.message.get()));
    if (!made.message) return refused(made.fault, output);
    const std::string fault = faultOfReading(*made.message, text);
    if (!fault.empty()) return refused(fault, output);
    output.write("read     yes\n");
    return tellWriting(*made.message, parsed, text, output);
}

int check(const CheckOptions& options, Output& output)
{
    const Input input = readInput(options.file);
    if (input.fault.empty()) return checkText(input.text, output);
    complain(options.file + ": " + input.fault);
    return ExitNoInput;
}

}  // namespace

void addCheck(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "Tell what the library makes of a message text");
    command->add_option("FILE", options->file, "The file with the text; - is standard input")
        ->required()
        ->type_name("");
    addLogOption(*command, chosen);
    command->footer(
        "Prints the type with the name of its JSON Schema, whether the text reads, and what the message that was read\n"
        "writes: the same text, the same content laid out differently, or each difference followed by the written "
        "text.\n"
        "Exit codes:\n"
        "  0   the text reads, and what is written says the same\n"
        "  1   the text reads, but what is written differs\n"
        "  2   the text does not read\n"
        "  64  wrong arguments\n"
        "  66  FILE cannot be read, or holds a NUL byte\n"
        "  74  standard output cannot be written");
    command->callback(
        [options, &chosen] { chosen.run = [options](Output& output) { return check(*options, output); }; });
}

}  // namespace OrvuTool
