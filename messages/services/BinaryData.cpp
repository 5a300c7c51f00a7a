#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <memory>

#include "codecs/Base64.h"
#include "messages/core/Message.h"
#include "orvu/BinaryData.h"

namespace Orvu {
namespace {

constexpr unsigned kLargest = 64u << 20;  // bytes
constexpr unsigned kRoom = 4;             // a block has room for so many times the announced size
constexpr unsigned kUnlimited = ~0u;      // the room of a block of the application, which only that knows

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
    unsigned& size;

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
        size = static_cast<unsigned>(decoder.size());
        block = made.release();
        return true;
    }
};

}  // namespace

/// Of a received block no more than came. Once the application has set another size, what the block has room for: the
/// allocator knows that, since the application may have put a block of its own where the received one lay.
unsigned sendable(const BinaryData& data)
{
    if (data.buffer != data.knownBlock_) return data.bufferSize;
    if (data.bufferSize == data.announced_) return std::min(data.bufferSize, data.knownSize_);
    if (data.bufferSize <= data.knownRoom_) return data.bufferSize;
    return static_cast<unsigned>(std::min<std::size_t>(data.bufferSize, malloc_usable_size(data.buffer)));
}

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
    json.put("buffer", AsBase64{data.buffer, sendable(data)});
    json.put("timestamp", data.timestamp);
}

void read(JsonReader& json, BinaryData& data)
{
    const unsigned heldSize = sendable(data);
    json.required("serviceContextId", data.serviceContextId);
    if (!json.required("bufferSize", data.bufferSize)) return;
    data.announced_ = data.bufferSize;  // not the size of the block held, should the read end here
    data.knownSize_ = heldSize;
    if (data.buffer != data.knownBlock_) data.knownRoom_ = kUnlimited;
    data.knownBlock_ = data.buffer;
    unsigned size = 0;
    if (!json.required("buffer", AsBlock{data.bufferSize, data.buffer, size}) || json.failed()) return;
    data.knownBlock_ = data.buffer;  // the block held before is the application's from now on
    data.knownSize_ = size;
    data.knownRoom_ = kRoom * data.bufferSize;
    json.optional("timestamp", data.timestamp);
}

MESSAGE(BinaryData, Formatted)

}  // namespace Orvu
