#include <memory>
#include <vector>

#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "orvu/BinaryData.h"

namespace Orvu {
namespace {

bool hasBytes(const BinaryData& part)
{
    return part.buffer && part.bufferSize != 0;
}

/// An array of parts; those that cannot be read, or hold no bytes, are dropped. Only for reading.
struct AsParts {
    std::vector<BinaryData*>& parts;

    const Expected& expected() const { return kExpectedChildren; }
    bool read(JsonReader&, JsonValue array) const
    {
        for (const JsonValue item : array.items()) {
            array.takeRoom(sizeof(BinaryData));
            auto part = std::make_unique<BinaryData>(BinaryDataMultipart::kDataType);
            if (!readChild(*part, contractOf<BinaryData>(), item) || !hasBytes(*part)) continue;
            parts.push_back(part.get());
            part.release();
        }
        return true;
    }
};

}  // namespace

BinaryDataMultipart::BinaryDataMultipart() : Serializable(kDataType) {}
BinaryDataMultipart::~BinaryDataMultipart()
{
    deleteAll(parts);
}

void BinaryDataMultipart::addBinaryData(BinaryData* part)
{
    if (part && hasBytes(*part)) take(parts, part);
}

void write(JsonWriter& json, BinaryDataMultipart& message)
{
    json.headerIfSet(message);
    json.put("serviceContextId", message.serviceContextId);
    json.list("binaryDataMultipart", message.parts);
    json.put("timestamp", message.timestamp);
}

void read(JsonReader& json, BinaryDataMultipart& message)
{
    json.optional("serviceContextId", message.serviceContextId);
    json.required("binaryDataMultipart", AsParts{message.parts});
    json.optional("timestamp", message.timestamp);
}

MESSAGE(BinaryDataMultipart, Formatted)

}  // namespace Orvu
