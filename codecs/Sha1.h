#pragma once

#include <cstdint>

#include "orvu/Export.h"

/// \file
/// The SHA-1 digest of RFC 3174, with its names, results and order of calls: reset, any number of inputs, result.
/// A context is used from one thread at a time.

namespace Orvu {
namespace Sha1 {

constexpr int kDigestSize = 20;  ///< Bytes.

/// What the functions return (RFC 3174, section 7.1).
enum Result : int {
    shaSuccess = 0,
    shaNull = 1,        ///< A null argument.
    shaStateError = 3,  ///< Input after the result was taken.
};

/// One digest in the making.
struct SHA1Context {
    std::uint32_t Intermediate_Hash[kDigestSize / 4];
    std::uint32_t Length_Low;          ///< The message's length in bits, lower half.
    std::uint32_t Length_High;         ///< Upper half.
    std::int16_t Message_Block_Index;  ///< Bytes in the block, 0 to 63 between calls.
    std::uint8_t Message_Block[64];
    int Computed;   ///< The digest was made.
    int Corrupted;  ///< Non-zero after an error: 1 for a message of more than 2^64 - 1 bits, else a Result.
};

/// Begins a digest. Must come first: a context has no constructor.
ORVU_EXPORT int SHA1Reset(SHA1Context* context);

/// Adds `length` bytes of the message. A length of 0 is a success, whatever the pointers are.
ORVU_EXPORT int SHA1Input(SHA1Context* context, const unsigned char* message, unsigned int length);

/// Ends the message at the first call and stores its digest; later calls store the same again.
ORVU_EXPORT int SHA1Result(SHA1Context* context, unsigned char digest[kDigestSize]);

/// Ends the message with its padding and length (RFC 3174, section 4). A step of SHA1Result().
ORVU_EXPORT void SHA1PadMessage(SHA1Context* context);

/// Adds the full block to the hash (RFC 3174, section 6.1). A step of the others.
ORVU_EXPORT void SHA1ProcessMessageBlock(SHA1Context* context);

}  // namespace Sha1
}  // namespace Orvu
