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

TEST(APersistentVariableValue, IsNotReadUnderTheKeyOfAPersistProperty)
{
    PersistentVariableValue variable;
    EXPECT_TRUE(variable.deserialize(R"({"var-value": "7"})"));
    EXPECT_EQ(variable.value, "");
}

}  // namespace
}  // namespace OrvuTests
