#include <string>
#include <string_view>

#include "fuzz/Fuzz.h"
#include "listener/ValueSplitter.h"
#include "listener/WebSocketClient.h"

using namespace Orvu;

/// \file
/// What a publisher pushes, over TCP and as the frames of a WebSocket, whole and cut into pieces.

namespace OrvuFuzz {
namespace {

constexpr std::size_t kLongestValue = 64;  // bytes: inputs are short

bool isWhite(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

/// What was handed over, however the text was cut.
class Record : public ValueSplitter::Sink {
public:
    void value(std::string_view json) override
    {
        require(json.size() <= kLongestValue, "a value keeps to the limit");
        require(!json.empty() && !isWhite(json.front()) && !isWhite(json.back()), "a value has no blanks around it");
        add(json);
        events += "<value " + std::string(json) + ">";
        isInText_ = false;
    }
    void text(std::string_view bytes) override
    {
        require(!bytes.empty(), "a text has bytes");
        add(bytes);
        if (!isInText_) events += "<text>";
        events += bytes;
        isInText_ = true;
    }
    void endText() override
    {
        require(isInText_, "what ends began");
        events += "<end>";
        isInText_ = false;
    }

    std::string events;
    std::string bytes;  // without white space

private:
    void add(std::string_view handedOver)
    {
        require(handedOver.data()[handedOver.size()] == '\0', "a NUL follows");
        for (const char byte : handedOver)
            if (!isWhite(byte)) bytes += byte;
    }

    bool isInText_ = false;
};

/// A stream in pieces, whose sizes follow from its bytes; whole when `isCut` is false.
template <class Take>
void forEachPiece(const std::string& stream, bool isCut, Take take)
{
    unsigned random = static_cast<unsigned>(stream.size()) + 1;
    for (std::size_t at = 0; at < stream.size();) {
        random = random * 1103515245u + 12345u + static_cast<unsigned char>(stream[at]);
        const std::size_t size = isCut ? 1 + (random >> 16) % 7 : stream.size();
        std::string piece = stream.substr(at, size);
        take(piece);
        at += size;
    }
}

void add(ValueSplitter& splitter, std::string_view bytes)
{
    std::string room = std::string(bytes) + "#";
    splitter.add(room.data(), bytes.size());
    require(room == std::string(bytes) + "#", "what was given is left as it was");
}

Record heardOverTcp(const std::string& stream, bool isCut)
{
    Record record;
    ValueSplitter splitter(record, kLongestValue);
    forEachPiece(stream, isCut, [&](const std::string& piece) { add(splitter, piece); });
    splitter.finish();
    return record;
}

Record heardOverAWebSocket(const std::string& stream, bool isCut)
{
    using Kind = ServerFrames::Kind;
    Record record;
    ValueSplitter splitter(record, kLongestValue);
    ServerFrames frames;
    bool isOver = false;
    forEachPiece(stream, isCut, [&](const std::string& piece) {
        std::string_view bytes = piece;
        for (Kind kind = Kind::Payload; !isOver && kind != Kind::Nothing;) {
            const ServerFrames::Part part = frames.next(bytes);
            kind = part.kind;
            add(splitter, part.payload);
            if (kind == Kind::MessageEnd) splitter.finish();
            if (kind == Kind::Ping) {
                require(frames.ping().size() <= 125, "a ping is short");
                record.events += "<ping " + frames.ping() + ">";
            }
            isOver = kind == Kind::Close || kind == Kind::Fault;
        }
    });
    splitter.finish();
    return record;
}

std::string withoutWhiteSpace(const std::string& stream)
{
    std::string bytes;
    for (const char byte : stream)
        if (!isWhite(byte)) bytes += byte;
    return bytes;
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using namespace OrvuFuzz;
    const std::string stream = textOf(bytes, size);
    const Record whole = heardOverTcp(stream, false);
    require(whole.events == heardOverTcp(stream, true).events, "a stream is heard alike whole and in pieces");
    require(whole.bytes == withoutWhiteSpace(stream), "nothing is lost but white space");
    require(heardOverAWebSocket(stream, false).events == heardOverAWebSocket(stream, true).events,
            "frames are heard alike whole and in pieces");
    faultOfAnswer(stream, "dGhlIHNhbXBsZSBub25jZQ==");
    return 0;
}
