#include "orvu/Codecs.h"

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/platform/Vocabularies.h"

namespace Orvu {
namespace {

constexpr Word kVideoCodecWords[] = {
    {VideoCodecUnknown, "unknown"},
    {VideoCodecH264, "H.264"},
    {VideoCodecH265, "H.265"},
};
constexpr auto kVideoCodecs = vocabulary(kVideoCodecWords, VideoCodecUnknown);

constexpr Word kAudioCodecWords[] = {
    {AudioCodecUnknown, "unknown"},  {AudioCodecAACLC, "AAC-LC"}, {AudioCodecAACHE, "AAC-HE"},
    {AudioCodecAACHEv2, "AAC-HEv2"}, {AudioCodecAC3, "AC-3"},     {AudioCodecEAC3, "E-AC-3"},
    {AudioCodecAC4, "AC-4"},         {AudioCodecMPEGH, "MPEG-H"},
};
constexpr auto kAudioCodecs = vocabulary(kAudioCodecWords, AudioCodecUnknown);

constexpr Word kSubtitleCodecWords[] = {
    {SubtitleCodecUnknown, "unknown"},
    {SubtitleCodecIMSC1TTML, "IMSC1-TTML"},
    {SubtitleCodecWebVTT, "WebVTT"},
};
constexpr auto kSubtitleCodecs = vocabulary(kSubtitleCodecWords, SubtitleCodecUnknown);

constexpr Word kImageCodecWords[] = {
    {ImageCodecUnknown, "unknown"},
    {ImageCodecJPEG, "JPEG"},
    {ImageCodecPNG, "PNG"},
    {ImageCodecGIF, "GIF"},
};
constexpr auto kImageCodecs = vocabulary(kImageCodecWords, ImageCodecUnknown);

// In these two any other word reads as the last value, whose own word is read back like the others.
constexpr Word kFormatWords[] = {
    {DrmFormatMp4, "mp4"}, {DrmFormatMpegTs, "mpeg-ts"}, {DrmFormatDash, "dash"},
    {DrmFormatHls, "hls"}, {DrmFormatPes, "pes"},        {DrmFormatUnknown, "Unknown"},
};

constexpr Word kSchemeWords[] = {
    {DrmSchemeSbtvdTs, "sbtvd-ts"}, {DrmSchemeDsmcc, "dsmcc"}, {DrmSchemeHttp, "http"},       {DrmSchemeHttps, "https"},
    {DrmSchemeRtsp, "rtsp"},        {DrmSchemeFile, "file"},   {DrmSchemeUnknown, "Unknown"},
};

}  // namespace

constexpr Vocabulary<DrmFormat> kFormats = vocabulary(kFormatWords, DrmFormatUnknown);
constexpr Vocabulary<DrmScheme> kSchemes = vocabulary(kSchemeWords, DrmSchemeUnknown);

Codecs::Codecs() : Serializable(kDataType) {}
Codecs::~Codecs() = default;

const char* Codecs::videoCodecToString(VideoCodec value)
{
    return kVideoCodecs.word(value);
}
VideoCodec Codecs::stringToVideoCodec(std::string word)
{
    return kVideoCodecs.value(word);
}
const char* Codecs::audioCodecToString(AudioCodec value)
{
    return kAudioCodecs.word(value);
}
AudioCodec Codecs::stringToAudioCodec(std::string word)
{
    return kAudioCodecs.value(word);
}
const char* Codecs::subtitleCodecToString(SubtitleCodec value)
{
    return kSubtitleCodecs.word(value);
}
SubtitleCodec Codecs::stringToSubtitleCodec(std::string word)
{
    return kSubtitleCodecs.value(word);
}
const char* Codecs::imageCodecToString(ImageCodec value)
{
    return kImageCodecs.word(value);
}
ImageCodec Codecs::stringToImageCodec(std::string word)
{
    return kImageCodecs.value(word);
}

void Codecs::addVideoCodec(VideoCodec codec)
{
    addValue(video, codec);
}
void Codecs::addAudioCodec(AudioCodec codec)
{
    addValue(audio, codec);
}
void Codecs::addSubtitleCodec(SubtitleCodec codec)
{
    addValue(subtitle, codec);
}
void Codecs::addImageCodec(ImageCodec codec)
{
    addValue(image, codec);
}

void write(JsonWriter& json, Codecs& codecs)
{
    json.put("video", asWords(codecs.video, kVideoCodecs));
    json.put("audio", asWords(codecs.audio, kAudioCodecs));
    json.put("subtitle", asWords(codecs.subtitle, kSubtitleCodecs));  // image codecs never travel
}

void read(JsonReader& json, Codecs& codecs)
{
    json.optional("video", asWords(codecs.video, kVideoCodecs));
    json.optional("audio", asWords(codecs.audio, kAudioCodecs));
    json.optional("subtitle", asWords(codecs.subtitle, kSubtitleCodecs));
}

MESSAGE(Codecs, Compact)

DrmSystem::DrmSystem() : Serializable(kDataType) {}
DrmSystem::~DrmSystem() = default;

const char* DrmSystem::formatToString(DrmFormat value)
{
    return kFormats.word(value);
}
DrmFormat DrmSystem::stringToFormat(std::string word)
{
    return kFormats.value(word);
}
const char* DrmSystem::schemeToString(DrmScheme value)
{
    return kSchemes.word(value);
}
DrmScheme DrmSystem::stringToScheme(std::string word)
{
    return kSchemes.value(word);
}

void DrmSystem::addFormatSupported(DrmFormat format)
{
    addValue(formatsSupported, format);
}
void DrmSystem::addSchemeSupported(DrmScheme scheme)
{
    addValue(schemesSupported, scheme);
}

void write(JsonWriter& json, DrmSystem& system)
{
    json.put("systemId", system.systemId);
    json.put("drmName", system.drmName);
    json.put("drmVersion", system.drmVersion);
    json.put("formatsSupported", asWords(system.formatsSupported, kFormats));  // schemes never travel
}

void read(JsonReader& json, DrmSystem& system)
{
    json.optional("systemId", system.systemId);
    json.optional("drmName", system.drmName);
    json.optional("drmVersion", system.drmVersion);
    json.required("formatsSupported", asWords(system.formatsSupported, kFormats));
}

MESSAGE(DrmSystem, Compact)

DrmSystemList::DrmSystemList() : Serializable(kDataType) {}
DrmSystemList::~DrmSystemList()
{
    deleteAll(systems);
}
void DrmSystemList::addSystem(DrmSystem* system)
{
    take(systems, system);
}

void write(JsonWriter& json, DrmSystemList& list)
{
    json.header(list);
    json.list("drms", list.systems);
}

void read(JsonReader& json, DrmSystemList& list)
{
    json.required("drms", list.systems);
}

MESSAGE(DrmSystemList, Formatted)

}  // namespace Orvu
