#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// A video codec.
enum VideoCodec : int {
    VideoCodecUnknown = 0,  ///< "unknown"
    VideoCodecH264 = 1,     ///< "H.264"
    VideoCodecH265 = 2,     ///< "H.265"
};

/// An audio codec.
enum AudioCodec : int {
    AudioCodecUnknown = 0,  ///< "unknown"
    AudioCodecAACLC = 1,    ///< "AAC-LC"
    AudioCodecAACHE = 2,    ///< "AAC-HE"
    AudioCodecAACHEv2 = 3,  ///< "AAC-HEv2"
    AudioCodecAC3 = 4,      ///< "AC-3"
    AudioCodecEAC3 = 5,     ///< "E-AC-3"
    AudioCodecAC4 = 6,      ///< "AC-4"
    AudioCodecMPEGH = 7,    ///< "MPEG-H"
};

/// A subtitle codec.
enum SubtitleCodec : int {
    SubtitleCodecUnknown = 0,    ///< "unknown"
    SubtitleCodecIMSC1TTML = 1,  ///< "IMSC1-TTML"
    SubtitleCodecWebVTT = 2,     ///< "WebVTT"
};

/// An image codec. Does not travel.
enum ImageCodec : int {
    ImageCodecUnknown = 0,  ///< "unknown"
    ImageCodecJPEG = 1,     ///< "JPEG"
    ImageCodecPNG = 2,      ///< "PNG"
    ImageCodecGIF = 3,      ///< "GIF"
};

/// A container format. Any other word reads as the last value.
enum DrmFormat : int {
    DrmFormatMp4 = 0,      ///< "mp4"
    DrmFormatMpegTs = 1,   ///< "mpeg-ts"
    DrmFormatDash = 2,     ///< "dash"
    DrmFormatHls = 3,      ///< "hls"
    DrmFormatPes = 4,      ///< "pes"
    DrmFormatUnknown = 5,  ///< "Unknown"
};

/// A delivery scheme. Any other word reads as the last value.
enum DrmScheme : int {
    DrmSchemeSbtvdTs = 0,  ///< "sbtvd-ts"
    DrmSchemeDsmcc = 1,    ///< "dsmcc"
    DrmSchemeHttp = 2,     ///< "http"
    DrmSchemeHttps = 3,    ///< "https"
    DrmSchemeRtsp = 4,     ///< "rtsp"
    DrmSchemeFile = 5,     ///< "file"
    DrmSchemeUnknown = 6,  ///< "Unknown"
};

/// The codecs that a player decodes. Wire name "codecsSupported"; travels nested.
class ORVU_EXPORT Codecs : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeCodecsSupported;

    std::vector<VideoCodec> video;        ///< In order; duplicates stay.
    std::vector<AudioCodec> audio;        ///< In order; duplicates stay.
    std::vector<SubtitleCodec> subtitle;  ///< In order; duplicates stay.
    std::vector<ImageCodec> image;        ///< Does not travel.

    Codecs();
    ~Codecs() override;
    Codecs(const Codecs&) = default;
    Codecs& operator=(const Codecs&) = default;

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* videoCodecToString(VideoCodec value);
    /// The value of a word, compared exactly; unknown for any other text.
    static VideoCodec stringToVideoCodec(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* audioCodecToString(AudioCodec value);
    /// The value of a word, compared exactly; unknown for any other text.
    static AudioCodec stringToAudioCodec(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* subtitleCodecToString(SubtitleCodec value);
    /// The value of a word, compared exactly; unknown for any other text.
    static SubtitleCodec stringToSubtitleCodec(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* imageCodecToString(ImageCodec value);
    /// The value of a word, compared exactly; unknown for any other text.
    static ImageCodec stringToImageCodec(std::string word);

    void addVideoCodec(VideoCodec codec);        ///< Appends `codec`; duplicates stay.
    void addAudioCodec(AudioCodec codec);        ///< Appends `codec`; duplicates stay.
    void addSubtitleCodec(SubtitleCodec codec);  ///< Appends `codec`; duplicates stay.
    void addImageCodec(ImageCodec codec);        ///< Appends `codec`, which does not travel.

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A DRM system. Wire name "drmSystem"; travels nested.
class ORVU_EXPORT DrmSystem : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDrmSystem;

    std::string systemId;                     ///< Identifies the DRM system; any text, never checked here.
    std::string drmName;                      ///< Name of the system for people; any text.
    std::string drmVersion;                   ///< Any text; empty when not known.
    std::vector<DrmFormat> formatsSupported;  ///< Container formats that it decrypts, in order; duplicates stay.
    std::vector<DrmScheme> schemesSupported;  ///< Delivery schemes. Does not travel.

    DrmSystem();
    ~DrmSystem() override;
    DrmSystem(const DrmSystem&) = default;
    DrmSystem& operator=(const DrmSystem&) = default;

    const std::string& getSystemId() const { return systemId; }
    void setSystemId(const std::string& value) { systemId = value; }
    const std::string& getDrmName() const { return drmName; }
    void setDrmName(const std::string& value) { drmName = value; }
    const std::string& getDrmVersion() const { return drmVersion; }
    void setDrmVersion(const std::string& value) { drmVersion = value; }

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* formatToString(DrmFormat value);
    /// The value of a word, compared exactly; the last value for any other text.
    static DrmFormat stringToFormat(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* schemeToString(DrmScheme value);
    /// The value of a word, compared exactly; the last value for any other text.
    static DrmScheme stringToScheme(std::string word);

    void addFormatSupported(DrmFormat format);  ///< Appends `format`; duplicates stay.
    void addSchemeSupported(DrmScheme scheme);  ///< Appends `scheme`, which does not travel.

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// "formatsSupported" is required; what was read before it stays. Formats are appended.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The DRM systems of the receiver. Wire name "drms".
class ORVU_EXPORT DrmSystemList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDrms;

    std::vector<DrmSystem*> systems;  ///< Owned; deleted with the list.

    DrmSystemList();
    ~DrmSystemList() override;
    DrmSystemList(const DrmSystemList&) = delete;
    DrmSystemList& operator=(const DrmSystemList&) = delete;

    /// Appends `system` and takes it; null is ignored.
    void addSystem(DrmSystem* system);

    /// Always with "HEADER". Switches the header flag of every system off, for good.
    char* serialize() override;
    /// Appends the systems under "drms", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
