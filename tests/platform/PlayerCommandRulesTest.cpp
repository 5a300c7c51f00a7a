#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/MediaPlayers.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

bool isValidWith(StatusType action)
{
    MediaPlayerAction command;
    command.action = new StatusType(action);
    return command.validate();
}

bool isValidWith(const Position& pos)
{
    MediaPlayerAction command;
    command.pos = new Position(pos);
    return command.validate();
}

bool isValidWithVol(int vol)
{
    MediaPlayerAction command;
    command.vol = new int(vol);
    return command.validate();
}

bool isValidWithTime(int time)
{
    MediaPlayerAction command;
    command.currTime = new int(time);
    return command.validate();
}

/// A command that carries a URL alone.
struct WithUrl : MediaPlayerAction {
    explicit WithUrl(const std::string& text) { url = new std::string(text); }
};

TEST(APlayerCommand, IsValidWithoutAnyField)
{
    EXPECT_TRUE(MediaPlayerAction().validate());
    MediaPlayerAction command;
    command.playerid = new std::string;
    EXPECT_TRUE(command.validate());
}

TEST(APlayerCommand, IsValidWithActionsFromPrepareToUnload)
{
    for (int action = -1; action <= 26; ++action)
        EXPECT_EQ(isValidWith(static_cast<StatusType>(action)), action >= 2 && action <= 7) << action;
    EXPECT_FALSE(isValidWith(static_cast<StatusType>(INT_MIN)));
    EXPECT_FALSE(isValidWith(static_cast<StatusType>(INT_MAX)));
}

TEST(APlayerCommand, IsValidWithVolumesUpTo100)
{
    for (const int vol : {0, 1, 100})
        EXPECT_TRUE(isValidWithVol(vol)) << vol;
    for (const int vol : {-1, 101, INT_MIN, INT_MAX})
        EXPECT_FALSE(isValidWithVol(vol)) << vol;
}

TEST(APlayerCommand, IsValidWithTimesFromZeroOn)
{
    for (const int time : {0, 1, INT_MAX})
        EXPECT_TRUE(isValidWithTime(time)) << time;
    for (const int time : {-1, INT_MIN})
        EXPECT_FALSE(isValidWithTime(time)) << time;
}

TEST(APlayerCommand, IsValidWithAPositionOnTheScreen)
{
    EXPECT_TRUE(isValidWith(Position(0, 0, 1280, 720)));
    EXPECT_TRUE(isValidWith(Position(1280, 720, 0, 0)));
    EXPECT_TRUE(isValidWith(Position(0, 0, -5, INT_MIN)));  // widths and heights are checked by their far ends alone
    EXPECT_FALSE(isValidWith(Position(1, 0, 1280, 720)));
    EXPECT_FALSE(isValidWith(Position(0, 1, 1280, 720)));
    EXPECT_FALSE(isValidWith(Position(-1, 0, 10, 10)));
    EXPECT_FALSE(isValidWith(Position(0, -1, 10, 10)));
}

TEST(APlayerCommand, IsNotValidWhereTheSumsOfItsPositionWouldOverflow)
{
    EXPECT_FALSE(isValidWith(Position(INT_MAX, 0, 1, 1)));
    EXPECT_FALSE(isValidWith(Position(INT_MAX, 0, INT_MAX, 1)));
    EXPECT_FALSE(isValidWith(Position(0, INT_MAX, 1, INT_MAX)));
    EXPECT_FALSE(isValidWith(Position(INT_MIN, INT_MIN, INT_MIN, INT_MIN)));
    EXPECT_TRUE(isValidWith(Position(INT_MAX, INT_MAX, INT_MIN, INT_MIN)));
}

TEST(APlayerCommand, IsValidWithAllOfThem)
{
    MediaPlayerAction command;
    command.playerid = new std::string("p");
    command.url = new std::string("http://a/b");
    command.action = new StatusType(StatusTypeStop);
    command.pos = new Position(0, 0, 1280, 720);
    command.vol = new int(100);
    command.currTime = new int(0);
    EXPECT_TRUE(command.validate());
    *command.vol = 101;
    EXPECT_FALSE(command.validate());
}

