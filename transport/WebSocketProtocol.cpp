#include "transport/WebSocketProtocol.h"

#include <algorithm>
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

constexpr char kBlankLine[] = "\r\n\r\n";

/// How many bytes of the blank line are there once `byte` follows, when `matched` were there before.
int matchedWith(unsigned char byte, int matched)
{
    if (byte == static_cast<unsigned char>(kBlankLine[matched])) return matched + 1;
    return byte == '\r' ? 1 : 0;
}

std::size_t lengthSize(unsigned char lengthField)
{
    switch (lengthField & 0x7f) {
        case 126:
            return 2;
        case 127:
            return 8;
        default:
            return 0;
    }
}

}  // namespace

std::size_t OpeningRequest::take(const unsigned char* bytes, std::size_t size)
{
    std::size_t taken = 0;
    while (taken < size && !isWhole())
        matched_ = matchedWith(bytes[taken++], matched_);
    if (keepsText_) text_.append(reinterpret_cast<const char*>(bytes), std::min(taken, kLongest - text_.size()));
    return taken;
}

void OpeningRequest::dropText()
{
    keepsText_ = false;
    text_ = std::string();
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

[[gnu::hot]] FrameHeader::FrameHeader(int opcode, unsigned int payloadSize)
{
    bytes[0] = static_cast<unsigned char>(kFinal | opcode);
    const int lengthSize = payloadSize <= 125 ? 0 : payloadSize <= 0xffff ? 2 : 8;
    bytes[1] = static_cast<unsigned char>(lengthSize == 0 ? payloadSize : lengthSize == 2 ? 126 : 127);
    size = 2 + static_cast<std::size_t>(lengthSize);
    for (std::size_t i = size; i > 2; --i, payloadSize >>= 8)
        bytes[i - 1] = static_cast<unsigned char>(payloadSize);
}

const ReceivedFrame* FrameStream::next(const unsigned char*& at, const unsigned char* end)
{
    if (isComplete_) begin();
    if (takeHeader(at, end)) takePayload(at, end);
    return isComplete_ ? &frame_ : nullptr;
}

void FrameStream::begin()
{
    frame_.opcode = 0;
    frame_.payload = std::string();
    frame_.isLost = false;
    frame_.size = 0;
    frame_.shownSize = 0;
    isComplete_ = false;
}

bool FrameStream::isTooLong() const
{
    return isText() && frame_.size >= headerSize() && payloadSize() > kLongestText;
}

bool FrameStream::isClose() const
{
    return frame_.size > 0 && frame_.opcode == WS_FR_OP_CLSE;
}

bool FrameStream::isText() const
{
    return frame_.size > 0 && frame_.shown[0] == (kFinal | WS_FR_OP_TXT);
}

/// As far as the bytes so far show.
std::size_t FrameStream::headerSize() const
{
    return frame_.size < 2 ? 2 : 2 + lengthSize(frame_.shown[1]) + kMaskingKeySize;
}

std::uint64_t FrameStream::payloadSize() const
{
    const std::size_t size = lengthSize(frame_.shown[1]);
    if (size == 0) return frame_.shown[1] & 0x7f;
    std::uint64_t length = 0;
    for (std::size_t i = 0; i < size; ++i)
        length = length << 8 | frame_.shown[2 + i];
    return length;
}

/// False when more bytes have to come. Of a close frame the first one will do.
bool FrameStream::takeHeader(const unsigned char*& at, const unsigned char* end)
{
    while (frame_.size < headerSize() && !isClose()) {
        if (at == end) return false;
        show(at, at + 1);
        ++at;
        frame_.opcode = frame_.shown[0] & 0x0f;
    }
    return true;
}

void FrameStream::takePayload(const unsigned char*& at, const unsigned char* end)
{
    if (isClose() || isTooLong()) return takeRest(at, end);
    const std::uint64_t left = payloadSize() - (frame_.size - headerSize());
    const auto here = static_cast<std::size_t>(std::min<std::uint64_t>(left, static_cast<std::size_t>(end - at)));
    isComplete_ = here == left;
    if (isText() && !frame_.isLost) unmask(at, here);
    show(at, at + here);
    at += here;
}

/// Nothing that follows is looked at.
void FrameStream::takeRest(const unsigned char*& at, const unsigned char* end)
{
    isComplete_ = isClose();
    show(at, end);
    at = end;
}

void FrameStream::show(const unsigned char* begin, const unsigned char* end)
{
    const auto size = static_cast<std::size_t>(end - begin);
    const std::size_t shown = std::min(size, ReceivedFrame::kShown - frame_.shownSize);
    std::memcpy(frame_.shown + frame_.shownSize, begin, shown);
    frame_.shownSize += shown;
    frame_.size += size;
}

void FrameStream::unmask(const unsigned char* masked, std::size_t size)
{
    const unsigned char* const key = frame_.shown + headerSize() - kMaskingKeySize;
    const std::size_t before = frame_.payload.size();
    try {
        frame_.payload.resize(before + size);
    } catch (const std::bad_alloc&) {
        frame_.payload = std::string();
        frame_.isLost = true;
        return;
    }
    for (std::size_t i = 0; i < size; ++i)
        frame_.payload[before + i] = static_cast<char>(masked[i] ^ key[(before + i) % kMaskingKeySize]);
}

}  // namespace Orvu
