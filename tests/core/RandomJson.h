#pragma once

#include <random>
#include <string>
#include <vector>

#include "support/Messages.h"

namespace OrvuTests {

/// Makes JSON that nobody would think of; the same for the same seed on every machine.
class RandomJson {
public:
    explicit RandomJson(unsigned seed) : random_(seed) {}

    /// A number from 0 to `limit` - 1.
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    bool once(unsigned in) { return below(in) == 0; }

    /// A tree of all kinds of values, at most `levels` deep.
    Tree tree(int levels);
    /// Bytes from 1 to 255, most of them letters; now and then none.
    std::string text();
    /// Whole, fractional, huge, tiny, negative zero, infinite, not a number.
    double number();
    /// At the ends of 32 bits, around 0, and anything between.
    int integer();
    /// A value such as a peer could send where a message expects a text, a number or a boolean.
    Tree anyValue();
    /// An object with any values under most of these keys, in their order.
    Tree anyObject(const std::vector<std::string>& keys);

private:
    cJSON* value(int levels);
    cJSON* container(int levels);

    std::mt19937 random_;
};

}  // namespace OrvuTests
