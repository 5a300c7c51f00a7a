#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "orvu/PlatformCapabilities.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

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

TEST(Capabilities, WithDolbyVisionWriteItsCodecsAfterTheColours)
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

TEST(Capabilities, SkipALayerWhoseBoundsHaveNoText)
{
    PlatformCapabilities can;
    can.addDisplayLayer(new DisplayLayer);
    delete std::exchange(can.displayLayers[0]->bounds, new Silent<Bounds>);
    EXPECT_EQ(writtenUnder("displayLayers", can), "[]");
}

TEST(Capabilities, KeepDuplicates)
{
    PlatformCapabilities can;
    can.addInputDevices(InputDevicesVoice);
    can.addInputDevices(InputDevicesVoice);
    can.addDolbyVisionCodecString("");
    can.addDolbyVisionCodecString("");
    EXPECT_EQ(can.inputDevices.size() + can.dolbyVisionCodecString.size(), 4u);
}

}  // namespace
}  // namespace OrvuTests
