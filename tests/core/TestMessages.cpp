#include "core/TestMessages.h"

#include <utility>

#include "messages/core/CheckedText.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {

Scripted::Scripted() : Serializable(kDataType) {}
Scripted::Scripted(Writes writes) : Serializable(kDataType), writes(std::move(writes)) {}
Scripted::Scripted(Reads reads) : Serializable(kDataType), reads(std::move(reads)) {}
Scripted::~Scripted() = default;

void write(JsonWriter& json, Scripted& message)
{
    if (message.writes) message.writes(json);
}

void read(JsonReader& json, Scripted& message)
{
    if (message.reads) message.reads(json);
}

Holder::Holder() : Serializable(DataTypeNodeProperties) {}
Holder::Holder(Service* child) : Serializable(DataTypeNodeProperties), child(child) {}
Holder::~Holder()
{
    delete child;
}

void write(JsonWriter& json, Holder& holder)
{
    json.put("before", 1);
    json.put("child", holder.child);
    json.put("behind", 2);
}

void read(JsonReader& json, Holder& holder)
{
    json.optional("child", holder.child);
}

Chain::Chain() : Serializable(DataTypePersistent) {}
Chain::~Chain() = default;

void write(JsonWriter& json, Chain& chain)
{
    json.put("child", chain.child);
}

void read(JsonReader&, Chain&) {}

}  // namespace OrvuTests

namespace Orvu {

CONTRACT(OrvuTests::Scripted, Formatted)
CONTRACT(OrvuTests::Holder, Compact)
CONTRACT(OrvuTests::Chain, Compact)

}  // namespace Orvu

namespace OrvuTests {

ENTRY_POINTS(Scripted)
ENTRY_POINTS(Holder)
ENTRY_POINTS(Chain)

int faultOf(const std::string& text, const Scripted::Reads& reads, Place place)
{
    const CheckedText checked(text.c_str());
    const JsonValue value = checked.value();
    JsonReader json(place == Place::Nested ? value.nested() : value);
    reads(json);
    return json.error();
}

std::string written(PrintStyle style, Scripted::Writes writes)
{
    Scripted message(std::move(writes));
    Contract contract = contractOf<Scripted>();
    contract.style = style;
    return taken(writeText(message, contract));
}

}  // namespace OrvuTests