TEST(APlayerCommand, HasAControlFieldWithAnActionAPositionAVolumeOrATime)
{
    MediaPlayerAction without;
    EXPECT_FALSE(without.hasControlField());
    without.playerid = new std::string("p");
    without.url = new std::string("http:");
    EXPECT_FALSE(without.hasControlField());
    MediaPlayerAction action;
    action.action = new StatusType(StatusTypeUnknown);
    EXPECT_TRUE(action.hasControlField());
    MediaPlayerAction pos;
    pos.pos = new Position;
    EXPECT_TRUE(pos.hasControlField());
    MediaPlayerAction vol;
    vol.vol = new int(0);
    EXPECT_TRUE(vol.hasControlField());
    MediaPlayerAction time;
    time.currTime = new int(0);
    EXPECT_TRUE(time.hasControlField());
}

struct UrlRow {
    std::string url;
    bool isValid, isBroadcast, isInternet;
    std::string toLoad;
};

void PrintTo(const UrlRow& row, std::ostream* out)
{
    *out << row.url;
}

class AUrl : public testing::TestWithParam<UrlRow> {};

TEST_P(AUrl, IsJudgedByTheSchemesInIt)
{
    WithUrl command(GetParam().url);
    EXPECT_EQ(command.validate(), GetParam().isValid);
    EXPECT_EQ(command.isBroadcastUrl(), GetParam().isBroadcast);
    EXPECT_EQ(command.isInternetUrl(), GetParam().isInternet);
    EXPECT_EQ(command.getUrlToLoad(), GetParam().toLoad);
}

INSTANTIATE_TEST_SUITE_P(
    Urls, AUrl,
    testing::Values(
        UrlRow{"sbtvd-ts://1.2.01", true, true, false, "tmp:///1.2.01"},
        UrlRow{"sbtvd-ts:", true, true, false, "tmp:/"}, UrlRow{"sbtvd-ts", false, false, false, "tmp:/sbtvd-ts"},
        UrlRow{"dsmcc://1.2.3/a:b", true, true, false, "tmp:/b"},
        UrlRow{"dsmcc:/1.2.3", false, false, false, "tmp://1.2.3"},
        UrlRow{"http://a/b", true, false, true, "tmp:///a/b"}, UrlRow{"https://a:80/b", true, false, true, "tmp:/80/b"},
        UrlRow{"rtsp://a", true, false, true, "tmp:///a"}, UrlRow{"rtp:a", true, false, true, "tmp:/a"},
        UrlRow{"file:///a/b", true, false, false, "file:///a/b"}, UrlRow{"file:", true, false, false, "file:"},
        UrlRow{"file", false, false, false, "tmp:/file"}, UrlRow{"ends in file:", true, false, false, "tmp:/"},
        UrlRow{"file:sbtvd-ts:http:", true, true, true, "file:sbtvd-ts:http:"},
        UrlRow{"xhttp:y", true, false, true, "tmp:/y"}, UrlRow{"HTTP://a", false, false, false, "tmp:///a"},
        UrlRow{"File:a", false, false, false, "tmp:/a"}, UrlRow{"ftp://a", false, false, false, "tmp:///a"},
        UrlRow{"a/b", false, false, false, "tmp:/a/b"}, UrlRow{":", false, false, false, "tmp:/"},
        UrlRow{"", false, false, false, "tmp:/"}));

TEST(APlayerCommand, WithoutAUrlHasNothingToLoad)
{
    MediaPlayerAction command;
    EXPECT_EQ(command.getUrlToLoad(), "");
    EXPECT_FALSE(command.isBroadcastUrl() || command.isInternetUrl());
}

}  // namespace
}  // namespace OrvuTests
