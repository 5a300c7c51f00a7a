#include "bench/CJsonPlatform.h"

#include "bench/CJsonFields.h"

namespace OrvuBench {
namespace {

constexpr std::array kColorimetry = {"unknown", "BT.601", "BT.709", "BT.2020", "BT.2100"};
constexpr std::array kDynamicRange = {"unknown", "SDR", "HLG", "HDR10", "HDR10+", "SL-HDR1", "DolbyVision"};
constexpr std::array kInputDevices = {"unknown", "remoteControl", "pointer", "keyboard",
                                      "mouse",   "touchscreen",   "voice"};
constexpr std::array kLayers = {"unknown", "video", "image", "graphics", "subtitle"};
constexpr std::array kInterfaces = {"unknown", "wired", "wireless"};

}  // namespace

void readFields(const cJSON* tree, Size& size)
{
    read(tree, "w", size.w);
    read(tree, "h", size.h);
}

void readFields(const cJSON* tree, Layer& layer)
{
    readWord(tree, "type", layer.type, kLayers);
    readStruct(tree, "bounds", layer.bounds);
}

void readFields(const cJSON* tree, Interface& interface)
{
    readWord(tree, "type", interface.type, kInterfaces);
    read(tree, "active", interface.active);
}

void readFields(const cJSON* tree, Capabilities& can)
{
    tree = cJSON_GetObjectItem(tree, "platformCapabilities");
    read(tree, "manufacturer", can.manufacturer);
    read(tree, "model", can.model);
    read(tree, "friendlyName", can.friendlyName);
    readStruct(tree, "physicalScreenSize", can.physicalScreenSize);
    readStructs(tree, "displayLayers", can.displayLayers);
    read(tree, "videoRefreshRate", can.videoRefreshRate);
    readWords(tree, "colorimetry", can.colorimetry, kColorimetry);
    readWords(tree, "dynamicRange", can.dynamicRange, kDynamicRange);
    readWords(tree, "inputDevices", can.inputDevices, kInputDevices);
    readStructs(tree, "networkInterfaces", can.networkInterfaces);
}

void addFields(cJSON* tree, const Size& size)
{
    add(tree, "w", size.w);
    add(tree, "h", size.h);
}

void addFields(cJSON* tree, const Layer& layer)
{
    addWord(tree, "type", layer.type, kLayers);
    addStruct(tree, "bounds", layer.bounds);
}

void addFields(cJSON* tree, const Interface& interface)
{
    addWord(tree, "type", interface.type, kInterfaces);
    add(tree, "active", interface.active);
}

void addFields(cJSON* tree, const Capabilities& can)
{
    add(tree, "manufacturer", can.manufacturer);
    add(tree, "model", can.model);
    addStruct(tree, "physicalScreenSize", can.physicalScreenSize);
    addStructs(tree, "displayLayers", can.displayLayers);
    addWords(tree, "colorimetry", can.colorimetry, kColorimetry);
    addWords(tree, "dynamicRange", can.dynamicRange, kDynamicRange);
    add(tree, "videoRefreshRate", can.videoRefreshRate);
    addWords(tree, "inputDevices", can.inputDevices, kInputDevices);
    addStructs(tree, "networkInterfaces", can.networkInterfaces);
}

Text print(const Capabilities& can)
{
    const Tree tree(cJSON_CreateObject());
    cJSON_AddStringToObject(tree.get(), "HEADER", "platformCapabilities");
    addStruct(tree.get(), "platformCapabilities", can);
    return Text(cJSON_Print(tree.get()));
}

}  // namespace OrvuBench
