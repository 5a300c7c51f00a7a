#include "listener/WebSocketClient.h"

#include <algorithm>
#include <cctype>

#include "codecs/Base64.h"
#include "messages/core/Json.h"
#include "messages/core/JsonPrinter.h"
#include "transport/WebSocketProtocol.h"

namespace Orvu {
namespace {

constexpr int kClose = 0x8;  // opcodes, RFC 6455, section 5.2
constexpr int kPong = 0xa;

std::string inLowerCase(std::string text)
{
    for (char& letter : text)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return text;
}

std::string trimmed(const std::string& text)
{
    const std::size_t begin = std::min(text.find_first_not_of(" \t\r"), text.size());
    return text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

/// The value of the first field of this name; empty without one.
std::string fieldOf(const std::string& head, const std::string& name)
{
    for (std::size_t begin = 0; begin < head.size();) {
        const std::size_t end = std::min(head.find('\n', begin), head.size());
        const std::string line = head.substr(begin, end - begin);
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos && inLowerCase(line.substr(0, colon)) == name)
            return trimmed(line.substr(colon + 1));
        begin = end + 1;
    }
    return "";
}

/// As a JSON string, which is safe to log whatever a server sent. Nothing when out of memory.
std::string inQuotes(const std::string& text)
{
    JsonPrinter printer(PrintStyle::Compact);
    printer.text(text.c_str());
    const JsonText quoted(printer.take());
    return quoted ? quoted.get() : "";
}

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

}  // namespace

std::string webSocketKey(const std::array<unsigned char, 16>& random)
{
    return Base64::encode(random.data(), random.size());
}

std::string openingRequest(const std::string& host, int port, const std::string& key)
{
    return "GET / HTTP/1.1\r\nHost: " + host + ":" + std::to_string(port) +
           "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Key: " + key +
           "\r\nSec-WebSocket-Version: 13\r\n\r\n";
}

std::string faultOfAnswer(const std::string& head, const std::string& key)
{
    const std::string status = trimmed(head.substr(0, head.find('\n')));
    if (!startsWith(status, "HTTP/1.1 101 ")) return "it answers " + inQuotes(status);
    if (inLowerCase(fieldOf(head, "upgrade")) != "websocket" ||
        inLowerCase(fieldOf(head, "connection")).find("upgrade") == std::string::npos)
        return "it changes to something else than a WebSocket";
    if (fieldOf(head, "sec-websocket-accept") != getHSaccept(key)) return "it does not confirm the key";
    return "";
}

std::string maskedFrame(int opcode, std::string_view payload, const std::array<unsigned char, 4>& mask)
{
    std::string frame;
    frame += static_cast<char>(0x80 | opcode);
    frame += static_cast<char>(0x80 | payload.size());
    for (const unsigned char byte : mask)
        frame += static_cast<char>(byte);
    for (std::size_t i = 0; i < payload.size(); ++i)
        frame += static_cast<char>(payload[i] ^ mask[i % mask.size()]);
    return frame;
}

std::string closeFrame(const std::array<unsigned char, 4>& mask)
{
    return maskedFrame(kClose, "\x03\xe8", mask);  // 1000, a normal closure: section 7.4.1
}

std::string pongFrame(std::string_view payload, const std::array<unsigned char, 4>& mask)
{
    return maskedFrame(kPong, payload, mask);
}

ServerFrames::Part ServerFrames::next(std::string_view& bytes)
{
    while (true) {
        if (!inFrame_ && !takeHeader(bytes)) return {Kind::Nothing, {}};
        if (!isAllowed()) return {Kind::Fault, {}};
        if ((header_[0] & 0x0f) == 0x08) return {Kind::Close, {}};
        const Part part = takePayload(bytes);
        if (inFrame_ || part.kind != Kind::Nothing) return part;
    }
}

/// True when the header is whole.
bool ServerFrames::takeHeader(std::string_view& bytes)
{
    while (header_.size() < headerSize() && !bytes.empty()) {
        header_ += bytes.front();
        bytes.remove_prefix(1);
    }
    inFrame_ = header_.size() == headerSize();
    if (!inFrame_) return false;
    left_ = length();
    ping_.clear();
    return true;
}

std::size_t ServerFrames::headerSize() const
{
    if (header_.size() < 2) return 2;
    const int field = header_[1] & 0x7f;
    return field == 127 ? 10 : field == 126 ? 4 : 2;
}

std::uint64_t ServerFrames::length() const
{
    if (header_.size() == 2) return header_[1] & 0x7f;
    std::uint64_t length = 0;
    for (std::size_t i = 2; i < header_.size(); ++i)
        length = length << 8 | static_cast<unsigned char>(header_[i]);
    return length;
}

/// Whether the header may come from a server that was asked for no extension (RFC 6455, sections 5.2 and 5.5).
bool ServerFrames::isAllowed() const
{
    const int opcode = header_[0] & 0x0f;
    const bool isKnown = opcode <= 2 || (opcode >= 8 && opcode <= 10);
    const bool isReserved = (header_[0] & 0x70) != 0;
    const bool isMasked = (header_[1] & 0x80) != 0;
    const bool isTooLong = header_.size() == 10 && (header_[2] & 0x80) != 0;
    const bool isLongControl = isControl() && (header_.size() > 2 || (header_[0] & 0x80) == 0);
    return isKnown && !isReserved && !isMasked && !isTooLong && !isLongControl;
}

/// None when the payload needs more bytes, or when the frame that ended needs no action.
ServerFrames::Part ServerFrames::takePayload(std::string_view& bytes)
{
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size()));
    const std::string_view payload = bytes.substr(0, size);
    bytes.remove_prefix(size);
    left_ -= size;
    if (isPing()) ping_ += payload;
    if (size > 0 && !isControl()) return {Kind::Payload, payload};
    return {left_ > 0 ? Kind::Nothing : endOfFrame(), {}};
}

ServerFrames::Kind ServerFrames::endOfFrame()
{
    const Kind kind = isPing()                                   ? Kind::Ping
                      : !isControl() && (header_[0] & 0x80) != 0 ? Kind::MessageEnd
                                                                 : Kind::Nothing;
    header_.clear();
    inFrame_ = false;
    return kind;
}

}  // namespace Orvu
