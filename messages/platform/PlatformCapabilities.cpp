#include "orvu/PlatformCapabilities.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {
namespace {

constexpr Word kColorimetryWords[] = {
    {ColorimetryTypeUnknown, "unknown", WrittenOnly},
    {ColorimetryTypeBT601, "BT.601"},
    {ColorimetryTypeBT709, "BT.709"},
    {ColorimetryTypeBT2020, "BT.2020"},
    {ColorimetryTypeBT2100, "BT.2100"},
};
constexpr auto kColorimetry = vocabulary(kColorimetryWords, ColorimetryTypeUnknown);

constexpr Word kDynamicRangeWords[] = {
    {DynamicRangeTypeUnknown, "unknown", WrittenOnly},
    {DynamicRangeTypeSDR, "SDR"},
    {DynamicRangeTypeHLG, "HLG"},
    {DynamicRangeTypeHDR10, "HDR10"},
    {DynamicRangeTypeHDR10Plus, "HDR10+"},
    {DynamicRangeTypeSLHDR1, "SL-HDR1"},
    {DynamicRangeTypeDolbyVision, "DolbyVision"},
};
constexpr auto kDynamicRange = vocabulary(kDynamicRangeWords, DynamicRangeTypeUnknown);

constexpr Word kInputDeviceWords[] = {
    {InputDevicesUnknown, "unknown", WrittenOnly},
    {InputDevicesRemoteControl, "remoteControl"},
    {InputDevicesPointer, "pointer"},
    {InputDevicesKeyboard, "keyboard"},
    {InputDevicesMouse, "mouse"},
    {InputDevicesTouchscreen, "touchscreen", WrittenOnly},  // peers never learnt to read it
    {InputDevicesVoice, "voice"},
};
constexpr auto kInputDevices = vocabulary(kInputDeviceWords, InputDevicesUnknown);

constexpr Word kDisplayLayerWords[] = {
    {DisplayLayerTypeUnknown, "unknown", WrittenOnly},
    {DisplayLayerTypeVideo, "video"},
    {DisplayLayerTypeImage, "image"},
    {DisplayLayerTypeGraphics, "graphics"},
    {DisplayLayerTypeSubtitle, "subtitle"},
};
constexpr auto kDisplayLayers = vocabulary(kDisplayLayerWords, DisplayLayerTypeUnknown);

constexpr Word kNetworkInterfaceWords[] = {
    {NetworkInterfaceTypeUnknown, "unknown", WrittenOnly},
    {NetworkInterfaceTypeWired, "wired"},
    {NetworkInterfaceTypeWireless, "wireless"},
};
constexpr auto kNetworkInterfaces = vocabulary(kNetworkInterfaceWords, NetworkInterfaceTypeUnknown);

bool hasDolbyVision(std::vector<DynamicRangeType>::const_iterator begin,
                    std::vector<DynamicRangeType>::const_iterator end)
{
    return std::find(begin, end, DynamicRangeTypeDolbyVision) != end;
}

/// The colour words, and after them the codec strings of Dolby Vision, whose own array stays empty.
std::vector<const char*> colorimetryWords(const PlatformCapabilities& can, bool withCodecs)
{
    std::vector<const char*> words;
    for (const ColorimetryType colorimetry : can.colorimetry)
        words.push_back(kColorimetry.word(colorimetry));
    if (!withCodecs) return words;
    for (const std::string& codec : can.dolbyVisionCodecString)
        words.push_back(codec.c_str());
    return words;
}

struct EmptyList {
    void write(JsonWriter& json) const { json.array(std::vector<int>()); }
};

/// The bounds of a layer. When they have no text, the layer has none either.
struct OrNoLayer {
    Bounds* bounds;

    bool write(JsonWriter& json) const
    {
        const bool isWritten = bounds && json.value(*bounds);
        if (bounds && !isWritten) json.giveUp();
        return isWritten;
    }
};

void writeCapabilities(JsonWriter& json, PlatformCapabilities& can)
{
    const bool dolbyVision = hasDolbyVision(can.dynamicRange.begin(), can.dynamicRange.end());
    json.put("manufacturer", can.manufacturer);
    json.put("model", can.model);  // the friendly name is read, never written
    json.put("physicalScreenSize", asIs(can.physicalScreenSize));
    json.list("displayLayers", can.displayLayers);
    json.list("colorimetry", colorimetryWords(can, dolbyVision));  // the codec strings travel after the colour words
    json.put("dynamicRange", asWords(can.dynamicRange, kDynamicRange));
    json.putIf(dolbyVision, "dolbyVisionCodecString", EmptyList());  // and leave their own array empty
    json.put("videoRefreshRate", can.videoRefreshRate);
    json.put("inputDevices", asWords(can.inputDevices, kInputDevices));
    json.list("networkInterfaces", can.networkInterfaces);
}

void readCapabilities(JsonReader& json, PlatformCapabilities& can)
{
    const std::size_t rangesBefore = can.dynamicRange.size();
    json.optional("manufacturer", can.manufacturer);
    json.optional("model", can.model);
    json.optional("friendlyName", can.friendlyName);
    json.optional("physicalScreenSize", can.physicalScreenSize);
    json.required("displayLayers", keepingAll(can.displayLayers));  // also layers that cannot be read
    json.optional("videoRefreshRate", can.videoRefreshRate);
    json.required("colorimetry", asWords(can.colorimetry, kColorimetry));
    json.required("dynamicRange", asWords(can.dynamicRange, kDynamicRange));
    if (hasDolbyVision(can.dynamicRange.begin() + rangesBefore, can.dynamicRange.end())) {
        json.optional("dolbyVisionCodecString", can.dolbyVisionCodecString);
    }
    json.required("inputDevices", asWords(can.inputDevices, kInputDevices));
    json.required("networkInterfaces", can.networkInterfaces);  // without those that cannot be read
}

}  // namespace

