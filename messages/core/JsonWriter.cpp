#include "messages/core/JsonWriter.h"

#include <utility>

namespace Orvu {

void JsonWriter::header(const Serializable& message)
{
    put("HEADER", Serializable::dataTypeString(message.getDataType()));
}

void JsonWriter::headerIfSet(const Serializable& message)
{
    if (message.headerFlag_) header(message);
}

void JsonWriter::put(const char* key, const char* value)
{
    json_.key(key);
    json_.text(value);
}

void JsonWriter::put(const char* key, int value)
{
    json_.key(key);
    json_.number(value);
}

void JsonWriter::put(const char* key, unsigned value)
{
    json_.key(key);
    json_.number(value);
}

void JsonWriter::put(const char* key, bool value)
{
    json_.key(key);
    json_.boolean(value);
}

void JsonWriter::putChild(const char* key, Serializable& child, const Contract& contract)
{
    child.serializeHeader(false);
    const JsonPrinter::Mark mark = json_.here();
    json_.key(key);
    if (!writeChild(*this, child, contract, ChildText::Plain)) json_.backTo(mark);
}

void JsonWriter::element(Serializable* child, const Contract& contract)
{
    if (!child) return;
    const JsonPrinter::Mark mark = json_.here();
    json_.element();
    if (!writeChild(*this, *child, contract, ChildText::Plain)) json_.backTo(mark);
}

bool JsonWriter::message(Serializable& message, const Contract& contract)
{
    json_.beginObject();
    if (!json_.failed()) contract.write(*this, message);  // nesting without end stops here
    json_.endObject();
    return !std::exchange(gaveUp_, false);
}

}  // namespace Orvu
