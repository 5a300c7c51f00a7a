#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orvu/PlatformCapabilities.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Members = std::vector<std::pair<std::string, std::string>>;

/// Members of capabilities, each with one element or value of its own.
Members someMembers()
{
    return {{"manufacturer", R"("M")"},
            {"model", R"("m")"},
            {"friendlyName", R"("f")"},
            {"physicalScreenSize", R"({"w": 7})"},
            {"displayLayers", R"([{"type": "video"}])"},
            {"videoRefreshRate", "60"},
            {"colorimetry", R"(["BT.601"])"},
            {"dynamicRange", R"(["DolbyVision"])"},
            {"dolbyVisionCodecString", R"(["dv"])"},
            {"inputDevices", R"(["voice"])"},
            {"networkInterfaces", R"([{"active": true}])"}};
}

std::string textWith(const Members& members)
{
    std::string text;
    for (const auto& [name, value] : members)
        text += (text.empty() ? "" : ", ") + ('"' + name + "\": " + value);
    return R"({"platformCapabilities": {)" + text + "}}";
}

/// The same members, one of them with another value; without it when that is "".
Members with(const std::string& name, const std::string& value)
{
    Members members;
    for (const auto& member : someMembers()) {
        if (member.first != name) members.push_back(member);
        if (member.first == name && !value.empty()) members.emplace_back(name, value);
    }
    return members;
}

struct Reading {
    PlatformCapabilities can;
    bool success;

    explicit Reading(const std::string& text) : success(can.deserialize(text.c_str())) {}
    explicit Reading(const Members& members) : Reading(textWith(members)) {}
};

TEST(ReadCapabilities, HaveAllTheirMembers)
{
    const Reading read(someMembers());
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.can.manufacturer + read.can.model + read.can.friendlyName, "Mmf");
    EXPECT_EQ(read.can.physicalScreenSize->w, 7);
    ASSERT_EQ(read.can.displayLayers.size(), 1u);
    EXPECT_EQ(read.can.displayLayers[0]->type, DisplayLayerTypeVideo);
    EXPECT_EQ(read.can.videoRefreshRate, 60);
    EXPECT_EQ(read.can.colorimetry, std::vector<ColorimetryType>{ColorimetryTypeBT601});
    EXPECT_EQ(read.can.dynamicRange, std::vector<DynamicRangeType>{DynamicRangeTypeDolbyVision});
    EXPECT_EQ(read.can.dolbyVisionCodecString, std::vector<std::string>{"dv"});
    EXPECT_EQ(read.can.inputDevices, std::vector<InputDevices>{InputDevicesVoice});
    ASSERT_EQ(read.can.networkInterfaces.size(), 1u);
    EXPECT_TRUE(read.can.networkInterfaces[0]->active);
}

TEST(ReadCapabilities, MayHaveTheirMembersInAnyOrder)
{
    Members members = someMembers();
    const Members reversed(members.rbegin(), members.rend());
    EXPECT_TRUE(Reading(reversed).success);
    EXPECT_EQ(Reading(reversed).can.dolbyVisionCodecString.size(), 1u);
    EXPECT_EQ(Reading(reversed).can.networkInterfaces.size(), 1u);
}

TEST(ReadCapabilities, AppendToWhatIsHeld)
{
    Reading read(someMembers());
    EXPECT_TRUE(read.can.deserialize(textWith(someMembers()).c_str()));
    EXPECT_EQ(read.can.displayLayers.size() + read.can.networkInterfaces.size(), 4u);
    EXPECT_EQ(read.can.colorimetry.size() + read.can.dynamicRange.size() + read.can.inputDevices.size(), 6u);
    EXPECT_EQ(read.can.dolbyVisionCodecString.size(), 2u);
}

TEST(ReadCapabilities, MayLackWhatIsOptional)
{
    for (const char* name :
         {"manufacturer", "model", "friendlyName", "physicalScreenSize", "videoRefreshRate", "dolbyVisionCodecString"})
        EXPECT_TRUE(Reading(with(name, "")).success) << name;
}

/// How far a read came: the lists that it filled, in the order in which they are read.
std::string filledLists(const PlatformCapabilities& can)
{
    std::string lists;
    if (!can.displayLayers.empty()) lists += "L";
    if (!can.colorimetry.empty()) lists += "C";
    if (!can.dynamicRange.empty()) lists += "D";
    if (!can.dolbyVisionCodecString.empty()) lists += "d";
    if (!can.inputDevices.empty()) lists += "I";
    if (!can.networkInterfaces.empty()) lists += "N";
    return lists;
}

TEST(ReadCapabilities, FailAtTheFirstListThatIsMissingAndKeepWhatWasReadBefore)
{
    const std::map<std::string, std::string> kept = {{"displayLayers", ""},
                                                     {"colorimetry", "L"},
                                                     {"dynamicRange", "LC"},
                                                     {"inputDevices", "LCDd"},
                                                     {"networkInterfaces", "LCDdI"}};
    for (const auto& [name, lists] : kept) {
        const Reading read(with(name, ""));
        EXPECT_FALSE(read.success) << name;
        EXPECT_EQ(filledLists(read.can), lists) << name;
        EXPECT_EQ(read.can.manufacturer + read.can.model + read.can.friendlyName, "Mmf") << name;
        EXPECT_EQ(read.can.physicalScreenSize->w, 7) << name;
        EXPECT_EQ(read.can.videoRefreshRate, name == "displayLayers" ? 0 : 60) << name;
    }
}

