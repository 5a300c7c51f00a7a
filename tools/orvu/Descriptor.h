#pragma once

#include <unistd.h>
#include <utility>

namespace OrvuTool {

/// Owns one descriptor and closes it; empty below 0.
class Descriptor {
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}  ///< Takes `fd`.
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor()
    {
        if (fd_ >= 0) close(fd_);
    }

    int fd() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }

private:
    int fd_;
};

}  // namespace OrvuTool
