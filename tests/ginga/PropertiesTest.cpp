#include <gtest/gtest.h>

#include "orvu/Properties.h"
#include "support/WrittenTexts.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AProperty, IsMadeWithNameAndValue)
{
    const Property property("soundLevel", "0.5");
    EXPECT_EQ(property.name, "soundLevel");
    EXPECT_EQ(property.value, "0.5");
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

}  // namespace
}  // namespace OrvuTests