TEST(ReadCapabilities, HaveNothingInAListOfAnotherKind)
{
    for (const std::string name : {"displayLayers", "colorimetry", "dynamicRange", "inputDevices", "networkInterfaces",
                                   "dolbyVisionCodecString"}) {
        for (const char* value : {"null", "5", "true", R"("text")", "[]", "{}"}) {
            const Reading read(with(name, value));
            EXPECT_TRUE(read.success) << name << value;
            EXPECT_LT(filledLists(read.can).size(), 6u) << name << value;
        }
    }
}

TEST(ReadCapabilities, TakeWordsOfAnObjectToo)
{
    const Reading read(with("colorimetry", R"({"a": "BT.709", "b": "BT.2020"})"));
    EXPECT_EQ(read.can.colorimetry, (std::vector<ColorimetryType>{ColorimetryTypeBT709, ColorimetryTypeBT2020}));
}

TEST(ReadCapabilities, SkipOtherKindsAndReadOtherWordsAsUnknown)
{
    const std::string words = R"([null, 5, "BT.709", "bt.709", true, ["HLG"], "HLG", "touchscreen", "mouse", ""])";
    EXPECT_EQ(Reading(with("colorimetry", words)).can.colorimetry,
              (std::vector<ColorimetryType>{ColorimetryTypeBT709, ColorimetryTypeUnknown, ColorimetryTypeUnknown,
                                            ColorimetryTypeUnknown, ColorimetryTypeUnknown, ColorimetryTypeUnknown}));
    EXPECT_EQ(
        Reading(with("dynamicRange", words)).can.dynamicRange,
        (std::vector<DynamicRangeType>{DynamicRangeTypeUnknown, DynamicRangeTypeUnknown, DynamicRangeTypeHLG,
                                       DynamicRangeTypeUnknown, DynamicRangeTypeUnknown, DynamicRangeTypeUnknown}));
    EXPECT_EQ(Reading(with("inputDevices", words)).can.inputDevices,
              (std::vector<InputDevices>{InputDevicesUnknown, InputDevicesUnknown, InputDevicesUnknown,
                                         InputDevicesUnknown, InputDevicesMouse, InputDevicesUnknown}));
}

TEST(ReadCapabilities, NeverHaveATouchscreen)
{
    EXPECT_EQ(Reading(with("inputDevices", R"(["touchscreen"])")).can.inputDevices,
              std::vector<InputDevices>{InputDevicesUnknown});
}

TEST(ReadCapabilities, HaveCodecsOfDolbyVisionOnlyWithIt)
{
    EXPECT_TRUE(Reading(with("dynamicRange", R"(["SDR", "dolbyvision"])")).can.dolbyVisionCodecString.empty());
    EXPECT_EQ(Reading(with("dynamicRange", R"(["SDR", "DolbyVision", "HLG"])")).can.dolbyVisionCodecString,
              std::vector<std::string>{"dv"});
    EXPECT_EQ(Reading(with("dolbyVisionCodecString", R"(["a", 5, null, "", ["b"], "c"])")).can.dolbyVisionCodecString,
              (std::vector<std::string>{"a", "", "c"}));
}

TEST(ReadCapabilities, HaveCodecsOfDolbyVisionOnlyWhenTheTextNamesIt)
{
    PlatformCapabilities can;
    can.addDynamicRangeType(DynamicRangeTypeDolbyVision);
    EXPECT_TRUE(can.deserialize(textWith(with("dynamicRange", R"(["SDR"])")).c_str()));
    EXPECT_TRUE(can.dolbyVisionCodecString.empty());
}

TEST(ReadCapabilities, StandInTheFirstObjectOfTheirName)
{
    const std::string first = textWith(someMembers());
    EXPECT_FALSE(Reading(R"({"PLATFORMCAPABILITIES": {}, )" + first.substr(1)).success);
    EXPECT_TRUE(Reading(first.substr(0, first.size() - 1) + R"(, "platformCapabilities": {}} and more)").success);
}

TEST(ReadCapabilities, AreNoneWithoutTheirObject)
{
    for (const char* text : {"{}", "[]", "5", "null", "", "{", "no JSON", R"({"platformCapabilities": null})",
                             R"({"platformCapabilities": 5})", R"({"platformCapabilities": []})",
                             R"({"platformCapabilities": [{"displayLayers": []}]})",
                             R"({"displayLayers": [], "colorimetry": [], "dynamicRange": [], "inputDevices": [],
                                 "networkInterfaces": []})"}) {
        const Reading read{std::string(text)};
        EXPECT_FALSE(read.success) << text;
        EXPECT_EQ(filledLists(read.can), "") << text;
    }
    PlatformCapabilities can;
    EXPECT_FALSE(can.deserialize(nullptr));
}

}  // namespace
}  // namespace OrvuTests
