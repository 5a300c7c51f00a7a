#include "messages/core/Children.h"

#include "messages/core/Exact.h"
#include "messages/core/Json.h"
#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"

namespace Orvu {
namespace {

bool readByContract(Serializable& child, const Contract& contract, JsonValue value)
{
    JsonReader json(value.nested());
    contract.read(json, child);
    return !json.failed();
}

bool writeByItself(JsonWriter& json, Serializable& child, ChildText how)
{
    const JsonText text(child.serialize());
    if (how == ChildText::Minified) cJSON_Minify(text.get());
    const JsonTree tree = parseJson(text.get());
    if (tree) json.tree(*tree);
    return tree != nullptr;
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
    return child.deserializeObject(value.tree());
}

bool readChild(Serializable& child, const Contract& contract, JsonValue value, unsigned char& error)
{
    if (isExactly(child, *contract.type)) return readByContract(child, contract, value);
    return child.deserializeObject(value.tree(), error);
}

void readChildren(JsonValue array, ListOfChildren children, Unreadable unreadable)
{
    const JsonValue::Items items = array.items();
    children.reserve(items.size());
    for (const JsonValue item : items) {
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
