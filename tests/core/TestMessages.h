#pragma once

#include <functional>
#include <string>

#include "messages/core/Message.h"
#include "orvu/Services.h"

namespace OrvuTests {

/// A message whose contract the test gives. Wire name "property".
class Scripted : public Orvu::Serializable {
public:
    using Writes = std::function<void(Orvu::JsonWriter&)>;
    using Reads = std::function<void(Orvu::JsonReader&)>;

    Scripted();
    explicit Scripted(Writes writes);
    explicit Scripted(Reads reads);
    ~Scripted() override;

    char* serialize() override;  ///< Formatted, without "HEADER".
    bool deserialize(const char* text) override;
    using Serializable::deserialize;

    Writes writes;
    Reads reads;
};

void write(Orvu::JsonWriter& json, Scripted& message);
void read(Orvu::JsonReader& json, Scripted& message);

/// A message that holds another by a pointer: {"before": 1, "child": {...}, "behind": 2}. Wire name "nodeProperties".
class Holder : public Orvu::Serializable {
public:
    Orvu::Service* child = nullptr;  ///< Owned.

    Holder();
    explicit Holder(Orvu::Service* child);
    ~Holder() override;
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    char* serialize() override;  ///< Compact.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

void write(Orvu::JsonWriter& json, Holder& holder);
void read(Orvu::JsonReader& json, Holder& holder);

/// A message whose one child is of its own class: {"child": {"child": ...}}. Wire name "persistent".
class Chain : public Orvu::Serializable {
public:
    Chain* child = nullptr;  ///< Not owned: a chain may close upon itself.

    Chain();
    ~Chain() override;

    char* serialize() override;  ///< Compact.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

void write(Orvu::JsonWriter& json, Chain& chain);
void read(Orvu::JsonReader& json, Chain& chain);

/// What a contract writes, in the given style; "(null)" when nothing can be written.
std::string written(Orvu::PrintStyle style, Scripted::Writes writes);

}  // namespace OrvuTests
