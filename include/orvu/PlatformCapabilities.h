#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// A colour space.
enum ColorimetryType : int {
    ColorimetryTypeUnknown = 0,  ///< "unknown"
    ColorimetryTypeBT601 = 1,    ///< "BT.601"
    ColorimetryTypeBT709 = 2,    ///< "BT.709"
    ColorimetryTypeBT2020 = 3,   ///< "BT.2020"
    ColorimetryTypeBT2100 = 4,   ///< "BT.2100"
};

/// A dynamic range.
enum DynamicRangeType : int {
    DynamicRangeTypeUnknown = 0,      ///< "unknown"
    DynamicRangeTypeSDR = 1,          ///< "SDR"
    DynamicRangeTypeHLG = 2,          ///< "HLG"
    DynamicRangeTypeHDR10 = 3,        ///< "HDR10"
    DynamicRangeTypeHDR10Plus = 4,    ///< "HDR10+"
    DynamicRangeTypeSLHDR1 = 5,       ///< "SL-HDR1"
    DynamicRangeTypeDolbyVision = 6,  ///< "DolbyVision"
};

/// An input device.
enum InputDevices : int {
    InputDevicesUnknown = 0,        ///< "unknown"
    InputDevicesRemoteControl = 1,  ///< "remoteControl"
    InputDevicesPointer = 2,        ///< "pointer"
    InputDevicesKeyboard = 3,       ///< "keyboard"
    InputDevicesMouse = 4,          ///< "mouse"
    InputDevicesTouchscreen = 5,    ///< "touchscreen". Never read back: comes back as unknown.
    InputDevicesVoice = 6,          ///< "voice"
};

/// What a display layer shows.
enum DisplayLayerType : int {
    DisplayLayerTypeUnknown = 0,   ///< "unknown"
    DisplayLayerTypeVideo = 1,     ///< "video"
    DisplayLayerTypeImage = 2,     ///< "image"
    DisplayLayerTypeGraphics = 3,  ///< "graphics"
    DisplayLayerTypeSubtitle = 4,  ///< "subtitle"
};

/// A kind of network interface.
enum NetworkInterfaceType : int {
    NetworkInterfaceTypeUnknown = 0,   ///< "unknown"
    NetworkInterfaceTypeWired = 1,     ///< "wired"
    NetworkInterfaceTypeWireless = 2,  ///< "wireless"
};

/// A width and a height. Travels nested, and carries the type of Position.
class ORVU_EXPORT Bounds : public Serializable {
public:
    /// A position's, also in what the factory makes for DataTypeBounds.
    static constexpr DataType kDataType = DataTypePos;

    int w = -1;  ///< Width, in pixels in a display layer; -1 when not known.
    int h = -1;  ///< Height, in the same unit; -1 when not known.

    Bounds();
    Bounds(int width, int height);
    ~Bounds() override;
    Bounds(const Bounds&) = default;
    Bounds& operator=(const Bounds&) = default;

    int getW() const { return w; }
    void setW(int value) { w = value; }
    int getH() const { return h; }
    void setH(int value) { h = value; }

    /// Crosswise: the second argument becomes the width, the first the height. setValues(1920, 1080) makes bounds of
    /// 1080 by 1920. The constructor, setW() and setH() do not exchange them.
    void setValues(int height, int width);
    /// Crosswise: the width of `src` becomes the height, and the other way round; null is ignored.
    void copyValues(Bounds* src);

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One layer of the display. Wire name "displayLayers"; travels nested.
class ORVU_EXPORT DisplayLayer : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDisplayLayers;

    DisplayLayerType type = DisplayLayerTypeUnknown;  ///< What the layer shows.
    Bounds* bounds = nullptr;                         ///< Owned; made with the layer.

    DisplayLayer();
    ~DisplayLayer() override;
    DisplayLayer(const DisplayLayer&) = delete;
    DisplayLayer& operator=(const DisplayLayer&) = delete;

