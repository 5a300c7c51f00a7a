#include "orvu/Codecs.h"
#include "orvu/PlatformCapabilities.h"
#include "support/Vocabularies.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Platform, AVocabulary,
    testing::Values(wordsOf<ColorimetryType>(
                        "ColorimetryType", &PlatformCapabilities::colorimetryToString,
                        &PlatformCapabilities::stringToColorimetry, 0,
                        {{0, "unknown", 0}, {1, "BT.601", 1}, {2, "BT.709", 2}, {3, "BT.2020", 3}, {4, "BT.2100", 4}}),
                    wordsOf<DynamicRangeType>("DynamicRangeType", &PlatformCapabilities::dynamicRangeToString,
                                              &PlatformCapabilities::stringToDynamicRange, 0,
                                              {{0, "unknown", 0},
                                               {1, "SDR", 1},
                                               {2, "HLG", 2},
                                               {3, "HDR10", 3},
                                               {4, "HDR10+", 4},
                                               {5, "SL-HDR1", 5},
                                               {6, "DolbyVision", 6}}),
                    wordsOf<InputDevices>("InputDevices", &PlatformCapabilities::inputDeviceToString,
                                          &PlatformCapabilities::stringToInputDevice, 0,
                                          {{0, "unknown", 0},
                                           {1, "remoteControl", 1},
                                           {2, "pointer", 2},
                                           {3, "keyboard", 3},
                                           {4, "mouse", 4},
                                           {5, "touchscreen", 0},  // written, never read back
                                           {6, "voice", 6}}),
                    wordsOf<DisplayLayerType>(
                        "DisplayLayerType", &DisplayLayer::layerToString, &DisplayLayer::stringToLayer, 0,
                        {{0, "unknown", 0}, {1, "video", 1}, {2, "image", 2}, {3, "graphics", 3}, {4, "subtitle", 4}}),
                    wordsOf<NetworkInterfaceType>("NetworkInterfaceType", &NetworkInterface::typeToString,
                                                  &NetworkInterface::stringToType, 0,
                                                  {{0, "unknown", 0}, {1, "wired", 1}, {2, "wireless", 2}})),
    tableName);

INSTANTIATE_TEST_SUITE_P(
    Codecs, AVocabulary,
    testing::Values(
        wordsOf<VideoCodec>("VideoCodec", &Codecs::videoCodecToString, &Codecs::stringToVideoCodec, 0,
                            {{0, "unknown", 0}, {1, "H.264", 1}, {2, "H.265", 2}}),
        wordsOf<AudioCodec>("AudioCodec", &Codecs::audioCodecToString, &Codecs::stringToAudioCodec, 0,
                            {{0, "unknown", 0},
                             {1, "AAC-LC", 1},
                             {2, "AAC-HE", 2},
                             {3, "AAC-HEv2", 3},
                             {4, "AC-3", 4},
                             {5, "E-AC-3", 5},
                             {6, "AC-4", 6},
                             {7, "MPEG-H", 7}}),
        wordsOf<SubtitleCodec>("SubtitleCodec", &Codecs::subtitleCodecToString, &Codecs::stringToSubtitleCodec, 0,
                               {{0, "unknown", 0}, {1, "IMSC1-TTML", 1}, {2, "WebVTT", 2}}),
        wordsOf<ImageCodec>("ImageCodec", &Codecs::imageCodecToString, &Codecs::stringToImageCodec, 0,
                            {{0, "unknown", 0}, {1, "JPEG", 1}, {2, "PNG", 2}, {3, "GIF", 3}}),
        wordsOf<DrmFormat>(
            "DrmFormat", &DrmSystem::formatToString, &DrmSystem::stringToFormat, 5,
            {{0, "mp4", 0}, {1, "mpeg-ts", 1}, {2, "dash", 2}, {3, "hls", 3}, {4, "pes", 4}, {5, "Unknown", 5}}),
        wordsOf<DrmScheme>("DrmScheme", &DrmSystem::schemeToString, &DrmSystem::stringToScheme, 6,
                           {{0, "sbtvd-ts", 0},
                            {1, "dsmcc", 1},
                            {2, "http", 2},
                            {3, "https", 3},
                            {4, "rtsp", 4},
                            {5, "file", 5},
                            {6, "Unknown", 6}})),
    tableName);

}  // namespace OrvuTests
