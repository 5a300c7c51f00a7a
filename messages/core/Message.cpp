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

bool readText(Serializable& message, const Contract& contract, const char* text)
{
    const JsonTree tree = parseJson(text);
    return tree && readTree(message, contract, *tree);
}

bool readTree(Serializable& message, const Contract& contract, const cJSON& tree)
{
    try {
        JsonReader json(tree, JsonReader::Place::OwnText);
        contract.read(json, message);
        return json.fault() == JsonReader::Fault::None;
    } catch (const std::invalid_argument&) {
        throw;  // a number text without a number: promised to pass
    } catch (const std::out_of_range&) {
        throw;  // a number text beyond 32 bits: promised to pass
    } catch (...) {
        return false;  // memory, or a child of an application's class that throws
    }
}

}  // namespace Orvu
