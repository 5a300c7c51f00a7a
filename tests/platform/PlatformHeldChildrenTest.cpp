#include "orvu/MediaPlayers.h"
#include "orvu/PlatformCapabilities.h"
#include "support/HeldRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kListsOfCapabilities =
    R"("displayLayers": [], "colorimetry": [], "dynamicRange": [], "inputDevices": [], "networkInterfaces": [], )";
constexpr const char* kListsOfAPlayer = R"("schemesSupported": [], "formatsSupported": [], )";

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Platform, AHeldChildOf,
    testing::Values(mustBeWritten(heldChild("DisplayLayerBounds", "bounds", &DisplayLayer::bounds)),
                    beside(heldChild("PlatformCapabilitiesPhysicalScreenSize", "physicalScreenSize",
                                     &PlatformCapabilities::physicalScreenSize),
                           kListsOfCapabilities, "platformCapabilities"),
                    beside(heldChild("MediaPlayerCodecsSupported", "codecsSupported", &MediaPlayer::codecsSupported),
                           kListsOfAPlayer),
                    beside(heldChild("MediaPlayerPos", "pos", &MediaPlayer::pos), kListsOfAPlayer),
                    heldChild("MediaPlayerActionPos", "pos", &MediaPlayerAction::pos)),
    heldName);

}  // namespace OrvuTests
