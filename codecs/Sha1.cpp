#include "codecs/Sha1.h"

#include <algorithm>
#include <cstring>

namespace Orvu {
namespace Sha1 {
namespace {

constexpr int kBlockSize = 64;
constexpr int kLengthAt = 56;  // the last eight bytes of the last block hold the length

std::uint32_t rotated(std::uint32_t word, int bits)
{
    return word << bits | word >> (32 - bits);
}

std::uint32_t bigEndian(const std::uint8_t* bytes)
{
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

void storeBigEndian(std::uint32_t word, std::uint8_t* bytes)
{
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
}

/// The function and the constant of step `t` (RFC 3174, section 5).
std::uint32_t mixed(int t, std::uint32_t b, std::uint32_t c, std::uint32_t d)
{
    if (t < 20) return ((b & c) | (~b & d)) + 0x5A827999;
    if (t < 40) return (b ^ c ^ d) + 0x6ED9EBA1;
    if (t < 60) return ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
    return (b ^ c ^ d) + 0xCA62C1D6;
}

void countBits(SHA1Context& context)
{
    context.Length_Low += 8;
    if (context.Length_Low != 0) return;
    if (++context.Length_High == 0) context.Corrupted = 1;  // the message is too long
}

void fillWithZeros(SHA1Context& context, int end)
{
    std::memset(context.Message_Block + context.Message_Block_Index, 0,
                static_cast<std::size_t>(end - context.Message_Block_Index));
    context.Message_Block_Index = static_cast<std::int16_t>(end);
}

}  // namespace

int SHA1Reset(SHA1Context* context)
{
    if (!context) return shaNull;
    *context = {{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0}, 0, 0, 0, {}, 0, 0};
    return shaSuccess;
}

int SHA1Input(SHA1Context* context, const unsigned char* message, unsigned int length)
{
    if (length == 0) return shaSuccess;
    if (!context || !message) return shaNull;
    if (context->Computed) context->Corrupted = shaStateError;
    if (context->Corrupted) return context->Corrupted;
    for (; length > 0 && !context->Corrupted; --length) {
        context->Message_Block[context->Message_Block_Index++] = *message++;
        countBits(*context);
        if (context->Message_Block_Index == kBlockSize) SHA1ProcessMessageBlock(context);
    }
    return shaSuccess;
}

int SHA1Result(SHA1Context* context, unsigned char digest[kDigestSize])
{
    if (!context || !digest) return shaNull;
    if (context->Corrupted) return context->Corrupted;
    if (!context->Computed) {
        SHA1PadMessage(context);
        std::memset(context->Message_Block, 0, kBlockSize);  // the message may be a secret
        context->Length_Low = context->Length_High = 0;
        context->Computed = 1;
    }
    for (int i = 0; i < kDigestSize / 4; ++i)
        storeBigEndian(context->Intermediate_Hash[i], digest + 4 * i);
    return shaSuccess;
}

void SHA1PadMessage(SHA1Context* context)
{
    context->Message_Block[context->Message_Block_Index++] = 0x80;
    if (context->Message_Block_Index > kLengthAt) {  // no room for the length: it takes a block of its own
        fillWithZeros(*context, kBlockSize);
        SHA1ProcessMessageBlock(context);
    }
    fillWithZeros(*context, kLengthAt);
    storeBigEndian(context->Length_High, context->Message_Block + kLengthAt);
    storeBigEndian(context->Length_Low, context->Message_Block + kLengthAt + 4);
    SHA1ProcessMessageBlock(context);
}

void SHA1ProcessMessageBlock(SHA1Context* context)
{
    std::uint32_t schedule[80];
    for (int t = 0; t < 16; ++t)
        schedule[t] = bigEndian(context->Message_Block + 4 * t);
    for (int t = 16; t < 80; ++t) {
        schedule[t] = rotated(schedule[t - 3] ^ schedule[t - 8] ^ schedule[t - 14] ^ schedule[t - 16], 1);
    }

    std::uint32_t* const hash = context->Intermediate_Hash;
    std::uint32_t a = hash[0], b = hash[1], c = hash[2], d = hash[3], e = hash[4];
    for (int t = 0; t < 80; ++t) {
        const std::uint32_t next = rotated(a, 5) + mixed(t, b, c, d) + e + schedule[t];
        e = d;
        d = c;
        c = rotated(b, 30);
        b = a;
        a = next;
    }
    hash[0] += a;
    hash[1] += b;
    hash[2] += c;
    hash[3] += d;
    hash[4] += e;
    context->Message_Block_Index = 0;
}

}  // namespace Sha1
}  // namespace Orvu
