#include "orvu/BinaryData.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "codecs/Base64.h"
#include "messages/core/Message.h"

namespace Orvu {
namespace {

constexpr unsigned kLargest = 64u << 20;  // bytes
constexpr unsigned kRoom = 4;             // a block has room for so many times the announced size

/// Bytes as Base64.
struct AsBase64 {
    const unsigned char* bytes;
    unsigned size;

    void write(JsonWriter& json) const { json.value(Base64::encode(bytes, bytes ? size : 0)); }
};

struct FreeBlock {
    void operator()(unsigned char* block) const { std::free(block); }
};

/// The bytes of a Base64 text in a new, zeroed block for the announced size; anything else fails the read.
struct AsBlock {
    unsigned announced;
    unsigned char*& block;

    const Expected& expected() const { return kExpectedText; }
    bool read(JsonReader& json, JsonValue value) const
    {
        if (!value.isText()) return false;
        if (announced > kLargest) json.fail(Fault::WrongKind, "is beside a \"bufferSize\" above 64 MiB");
        if (announced <= kLargest && !decode(value))
            json.fail(Fault::WrongKind, "has more bytes than \"bufferSize\" allows");
        return true;
    }

private:
    /// Straight from the text into the block. False, and nothing changes, when the bytes do not fit it or memory runs
    /// out.
    bool decode(JsonValue value) const
    {
        const std::size_t room = std::size_t{kRoom} * announced;
        std::unique_ptr<unsigned char, FreeBlock> made(
            static_cast<unsigned char*>(std::calloc(std::max<std::size_t>(room, 1), 1)));
        if (!made) return false;
        Base64::Decoder decoder(made.get(), room);
        TextRuns runs(value);
        for (std::string_view run = runs.next(); !run.empty(); run = runs.next())
            decoder.add(run);
        if (!decoder.finish()) return false;
        block = made.release();
        return true;
    }
};

}  // namespace

/// How many bytes the block of a message has room for: what the last read left, or what the application says, once it
/// has set the block or its size.
class BlockRoom {
public:
    static unsigned of(const BinaryData& data)
    {
        const bool isAsRead = data.buffer == data.left_.buffer && data.bufferSize == data.left_.bufferSize;
        return isAsRead ? data.left_.room : data.bufferSize;
    }
    static void keep(BinaryData& data, unsigned room) { data.left_ = {data.buffer, data.bufferSize, room}; }
};

BinaryData::BinaryData(DataType dataType) : Serializable(dataType) {}
BinaryData::~BinaryData()
{
    std::free(buffer);
}

void write(JsonWriter& json, BinaryData& data)
{
    json.headerIfSet(data);
    json.put("serviceContextId", data.serviceContextId);
    json.put("bufferSize", data.bufferSize);
    json.put("buffer", AsBase64{data.buffer, std::min(data.bufferSize, BlockRoom::of(data))});
    json.put("timestamp", data.timestamp);
}

void read(JsonReader& json, BinaryData& data)
{
    const unsigned room = BlockRoom::of(data);
    json.required("serviceContextId", data.serviceContextId);
    if (!json.required("bufferSize", data.bufferSize)) return;
    BlockRoom::keep(data, room);  // should the read end here
    if (!json.required("buffer", AsBlock{data.bufferSize, data.buffer}) || json.failed()) return;
    BlockRoom::keep(data, kRoom * data.bufferSize);
    json.optional("timestamp", data.timestamp);
}

MESSAGE(BinaryData, Formatted)

}  // namespace Orvu
