#pragma once

#include <cstddef>
#include <cstring>

namespace Orvu {

/// One growing text, made by `malloc`. Once it has failed, because memory ran out or because its user says so, nothing
/// is appended any more.
class TextBuffer {
public:
    TextBuffer() = default;
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;
    ~TextBuffer();

    void append(char byte)
    {
        if (char* const to = room(1)) {
            *to = byte;
            ++size_;
        }
    }
    void append(const char* bytes, std::size_t size)
    {
        if (char* const to = room(size)) {
            std::memcpy(to, bytes, size);
            size_ += size;
        }
    }
    void append(std::size_t count, char byte)
    {
        if (char* const to = room(count)) {
            std::memset(to, byte, count);
            size_ += count;
        }
    }

    /// Where the next bytes go, with room for `size` of them; null after a failure. endAt() says how many were written.
    char* room(std::size_t size)
    {
        if (failed_) return nullptr;
        if (size > capacity_ - size_ && !grow(size)) return nullptr;
        return text_ + size_;
    }
    void endAt(const char* end) { size_ = static_cast<std::size_t>(end - text_); }

    std::size_t size() const { return size_; }
    /// Drops what was appended since the text had this size.
    void cut(std::size_t size) { size_ = size; }

    void fail() { failed_ = true; }
    bool failed() const { return failed_; }

    /// The finished text, NUL-terminated, the caller's from then on; null after a failure.
    char* take();

private:
    bool grow(std::size_t size);

    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
    bool failed_ = false;
};

}  // namespace Orvu
