#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvu/MediaPlayers.h"
#include "orvu/PlatformCapabilities.h"
#include "support/BothRoads.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Keys = std::vector<std::string>;

const Keys kBoundsKeys = {"HEADER", "W", "w", "h"};
const Keys kPositionKeys = {"HEADER", "x", "Y", "w", "w", "h"};
const Keys kCodecsKeys = {"video", "audio", "AUDIO", "image", "subtitle"};
const Keys kDrmKeys = {"systemId", "DRMNAME", "drmName", "drmVersion", "formatsSupported"};

/// A container whose child has been taken out for another.
template <class Container, class Child>
std::unique_ptr<Container> containerWith(Child* Container::*field, Child* child)
{
    auto container = std::make_unique<Container>();
    delete std::exchange(container.get()->*field, child);
    return container;
}

/// That a container that always holds a child writes and reads it alike on both roads.
template <class Container, class Child>
void expectTheSameHeld(Child* Container::*field, const Keys& keys, const Around& around)
{
    expectTheSameText<Child>([field](Child* child) { return textOf(*containerWith(field, child)); });
    expectTheSameRead<Child>(keys, [&](Child* child, const std::string& item) {
        const auto container = containerWith(field, child);
        EXPECT_TRUE(container->deserialize((around.before + item + around.behind).c_str()));
        return textOf(*container);
    });
}

TEST(ADisplayLayerOnBothRoads, WritesAndReadsTheSameBounds)
{
    expectTheSameHeld(&DisplayLayer::bounds, kBoundsKeys, {R"({"bounds": )", "}"});
}

TEST(CapabilitiesOnBothRoads, WriteAndReadTheSameScreenSize)
{
    expectTheSameHeld(&PlatformCapabilities::physicalScreenSize, kBoundsKeys,
                      {R"({"platformCapabilities": {"physicalScreenSize": )",
                       R"(, "displayLayers": [], "colorimetry": [], "dynamicRange": [], "inputDevices": [],
                          "networkInterfaces": []}})"});
}

TEST(CapabilitiesOnBothRoads, WriteAndReadTheSameLayers)
{
    expectTheSameText<DisplayLayer>([](DisplayLayer* layer) {
        PlatformCapabilities can;
        can.addDisplayLayer(layer);
        return textOf(can);
    });
    expectReadAsAlone<PlatformCapabilities>(
        &PlatformCapabilities::displayLayers, {"type", "bounds", "TYPE"},
        {R"({"platformCapabilities": {"displayLayers": )",
         R"(, "colorimetry": [], "dynamicRange": [], "inputDevices": [], "networkInterfaces": []}})"},
        Unreadable::Kept);
}

TEST(CapabilitiesOnBothRoads, WriteAndReadTheSameInterfaces)
{
    expectTheSameText<NetworkInterface>([](NetworkInterface* interface) {
        PlatformCapabilities can;
        can.addNetworkInterface(interface);
        return textOf(can);
    });
    expectReadAsAlone<PlatformCapabilities>(
        &PlatformCapabilities::networkInterfaces, {"ACTIVE", "type", "active"},
        {R"({"platformCapabilities": {"networkInterfaces": )",
         R"(, "colorimetry": [], "dynamicRange": [], "inputDevices": [], "displayLayers": []}})"});
}

TEST(ADrmSystemListOnBothRoads, WritesAndReadsTheSameSystems)
{
    expectTheSameText<DrmSystem>([](DrmSystem* system) {
        DrmSystemList list;
        list.addSystem(system);
        return textOf(list);
    });
    expectReadAsAlone<DrmSystemList>(&DrmSystemList::systems, kDrmKeys, {R"({"drms": )", "}"});
}

constexpr const char* kLists = R"({"schemesSupported": [], "formatsSupported": [], )";

TEST(AMediaPlayerOnBothRoads, WritesAndReadsTheSameCodecs)
{
    expectTheSameHeld(&MediaPlayer::codecsSupported, kCodecsKeys,
                      {std::string(kLists) + R"("codecsSupported": )", "}"});
}

TEST(AMediaPlayerOnBothRoads, WritesAndReadsTheSamePosition)
{
    expectTheSameHeld(&MediaPlayer::pos, kPositionKeys, {std::string(kLists) + R"("pos": )", "}"});
}

TEST(AMediaPlayerOnBothRoads, WritesAndReadsTheSameDrmSystems)
{
    expectTheSameText<DrmSystem>([](DrmSystem* system) {
        MediaPlayer player;
        player.addSupportedDrm(system);
        return textOf(player);
    });
    expectReadAsAlone<MediaPlayer>(&MediaPlayer::drmsSupported, kDrmKeys,
                                   {std::string(kLists) + R"("drmsSupported": )", "}"}, Unreadable::Kept);
}

TEST(AMediaPlayerListOnBothRoads, WritesAndReadsTheSamePlayers)
{
    expectTheSameText<MediaPlayer>([](MediaPlayer* player) {
        MediaPlayerList list;
        list.addPlayer(player);
        return textOf(list);
    });
    expectReadAsAlone<MediaPlayerList>(&MediaPlayerList::players,
                                       {"id", "state", "VOL", "vol", "schemesSupported", "formatsSupported",
                                        "codecsSupported", "drmsSupported", "pos", "duration"},
                                       {R"({"players": )", "}"});
}

TEST(APlayerCommandOnBothRoads, WritesAndReadsTheSamePosition)
{
    expectTheSameHeld(&MediaPlayerAction::pos, kPositionKeys, {R"({"pos": )", "}"});
}

}  // namespace
}  // namespace OrvuTests
