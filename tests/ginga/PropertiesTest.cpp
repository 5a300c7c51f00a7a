#include <gtest/gtest.h>
#include <type_traits>

#include "orvu/Properties.h"
#include "support/Children.h"
#include "support/Messages.h"
#include "support/WrittenTexts.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AProperty, WritesNameAndValueAlways)
{
    Property empty;
    EXPECT_EQ(empty.getDataType(), 47u);
    EXPECT_EQ(textOf(empty), "{\n\t\"HEADER\":\t\"property\",\n\t\"name\":\t\"\",\n\t\"value\":\t\"\"\n}");
    Property property("soundLevel", "0.5");
    property.serializeHeader(false);
    EXPECT_EQ(textOf(property), "{\n\t\"name\":\t\"soundLevel\",\n\t\"value\":\t\"0.5\"\n}");
}

TEST(NodePropertiesOf, ANodeWithoutAnyWriteAnEmptyList)
{
    NodeProperties properties;
    EXPECT_EQ(properties.getDataType(), 48u);
    EXPECT_EQ(textOf(properties), "{\n\t\"HEADER\":\t\"nodeProperties\",\n\t\"nodeProperties\":\t[]\n}");
    properties.serializeHeader(false);
    EXPECT_EQ(textOf(properties), "{\n\t\"nodeProperties\":\t[]\n}");
    EXPECT_EQ(takenAs("nodeProperties-properties", properties.serializeProperties()),
              "{\n\t\"nodeProperties\":\t[]\n}");
}

TEST(NodePropertiesOf, ANodeWriteTheirKeysInTheAgreedOrder)
{
    NodeProperties properties;
    properties.appid = "a";
    properties.nodeId = "n";
    properties.varName = "v";
    properties.addProperty(new Property("x", "1"));
    EXPECT_EQ(textOf(properties),
              "{\n\t\"HEADER\":\t\"nodeProperties\",\n\t\"appid\":\t\"a\",\n\t\"node-id\":\t\"n\",\n"
              "\t\"var-name\":\t\"v\",\n\t\"nodeProperties\":\t[{\n\t\t\t\"name\":\t\"x\",\n\t\t\t\"value\":"
              "\t\"1\"\n\t\t}]\n}");
    EXPECT_EQ(takenAs("nodeProperties-properties", properties.serializeProperties()),
              "{\n\t\"nodeProperties\":\t[{\n\t\t\t\"name\":\t\"x\",\n\t\t\t\"value\":\t\"1\"\n\t\t}]\n}");
}

TEST(PersistentPropertiesOf, AnApplicationWriteTheirKeysInTheAgreedOrder)
{
    PersistentProperties properties;
    EXPECT_EQ(properties.getDataType(), 49u);
    properties.serviceContextId = "1.2.01";
    properties.appid = "a";
    properties.varName = "v";
    properties.addProperty(new Silent<Property>);
    EXPECT_EQ(textOf(properties),
              "{\n\t\"HEADER\":\t\"persistent\",\n\t\"serviceContextId\":\t\"1.2.01\",\n\t\"appid\":\t\"a\",\n"
              "\t\"var-name\":\t\"v\",\n\t\"persistent\":\t[]\n}");
    EXPECT_EQ(takenAs("persistent-properties", properties.serializeProperties()), "{\n\t\"persistent\":\t[]\n}");
}

TEST(PersistentPropertiesOf, AnApplicationAreNotReadUnderTheOtherFamilysKey)
{
    PersistentProperties properties;
    EXPECT_FALSE(properties.deserialize(R"({"appid": "a", "nodeProperties": []})"));
    EXPECT_EQ(properties.appid, "a");
    NodeProperties ofNode;
    EXPECT_FALSE(ofNode.deserialize(R"({"node-id": "n", "persistent": []})"));
    EXPECT_EQ(ofNode.nodeId, "n");
}

TEST(APersistProperty, WritesItsPropertyFlatBesideItsOwnKeys)
{
    PersistProperty persist;
    EXPECT_EQ(persist.getDataType(), 50u);
    EXPECT_EQ(textOf(persist),
              "{\n\t\"HEADER\":\t\"persistProperty\",\n\t\"serviceContextId\":\t\"\",\n\t\"appid\":\t\"\",\n"
              "\t\"var-name\":\t\"\",\n\t\"var-value\":\t\"\",\n\t\"name\":\t\"\",\n\t\"value\":\t\"\"\n}");
}

TEST(APersistProperty, AnswersWithAPropertyThatHasNameAndValue)
{
    PersistProperty persist;
    EXPECT_EQ(takenAs("persistProperty-properties", persist.serializeProperties()), "{\n}");
    persist.property.name = "x";
    EXPECT_EQ(takenAs("persistProperty-properties", persist.serializeProperties()), "{\n}");
    persist.property.value = "1";
    EXPECT_EQ(takenAs("persistProperty-properties", persist.serializeProperties()),
              "{\n\t\"name\":\t\"x\",\n\t\"value\":\t\"1\"\n}");
    persist.property.name = "";
    EXPECT_EQ(takenAs("persistProperty-properties", persist.serializeProperties()), "{\n}");
}

TEST(APersistentVariableValue, IsNeverWritten)
{
    PersistentVariableValue variable;
    variable.value = "42";
    EXPECT_EQ(variable.getDataType(), 51u);
    EXPECT_EQ(variable.serialize(), nullptr);
}

TEST(APersistentVariableValue, IsReadFromATextOnly)
{
    PersistentVariableValue variable;
    EXPECT_TRUE(variable.deserialize(R"({"varValue": "5", "varvalue": "6", "var-value": "7"} more)"));
    EXPECT_EQ(variable.value, "5");
    for (const char* text : {R"({"varValue": 5})", R"({"varValue": null})", R"({"varValue": true})",
                             R"({"varValue": ["6"]})", "{}", "[]", "7", "null", R"({"var-value": "7"})"}) {
        EXPECT_TRUE(variable.deserialize(text)) << text;
        EXPECT_EQ(variable.value, "5") << text;
    }
    for (const char* text : {"", "{", "no JSON"})
        EXPECT_FALSE(variable.deserialize(text)) << text;
    EXPECT_FALSE(variable.deserialize(nullptr));
    unsigned char error = 77;
    EXPECT_FALSE(variable.deserialize(R"({"varValue": "5"})", error));
    EXPECT_EQ(error, 77);
}

TEST(PropertyMessages, ThatOwnOthersCannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<NodeProperties>);
    EXPECT_FALSE(std::is_copy_constructible_v<PersistentProperties>);
    EXPECT_TRUE(std::is_copy_constructible_v<PersistProperty>);
}

}  // namespace
}  // namespace OrvuTests
