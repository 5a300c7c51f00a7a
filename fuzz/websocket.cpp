#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

#include "codecs/Base64.h"
#include "fuzz/Fuzz.h"
#include "transport/WebSocketProtocol.h"

using namespace Orvu;

/// \file
/// What a WebSocket client sends: its opening request, in pieces as long as its first byte says, and its frames.

namespace OrvuFuzz {
namespace {

/// Bytes that come in reads of at most `piece`.
class Pieces : public ByteSource {
public:
    Pieces(const std::string& bytes, std::size_t piece) : bytes_(bytes), piece_(piece) {}

    ssize_t read(char* to, std::size_t size) override
    {
        const std::size_t count = std::min({size, piece_, bytes_.size() - at_});
        std::memcpy(to, bytes_.data() + at_, count);
        at_ += count;
        return static_cast<ssize_t>(count);
    }

private:
    const std::string& bytes_;
    const std::size_t piece_;
    std::size_t at_ = 0;
};

std::string requestIn(const std::string& input, std::size_t piece)
{
    Pieces source(input, piece);
    return readOpeningRequest(source);
}

/// What comes behind the blank line in one read with it is kept.
std::string untilBlankLine(const std::string& request)
{
    const std::size_t end = request.find("\r\n\r\n");
    return end == std::string::npos ? request : request.substr(0, end + 4);
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
    const std::string whole = requestIn(input, input.size() + 1);
    const std::string cut = requestIn(input, piece);
    require(whole == input.substr(0, kWebSocketReceiveSize), "a request is what came, up to its bound");
    require(untilBlankLine(cut) == untilBlankLine(whole), "a request is the same in pieces");
    checkAnswer(whole);
    checkAnswer(cut);
}

/// The payload is checked from its end: behind it stands nothing, before it the masking key.
void checkFrame(const std::uint8_t* bytes, std::size_t size)
{
    const ReceivedFrame frame = decodeFrame(bytes, size);
    require(frame.opcode == (bytes[0] & 0x0f), "a frame says what it is");
    require(!frame.payload || bytes[0] == 0x81, "only a final text has a payload");
    if (!frame.payload) return;
    const std::size_t length = frame.payload->size();
    require(length + 6 <= size, "a payload stands behind the length and the key");
    const std::uint8_t* const masked = bytes + size - length;
    for (std::size_t i = 0; i < length; ++i)
        require(static_cast<std::uint8_t>((*frame.payload)[i]) == (masked[i] ^ *(masked - 4 + i % 4)),
                "a payload is unmasked");
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    if (size == 0) return 0;
    OrvuFuzz::checkRequest(OrvuFuzz::textOf(bytes, size), bytes[0] + std::size_t{1});
    OrvuFuzz::checkFrame(bytes, size);
    return 0;
}
