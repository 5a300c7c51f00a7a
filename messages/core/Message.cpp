#include "messages/core/Message.h"

#include <stdexcept>

namespace Orvu {

char* writeText(Serializable& message, const Contract& contract, PrintStyle style)
{
    try {
        JsonWriter json(style);
        json.message(message, contract);
        return json.take();
    } catch (...) {
        return nullptr;  // memory, or a child of an application's class that throws
    }
}

namespace {

/// The first fault of the message in a parsed text.
JsonReader::Fault faultOf(Serializable& message, const Contract& contract, const cJSON& tree)
{
    JsonReader json(tree, JsonReader::Place::OwnText);
    try {
        contract.read(json, message);
    } catch (const std::invalid_argument&) {
        throw;  // a number text without a number: promised to pass
    } catch (const std::out_of_range&) {
        throw;  // a number text beyond 32 bits: promised to pass
    } catch (...) {
        json.fail(JsonReader::Fault::NotRead);  // memory, or a child of an application's class that throws
    }
    return json.fault();
}

}  // namespace

bool readText(Serializable& message, const Contract& contract, const char* text)
{
    const JsonTree tree = parseJson(text);
    return tree && readTree(message, contract, *tree);
}

bool readText(Serializable& message, const Contract& contract, const char* text, unsigned char& error)
{
    const JsonTree tree = parseJson(text);
    if (tree) return readTree(message, contract, *tree, error);
    error = static_cast<unsigned char>(JsonReader::Fault::NotRead);
    return false;
}

bool readTree(Serializable& message, const Contract& contract, const cJSON& tree)
{
    return faultOf(message, contract, tree) == JsonReader::Fault::None;
}

bool readTree(Serializable& message, const Contract& contract, const cJSON& tree, unsigned char& error)
{
    const JsonReader::Fault fault = faultOf(message, contract, tree);
    if (fault == JsonReader::Fault::None) return true;
    error = static_cast<unsigned char>(fault);
    return false;
}

}  // namespace Orvu
