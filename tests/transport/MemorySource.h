#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "transport/Frame.h"

namespace OrvuTests {

/// Gives `bytes`, at most `step` at a time, and then the end or an error. Keeps what was asked of it.
class MemorySource : public Orvu::ByteSource {
public:
    explicit MemorySource(std::string bytes, std::size_t step = 1000000, ssize_t last = 0)
        : bytes_(std::move(bytes)), step_(step), last_(last)
    {}
    ssize_t read(char* to, std::size_t size) override
    {
        asked.push_back(size);
        const std::size_t given = std::min({size, step_, bytes_.size() - at_});
        if (given == 0) return last_;
        std::memcpy(to, bytes_.data() + at_, given);
        at_ += given;
        return static_cast<ssize_t>(given);
    }

    std::vector<std::size_t> asked;

private:
    const std::string bytes_;
    std::size_t at_ = 0;
    const std::size_t step_;
    const ssize_t last_;
};

}  // namespace OrvuTests
