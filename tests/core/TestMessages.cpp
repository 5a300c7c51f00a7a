#include "core/TestMessages.h"

#include <utility>

#include "messages/services/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {

Scripted::Scripted() : Serializable(DataTypeProperty) {}
Scripted::Scripted(Writes writes) : Serializable(DataTypeProperty), writes(std::move(writes)) {}
Scripted::Scripted(Reads reads) : Serializable(DataTypeProperty), reads(std::move(reads)) {}
Scripted::~Scripted() = default;

void write(JsonWriter& json, Scripted& message)
{
    if (message.writes) message.writes(json);
}

void read(JsonReader& json, Scripted& message)
{
    if (message.reads) message.reads(json);
}

ENTRY_POINTS(Scripted, Formatted)

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

ENTRY_POINTS(Holder, Compact)

Chain::Chain() : Serializable(DataTypePersistent) {}
Chain::~Chain() = default;

void write(JsonWriter& json, Chain& chain)
{
    json.put("child", chain.child);
}

void read(JsonReader&, Chain&) {}

ENTRY_POINTS(Chain, Compact)

std::string written(PrintStyle style, Scripted::Writes writes)
{
    Scripted message(std::move(writes));
    return taken(writeText(message, contractOf<Scripted>(), style));
}

}  // namespace OrvuTests
