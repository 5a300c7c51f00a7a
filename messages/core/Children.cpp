#include "messages/core/Children.h"

#include "messages/core/CJsonBridge.h"
#include "messages/core/Exact.h"
#include "messages/core/Json.h"
#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"

namespace Orvu {
namespace {

bool readByContract(Serializable& child, const Contract& contract, JsonValue value)
{
    JsonReader json(value.nested());
    json.begin(&contract);
    contract.read(json, child);
    json.end();
    return !json.failed();
}

bool writeByItself(JsonWriter& json, Serializable& child, ChildText how)
{
    const JsonText text(child.serialize());
    return printParsed(json.printer(), text.get(), how == ChildText::Minified);
}

/// An application's code may do anything, also to what holds the text that is being read.
bool readByItself(Serializable& child, JsonValue value, unsigned char* error)
{
    value.keepText();
    return readTree(child, value.source(), error);
}

}  // namespace

bool writeChild(JsonWriter& json, Serializable& child, const Contract& contract, ChildText text)
{
    if (json.gaveUp()) return false;
    return isExactly(child, *contract.type) ? json.message(child, contract) : writeByItself(json, child, text);
}

bool readChild(Serializable& child, const Contract& contract, JsonValue value)
{
    if (isExactly(child, *contract.type)) return readByContract(child, contract, value);
    return readByItself(child, value, nullptr);
}

bool readChild(Serializable& child, const Contract& contract, JsonValue value, unsigned char& error)
{
    if (isExactly(child, *contract.type)) return readByContract(child, contract, value);
    return readByItself(child, value, &error);
}

void readChildren(JsonValue array, ListOfChildren children, Unreadable unreadable)
{
    for (const JsonValue item : array.items()) {
        array.takeRoom(children.contract.size);
        Serializable& child = children.add();
        try {
            if (readByContract(child, children.contract, item) || unreadable == Unreadable::Kept) continue;
        } catch (...) {
            children.dropLast();
            throw;
        }
        children.dropLast();
    }
}

}  // namespace Orvu
