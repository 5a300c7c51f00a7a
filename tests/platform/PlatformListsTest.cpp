#include "orvu/MediaPlayers.h"
#include "orvu/PlatformCapabilities.h"
#include "support/ListRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kWordsOfCapabilities = R"("colorimetry": [], "dynamicRange": [], "inputDevices": [], )";
constexpr const char* kWordsOfAPlayer = R"("schemesSupported": [], "formatsSupported": [], )";

/// A list of capabilities, with an empty one under `other` beside it.
ChildList ofCapabilities(const std::string& other, ChildList list)
{
    return inside("platformCapabilities", beside(std::move(list), kWordsOfCapabilities + ('"' + other) + "\": [], "));
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Platform, AListOfChildren,
    testing::Values(
        ofCapabilities("networkInterfaces",
                       childList("CapabilitiesLayers", "displayLayers", &PlatformCapabilities::displayLayers,
                                 &PlatformCapabilities::addDisplayLayer)),
        ofCapabilities("displayLayers",
                       childList("CapabilitiesInterfaces", "networkInterfaces",
                                 &PlatformCapabilities::networkInterfaces, &PlatformCapabilities::addNetworkInterface)),
        needing(childList("DrmSystemListSystems", "drms", &DrmSystemList::systems, &DrmSystemList::addSystem),
                R"({"formatsSupported": []})", R"({"systemId": "a"})"),
        optionalList(leavingHeaders(beside(childList("MediaPlayerDrmSystems", "drmsSupported",
                                                     &MediaPlayer::drmsSupported, &MediaPlayer::addSupportedDrm),
                                           kWordsOfAPlayer))),
        needing(childList("MediaPlayerListPlayers", "players", &MediaPlayerList::players, &MediaPlayerList::addPlayer),
                R"({"schemesSupported": [], "formatsSupported": []})", R"({"schemesSupported": []})")),
    listName);

}  // namespace OrvuTests
