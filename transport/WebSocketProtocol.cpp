#include "transport/WebSocketProtocol.h"

#include <cstring>
#include <new>

#include "codecs/Base64.h"
#include "codecs/Sha1.h"

namespace Orvu {
namespace {

constexpr char kGuid[] = "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";  // RFC 6455, section 1.3
constexpr std::size_t kKeyLength = 24;

constexpr unsigned char kFinal = 0x80;
constexpr std::size_t kMaskingKeySize = 4;

/// The first line of `request` that contains `word`; empty without one.
std::string lineWith(const std::string& request, const char* word)
{
    const std::size_t at = request.find(word);
    if (at == std::string::npos) return "";
    const std::size_t before = request.rfind("\r\n", at);
    const std::size_t begin = before == std::string::npos ? 0 : before + 2;
    return request.substr(begin, request.find("\r\n", at) - begin);
}

/// The second of the words that blanks divide `line` into; empty without one.
std::string secondWord(const std::string& line)
{
    const std::size_t blank = line.find(' ', line.find_first_not_of(' '));
    const std::size_t begin = line.find_first_not_of(' ', blank);
    return begin == std::string::npos ? "" : line.substr(begin, line.find(' ', begin) - begin);
}

std::size_t maskingKeyAt(unsigned char lengthField)
{
    switch (lengthField & 0x7f) {
        case 126:
            return 4;
        case 127:
            return 10;
        default:
            return 2;
    }
}

}  // namespace

std::string readOpeningRequest(ByteSource& source)
{
    std::string request(kWebSocketReceiveSize, '\0');
    std::size_t have = 0;
    while (have < request.size()) {
        const ssize_t got = source.read(&request[have], request.size() - have);
        if (got <= 0) break;
        have += static_cast<std::size_t>(got);
        if (request.find("\r\n\r\n") < have) break;
    }
    request.resize(have);
    return request;
}

std::string getHSaccept(const std::string& key)
{
    const std::string text = key + kGuid;
    unsigned char digest[Sha1::kDigestSize];
    Sha1::SHA1Context context;
    Sha1::SHA1Reset(&context);
    Sha1::SHA1Input(&context, reinterpret_cast<const unsigned char*>(text.data()), static_cast<unsigned>(text.size()));
    Sha1::SHA1Result(&context, digest);
    return Base64::encode(digest, sizeof digest);
}

std::optional<std::string> getHSresponse(const std::string& request)
{
    const std::string key = secondWord(lineWith(request, "Sec-WebSocket-Key"));
    if (key.size() != kKeyLength) return std::nullopt;
    return "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Accept: " +
           getHSaccept(key) + "\r\n\r\n";
}

FrameHeader::FrameHeader(int opcode, unsigned int payloadSize)
{
    bytes[0] = static_cast<unsigned char>(kFinal | opcode);
    const int lengthSize = payloadSize <= 125 ? 0 : payloadSize <= 0xffff ? 2 : 8;
    bytes[1] = static_cast<unsigned char>(lengthSize == 0 ? payloadSize : lengthSize == 2 ? 126 : 127);
    size = 2 + static_cast<std::size_t>(lengthSize);
    for (std::size_t i = size; i > 2; --i, payloadSize >>= 8)
        bytes[i - 1] = static_cast<unsigned char>(payloadSize);
}

ReceivedFrame decodeFrame(const unsigned char* bytes, std::size_t size)
{
    ReceivedFrame frame;
    frame.opcode = bytes[0] & 0x0f;
    if (bytes[0] != (kFinal | WS_FR_OP_TXT) || size < 2) return frame;
    const std::size_t keyAt = maskingKeyAt(bytes[1]);
    if (size < keyAt + kMaskingKeySize) return frame;

    const unsigned char* const key = bytes + keyAt;
    const unsigned char* const masked = key + kMaskingKeySize;
    std::string payload(size - keyAt - kMaskingKeySize, '\0');
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<char>(masked[i] ^ key[i % kMaskingKeySize]);
    frame.payload = std::move(payload);
    return frame;
}

}  // namespace Orvu
