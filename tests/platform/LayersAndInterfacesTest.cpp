#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvu/PlatformCapabilities.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(ADisplayLayer, StartsUnknownWithBoundsOfItsOwn)
{
    DisplayLayer layer;
    EXPECT_EQ(layer.getDataType(), 38u);
    EXPECT_EQ(layer.type, 0);
    ASSERT_NE(layer.bounds, nullptr);
    EXPECT_EQ(textOf(layer), R"({"type":"unknown","bounds":{"w":-1,"h":-1}})");
}

TEST(ADisplayLayer, IsWrittenWithoutAHeader)
{
    DisplayLayer layer;
    layer.type = DisplayLayerTypeSubtitle;
    layer.bounds->w = 1920;
    layer.bounds->h = 1080;
    EXPECT_EQ(textOf(layer), R"({"type":"subtitle","bounds":{"w":1920,"h":1080}})");
    layer.serializeHeader(false);
    layer.type = static_cast<DisplayLayerType>(5);
    EXPECT_EQ(textOf(layer), R"({"type":"","bounds":{"w":1920,"h":1080}})");
}

TEST(ADisplayLayer, HasAccessors)
{
    DisplayLayer layer;
    layer.setType(DisplayLayerTypeVideo);
    EXPECT_EQ(layer.getType(), DisplayLayerTypeVideo);
}

/// What a layer with those bounds writes.
std::string writtenWith(Bounds* bounds)
{
    DisplayLayer layer;
    delete std::exchange(layer.bounds, bounds);
    return textOf(layer);
}

TEST(ADisplayLayer, HasNoTextWhenItsBoundsHaveNone)
{
    EXPECT_EQ(writtenWith(new Silent<Bounds>), "(null)");
    EXPECT_EQ(writtenWith(new Saying<Bounds>("no JSON")), "(null)");
}

TEST(ADisplayLayer, CarriesWhateverItsBoundsWrite)
{
    EXPECT_EQ(writtenWith(new Saying<Bounds>("[ 1 ]")), R"({"type":"unknown","bounds":[1]})");
    EXPECT_EQ(writtenWith(nullptr), R"({"type":"unknown"})");
}

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

TEST(ADisplayLayer, IgnoresBoundsOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("x")", "[]"}) {
        DisplayLayer layer;
        EXPECT_TRUE(layer.deserialize((R"({"bounds": )" + std::string(value) + R"(, "type": "image"})").c_str()));
        EXPECT_EQ(textOf(layer), R"({"type":"image","bounds":{"w":-1,"h":-1}})") << value;
    }
}

TEST(ADisplayLayer, MakesBoundsAnewWhenTheApplicationTookThem)
{
    DisplayLayer layer;
    delete std::exchange(layer.bounds, nullptr);
    EXPECT_TRUE(layer.deserialize("{}"));
    EXPECT_EQ(layer.bounds, nullptr);
    EXPECT_TRUE(layer.deserialize(R"({"bounds": {"w": 5}})"));
    EXPECT_EQ(textOf(layer), R"({"type":"unknown","bounds":{"w":5,"h":-1}})");
}

TEST(ADisplayLayer, LetsBoundsOfAnApplicationReadForThemselves)
{
    DisplayLayer layer;
    auto* const bounds = new Listening<Bounds>(false);
    delete std::exchange(layer.bounds, bounds);
    EXPECT_TRUE(layer.deserialize(R"({"bounds": {"w": 5}, "type": "video"})"));
    EXPECT_EQ(bounds->heard, "{\n\t\"w\":\t5\n}");
    EXPECT_EQ(bounds->w, -1);
    EXPECT_EQ(layer.type, DisplayLayerTypeVideo);
}

TEST(ADisplayLayer, DeletesItsBounds)
{
    int destroyed = 0;
    {
        DisplayLayer layer;
        delete std::exchange(layer.bounds, new Counted<Bounds>(destroyed));
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ADisplayLayer, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<DisplayLayer>);
    EXPECT_FALSE(std::is_copy_assignable_v<DisplayLayer>);
}

TEST(ANetworkInterface, StartsUnknownAndInactive)
{
    NetworkInterface interface;
    EXPECT_EQ(interface.getDataType(), 39u);
    EXPECT_EQ(interface.type, 0);
    EXPECT_FALSE(interface.active);
    EXPECT_EQ(textOf(interface), R"({"type":"unknown","active":false})");
}

TEST(ANetworkInterface, IsWrittenWithoutAHeader)
{
    NetworkInterface interface;
    interface.type = NetworkInterfaceTypeWireless;
    interface.active = true;
    EXPECT_EQ(textOf(interface), R"({"type":"wireless","active":true})");
    interface.serializeHeader(false);
    interface.type = static_cast<NetworkInterfaceType>(3);
    EXPECT_EQ(textOf(interface), R"({"type":"","active":true})");
}

TEST(ANetworkInterface, IsActiveForTheNumberOne)
{
    NetworkInterface interface;
    EXPECT_TRUE(interface.deserialize(R"({"active": 1})"));
    EXPECT_TRUE(interface.active);
}

TEST(ANetworkInterface, HasAccessors)
{
    NetworkInterface interface;
    interface.setType(NetworkInterfaceTypeWired);
    interface.setActive(true);
    EXPECT_EQ(interface.getType(), NetworkInterfaceTypeWired);
    EXPECT_TRUE(interface.isActive());
}

}  // namespace
}  // namespace OrvuTests
