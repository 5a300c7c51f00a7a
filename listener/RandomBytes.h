#pragma once

#include <array>
#include <cstddef>
#include <sys/random.h>

namespace Orvu {

/// Random bytes of the system; zeros when it has none. No secret may depend on them.
template <std::size_t Size>
std::array<unsigned char, Size> randomBytes()
{
    std::array<unsigned char, Size> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) < 0) bytes.fill(0);
    return bytes;
}

}  // namespace Orvu
