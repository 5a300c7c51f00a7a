#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvu/MediaPlayers.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// A player as new, read from a text with the two lists that are required and these members.
struct Reading {
    MediaPlayer player;
    bool success;

    explicit Reading(const std::string& members)
        : success(player.deserialize(
              (R"({"schemesSupported": ["http"], "formatsSupported": ["hls"], )" + members + "}").c_str()))
    {}
};

TEST(AMediaPlayer, ReadsItsListsAfterWhatItHolds)
{
    Reading read(R"("HEADER": "x", "SCHEMESSUPPORTED": ["rtsp"])");
    EXPECT_TRUE(read.success);
    EXPECT_TRUE(read.player.deserialize(
        R"({"FormatsSupported": ["mp4", "MP4", 5, null], "schemessupported": {"a": "file", "b": "ftp"}})"));
    EXPECT_EQ(read.player.schemesSupported, (std::vector<DrmScheme>{DrmSchemeHttp, DrmSchemeFile, DrmSchemeUnknown}));
    EXPECT_EQ(read.player.formatsSupported, (std::vector<DrmFormat>{DrmFormatHls, DrmFormatMp4, DrmFormatUnknown}));
}

TEST(AMediaPlayer, HasNothingInAListOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("http")", "[]", "{}"}) {
        MediaPlayer player;
        const std::string text = R"({"formatsSupported": )" + std::string(value) + R"(, "schemesSupported": )" + value +
                                 R"(, "drmsSupported": )" + value + "}";
        EXPECT_TRUE(player.deserialize(text.c_str())) << value;
        EXPECT_TRUE(player.formatsSupported.empty() && player.schemesSupported.empty()) << value;
        EXPECT_TRUE(player.drmsSupported.empty()) << value;
    }
}

TEST(AMediaPlayer, IsNotReadWithoutSchemesAndKeepsWhatWasReadBefore)
{
    MediaPlayer player;
    EXPECT_FALSE(player.deserialize(R"({"id": "p", "currentMedia": "m", "state": "playing", "formatsSupported": ["hls"],
                                        "vol": 5, "pos": {"x": 5}})"));
    EXPECT_EQ(player.id + player.currentMedia, "pm");
    EXPECT_EQ(player.state, StatusTypePlaying);
    EXPECT_TRUE(player.formatsSupported.empty());
    EXPECT_EQ(player.vol + player.pos->x, 0);
}

TEST(AMediaPlayer, IsNotReadWithoutFormatsAndKeepsWhatWasReadBefore)
{
    MediaPlayer player;
    EXPECT_FALSE(player.deserialize(R"({"id": "p", "schemesSupported": ["http"], "drmsSupported": [{}], "vol": 5})"));
    EXPECT_EQ(player.id, "p");
    EXPECT_EQ(player.schemesSupported.size(), 1u);
    EXPECT_TRUE(player.drmsSupported.empty());
    EXPECT_EQ(player.vol, 0);
    for (const char* text : {"{}", "[]", "5", "null", "", "{", "no JSON"})
        EXPECT_FALSE(player.deserialize(text)) << text;
    EXPECT_FALSE(player.deserialize(nullptr));
}

TEST(AMediaPlayer, ReadsAnyOtherStateAsUnknown)
{
    EXPECT_EQ(Reading(R"("state": "Playing")").player.state, StatusTypeUnknown);
    EXPECT_EQ(Reading(R"("state": "requesting")").player.state, StatusTypeUnknown);
    EXPECT_EQ(Reading(R"("state": 5)").player.state, StatusTypeIdle);
}

TEST(AMediaPlayer, ReadsIntoTheCodecsItHolds)
{
    MediaPlayer player;
    Codecs* const codecs = player.codecsSupported;
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(player.deserialize(
            R"({"schemesSupported": [], "formatsSupported": [], "codecsSupported": {"video": ["H.264"]}})"));
    EXPECT_EQ(player.codecsSupported, codecs);
    EXPECT_EQ(codecs->video.size(), 2u);
}

TEST(AMediaPlayer, KeepsDrmSystemsThatCannotBeRead)
{
    const Reading read(R"("drmsSupported": [{"drmName": "A", "formatsSupported": []}, {"drmName": "B"}, 5, null])");
    EXPECT_TRUE(read.success);
    ASSERT_EQ(read.player.drmsSupported.size(), 4u);
    EXPECT_EQ(read.player.drmsSupported[0]->drmName + read.player.drmsSupported[1]->drmName, "AB");
    EXPECT_EQ(read.player.drmsSupported[3]->drmName, "");
}

TEST(AMediaPlayer, IgnoresThatItsPositionCannotBeRead)
{
    const Reading read(R"("pos": {"x": 5, "y": "bad", "w": 6}, "vol": 7)");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.player.pos->x, 5);
    EXPECT_EQ(read.player.pos->y, -1);
    EXPECT_EQ(read.player.pos->w, 1280);
    EXPECT_EQ(read.player.vol, 7);
    for (const char* value : {"null", "5", "true", R"("x")", "[]"})
        EXPECT_EQ(Reading(R"("pos": )" + std::string(value)).player.pos->w, 1280) << value;
}

TEST(AMediaPlayer, LetsTheExceptionsOfItsPositionPass)
{
    EXPECT_THROW(Reading(R"("pos": {"x": "ab%"})"), std::invalid_argument);
    EXPECT_THROW(Reading(R"("pos": {"x": "1e400%"})"), std::out_of_range);
}

}  // namespace
}  // namespace OrvuTests
