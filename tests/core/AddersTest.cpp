#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvu/Orvu.h"
#include "support/FailingMemory.h"

using namespace Orvu;

/// \file
/// Adders of values add nothing when out of memory, and throw nothing, as those of objects do.

namespace OrvuTests {
namespace {

const std::string kLong(100, 'a');

/// What an adder of `Message` leaves in `list` when the n-th allocation is refused, for every n. What it is given is
/// made before, since the copy of an argument is the caller's.
template <class Message, class List, class Add>
void expectNothingAdded(List Message::*list, std::size_t added, Add add)
{
    int refusals = 0;
    for (bool refused = true; refused;) {
        Message message;
        const auto given = add(message);
        {
            const FailingMemory memory(refusals + 1);
            EXPECT_NO_THROW(given());
            refused = memory.refused();
        }
        EXPECT_EQ((message.*list).size(), refused ? 0 : added);
        refusals += refused;
    }
    EXPECT_GT(refusals, 0);
}

/// An adder that takes a plain value.
template <class Message, class Value>
void expectNothingAdded(std::vector<Value> Message::*list, void (Message::*adder)(Value))
{
    expectNothingAdded(list, 1,
                       [adder](Message& message) { return [&message, adder] { (message.*adder)(Value(1)); }; });
}

/// One that takes texts, which are moved in.
template <class Message, class Given>
void expectNothingAdded(std::vector<std::string> Message::*list, void (Message::*adder)(Given), std::size_t added,
                        const Given& texts)
{
    expectNothingAdded(list, added, [adder, &texts](Message& message) {
        return [&message, adder, given = std::make_shared<Given>(texts)] { (message.*adder)(std::move(*given)); };
    });
}

TEST(AnAdderOfValues, AddsNothingWithoutMemory)
{
    expectNothingAdded(&Codecs::video, &Codecs::addVideoCodec);
    expectNothingAdded(&Codecs::audio, &Codecs::addAudioCodec);
    expectNothingAdded(&Codecs::subtitle, &Codecs::addSubtitleCodec);
    expectNothingAdded(&Codecs::image, &Codecs::addImageCodec);
    expectNothingAdded(&DrmSystem::formatsSupported, &DrmSystem::addFormatSupported);
    expectNothingAdded(&DrmSystem::schemesSupported, &DrmSystem::addSchemeSupported);
    expectNothingAdded(&MediaPlayer::formatsSupported, &MediaPlayer::addFormatSupported);
    expectNothingAdded(&MediaPlayer::schemesSupported, &MediaPlayer::addSchemeSupported);
    expectNothingAdded(&PlatformCapabilities::colorimetry, &PlatformCapabilities::addColorimetryType);
    expectNothingAdded(&PlatformCapabilities::dynamicRange, &PlatformCapabilities::addDynamicRangeType);
    expectNothingAdded(&PlatformCapabilities::inputDevices, &PlatformCapabilities::addInputDevices);
    expectNothingAdded(&CAUnit::componentTags, &CAUnit::addComponentTag);
    expectNothingAdded(&StreamPidsRequest::pids, &StreamPidsRequest::addPid);
}

TEST(AnAdderOfTexts, AddsNothingWithoutMemory)
{
    using Texts = std::vector<std::string>;

    expectNothingAdded(&PlatformCapabilities::dolbyVisionCodecString, &PlatformCapabilities::addDolbyVisionCodecString,
                       1, kLong);
    expectNothingAdded(&ServiceBindTokens::bindTokens, &ServiceBindTokens::addToken, 1, kLong);
    expectNothingAdded(&GingaKeyset::keys, &GingaKeyset::addKeyset, 2, Texts{kLong, "", "b"});
    expectNothingAdded(&ClientApplicationList::deletionIds, 1,
                       [](ClientApplicationList& list) { return [&list] { list.addAppIdToDeletion(kLong.c_str()); }; });
}

}  // namespace
}  // namespace OrvuTests
