#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "ExitCode.h"
#include "Fields.h"
#include "JsonTrees.h"
#include "Output.h"
#include "Types.h"
#include "orvu/Orvu.h"

namespace OrvuTool {
namespace {

using Orvu::DataType;
using Orvu::KeyDescription;
using Orvu::Serializable;

struct TypesOptions {
    std::string type;
    bool json = false;
};

struct Row {
    int value;
    std::string name;
    std::string header;  // "yes", "no", or "fallback": what every unknown header is read as
    bool made;           // by the factory
    std::string type;    // the class, "-" when the library has none
};

/// A type that the factory leaves to applications, and its message as they make it.
struct Maker {
    DataType type;
    std::unique_ptr<Serializable> (*make)();
};

template <class Message>
std::unique_ptr<Serializable> make()
{
    return std::make_unique<Message>();
}

constexpr Maker kMadeByApplications[] = {
#define MAKER_Made(...)
#define MAKER_NeverMade(Class) {Orvu::Class::kDataType, make<Orvu::Class>},
#define ORVU_ROW_AS(Type, Class, wireName, mapping, making) MAKER_##making(Class)
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
};

/// Null when the library has no class for the type.
std::unique_ptr<Serializable> madeByApplications(DataType type)
{
    for (const Maker& maker : kMadeByApplications)
        if (maker.type == type) return maker.make();
    return nullptr;
}

std::string readFromHeader(DataType type)
{
    if (type == Orvu::DataTypeUnknown) return "fallback";
    const std::string text = std::string(R"({"HEADER": ")") + Serializable::dataTypeString(type) + R"("})";
    return Serializable::deserializeHeader(text.c_str()) == type ? "yes" : "no";
}

Row rowOf(DataType type)
{
    std::unique_ptr<Serializable> message(Serializable::factory(type));
    const bool made = message != nullptr;
    if (!made) message = madeByApplications(type);
    return {static_cast<int>(type), Serializable::dataTypeString(type), readFromHeader(type), made,
            message ? className(*message) : "-"};
}

std::string padded(const std::string& text, size_t width)
{
    return text + std::string(width > text.size() ? width - text.size() : 1, ' ');
}

std::string line(const std::string& value, const Row& row, const std::string& made)
{
    return padded(value, 7) + padded(row.name, 26) + padded(row.header, 10) + padded(made, 9) + row.type + "\n";
}

std::string asTable(const std::vector<Row>& rows)
{
    std::string table = line("value", {0, "wire name", "header", false, "class"}, "factory");
    for (const Row& row : rows)
        table += line(std::to_string(row.value), row, row.made ? "yes" : "no");
    return table;
}

cJSON* asObject(const Row& row)
{
    cJSON* const object = cJSON_CreateObject();
    cJSON_AddNumberToObject(object, "value", row.value);
    cJSON_AddStringToObject(object, "name", row.name.c_str());
    cJSON_AddStringToObject(object, "header", row.header.c_str());
    cJSON_AddBoolToObject(object, "factory", row.made);
    if (row.type == "-")
        cJSON_AddNullToObject(object, "class");
    else
        cJSON_AddStringToObject(object, "class", row.type.c_str());
    return object;
}

std::string asJson(const std::vector<Row>& rows)
{
    const JsonTree array(cJSON_CreateArray());
    for (const Row& row : rows)
        cJSON_AddItemToArray(array.get(), asObject(row));
    return pretty(array.get()) + "\n";
}

std::string asTable(const std::vector<KeyDescription>& keys, const std::string& indent)
{
    std::string table;
    for (const KeyDescription& key : keys) {
        const std::string name = key.key.empty() ? "(the list after it)" : key.key;
        std::string words;
        for (const std::string& word : key.words)
            words += (words.empty() ? ": " : ", ") + word;
        table += padded(indent + name, 32) + (key.isRequired ? "required  " : "          ") + kindName(key.kind);
        table += words + "\n" + asTable(key.keys, indent + "  ");
    }
    return table;
}

cJSON* asArray(const std::vector<KeyDescription>& keys)
{
    cJSON* const array = cJSON_CreateArray();
    for (const KeyDescription& key : keys) {
        cJSON* const object = cJSON_CreateObject();
        cJSON_AddStringToObject(object, "key", key.key.c_str());
        cJSON_AddStringToObject(object, "kind", kindName(key.kind));
        cJSON_AddBoolToObject(object, "required", key.isRequired);
        cJSON* const words = cJSON_AddArrayToObject(object, "words");
        for (const std::string& word : key.words)
            cJSON_AddItemToArray(words, cJSON_CreateString(word.c_str()));
        cJSON_AddItemToObject(object, "keys", asArray(key.keys));
        cJSON_AddItemToArray(array, object);
    }
    return array;
}

int keys(const TypesOptions& options, Output& output)
{
    const std::optional<DataType> type = typeNamed(options.type);
    if (!type) {
        complain(faultOfType(options.type));
        return ExitUsage;
    }
    const std::vector<KeyDescription> keys = Orvu::keysOf(*type);
    if (options.json) {
        const JsonTree array(asArray(keys));
        output.write(pretty(array.get()) + "\n");
    } else {
        const Row row = rowOf(*type);
        output.write(row.name + " (" + std::to_string(row.value) + "), class " + row.type + "\n" +
                     (keys.empty() ? "  reads no keys\n" : asTable(keys, "  ")));
    }
    return ExitOk;
}

int types(const TypesOptions& options, Output& output)
{
    if (!options.type.empty()) return keys(options, output);
    std::vector<Row> rows;
    for (const DataType type : catalogue())
        rows.push_back(rowOf(type));
    output.write(options.json ? asJson(rows) : asTable(rows));
    return ExitOk;
}

}  // namespace

void addTypes(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<TypesOptions>();
    CLI::App* command =
        app.add_subcommand("types", "List the message types that the library knows, or the keys of one");
    command->add_option("TYPE", options->type, "A type's wire name; lists its keys instead of the types")
        ->type_name("");
    command->add_flag("--json", options->json, "Print a JSON array instead of a table");
    addLogOption(*command, chosen);
    command->footer(
        "For one type, lists its keys in the order in which the library reads them, those of inner objects indented:\n"
        "whether the key is required (without it the text is refused, or the inner object), what it holds, and the\n"
        "words that are read.\n"
        "Columns of the list of types:\n"
        "  header   whether a text whose \"HEADER\" is the wire name is read as the type; every text without such a\n"
        "           header is read as the type that says \"fallback\"\n"
        "  factory  whether the library makes an empty message from the type, as a receiver and \"orvu ask\" do\n"
        "  class    the C++ class; \"-\" (JSON: null) when the library has none\n"
        "Exit codes:\n"
        "  0   the list was printed\n"
        "  64  wrong arguments, or an unknown type\n"
        "  74  standard output cannot be written");
    runs(*command, chosen, options, types);
}

}  // namespace OrvuTool
