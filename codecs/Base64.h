#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "orvu/Export.h"

/// \file
/// Base64 with the standard alphabet and "=" padding (RFC 4648, section 4). Pure functions; any thread.

namespace Orvu {
namespace Base64 {

/// Whether `c` is one of the 64 characters: a letter, a digit, "+" or "/". The padding is none of them.
ORVU_EXPORT bool is_base64(unsigned char c);

/// `length` bytes as one line. Without bytes, "". Throws std::bad_alloc when out of memory.
ORVU_EXPORT std::string encode(const unsigned char* bytes, unsigned int length);

/// `length` bytes as lines of 72 characters, a line feed after each of them, also after the last, shorter one;
/// NUL-terminated. The caller releases the text with `free`. Null when it would be too long for the address space, or
/// when out of memory. Without bytes, an empty text.
ORVU_EXPORT unsigned char* encodeAlloc(const unsigned char* bytes, unsigned int length);

/// The bytes that `text` encodes, up to the first "=" or other character that is not of the alphabet. A last group
/// of two or three characters gives one or two bytes. Throws std::bad_alloc when out of memory.
ORVU_EXPORT std::string decode(const std::string& text);

/// The same for a text that comes in pieces, into a block that the caller owns.
class Decoder {
public:
    /// `block` has room for `room` bytes.
    Decoder(unsigned char* block, std::size_t room) : begin_(block), to_(block), end_(block + room) {}

    void add(std::string_view piece);
    /// After the last piece. False when the bytes did not fit the block.
    bool finish();
    std::size_t size() const { return static_cast<std::size_t>(to_ - begin_); }

private:
    void put(std::uint32_t byte);

    unsigned char* const begin_;
    unsigned char* to_;
    unsigned char* const end_;
    std::uint32_t bits_ = 0;  // the characters of the group so far, six bits each
    unsigned inGroup_ = 0;
    bool hasEnded_ = false;  // a character that is not of the alphabet was there
    bool fits_ = true;
};

}  // namespace Base64
}  // namespace Orvu
