#pragma once

#include <string>
#include <vector>

#include "messages/core/Catalogue.h"
#include "messages/core/ReadingWitness.h"
#include "orvu/Explanation.h"

namespace Orvu {

/// Finds out which keys a contract asks for, by having it read texts that hold ever more of them.
class KeyLister final : private ReadingWitness {
public:
    KeyLister() : ReadingWitness(AfterFault::GoesOn) {}

    /// For a type that has a class. To be called once.
    std::vector<KeyDescription> keysOf(const CatalogueEntry& entry);

private:
    using Keys = std::vector<KeyDescription>;

    /// An object that is being read.
    struct Object {
        Keys* keys;  // null when it is of a class that is being read around it
        const Contract* contract;
        std::size_t last = 0;  // the key that was asked for last
        bool hasFound = false;
    };

    void begin(JsonValue value, const Contract* contract) override;
    void asked(const char* key, const Expected& expected, JsonValue found) override;
    void took(JsonValue value, const Expected& expected) override;
    void failed(const char* why) override;
    void end() override { objects_.pop_back(); }

    void readOnce(const CatalogueEntry& entry, const std::string& text);
    std::size_t learn(Keys& keys, const char* key, const Expected& expected);

    Keys keys_;
    std::vector<Object> objects_;
    bool hasLearnt_ = true;
};

}  // namespace Orvu