    DisplayLayerType getType() const { return type; }
    void setType(DisplayLayerType value) { type = value; }

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* layerToString(DisplayLayerType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static DisplayLayerType stringToLayer(std::string word);

    /// Compact, never with "HEADER". Null also when the bounds cannot be written.
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One network interface. Wire name "networkInterfaces"; travels nested.
class ORVU_EXPORT NetworkInterface : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNetworkInterfaces;

    NetworkInterfaceType type = NetworkInterfaceTypeUnknown;  ///< How it is connected.
    bool active = false;                                      ///< It is in use.

    NetworkInterface();
    ~NetworkInterface() override;
    NetworkInterface(const NetworkInterface&) = default;
    NetworkInterface& operator=(const NetworkInterface&) = default;

    NetworkInterfaceType getType() const { return type; }
    void setType(NetworkInterfaceType value) { type = value; }
    bool isActive() const { return active; }
    void setActive(bool value) { active = value; }

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* typeToString(NetworkInterfaceType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static NetworkInterfaceType stringToType(std::string word);

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// What the receiver can do. Wire name "platformCapabilities".
class ORVU_EXPORT PlatformCapabilities : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePlatformCapabilities;

    std::string manufacturer;  ///< Name of the maker, UTF-8.
    std::string model;         ///< Name of the model, UTF-8.
    std::string friendlyName;  ///< Never written by this library; read from peers that write it.
    /// Owned; made with the message. The applications agree on the unit, such as pixels or millimetres.
    Bounds* physicalScreenSize = nullptr;
    int videoRefreshRate = 0;                  ///< Hz.
    std::string reservedText;                  ///< Does not travel.
    std::vector<DisplayLayer*> displayLayers;  ///< Owned; deleted with the message.
    /// Colour spaces that it renders, in order. Comes back with one more unknown for each `dolbyVisionCodecString` that
    /// was written.
    std::vector<ColorimetryType> colorimetry;
    std::vector<DynamicRangeType> dynamicRange;        ///< Dynamic ranges that it renders, in order; duplicates stay.
    std::vector<InputDevices> inputDevices;            ///< Comes back with unknown in place of touchscreen.
    std::vector<NetworkInterface*> networkInterfaces;  ///< Owned; deleted with the message.
    /// Codec strings such as "dvhe.05.06". Written only with Dolby Vision, after the words of `colorimetry`. Never read
    /// back from there, but from a list of its own, which other peers may send.
    std::vector<std::string> dolbyVisionCodecString;

    PlatformCapabilities();
    ~PlatformCapabilities() override;
    PlatformCapabilities(const PlatformCapabilities&) = delete;
    PlatformCapabilities& operator=(const PlatformCapabilities&) = delete;

    const std::string& getManufacturer() const { return manufacturer; }
    void setManufacturer(const std::string& value) { manufacturer = value; }
    const std::string& getModel() const { return model; }
    void setModel(const std::string& value) { model = value; }
    const std::string& getFriendlyName() const { return friendlyName; }
    /// Changes nothing on the wire: the name is never written.
    void setFriendlyName(const std::string& value) { friendlyName = value; }
    int getVideoRefreshRate() const { return videoRefreshRate; }
    void setVideoRefreshRate(int value) { videoRefreshRate = value; }

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* colorimetryToString(ColorimetryType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static ColorimetryType stringToColorimetry(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* dynamicRangeToString(DynamicRangeType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static DynamicRangeType stringToDynamicRange(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* inputDeviceToString(InputDevices value);
    /// The value of a word, compared exactly; unknown for any other text, "touchscreen" among them.
    static InputDevices stringToInputDevice(std::string word);

    /// Appends `layer` and takes it; null is ignored.
    void addDisplayLayer(DisplayLayer* layer);
    /// Appends `type`; duplicates stay.
    void addColorimetryType(ColorimetryType type);
    /// Appends `type`; duplicates stay.
    void addDynamicRangeType(DynamicRangeType type);
    /// Appends `device`; duplicates stay. A touchscreen is written, but read as unknown.
    void addInputDevices(InputDevices device);
    /// Appends `interface` and takes it; null is ignored.
    void addNetworkInterface(NetworkInterface* interface);
    /// Appends `codec`, a Dolby Vision codec string such as "dvhe.05.06"; duplicates stay.
    void addDolbyVisionCodecString(std::string codec);

    /// Switches the header flag of every layer and interface off, for good.
    char* serialize() override;
    /// "platformCapabilities" and in it "displayLayers", "colorimetry", "dynamicRange", "inputDevices" and
    /// "networkInterfaces" are required; what was read before a missing one stays. Lists are appended to.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
