#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvu/MediaPlayers.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AMediaPlayer, StartsIdle)
{
    const MediaPlayer player;
    EXPECT_EQ(player.getDataType(), 44u);
    EXPECT_EQ(player.id + player.currentMedia, "");
    EXPECT_EQ(player.state, StatusTypeIdle);
    EXPECT_TRUE(player.formatsSupported.empty() && player.schemesSupported.empty() && player.drmsSupported.empty());
    ASSERT_TRUE(player.codecsSupported && player.pos);
    EXPECT_EQ(player.pos->w, 1280);
    EXPECT_EQ(player.vol + player.currTime + player.duration, 0);
}

constexpr const char* kDefaultText =
    "{\n"
    "\t\"HEADER\":\t\"player\",\n"
    "\t\"id\":\t\"\",\n"
    "\t\"currentMedia\":\t\"\",\n"
    "\t\"state\":\t\"idle\",\n"
    "\t\"schemesSupported\":\t[],\n"
    "\t\"formatsSupported\":\t[],\n"
    "\t\"codecsSupported\":\t{\n"
    "\t\t\"video\":\t[],\n"
    "\t\t\"audio\":\t[],\n"
    "\t\t\"subtitle\":\t[]\n"
    "\t},\n"
    "\t\"pos\":\t{\n"
    "\t\t\"x\":\t0,\n"
    "\t\t\"y\":\t0,\n"
    "\t\t\"w\":\t1280,\n"
    "\t\t\"h\":\t720\n"
    "\t},\n"
    "\t\"vol\":\t0,\n"
    "\t\"currTime\":\t0,\n"
    "\t\"duration\":\t0\n"
    "}";

TEST(AMediaPlayer, WritesNoDrmSystemsWhileItHasNone)
{
    MediaPlayer player;
    EXPECT_EQ(textOf(player), kDefaultText);
}

TEST(AMediaPlayer, WritesItsKeysInTheAgreedOrder)
{
    MediaPlayer player;
    player.serializeHeader(false);
    player.id = "p";
    player.currentMedia = "http://a/b";
    player.state = static_cast<StatusType>(26);
    player.addFormatSupported(DrmFormatMp4);
    player.addFormatSupported(DrmFormatMp4);
    player.addFormatSupported(static_cast<DrmFormat>(-1));
    player.addSchemeSupported(DrmSchemeUnknown);
    player.addSchemeSupported(static_cast<DrmScheme>(7));
    player.codecsSupported->addVideoCodec(VideoCodecH264);
    player.codecsSupported->addImageCodec(ImageCodecGIF);
    player.addSupportedDrm(new DrmSystem);
    player.pos->setValues(1, 2, 3, 4);
    player.vol = -5;
    player.currTime = 6;
    player.duration = 7;
    EXPECT_EQ(textOf(player),
              "{\n"
              "\t\"id\":\t\"p\",\n"
              "\t\"currentMedia\":\t\"http://a/b\",\n"
              "\t\"state\":\t\"\",\n"
              "\t\"schemesSupported\":\t[\"Unknown\", \"\"],\n"
              "\t\"formatsSupported\":\t[\"mp4\", \"mp4\", \"\"],\n"
              "\t\"codecsSupported\":\t{\n"
              "\t\t\"video\":\t[\"H.264\"],\n"
              "\t\t\"audio\":\t[],\n"
              "\t\t\"subtitle\":\t[]\n"
              "\t},\n"
              "\t\"drmsSupported\":\t[{\n"
              "\t\t\t\"systemId\":\t\"\",\n"
              "\t\t\t\"drmName\":\t\"\",\n"
              "\t\t\t\"drmVersion\":\t\"\",\n"
              "\t\t\t\"formatsSupported\":\t[]\n"
              "\t\t}],\n"
              "\t\"pos\":\t{\n"
              "\t\t\"x\":\t1,\n"
              "\t\t\"y\":\t2,\n"
              "\t\t\"w\":\t3,\n"
              "\t\t\"h\":\t4\n"
              "\t},\n"
              "\t\"vol\":\t-5,\n"
              "\t\"currTime\":\t6,\n"
              "\t\"duration\":\t7\n"
              "}");
}

/// What a player writes under `key`, without blanks; "" when it leaves the key out.
std::string writtenUnder(const char* key, MediaPlayer& player)
{
    const Tree tree = treeOf(textOf(player));
    cJSON* const member = cJSON_GetObjectItemCaseSensitive(tree.get(), key);
    return member ? taken(cJSON_PrintUnformatted(member)) : "";
}

