#include <gtest/gtest.h>

#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AServiceSelection, StartsEmpty)
{
    const ServiceSelection selection;
    EXPECT_EQ(selection.getDataType(), 10u);
    EXPECT_EQ(selection.serviceContextId, "");
}

TEST(AServiceSelection, WritesItsLocator)
{
    ServiceSelection selection;
    selection.serviceContextId = "current-service";
    EXPECT_EQ(textOf(selection),
              "{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"current-service\"\n}");
    selection.serializeHeader(false);
    EXPECT_EQ(textOf(selection), "{\n\t\"serviceContextId\":\t\"current-service\"\n}");
}

TEST(AServiceSelection, WritesItsLocatorAlsoWhileEmpty)
{
    ServiceSelection selection;
    EXPECT_EQ(textOf(selection), "{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"\"\n}");
}

TEST(AServiceSelection, ReadsAnEmptyObject)
{
    ServiceSelection selection;
    EXPECT_TRUE(selection.deserialize("{}"));
}

TEST(AServiceTime, StartsEmpty)
{
    const ServiceTime time;
    EXPECT_EQ(time.getDataType(), 24u);
    EXPECT_EQ(time.time, "");
}

TEST(AServiceTime, WritesItsTimeAsItIs)
{
    ServiceTime time;
    time.time = "any form at all";
    EXPECT_EQ(textOf(time), "{\n\t\"HEADER\":\t\"serviceTime\",\n\t\"time\":\t\"any form at all\"\n}");
    time.serializeHeader(false);
    EXPECT_EQ(textOf(time), "{\n\t\"time\":\t\"any form at all\"\n}");
}

TEST(AServiceTime, WritesItsTimeAlsoWhileEmpty)
{
    ServiceTime time;
    EXPECT_EQ(textOf(time), "{\n\t\"HEADER\":\t\"serviceTime\",\n\t\"time\":\t\"\"\n}");
}

TEST(AServiceTime, IsNotReadWithoutItsTime)
{
    ServiceTime time;
    time.time = "before";
    EXPECT_FALSE(time.deserialize("{}"));
    EXPECT_FALSE(time.deserialize(R"({"time": 1200})"));
    EXPECT_EQ(time.time, "before");
}

}  // namespace
}  // namespace OrvuTests
