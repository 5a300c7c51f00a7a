#include "messages/core/TextBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Orvu {
namespace {

constexpr std::size_t kFirstCapacity = 512;

}  // namespace

TextBuffer::~TextBuffer()
{
    std::free(text_);
}

char* TextBuffer::take()
{
    append('\0');
    return failed_ ? nullptr : std::exchange(text_, nullptr);
}

bool TextBuffer::grow(std::size_t size)
{
    const std::size_t capacity = std::max({kFirstCapacity, 2 * capacity_, size_ + size});
    char* const text = static_cast<char*>(std::realloc(text_, capacity));
    if (!text) {
        fail();
        return false;
    }
    text_ = text;
    capacity_ = capacity;
    return true;
}

}  // namespace Orvu