TEST(AMediaPlayer, LeavesCodecsWithoutATextOut)
{
    for (Codecs* const codecs : std::vector<Codecs*>{nullptr, new Silent<Codecs>, new Saying<Codecs>("no JSON")}) {
        MediaPlayer player;
        delete std::exchange(player.codecsSupported, codecs);
        EXPECT_EQ(writtenUnder("codecsSupported", player), "");
        EXPECT_EQ(writtenUnder("formatsSupported", player), "[]");
    }
    MediaPlayer player;
    delete std::exchange(player.codecsSupported, new Saying<Codecs>("[1]"));
    EXPECT_EQ(writtenUnder("codecsSupported", player), "[1]");
}

TEST(AMediaPlayer, LeavesAPositionWithoutATextOut)
{
    for (Position* const pos : std::vector<Position*>{nullptr, new Silent<Position>, new Saying<Position>("no JSON")}) {
        MediaPlayer player;
        delete std::exchange(player.pos, pos);
        EXPECT_EQ(writtenUnder("pos", player), "");
        EXPECT_EQ(writtenUnder("vol", player), "0");
    }
    MediaPlayer player;
    delete std::exchange(player.pos, new Saying<Position>("[1]"));
    EXPECT_EQ(writtenUnder("pos", player), "[1]");
}

TEST(AMediaPlayer, SkipsDrmSystemsWithoutAText)
{
    MediaPlayer player;
    player.addSupportedDrm(nullptr);
    EXPECT_EQ(writtenUnder("drmsSupported", player), "");
    player.addSupportedDrm(new Silent<DrmSystem>);
    player.addSupportedDrm(new Saying<DrmSystem>("no JSON"));
    player.drmsSupported.push_back(nullptr);
    EXPECT_EQ(writtenUnder("drmsSupported", player), "[]");
    player.addSupportedDrm(new Saying<DrmSystem>("5"));
    EXPECT_EQ(writtenUnder("drmsSupported", player), "[5]");
}

/// A player as new, read from a text with the two lists that are required and these members.
struct Reading {
    MediaPlayer player;
    bool success;

    explicit Reading(const std::string& members)
        : success(player.deserialize(
              (R"({"schemesSupported": ["http"], "formatsSupported": ["hls"], )" + members + "}").c_str()))
    {}
};

TEST(AMediaPlayer, ReadsItsListsBehindWhatItHolds)
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

TEST(AMediaPlayer, MakesAnewWhatTheApplicationTook)
{
    MediaPlayer player;
    delete std::exchange(player.codecsSupported, nullptr);
    delete std::exchange(player.pos, nullptr);
    EXPECT_TRUE(player.deserialize(R"({"schemesSupported": [], "formatsSupported": []})"));
    EXPECT_FALSE(player.codecsSupported || player.pos);
    EXPECT_TRUE(player.deserialize(
        R"({"schemesSupported": [], "formatsSupported": [], "codecsSupported": {"audio": ["AC-3"]},
            "pos": {"x": 5}})"));
    ASSERT_TRUE(player.codecsSupported && player.pos);
    EXPECT_EQ(player.codecsSupported->audio.size(), 1u);
    EXPECT_EQ(player.pos->x, 5);
}

TEST(AMediaPlayer, LetsChildrenOfAnApplicationReadForThemselves)
{
    MediaPlayer player;
    auto* const codecs = new Listening<Codecs>(false);
    auto* const pos = new Listening<Position>(false);
    delete std::exchange(player.codecsSupported, codecs);
    delete std::exchange(player.pos, pos);
    EXPECT_TRUE(player.deserialize(
        R"({"schemesSupported": [], "formatsSupported": [], "codecsSupported": {"a": 1}, "pos": [2], "vol": 3})"));
    EXPECT_EQ(codecs->heard, "{\n\t\"a\":\t1\n}");
    EXPECT_EQ(pos->heard, "[2]");
    EXPECT_EQ(player.vol, 3);
}

TEST(AMediaPlayer, DeletesWhatItOwns)
{
    int destroyed = 0;
    {
        MediaPlayer player;
        delete std::exchange(player.codecsSupported, new Counted<Codecs>(destroyed));
        delete std::exchange(player.pos, new Counted<Position>(destroyed));
        player.addSupportedDrm(new Counted<DrmSystem>(destroyed));
        player.drmsSupported.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 3);
}

TEST(AMediaPlayer, HasAccessors)
{
    MediaPlayer player;
    player.setId("a");
    player.setCurrentMedia("b");
    player.setState(StatusTypePaused);
    player.setVol(1);
    player.setCurrTime(2);
    player.setDuration(3);
    EXPECT_EQ(player.getId() + player.getCurrentMedia(), "ab");
    EXPECT_EQ(player.getState(), StatusTypePaused);
    EXPECT_EQ(player.getVol(), 1);
    EXPECT_EQ(player.getCurrTime(), 2);
    EXPECT_EQ(player.getDuration(), 3);
}

TEST(AMediaPlayer, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<MediaPlayer>);
    EXPECT_FALSE(std::is_copy_assignable_v<MediaPlayer>);
}

}  // namespace
}  // namespace OrvuTests
