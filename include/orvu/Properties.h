#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// A name and its value. Wire name "property".
class ORVU_EXPORT Property : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeProperty;

    std::string name;   ///< Any text; never interpreted here.
    std::string value;  ///< Any text; never interpreted here.

    Property();
    Property(std::string name, std::string value);
    ~Property() override;
    Property(const Property&) = default;
    Property& operator=(const Property&) = default;

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The properties of a node. Wire name "nodeProperties".
class ORVU_EXPORT NodeProperties : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNodeProperties;

    std::string appid;                  ///< Identifies the interactive application; left out when empty.
    std::string nodeId;                 ///< Identifies the NCL node; left out when empty. Travels as "node-id".
    std::string varName;                ///< Name of the variable; left out when empty. Travels as "var-name".
    std::vector<Property*> properties;  ///< Owned; deleted with the message.

    NodeProperties();
    ~NodeProperties() override;
    NodeProperties(const NodeProperties&) = delete;
    NodeProperties& operator=(const NodeProperties&) = delete;

    /// Appends `property` and takes it; null is ignored.
    void addProperty(Property* property);
    /// The properties alone, without "HEADER" and names; formatted. The caller releases the text with `free`; null when
    /// out of memory.
    char* serializeProperties();

    /// Switches the header flag of every property off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the properties under "nodeProperties", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The persistent properties of an application or service. Wire name "persistent".
class ORVU_EXPORT PersistentProperties : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePersistent;

    std::string serviceContextId;       ///< Locator of the service (see ServiceContext); left out when empty.
    std::string appid;                  ///< Identifies the interactive application; left out when empty.
    std::string varName;                ///< Name of the variable; left out when empty. Travels as "var-name".
    std::vector<Property*> properties;  ///< Owned; deleted with the message.

    PersistentProperties();
    ~PersistentProperties() override;
    PersistentProperties(const PersistentProperties&) = delete;
    PersistentProperties& operator=(const PersistentProperties&) = delete;

    /// Appends `property` and takes it; null is ignored.
    void addProperty(Property* property);
    /// The properties alone, without "HEADER" and names; formatted. The caller releases the text with `free`; null when
    /// out of memory.
    char* serializeProperties();

    /// Switches the header flag of every property off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the properties under "persistent", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One persistent variable with its property. Wire name "persistProperty".
class ORVU_EXPORT PersistProperty : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePersistProperty;

    std::string serviceContextId;  ///< Locator of the service (see ServiceContext); never checked here.
    std::string appid;             ///< Identifies the interactive application.
    std::string varName;           ///< Name of the variable. Travels as "var-name".
    std::string varValue;          ///< Value of the variable, as text. Travels as "var-value".
    Property property;             ///< Its name and value travel beside the other keys, not in an object of their own.

    PersistProperty();
    ~PersistProperty() override;
    PersistProperty(const PersistProperty&) = default;
    PersistProperty& operator=(const PersistProperty&) = default;

    /// The property's name and value when neither is empty, else an empty object; formatted, without "HEADER". The
    /// caller releases the text with `free`; null when out of memory.
    char* serializeProperties();

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The value of a persistent variable, as the middleware returns it. Wire name "persistentVariableValue"; only ever
/// received.
class ORVU_EXPORT PersistentVariableValue : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePersistentVariableValue;

    std::string value;  ///< As text, never interpreted here. Never written.

    PersistentVariableValue();
    ~PersistentVariableValue() override;
    PersistentVariableValue(const PersistentVariableValue&) = default;
    PersistentVariableValue& operator=(const PersistentVariableValue&) = default;

    /// Null: the message is never sent.
    char* serialize() override;
    /// A "varValue" that is not a string counts as absent.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
