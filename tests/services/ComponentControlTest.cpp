#include <climits>
#include <gtest/gtest.h>

#include "orvu/ServiceComponents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AServiceComponentTag, IsNotReadFromAHexadecimalText)
{
    ServiceComponentTag tag;
    tag.componentTag = 5;
    EXPECT_FALSE(tag.deserialize(R"({"componentTag": "0x12"})"));
    EXPECT_FALSE(tag.deserialize("{}"));
    EXPECT_EQ(tag.componentTag, 5);
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

}  // namespace
}  // namespace OrvuTests
