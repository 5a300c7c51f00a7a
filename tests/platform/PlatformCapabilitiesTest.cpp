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

TEST(Capabilities, StartEmpty)
{
    const PlatformCapabilities can;
    EXPECT_EQ(can.getDataType(), 40u);
    EXPECT_EQ(can.manufacturer + can.model + can.friendlyName + can.reservedText, "");
    EXPECT_EQ(can.videoRefreshRate, 0);
    ASSERT_NE(can.physicalScreenSize, nullptr);
    EXPECT_EQ(can.physicalScreenSize->w, -1);
    EXPECT_TRUE(can.displayLayers.empty() && can.networkInterfaces.empty() && can.inputDevices.empty());
    EXPECT_TRUE(can.colorimetry.empty() && can.dynamicRange.empty() && can.dolbyVisionCodecString.empty());
}

constexpr const char* kEmptyInside =
    "{\n"
    "\t\t\"manufacturer\":\t\"\",\n"
    "\t\t\"model\":\t\"\",\n"
    "\t\t\"physicalScreenSize\":\t{\n"
    "\t\t\t\"w\":\t-1,\n"
    "\t\t\t\"h\":\t-1\n"
    "\t\t},\n"
    "\t\t\"displayLayers\":\t[],\n"
    "\t\t\"colorimetry\":\t[],\n"
    "\t\t\"dynamicRange\":\t[],\n"
    "\t\t\"videoRefreshRate\":\t0,\n"
    "\t\t\"inputDevices\":\t[],\n"
    "\t\t\"networkInterfaces\":\t[]\n"
    "\t}";

TEST(Capabilities, WriteTheirKeysInsideAnObject)
{
    PlatformCapabilities can;
    EXPECT_EQ(textOf(can), "{\n\t\"HEADER\":\t\"platformCapabilities\",\n\t\"platformCapabilities\":\t" +
                               std::string(kEmptyInside) + "\n}");
    can.serializeHeader(false);
    EXPECT_EQ(textOf(can), "{\n\t\"platformCapabilities\":\t" + std::string(kEmptyInside) + "\n}");
}

TEST(Capabilities, WriteTheirKeysInTheAgreedOrder)
{
    PlatformCapabilities can;
    can.serializeHeader(false);
    can.manufacturer = "M";
    can.model = "m";
    can.friendlyName = "never written";
    can.reservedText = "never written";
    can.physicalScreenSize->w = 1920;
    can.videoRefreshRate = 60;
    can.addDisplayLayer(new DisplayLayer);
    can.displayLayers[0]->type = DisplayLayerTypeVideo;
    can.addColorimetryType(ColorimetryTypeBT709);
    can.addColorimetryType(ColorimetryTypeBT709);
    can.addColorimetryType(static_cast<ColorimetryType>(5));
    can.addDynamicRangeType(DynamicRangeTypeHDR10Plus);
    can.addDynamicRangeType(static_cast<DynamicRangeType>(-1));
    can.addInputDevices(InputDevicesTouchscreen);
    can.addInputDevices(static_cast<InputDevices>(7));
    can.addNetworkInterface(new NetworkInterface);
    can.addDolbyVisionCodecString("dvhe.05.06");
    EXPECT_EQ(textOf(can),
              "{\n"
              "\t\"platformCapabilities\":\t{\n"
              "\t\t\"manufacturer\":\t\"M\",\n"
              "\t\t\"model\":\t\"m\",\n"
              "\t\t\"physicalScreenSize\":\t{\n"
              "\t\t\t\"w\":\t1920,\n"
              "\t\t\t\"h\":\t-1\n"
              "\t\t},\n"
              "\t\t\"displayLayers\":\t[{\n"
              "\t\t\t\t\"type\":\t\"video\",\n"
              "\t\t\t\t\"bounds\":\t{\n"
              "\t\t\t\t\t\"w\":\t-1,\n"
              "\t\t\t\t\t\"h\":\t-1\n"
              "\t\t\t\t}\n"
              "\t\t\t}],\n"
              "\t\t\"colorimetry\":\t[\"BT.709\", \"BT.709\", \"\"],\n"
              "\t\t\"dynamicRange\":\t[\"HDR10+\", \"\"],\n"
              "\t\t\"videoRefreshRate\":\t60,\n"
              "\t\t\"inputDevices\":\t[\"touchscreen\", \"\"],\n"
              "\t\t\"networkInterfaces\":\t[{\n"
              "\t\t\t\t\"type\":\t\"unknown\",\n"
              "\t\t\t\t\"active\":\tfalse\n"
              "\t\t\t}]\n"
              "\t}\n"
              "}");
}

TEST(Capabilities, NeverWriteTheirFriendlyName)
{
    PlatformCapabilities can;
    const std::string text = textOf(can);
    can.friendlyName = "Sala";
    EXPECT_EQ(textOf(can), text);
}

/// What capabilities write under a key, without blanks; "" when they leave it out.
std::string writtenUnder(const char* key, PlatformCapabilities& can)
{
    const Tree tree = treeOf(textOf(can));
    cJSON* const inside = cJSON_GetObjectItemCaseSensitive(tree.get(), "platformCapabilities");
    cJSON* const member = cJSON_GetObjectItemCaseSensitive(inside, key);
    return member ? taken(cJSON_PrintUnformatted(member)) : "";
}

