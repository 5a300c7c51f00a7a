#include "orvu/Properties.h"

#include <utility>

#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {

Property::Property() : Serializable(kDataType) {}
Property::Property(std::string name, std::string value)
    : Serializable(kDataType), name(std::move(name)), value(std::move(value))
{}
Property::~Property() = default;

void write(JsonWriter& json, Property& property)
{
    json.headerIfSet(property);
    json.put("name", property.name);
    json.put("value", property.value);
}

void read(JsonReader& json, Property& property)
{
    json.optional("name", property.name);
    json.optional("value", property.value);
}

MESSAGE(Property, Formatted)

NodeProperties::NodeProperties() : Serializable(kDataType) {}
NodeProperties::~NodeProperties()
{
    deleteAll(properties);
}
void NodeProperties::addProperty(Property* property)
{
    take(properties, property);
}

void write(JsonWriter& json, NodeProperties& properties)
{
    json.headerIfSet(properties);
    json.putIf(!properties.appid.empty(), "appid", properties.appid);
    json.putIf(!properties.nodeId.empty(), "node-id", properties.nodeId);
    json.putIf(!properties.varName.empty(), "var-name", properties.varName);
    json.list("nodeProperties", properties.properties);
}

void read(JsonReader& json, NodeProperties& properties)
{
    json.optional("appid", properties.appid);
    json.optional("node-id", properties.nodeId);
    json.optional("var-name", properties.varName);
    json.required("nodeProperties", properties.properties);
}

MESSAGE(NodeProperties, Formatted)

char* NodeProperties::serializeProperties()
{
    return writeObject(PrintStyle::Formatted, [this](JsonWriter& json) { json.list("nodeProperties", properties); });
}

PersistentProperties::PersistentProperties() : Serializable(kDataType) {}
PersistentProperties::~PersistentProperties()
{
    deleteAll(properties);
}
void PersistentProperties::addProperty(Property* property)
{
    take(properties, property);
}

void write(JsonWriter& json, PersistentProperties& properties)
{
    json.headerIfSet(properties);
    json.putIf(!properties.serviceContextId.empty(), "serviceContextId", properties.serviceContextId);
    json.putIf(!properties.appid.empty(), "appid", properties.appid);
    json.putIf(!properties.varName.empty(), "var-name", properties.varName);
    json.list("persistent", properties.properties);
}

void read(JsonReader& json, PersistentProperties& properties)
{
    json.optional("serviceContextId", properties.serviceContextId);
    json.optional("appid", properties.appid);
    json.optional("var-name", properties.varName);
    json.required("persistent", properties.properties);
}

MESSAGE(PersistentProperties, Formatted)

char* PersistentProperties::serializeProperties()
{
    return writeObject(PrintStyle::Formatted, [this](JsonWriter& json) { json.list("persistent", properties); });
}

PersistProperty::PersistProperty() : Serializable(kDataType) {}
PersistProperty::~PersistProperty() = default;

void write(JsonWriter& json, PersistProperty& persist)
{
    json.headerIfSet(persist);
    json.put("serviceContextId", persist.serviceContextId);
    json.put("appid", persist.appid);
    json.put("var-name", persist.varName);
    json.put("var-value", persist.varValue);
    json.put("name", persist.property.name);  // the keys of the property are beside the others
    json.put("value", persist.property.value);
}

void read(JsonReader& json, PersistProperty& persist)
{
    json.optional("serviceContextId", persist.serviceContextId);
    json.optional("appid", persist.appid);
    json.optional("var-name", persist.varName);
    json.optional("var-value", persist.varValue);
    json.optional("name", persist.property.name);
    json.optional("value", persist.property.value);
}

MESSAGE(PersistProperty, Formatted)

char* PersistProperty::serializeProperties()
{
    return writeObject(PrintStyle::Formatted, [this](JsonWriter& json) {
        if (property.name.empty() || property.value.empty()) return;
        json.put("name", property.name);
        json.put("value", property.value);
    });
}

PersistentVariableValue::PersistentVariableValue() : Serializable(kDataType) {}
PersistentVariableValue::~PersistentVariableValue() = default;

void write(JsonWriter& json, PersistentVariableValue&)
{
    json.giveUp();  // only ever received
}

void read(JsonReader& json, PersistentVariableValue& variable)
{
    json.optional("varValue", variable.value);  // spelt unlike the "var-value" of a PersistProperty
}

MESSAGE(PersistentVariableValue, Formatted)

}  // namespace Orvu
