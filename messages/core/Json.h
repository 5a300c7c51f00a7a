#pragma once

#include <cstdlib>
#include <memory>

namespace Orvu {

/// How many levels of nesting cJSON parses, and so the most that is written.
constexpr int kMaxDepth = 1000;

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

/// Owns a text that `malloc` made, such as serialize() gives.
using JsonText = std::unique_ptr<char, FreeText>;

}  // namespace Orvu
