#include "support/SampleFields.h"

namespace OrvuTests {

using namespace Orvu;

void fill(Position& position)
{
    position.setValues(640, 360, 320, 180);
}

void fill(Bounds& bounds)
{
    bounds.w = 1920;
    bounds.h = 1080;
}

void fill(DisplayLayer& layer)
{
    layer.type = DisplayLayerTypeGraphics;
    fill(*layer.bounds);
}

void fill(NetworkInterface& interface)
{
    interface.type = NetworkInterfaceTypeWired;
    interface.active = true;
}

void fill(PlatformCapabilities& can)
{
    can.manufacturer = "Receptores do Sul";
    can.model = "RS-4000";
    can.friendlyName = "Sala";
    fill(*can.physicalScreenSize);
    can.videoRefreshRate = 60;
    can.addDisplayLayer(filled<DisplayLayer>());
    can.addColorimetryType(ColorimetryTypeBT709);
    can.addColorimetryType(ColorimetryTypeBT2020);
    can.addDynamicRangeType(DynamicRangeTypeHDR10Plus);
    can.addDynamicRangeType(DynamicRangeTypeDolbyVision);
    can.addInputDevices(InputDevicesRemoteControl);
    can.addInputDevices(InputDevicesTouchscreen);
    can.addNetworkInterface(filled<NetworkInterface>());
    can.addDolbyVisionCodecString("dvhe.05.06");
}

void fill(Codecs& codecs)
{
    codecs.addVideoCodec(VideoCodecH265);
    codecs.addAudioCodec(AudioCodecAACHEv2);
    codecs.addSubtitleCodec(SubtitleCodecIMSC1TTML);
    codecs.addImageCodec(ImageCodecPNG);
}

void fill(DrmSystem& system)
{
    system.systemId = "urn:uuid:9a04f079";
    system.drmName = "Cadeado";
    system.drmVersion = "3.0";
    system.addFormatSupported(DrmFormatDash);
    system.addSchemeSupported(DrmSchemeHttps);
}

void fill(DrmSystemList& list)
{
    list.addSystem(filled<DrmSystem>());
}

void fill(MediaPlayer& player)
{
    player.id = "principal";
    player.currentMedia = "sbtvd-ts://1.2.01";
    player.state = StatusTypePlaying;
    player.addFormatSupported(DrmFormatMpegTs);
    player.addSchemeSupported(DrmSchemeSbtvdTs);
    fill(*player.codecsSupported);
    player.addSupportedDrm(filled<DrmSystem>());
    fill(*player.pos);
    player.vol = 80;
    player.currTime = 12;
    player.duration = 3600;
}

void fill(MediaPlayerList& list)
{
    list.addPlayer(filled<MediaPlayer>());
}

void fill(MediaPlayerAction& command)
{
    command.playerid = new std::string("principal");
    command.url = new std::string("https://example.com/filme.mpd");
    command.action = new StatusType(StatusTypeStart);
    command.pos = filled<Position>();
    command.vol = new int(50);
    command.currTime = new int(30);
}

}  // namespace OrvuTests
