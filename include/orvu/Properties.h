#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// A name and its value. Wire name "property".
class ORVU_EXPORT Property : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeProperty;

    std::string name;
    std::string value;  ///< Never interpreted here.

    Property();
    Property(std::string name, std::string value);
    ~Property() override;
    Property(const Property&) = default;
    Property& operator=(const Property&) = default;

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The properties of a node. Wire name "nodeProperties".
class ORVU_EXPORT NodeProperties : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNodeProperties;

    std::string appid;
    std::string nodeId;
    std::string varName;
    std::vector<Property*> properties;  ///< Owned; deleted with the message.

    NodeProperties();
    ~NodeProperties() override;
    NodeProperties(const NodeProperties&) = delete;
    NodeProperties& operator=(const NodeProperties&) = delete;

    /// Appends `property` and takes it; null is ignored.
    void addProperty(Property* property);
    /// The properties alone, without "HEADER" and names; formatted. The caller releases it with `free`.
    char* serializeProperties();

    /// Formatted. Switches the header flag of every property off, for good: call its serializeHeader(true) before you
    /// send one alone.
    char* serialize() override;
    /// Appends the properties under "nodeProperties", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The persistent properties of an application or service. Wire name "persistent".
class ORVU_EXPORT PersistentProperties : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePersistent;

    std::string serviceContextId;
    std::string appid;
    std::string varName;
    std::vector<Property*> properties;  ///< Owned; deleted with the message.

    PersistentProperties();
    ~PersistentProperties() override;
    PersistentProperties(const PersistentProperties&) = delete;
    PersistentProperties& operator=(const PersistentProperties&) = delete;

    /// Appends `property` and takes it; null is ignored.
    void addProperty(Property* property);
    /// The properties alone, without "HEADER" and names; formatted. The caller releases it with `free`.
    char* serializeProperties();

    /// Formatted. Switches the header flag of every property off, for good: call its serializeHeader(true) before you
    /// send one alone.
    char* serialize() override;
    /// Appends the properties under "persistent", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// One persistent variable with its property. Wire name "persistProperty".
class ORVU_EXPORT PersistProperty : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePersistProperty;

    std::string serviceContextId;
    std::string appid;
    std::string varName;
    std::string varValue;
    Property property;  ///< Its name and value stand flat beside the others.

    PersistProperty();
    ~PersistProperty() override;
    PersistProperty(const PersistProperty&) = default;
    PersistProperty& operator=(const PersistProperty&) = default;

    /// The property's name and value when neither is empty, else an empty object; formatted, without "HEADER". The
    /// caller releases it with `free`.
    char* serializeProperties();

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The value of a persistent variable, as the middleware returns it. Wire name "persistentVariableValue"; only ever
/// received.
class ORVU_EXPORT PersistentVariableValue : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePersistentVariableValue;

    std::string value;  ///< Never written.

    PersistentVariableValue();
    ~PersistentVariableValue() override;
    PersistentVariableValue(const PersistentVariableValue&) = default;
    PersistentVariableValue& operator=(const PersistentVariableValue&) = default;

    /// Null: the message is never sent.
    char* serialize() override;
    /// Every key is optional: true for any JSON text. A "varValue" that is no string counts as absent.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

}  // namespace Orvu
