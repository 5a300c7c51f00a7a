#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "golden/Marks.h"
#include "orvu/Orvu.h"

/// The words that the library writes and does not read back: their values must say so in their descriptions in the
/// headers.

namespace OrvuTests {
namespace {

// What the word of a value reads as. A new enumeration gets a function here.

Orvu::DataType readBack(Orvu::DataType value)
{
    const std::string text = std::string(R"({"HEADER": ")") + Orvu::Serializable::dataTypeString(value) + "\"}";
    return Orvu::Serializable::deserializeHeader(text.c_str());
}

Orvu::StatusType readBack(Orvu::StatusType value)
{
    return Orvu::Status::stringToStatus(Orvu::Status::statusTypeString(value));
}

Orvu::TargetStatusType readBack(Orvu::TargetStatusType value)
{
    return Orvu::TargetStatus::targetStringToStatus(Orvu::TargetStatus::targetStatusTypeString(value));
}

Orvu::ComponentStatusType readBack(Orvu::ComponentStatusType value)
{
    return value;  // no message carries it
}

Orvu::PriorityType readBack(Orvu::PriorityType value)
{
    return Orvu::TargetApp::stringToPriority(Orvu::TargetApp::priorityTypeString(value));
}

Orvu::GingaAppType readBack(Orvu::GingaAppType value)
{
    return Orvu::RestGingaApp::stringToType(Orvu::RestGingaApp::typeToString(value));
}

Orvu::GingaControlCode readBack(Orvu::GingaControlCode value)
{
    return Orvu::RestGingaApp::stringToControlCode(Orvu::RestGingaApp::controlCodeToString(value));
}

Orvu::GingaState readBack(Orvu::GingaState value)
{
    return Orvu::RestGingaApp::stringToState(Orvu::RestGingaApp::stateToString(value));
}

Orvu::NclNodeType readBack(Orvu::NclNodeType value)
{
    return Orvu::NCLNode::stringToNode(Orvu::NCLNode::nodeTypeString(value));
}

Orvu::EditCommand readBack(Orvu::EditCommand value)
{
    return Orvu::GingaEditCommand::stringToCmd(Orvu::GingaEditCommand::cmdTypeString(value));
}

Orvu::ColorimetryType readBack(Orvu::ColorimetryType value)
{
    return Orvu::PlatformCapabilities::stringToColorimetry(Orvu::PlatformCapabilities::colorimetryToString(value));
}

Orvu::DynamicRangeType readBack(Orvu::DynamicRangeType value)
{
    return Orvu::PlatformCapabilities::stringToDynamicRange(Orvu::PlatformCapabilities::dynamicRangeToString(value));
}

Orvu::InputDevices readBack(Orvu::InputDevices value)
{
    return Orvu::PlatformCapabilities::stringToInputDevice(Orvu::PlatformCapabilities::inputDeviceToString(value));
}

Orvu::DisplayLayerType readBack(Orvu::DisplayLayerType value)
{
    return Orvu::DisplayLayer::stringToLayer(Orvu::DisplayLayer::layerToString(value));
}

Orvu::NetworkInterfaceType readBack(Orvu::NetworkInterfaceType value)
{
    return Orvu::NetworkInterface::stringToType(Orvu::NetworkInterface::typeToString(value));
}

Orvu::VideoCodec readBack(Orvu::VideoCodec value)
{
    return Orvu::Codecs::stringToVideoCodec(Orvu::Codecs::videoCodecToString(value));
}

Orvu::AudioCodec readBack(Orvu::AudioCodec value)
{
    return Orvu::Codecs::stringToAudioCodec(Orvu::Codecs::audioCodecToString(value));
}

Orvu::SubtitleCodec readBack(Orvu::SubtitleCodec value)
{
    return Orvu::Codecs::stringToSubtitleCodec(Orvu::Codecs::subtitleCodecToString(value));
}

Orvu::ImageCodec readBack(Orvu::ImageCodec value)
{
    return Orvu::Codecs::stringToImageCodec(Orvu::Codecs::imageCodecToString(value));
}

Orvu::DrmFormat readBack(Orvu::DrmFormat value)
{
    return Orvu::DrmSystem::stringToFormat(Orvu::DrmSystem::formatToString(value));
}

Orvu::DrmScheme readBack(Orvu::DrmScheme value)
{
    return Orvu::DrmSystem::stringToScheme(Orvu::DrmSystem::schemeToString(value));
}

/// A value of an enumeration, with its description in the header.
struct Enumerator {
    std::string name;
    std::string description;
    bool comesBack;
};

void PrintTo(const Enumerator& enumerator, std::ostream* out)
{
    *out << enumerator.name << ", described as \"" << enumerator.description << '"';
}

std::vector<Enumerator> enumerators()
{
    return {
#define FIELD(...)
#define WRITER(...)
#define SETTER(...)
#define GETTER(...)
#define ENUMERATOR(Enumeration, enumerator, text) {#enumerator, text, readBack(Orvu::enumerator) == Orvu::enumerator},
#include "fields.inc"
#undef FIELD
#undef WRITER
#undef SETTER
#undef GETTER
#undef ENUMERATOR
    };
}

class AnEnumerator : public testing::TestWithParam<Enumerator> {};

TEST_P(AnEnumerator, SaysWhenItsWordIsNotReadBack)
{
    EXPECT_EQ(!GetParam().comesBack, hasOneOf(kLost, GetParam().description));
}

INSTANTIATE_TEST_SUITE_P(EveryWord, AnEnumerator, testing::ValuesIn(enumerators()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace OrvuTests
