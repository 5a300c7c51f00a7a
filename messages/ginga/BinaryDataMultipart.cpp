#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/ginga/Files.h"
#include "messages/services/EventInformation.h"
#include "orvu/Files.h"

namespace Orvu {
namespace {

bool hasBytes(const BinaryData& part)
{
    return part.buffer && part.bufferSize != 0;
}

}  // namespace

BinaryDataMultipart::BinaryDataMultipart() : Serializable(DataTypeBinaryDataMultipart) {}
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
    const auto newPart = [] { return std::make_unique<BinaryData>(DataTypeBinaryDataMultipart); };
    const auto keep = [&](std::unique_ptr<BinaryData> part) {
        if (!hasBytes(*part)) return;
        message.parts.push_back(part.get());
        part.release();
    };
    json.optional("serviceContextId", message.serviceContextId);
    json.required("binaryDataMultipart", eachChild(newPart, keep));
    json.optional("timestamp", message.timestamp);
}

ENTRY_POINTS(BinaryDataMultipart, Formatted)

}  // namespace Orvu
