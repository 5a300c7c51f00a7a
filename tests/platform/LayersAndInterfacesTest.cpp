#include <gtest/gtest.h>
#include <string>

#include "orvu/PlatformCapabilities.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(ADisplayLayer, ReadsIntoTheBoundsItHolds)
{
    DisplayLayer layer;
    Bounds* const bounds = layer.bounds;
    EXPECT_TRUE(layer.deserialize(R"({"BOUNDS": {"w": 1, "h": 2}, "bounds": {"w": 9}, "type": "video"})"));
    EXPECT_TRUE(layer.deserialize(R"({"bounds": {"h": 3}})"));
    EXPECT_EQ(layer.bounds, bounds);
    EXPECT_EQ(textOf(layer), R"({"type":"video","bounds":{"w":1,"h":3}})");
}

TEST(ADisplayLayer, IsUnknownForAWordInAnotherLetterCase)
{
    for (const char* word : {"Video", "VIDEO", "videO"}) {
        DisplayLayer layer;
        layer.type = DisplayLayerTypeImage;
        EXPECT_TRUE(layer.deserialize((R"({"type": ")" + std::string(word) + "\"}").c_str()));
        EXPECT_EQ(layer.type, 0) << word;
    }
}

}  // namespace
}  // namespace OrvuTests
