#pragma once

#include <functional>
#include <string>

#include "messages/core/Message.h"
#include "orvu/Services.h"

namespace OrvuTests {

/// A message whose contract the test gives. Wire name "property".
class Scripted : public Orvu::Serializable {
public:
    static constexpr Orvu::DataType kDataType = Orvu::DataTypeProperty;

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

/// Whether a value is a text of its own, or nested in one.
enum class Place { OwnText, Nested };

/// The code of the first fault when a contract reads a text; kNoFault without one.
int faultOf(const std::string& text, const Scripted::Reads& reads, Place place = Place::OwnText);
constexpr int kNoFault = 0;
constexpr int kMissing = static_cast<int>(Orvu::Fault::Missing);
constexpr int kWrongKind = static_cast<int>(Orvu::Fault::WrongKind);

/// What a contract writes, in the given style; "(null)" when nothing can be written.
std::string written(Orvu::PrintStyle style, Scripted::Writes writes);

}  // namespace OrvuTests

namespace Orvu {

template <>
const Contract& contractOf<OrvuTests::Scripted>();

}  // namespace Orvu
