#include "codecs/Base64.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace Orvu {
namespace Base64 {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned kLineLength = 72;
constexpr unsigned kBytesPerLine = kLineLength / 4 * 3;
constexpr std::uint8_t kInvalid = 64;

/// The value of each character; kInvalid for those outside the alphabet.
constexpr std::array<std::uint8_t, 256> kValues = [] {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values)
        value = kInvalid;
    for (std::uint8_t i = 0; i < 64; ++i)
        values[static_cast<unsigned char>(kAlphabet[i])] = i;
    return values;
}();

std::uint8_t valueOf(char c)
{
    return kValues[static_cast<unsigned char>(c)];
}

/// Writes the characters of up to three bytes, padding included. Returns the place after them.
char* encodeGroup(const unsigned char* bytes, unsigned length, char* to)
{
    const unsigned second = length > 1 ? bytes[1] : 0;
    const unsigned third = length > 2 ? bytes[2] : 0;
    *to++ = kAlphabet[bytes[0] >> 2];
    *to++ = kAlphabet[(bytes[0] & 3u) << 4 | second >> 4];
    *to++ = length > 1 ? kAlphabet[(second & 15u) << 2 | third >> 6] : '=';
    *to++ = length > 2 ? kAlphabet[third & 63u] : '=';
    return to;
}

char* encodeLine(const unsigned char* bytes, unsigned length, char* to)
{
    for (; length > 3; length -= 3, bytes += 3)
        to = encodeGroup(bytes, 3, to);
    return length > 0 ? encodeGroup(bytes, length, to) : to;
}

}  // namespace

bool is_base64(unsigned char c)
{
    return kValues[c] != kInvalid;
}

std::string encode(const unsigned char* bytes, unsigned int length)
{
    std::string text((std::size_t{length} + 2) / 3 * 4, '\0');
    encodeLine(bytes, length, text.data());
    return text;
}

unsigned char* encodeAlloc(const unsigned char* bytes, unsigned int length)
{
    const std::uint64_t characters = std::uint64_t{length} * 4 / 3 + 4;
    const std::uint64_t size = characters + characters / kLineLength + 1;
    if (size > std::numeric_limits<std::size_t>::max()) return nullptr;
    auto* const text = static_cast<unsigned char*>(std::malloc(static_cast<std::size_t>(size)));
    if (!text) return nullptr;
    char* to = reinterpret_cast<char*>(text);
    while (length > 0) {
        const unsigned line = length < kBytesPerLine ? length : kBytesPerLine;
        to = encodeLine(bytes, line, to);
        *to++ = '\n';
        bytes += line;
        length -= line;
    }
    *to = '\0';
    return text;
}

void Decoder::add(std::string_view piece)
{
    for (const char c : piece) {
        const std::uint8_t value = valueOf(c);
        hasEnded_ = hasEnded_ || value == kInvalid;
        if (hasEnded_) return;
        bits_ = bits_ << 6 | value;
        if (++inGroup_ < 4) continue;
        put(bits_ >> 16);
        put(bits_ >> 8);
        put(bits_);
        bits_ = inGroup_ = 0;
    }
}

bool Decoder::finish()
{
    if (inGroup_ == 2) put(bits_ >> 4);
    if (inGroup_ == 3) put(bits_ >> 10);
    if (inGroup_ == 3) put(bits_ >> 2);
    inGroup_ = 0;
    return fits_;
}

void Decoder::put(std::uint32_t byte)
{
    fits_ = fits_ && to_ != end_;
    if (fits_) *to_++ = static_cast<unsigned char>(byte);
}

std::string decode(const std::string& text)
{
    std::string bytes(text.size() / 4 * 3 + 2, '\0');
    Decoder decoder(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size());
    decoder.add(text);
    decoder.finish();
    bytes.resize(decoder.size());
    return bytes;
}

}  // namespace Base64
}  // namespace Orvu
