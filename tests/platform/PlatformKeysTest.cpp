#include "orvu/MediaPlayers.h"
#include "orvu/PlatformCapabilities.h"
#include "support/KeyRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

Key layerType()
{
    return wordShownBy("type", "video", "graphics", "unknown", [](Serializable& layer) {
        return DisplayLayer::layerToString(static_cast<DisplayLayer&>(layer).type);
    });
}

Key interfaceType()
{
    return wordShownBy("type", "wired", "wireless", "unknown", [](Serializable& interface) {
        return NetworkInterface::typeToString(static_cast<NetworkInterface&>(interface).type);
    });
}

Key playerState()
{
    return wordShownBy("state", "playing", "paused", "unknown", [](Serializable& player) {
        return Status::statusTypeString(static_cast<MediaPlayer&>(player).state);
    });
}

MediaPlayerAction& command(Serializable& message)
{
    return static_cast<MediaPlayerAction&>(message);
}

/// The fields of a command are pointers, which are null while the command does not carry them.
std::string shown(const std::string* text)
{
    return text ? inQuotes(*text) : "none";
}
std::string shown(const int* number)
{
    return number ? std::to_string(*number) : "none";
}

Key commandAction()
{
    return wordShownBy("action", "start", "stop", "unknown", [](Serializable& message) {
        const StatusType* const action = command(message).action;
        return action ? Status::statusTypeString(*action) : "none";
    });
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Platform, AMessage,
    testing::Values(
        keysOf<Bounds>("Bounds", {number("w", &Bounds::w), number("h", &Bounds::h)}),
        keysOf<DisplayLayer>("DisplayLayer", {layerType()}),
        keysOf<NetworkInterface>("NetworkInterface", {interfaceType(), boolean("active", &NetworkInterface::active)}),
        keysOf<PlatformCapabilities>(
            "PlatformCapabilities",
            {text("manufacturer", &PlatformCapabilities::manufacturer), text("model", &PlatformCapabilities::model),
             neverWritten(text("friendlyName", &PlatformCapabilities::friendlyName)),
             number("videoRefreshRate", &PlatformCapabilities::videoRefreshRate)},
            {"displayLayers", "colorimetry", "dynamicRange", "inputDevices", "networkInterfaces"},
            "platformCapabilities")),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Players, AMessage,
    testing::Values(
        keysOf<Codecs>("Codecs", {}), keysOf<DrmSystemList>("DrmSystemList", {}, {"drms"}),
        keysOf<MediaPlayerList>("MediaPlayerList", {}, {"players"}),
        keysOf<DrmSystem>("DrmSystem",
                          {text("systemId", &DrmSystem::systemId), text("drmName", &DrmSystem::drmName),
                           text("drmVersion", &DrmSystem::drmVersion)},
                          {"formatsSupported"}),
        keysOf<MediaPlayer>("MediaPlayer",
                            {text("id", &MediaPlayer::id), text("currentMedia", &MediaPlayer::currentMedia),
                             playerState(), number("vol", &MediaPlayer::vol),
                             number("currTime", &MediaPlayer::currTime), number("duration", &MediaPlayer::duration)},
                            {"schemesSupported", "formatsSupported"}),
        keysOf<MediaPlayerAction>(
            "MediaPlayerAction",
            {textShownBy("playerid", [](Serializable& message) { return shown(command(message).playerid); }),
             textShownBy("url", [](Serializable& message) { return shown(command(message).url); }), commandAction(),
             numberShownBy("vol", [](Serializable& message) { return shown(command(message).vol); }),
             numberShownBy("currTime", [](Serializable& message) { return shown(command(message).currTime); })})),
    nameOf);

}  // namespace OrvuTests
