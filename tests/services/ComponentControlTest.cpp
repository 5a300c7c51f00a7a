#include <climits>
#include <gtest/gtest.h>

#include "orvu/ServiceComponents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AServiceComponentTag, StartsAtZero)
{
    const ServiceComponentTag tag;
    EXPECT_EQ(tag.getDataType(), 22u);
    EXPECT_EQ(tag.componentTag, 0);
}

TEST(AServiceComponentTag, WritesAPlainNumber)
{
    ServiceComponentTag tag;
    EXPECT_EQ(textOf(tag), "{\n\t\"HEADER\":\t\"serviceComponentTag\",\n\t\"componentTag\":\t0\n}");
    tag.componentTag = 0x12;
    tag.serializeHeader(false);
    EXPECT_EQ(textOf(tag), "{\n\t\"componentTag\":\t18\n}");
    tag.componentTag = INT_MIN;
    EXPECT_EQ(textOf(tag), "{\n\t\"componentTag\":\t-2147483648\n}");
}

TEST(AServiceComponentTag, IsNotReadFromAHexadecimalText)
{
    ServiceComponentTag tag;
    tag.componentTag = 5;
    EXPECT_FALSE(tag.deserialize(R"({"componentTag": "0x12"})"));
    EXPECT_FALSE(tag.deserialize("{}"));
    EXPECT_EQ(tag.componentTag, 5);
}

TEST(AChangeOfAComponent, StartsAsSwitchingOff)
{
    const RtkChangeComponentStatus change;
    EXPECT_EQ(change.getDataType(), 96u);
    EXPECT_FALSE(change.enableComponent);
    EXPECT_EQ(change.componentTag, 0u);
}

TEST(AChangeOfAComponent, WritesItsKeysInTheAgreedOrder)
{
    RtkChangeComponentStatus change;
    EXPECT_EQ(
        textOf(change),
        "{\n\t\"HEADER\":\t\"rtkChangeComponentStatus\",\n\t\"enableComponent\":\tfalse,\n\t\"componentTag\":\t0\n}");
    change.enableComponent = true;
    change.componentTag = UINT_MAX;
    change.serializeHeader(false);
    EXPECT_EQ(textOf(change), "{\n\t\"enableComponent\":\ttrue,\n\t\"componentTag\":\t4294967295\n}");
}

TEST(AChangeOfAComponent, ReadsAnEmptyObject)
{
    RtkChangeComponentStatus change;
    EXPECT_TRUE(change.deserialize("{}"));
}

}  // namespace
}  // namespace OrvuTests
