#include <gtest/gtest.h>

#include "orvu/PlatformCapabilities.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(SomeBounds, AreSetCrosswise)
{
    Bounds bounds;
    bounds.setValues(1920, 1080);
    EXPECT_EQ(textOf(bounds), R"({"w":1080,"h":1920})");
}

TEST(SomeBounds, AreCopiedCrosswise)
{
    Bounds source(1920, 1080);
    Bounds bounds;
    bounds.copyValues(&source);
    EXPECT_EQ(textOf(bounds), R"({"w":1080,"h":1920})");
    EXPECT_EQ(textOf(source), R"({"w":1920,"h":1080})");
    bounds.copyValues(nullptr);
    EXPECT_EQ(textOf(bounds), R"({"w":1080,"h":1920})");
    bounds.copyValues(&bounds);
    EXPECT_EQ(textOf(bounds), R"({"w":1920,"h":1080})");
}

TEST(SomeBounds, KeepTheirNumbersWhereANestedTextHasNone)
{
    Bounds bounds(1, 2);
    EXPECT_TRUE(bounds.deserializeObject(treeOf(R"({"w": 1e400, "h": 2.9999999999999996})").get()));
    EXPECT_EQ(textOf(bounds), R"({"w":1,"h":3})");
}

}  // namespace
}  // namespace OrvuTests