TEST(Capabilities, WithDolbyVisionWriteItsCodecsBehindTheColours)
{
    PlatformCapabilities can;
    can.addColorimetryType(ColorimetryTypeBT2020);
    can.addDolbyVisionCodecString("dvhe.05.06");
    can.addDolbyVisionCodecString(std::string("dvav\0cut", 8));
    EXPECT_EQ(writtenUnder("colorimetry", can), R"(["BT.2020"])");
    EXPECT_EQ(writtenUnder("dolbyVisionCodecString", can), "");
    can.addDynamicRangeType(DynamicRangeTypeDolbyVision);
    can.addDynamicRangeType(DynamicRangeTypeSDR);
    EXPECT_EQ(writtenUnder("colorimetry", can), R"(["BT.2020","dvhe.05.06","dvav"])");
    EXPECT_EQ(writtenUnder("dolbyVisionCodecString", can), "[]");
    EXPECT_EQ(writtenUnder("dynamicRange", can), R"(["DolbyVision","SDR"])");
    const std::string text = textOf(can);
    EXPECT_LT(text.find("\"dynamicRange\""), text.find("\"dolbyVisionCodecString\""));
    EXPECT_LT(text.find("\"dolbyVisionCodecString\""), text.find("\"videoRefreshRate\""));
}

TEST(Capabilities, WithDolbyVisionAreNotReadBackAsTheyWere)
{
    PlatformCapabilities can;
    can.addColorimetryType(ColorimetryTypeBT2020);
    can.addDynamicRangeType(DynamicRangeTypeDolbyVision);
    can.addDolbyVisionCodecString("dvhe.05.06");
    can.addDolbyVisionCodecString("dvav.01.02");
    PlatformCapabilities read;
    ASSERT_TRUE(read.deserialize(textOf(can).c_str()));
    EXPECT_EQ(read.colorimetry,
              (std::vector<ColorimetryType>{ColorimetryTypeBT2020, ColorimetryTypeUnknown, ColorimetryTypeUnknown}));
    EXPECT_TRUE(read.dolbyVisionCodecString.empty());
}

TEST(Capabilities, LeaveAScreenSizeWithoutATextOut)
{
    for (Bounds* const bounds : std::vector<Bounds*>{nullptr, new Silent<Bounds>, new Saying<Bounds>("no JSON")}) {
        PlatformCapabilities can;
        delete std::exchange(can.physicalScreenSize, bounds);
        EXPECT_EQ(writtenUnder("physicalScreenSize", can), "");
        EXPECT_EQ(writtenUnder("displayLayers", can), "[]");
    }
    PlatformCapabilities can;
    delete std::exchange(can.physicalScreenSize, new Saying<Bounds>("[1]"));
    EXPECT_EQ(writtenUnder("physicalScreenSize", can), "[1]");
}

TEST(Capabilities, SkipLayersAndInterfacesWithoutAText)
{
    PlatformCapabilities can;
    can.addDisplayLayer(new DisplayLayer);
    delete std::exchange(can.displayLayers[0]->bounds, new Silent<Bounds>);  // takes the text of its layer along
    can.addDisplayLayer(new Silent<DisplayLayer>);
    can.addDisplayLayer(new Saying<DisplayLayer>("no JSON"));
    can.addDisplayLayer(new Saying<DisplayLayer>("[1]"));
    can.displayLayers.push_back(nullptr);
    can.addNetworkInterface(new Silent<NetworkInterface>);
    can.addNetworkInterface(new Saying<NetworkInterface>("{"));
    can.addNetworkInterface(new Saying<NetworkInterface>("5"));
    can.networkInterfaces.push_back(nullptr);
    EXPECT_EQ(writtenUnder("displayLayers", can), "[[1]]");
    EXPECT_EQ(writtenUnder("networkInterfaces", can), "[5]");
}

TEST(Capabilities, AddNoNullAndKeepDuplicates)
{
    PlatformCapabilities can;
    can.addDisplayLayer(nullptr);
    can.addNetworkInterface(nullptr);
    EXPECT_TRUE(can.displayLayers.empty() && can.networkInterfaces.empty());
    can.addInputDevices(InputDevicesVoice);
    can.addInputDevices(InputDevicesVoice);
    can.addDolbyVisionCodecString("");
    can.addDolbyVisionCodecString("");
    EXPECT_EQ(can.inputDevices.size() + can.dolbyVisionCodecString.size(), 4u);
}

TEST(Capabilities, DeleteWhatTheyOwn)
{
    int destroyed = 0;
    {
        PlatformCapabilities can;
        delete std::exchange(can.physicalScreenSize, new Counted<Bounds>(destroyed));
        can.addDisplayLayer(new Counted<DisplayLayer>(destroyed));
        can.displayLayers.push_back(nullptr);
        can.addNetworkInterface(new Counted<NetworkInterface>(destroyed));
        can.networkInterfaces.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 3);
}

TEST(Capabilities, HaveAccessors)
{
    PlatformCapabilities can;
    can.setManufacturer("a");
    can.setModel("b");
    can.setFriendlyName("c");
    can.setVideoRefreshRate(50);
    EXPECT_EQ(can.getManufacturer() + can.getModel() + can.getFriendlyName(), "abc");
    EXPECT_EQ(can.getVideoRefreshRate(), 50);
}

TEST(Capabilities, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<PlatformCapabilities>);
    EXPECT_FALSE(std::is_copy_assignable_v<PlatformCapabilities>);
}

}  // namespace
}  // namespace OrvuTests
