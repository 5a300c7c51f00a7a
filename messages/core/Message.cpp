#include "messages/core/Message.h"

#include <stdexcept>

#include "messages/core/CheckedText.h"

namespace Orvu {

char* writeText(Serializable& message, const Contract& contract)
{
    try {
        JsonWriter json(contract.style);
        return json.message(message, contract) ? json.take() : nullptr;
    } catch (...) {
        passThreadEndOn();
        return nullptr;  // out of memory, or a child of an application's class that throws
    }
}

namespace {

/// The code of the first fault; 0 without one.
unsigned char errorOf(Serializable& message, Reading read, JsonValue value)
{
    JsonReader json(value);
    try {
        read(json, message);
    } catch (const std::invalid_argument&) {
        throw;  // a number text without a number: promised to pass
    } catch (const std::out_of_range&) {
        throw;  // a number text beyond 32 bits: promised to pass
    } catch (...) {
        passThreadEndOn();
        json.fail(Fault::Missing);  // out of memory, too many objects, or a child of an application's class that throws
    }
    return json.error();
}

}  // namespace

bool readText(Serializable& message, Reading read, const char* text)
{
    unsigned char ignored = 0;
    return readText(message, read, text, ignored);
}

bool readText(Serializable& message, Reading read, const char* text, unsigned char& error)
{
    const CheckedText checked(text);
    if (checked) return readValue(message, read, checked.value(), error);
    error = static_cast<unsigned char>(Fault::Missing);
    return false;
}

bool readValue(Serializable& message, Reading read, JsonValue value)
{
    return errorOf(message, read, value) == 0;
}

bool readValue(Serializable& message, Reading read, JsonValue value, unsigned char& error)
{
    const unsigned char found = errorOf(message, read, value);
    if (found != 0) error = found;
    return found == 0;
}

}  // namespace Orvu
