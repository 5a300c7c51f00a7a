#include <gtest/gtest.h>
#include <vector>

#include "orvu/Codecs.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(SomeCodecs, WriteTheirWordsInOrderWithoutAHeader)
{
    Codecs codecs;
    codecs.addVideoCodec(VideoCodecH265);
    codecs.addVideoCodec(VideoCodecH264);
    codecs.addVideoCodec(VideoCodecH265);
    codecs.addAudioCodec(AudioCodecEAC3);
    codecs.addAudioCodec(static_cast<AudioCodec>(8));
    codecs.addSubtitleCodec(SubtitleCodecUnknown);
    codecs.addSubtitleCodec(static_cast<SubtitleCodec>(-1));
    constexpr const char* kText =
        R"({"video":["H.265","H.264","H.265"],"audio":["E-AC-3",""],"subtitle":["unknown",""]})";
    EXPECT_EQ(textOf(codecs), kText);
    codecs.serializeHeader(false);
    EXPECT_EQ(textOf(codecs), kText);
}

TEST(SomeCodecs, NeverWriteThoseOfImages)
{
    Codecs codecs;
    codecs.addImageCodec(ImageCodecJPEG);
    codecs.addImageCodec(ImageCodecPNG);
    codecs.addImageCodec(ImageCodecPNG);
    EXPECT_EQ(codecs.image, (std::vector<ImageCodec>{ImageCodecJPEG, ImageCodecPNG, ImageCodecPNG}));
    EXPECT_EQ(textOf(codecs), R"({"video":[],"audio":[],"subtitle":[]})");
}

TEST(SomeCodecs, NeverReadThoseOfImages)
{
    Codecs codecs;
    EXPECT_TRUE(codecs.deserialize(R"({"image": ["JPEG"], "images": ["PNG"]})"));
    EXPECT_TRUE(codecs.image.empty());
}

TEST(SomeCodecs, ReadTheirWordsAfterThoseTheyHold)
{
    Codecs codecs;
    EXPECT_TRUE(codecs.deserialize(R"({"AUDIO": ["AAC-HEv2", "aac-lc"], "audio": ["AC-4"], "subtitle": ["WebVTT"]})"));
    EXPECT_EQ(codecs.audio, (std::vector<AudioCodec>{AudioCodecAACHEv2, AudioCodecUnknown}));
    EXPECT_TRUE(codecs.deserialize(R"({"video": {"a": "H.264"}, "audio": ["unknown"]} and more)"));
    EXPECT_EQ(codecs.video, (std::vector<VideoCodec>{VideoCodecH264}));
    EXPECT_EQ(codecs.audio, (std::vector<AudioCodec>{AudioCodecAACHEv2, AudioCodecUnknown, AudioCodecUnknown}));
    EXPECT_EQ(codecs.subtitle, (std::vector<SubtitleCodec>{SubtitleCodecWebVTT}));
}

TEST(SomeCodecs, SkipWhatIsNoWord)
{
    Codecs codecs;
    EXPECT_TRUE(codecs.deserialize(R"({"video": [null, 1, "H.265", true, ["H.264"], {"a": "H.264"}, ""]})"));
    EXPECT_EQ(codecs.video, (std::vector<VideoCodec>{VideoCodecH265, VideoCodecUnknown}));
}

}  // namespace
}  // namespace OrvuTests
