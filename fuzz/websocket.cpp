#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "codecs/Base64.h"
#include "fuzz/Fuzz.h"
#include "transport/WebSocketProtocol.h"

using namespace Orvu;

/// \file
/// What a WebSocket client sends, whole, byte by byte, and in pieces as long as its last byte says:
/// its opening request, and its frames.

namespace OrvuFuzz {
namespace {

const unsigned char* bytesOf(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

/// Calls `take` with the begin and end of one piece after the other.
template <class Take>
void inPieces(const std::string& bytes, std::size_t piece, Take take)
{
    for (std::size_t at = 0; at < bytes.size(); at += piece)
        take(bytesOf(bytes) + at, bytesOf(bytes) + std::min(at + piece, bytes.size()));
}

struct Requested {
    std::string text;
    std::size_t size = 0;
    bool isWhole = false;
};

Requested requestIn(const std::string& input, std::size_t piece)
{
    OpeningRequest request;
    std::size_t size = 0;
    inPieces(input, piece, [&](const unsigned char* begin, const unsigned char* end) {
        size += request.take(begin, static_cast<std::size_t>(end - begin));
    });
    return {request.text(), size, request.isWhole()};
}

void checkAnswer(const std::string& request)
{
    const std::optional<std::string> answer = getHSresponse(request);
    if (!answer) return;
    require(request.find("Sec-WebSocket-Key") != std::string::npos, "only a request with a key is answered");
    const std::string field = "Sec-WebSocket-Accept: ";
    const std::size_t at = answer->find(field) + field.size();
    const std::string accept = answer->substr(at, answer->find("\r\n\r\n") - at);
    require(accept.size() == 28 && Base64::decode(accept).size() == 20, "an answer carries the digest of a key");
}

void checkRequest(const std::string& input, std::size_t piece)
{
    const Requested whole = requestIn(input, input.size());
    const Requested cut = requestIn(input, piece);
    const std::size_t blankLine = input.find("\r\n\r\n");
    require(whole.isWhole == (blankLine != std::string::npos), "a request is whole with its blank line");
    require(whole.size == (whole.isWhole ? blankLine + 4 : input.size()), "a request ends with its blank line");
    require(whole.text == input.substr(0, std::min(whole.size, OpeningRequest::kLongest)), "a request is what came");
    require(cut.text == whole.text && cut.size == whole.size, "a request is the same in pieces");
    checkAnswer(whole.text);
}

/// The result of a stream.
struct Streamed {
    std::vector<ReceivedFrame> frames;
    bool isTooLong = false;
};

Streamed streamedIn(const std::string& input, std::size_t piece)
{
    FrameStream stream;
    Streamed streamed;
    bool isOpen = true;
    inPieces(input, piece, [&](const unsigned char* at, const unsigned char* end) {
        while (const ReceivedFrame* const frame = isOpen ? stream.next(at, end) : nullptr) {
            streamed.frames.push_back(*frame);
            isOpen = frame->opcode != WS_FR_OP_CLSE;
        }
    });
    streamed.isTooLong = stream.isTooLong();
    return streamed;
}

bool isSame(const ReceivedFrame& a, const ReceivedFrame& b)
{
    if (a.opcode != b.opcode) return false;
    if (a.opcode == WS_FR_OP_CLSE) return true;  // the rest of it counts as far as it came along
    return a.payload == b.payload && a.size == b.size && a.shownSize == b.shownSize &&
           std::memcmp(a.shown, b.shown, a.shownSize) == 0;
}

/// One frame, whose bytes begin at `bytes`.
void checkFrame(const ReceivedFrame& frame, const unsigned char* bytes)
{
    require(frame.opcode == (bytes[0] & 0x0f), "a frame says what it is");
    require(frame.shownSize == std::min<std::uint64_t>(frame.size, ReceivedFrame::kShown) &&
                std::memcmp(frame.shown, bytes, frame.shownSize) == 0,
            "a frame shows its first bytes");
    const std::size_t length = frame.payload.size();
    if (bytes[0] != 0x81) return require(length == 0, "only a final text has a payload");
    require(length <= FrameStream::kLongestText && length + 6 <= frame.size, "a payload is bounded");
    const unsigned char* const masked = bytes + frame.size - length;
    for (std::size_t i = 0; i < length; ++i)
        require(static_cast<unsigned char>(frame.payload[i]) == (masked[i] ^ *(masked - 4 + i % 4)),
                "a payload is unmasked");
}

void checkFrames(const std::string& input, std::size_t piece)
{
    const Streamed whole = streamedIn(input, input.size());
    const Streamed cut = streamedIn(input, piece);
    require(whole.isTooLong == cut.isTooLong &&
                std::equal(whole.frames.begin(), whole.frames.end(), cut.frames.begin(), cut.frames.end(), isSame),
            "frames are the same in pieces");
    std::uint64_t at = 0;
    for (const ReceivedFrame& frame : whole.frames) {
        require(frame.size <= input.size() - at, "frames follow each other");
        checkFrame(frame, bytesOf(input) + at);
        at += frame.size;
    }
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    if (size == 0) return 0;
    const std::string input = OrvuFuzz::textOf(bytes, size);
    for (const std::size_t piece : {std::size_t{1}, bytes[size - 1] + std::size_t{1}}) {
        OrvuFuzz::checkRequest(input, piece);
        OrvuFuzz::checkFrames(input, piece);
    }
    return 0;
}