Bounds::Bounds() : Serializable(kDataType) {}  // a position's type, which shows nowhere: bounds write no header
Bounds::Bounds(int width, int height) : Serializable(kDataType), w(width), h(height) {}
Bounds::~Bounds() = default;

void Bounds::setValues(int height, int width)  // crosswise to the constructor
{
    w = width;
    h = height;
}

void Bounds::copyValues(Bounds* src)
{
    if (src) setValues(src->w, src->h);  // the copy exchanges width and height
}

void write(JsonWriter& json, Bounds& bounds)
{
    json.put("w", bounds.w);
    json.put("h", bounds.h);
}

void read(JsonReader& json, Bounds& bounds)
{
    json.optional("w", bounds.w);
    json.optional("h", bounds.h);
}

MESSAGE(Bounds, Compact)

DisplayLayer::DisplayLayer() : Serializable(kDataType), bounds(new Bounds) {}

DisplayLayer::~DisplayLayer()
{
    delete bounds;
}

const char* DisplayLayer::layerToString(DisplayLayerType value)
{
    return kDisplayLayers.word(value);
}
DisplayLayerType DisplayLayer::stringToLayer(std::string word)
{
    return kDisplayLayers.value(word);
}

template <>
constexpr std::size_t kHeldSize<DisplayLayer> = sizeof(Bounds);

void write(JsonWriter& json, DisplayLayer& layer)
{
    json.put("type", asWord(layer.type, kDisplayLayers));
    json.put("bounds", OrNoLayer{layer.bounds});
}

void read(JsonReader& json, DisplayLayer& layer)
{
    json.optional("type", asWord(layer.type, kDisplayLayers));
    json.optional("bounds", layer.bounds);
}

MESSAGE(DisplayLayer, Compact)

NetworkInterface::NetworkInterface() : Serializable(kDataType) {}
NetworkInterface::~NetworkInterface() = default;

const char* NetworkInterface::typeToString(NetworkInterfaceType value)
{
    return kNetworkInterfaces.word(value);
}
NetworkInterfaceType NetworkInterface::stringToType(std::string word)
{
    return kNetworkInterfaces.value(word);
}

void write(JsonWriter& json, NetworkInterface& interface)
{
    json.put("type", asWord(interface.type, kNetworkInterfaces));
    json.put("active", interface.active);
}

void read(JsonReader& json, NetworkInterface& interface)
{
    json.optional("type", asWord(interface.type, kNetworkInterfaces));
    json.optional("active", interface.active);
}

MESSAGE(NetworkInterface, Compact)

PlatformCapabilities::PlatformCapabilities() : Serializable(kDataType), physicalScreenSize(new Bounds) {}

PlatformCapabilities::~PlatformCapabilities()
{
    delete physicalScreenSize;
    deleteAll(displayLayers);
    deleteAll(networkInterfaces);
}

const char* PlatformCapabilities::colorimetryToString(ColorimetryType value)
{
    return kColorimetry.word(value);
}
ColorimetryType PlatformCapabilities::stringToColorimetry(std::string word)
{
    return kColorimetry.value(word);
}
const char* PlatformCapabilities::dynamicRangeToString(DynamicRangeType value)
{
    return kDynamicRange.word(value);
}
DynamicRangeType PlatformCapabilities::stringToDynamicRange(std::string word)
{
    return kDynamicRange.value(word);
}
const char* PlatformCapabilities::inputDeviceToString(InputDevices value)
{
    return kInputDevices.word(value);
}
InputDevices PlatformCapabilities::stringToInputDevice(std::string word)
{
    return kInputDevices.value(word);
}

void PlatformCapabilities::addDisplayLayer(DisplayLayer* layer)
{
    take(displayLayers, layer);
}
void PlatformCapabilities::addColorimetryType(ColorimetryType type)
{
    addValue(colorimetry, type);
}
void PlatformCapabilities::addDynamicRangeType(DynamicRangeType type)
{
    addValue(dynamicRange, type);
}
void PlatformCapabilities::addInputDevices(InputDevices device)
{
    addValue(inputDevices, device);
}
void PlatformCapabilities::addNetworkInterface(NetworkInterface* interface)
{
    take(networkInterfaces, interface);
}
void PlatformCapabilities::addDolbyVisionCodecString(std::string codec)
{
    addIfMemoryAllows([&] { dolbyVisionCodecString.push_back(std::move(codec)); });
}

template <>
constexpr std::size_t kHeldSize<PlatformCapabilities> = sizeof(Bounds);

void write(JsonWriter& json, PlatformCapabilities& can)
{
    json.headerIfSet(can);
    json.object("platformCapabilities", [&] { writeCapabilities(json, can); });
}

void read(JsonReader& json, PlatformCapabilities& can)
{
    const auto readMembers = [&](JsonReader& inner) { readCapabilities(inner, can); };
    if (!json.object("platformCapabilities", readMembers)) json.fail(Fault::Missing);
}

MESSAGE(PlatformCapabilities, Formatted)

}  // namespace Orvu
