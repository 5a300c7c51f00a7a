#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/MediaPlayers.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kEmptyList = "{\n\t\"HEADER\":\t\"players\",\n\t\"players\":\t[]\n}";

using Ids = std::vector<std::string>;

Ids idsOf(const MediaPlayerList& list)
{
    Ids ids;
    for (const MediaPlayer* player : list.players)
        ids.push_back(player->id);
    return ids;
}

TEST(AMediaPlayerList, WritesItsHeaderWhateverTheFlagSays)
{
    MediaPlayerList list;
    EXPECT_EQ(list.getDataType(), 45u);
    EXPECT_TRUE(list.players.empty());
    EXPECT_EQ(textOf(list), kEmptyList);
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), kEmptyList);
}

TEST(AMediaPlayerList, WritesItsPlayersWithoutTheirHeaders)
{
    MediaPlayerList list;
    list.addPlayer(new MediaPlayer);
    delete std::exchange(list.players[0]->codecsSupported, nullptr);
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"players\",\n"
              "\t\"players\":\t[{\n"
              "\t\t\t\"id\":\t\"\",\n"
              "\t\t\t\"currentMedia\":\t\"\",\n"
              "\t\t\t\"state\":\t\"idle\",\n"
              "\t\t\t\"schemesSupported\":\t[],\n"
              "\t\t\t\"formatsSupported\":\t[],\n"
              "\t\t\t\"pos\":\t{\n"
              "\t\t\t\t\"x\":\t0,\n"
              "\t\t\t\t\"y\":\t0,\n"
              "\t\t\t\t\"w\":\t1280,\n"
              "\t\t\t\t\"h\":\t720\n"
              "\t\t\t},\n"
              "\t\t\t\"vol\":\t0,\n"
              "\t\t\t\"currTime\":\t0,\n"
              "\t\t\t\"duration\":\t0\n"
              "\t\t}]\n"
              "}");
    EXPECT_EQ(textOf(*list.players[0]).find("HEADER"), std::string::npos);
}

TEST(AMediaPlayerList, SkipsPlayersWithoutAJsonTextAndSwitchesTheirHeadersOff)
{
    MediaPlayerList list;
    list.addPlayer(new Silent<MediaPlayer>);
    list.addPlayer(new Saying<MediaPlayer>("no JSON"));
    list.addPlayer(nullptr);
    list.players.push_back(nullptr);
    EXPECT_EQ(list.players.size(), 3u);
    EXPECT_EQ(textOf(list), kEmptyList);
    EXPECT_EQ(taken(list.players[0]->MediaPlayer::serialize()).find("HEADER"), std::string::npos);
    list.addPlayer(new Saying<MediaPlayer>(R"("x" more)"));
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"players\",\n\t\"players\":\t[\"x\"]\n}");
}

TEST(AMediaPlayerList, DropsPlayersThatCannotBeRead)
{
    MediaPlayerList list;
    EXPECT_TRUE(list.deserialize(R"({"PLAYERS": [
        {"id": "A", "schemesSupported": [], "formatsSupported": []}, {"id": "B", "schemesSupported": []},
        {"id": "C", "formatsSupported": []}, 5, null, "x", [],
        {"id": "D", "schemesSupported": null, "formatsSupported": 5, "drmsSupported": [{}]}], "players": []} more)"));
    EXPECT_EQ(idsOf(list), (Ids{"A", "D"}));
    EXPECT_EQ(list.players[1]->drmsSupported.size(), 1u);
    EXPECT_TRUE(list.deserialize(R"({"players": {"x": {"id": "E", "schemesSupported": [], "formatsSupported": []}}})"));
    EXPECT_EQ(idsOf(list), (Ids{"A", "D", "E"}));
    EXPECT_EQ(textOf(*list.players[2]).substr(0, 11), "{\n\t\"HEADER\"");
}

TEST(AMediaPlayerList, HasNoPlayersUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("x")", "[]", "{}"}) {
        MediaPlayerList list;
        EXPECT_TRUE(list.deserialize((R"({"players": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(list.players.empty()) << value;
    }
}

TEST(AMediaPlayerList, IsNotReadWithoutItsKey)
{
    MediaPlayerList list;
    EXPECT_FALSE(list.deserialize(nullptr));
    for (const char* text : {"{}", "[]", "5", "null", "", "{", "no JSON", R"([{"players": []}])"})
        EXPECT_FALSE(list.deserialize(text)) << text;
    unsigned char error = 77;
    EXPECT_FALSE(list.deserialize(R"({"players": []})", error));
    EXPECT_EQ(error, 77);
}

TEST(AMediaPlayerList, LetsTheExceptionsOfItsPlayersPass)
{
    MediaPlayerList list;
    EXPECT_THROW(list.deserialize(R"({"players": [{"id": "A", "schemesSupported": [], "formatsSupported": []},
                                     {"schemesSupported": [], "formatsSupported": [], "pos": {"x": "ab%"}}]})"),
                 std::invalid_argument);
    EXPECT_EQ(idsOf(list), (Ids{"A"}));
}

TEST(AMediaPlayerList, DeletesItsPlayers)
{
    int destroyed = 0;
    {
        MediaPlayerList list;
        list.addPlayer(new Counted<MediaPlayer>(destroyed));
        list.players.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(AMediaPlayerList, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<MediaPlayerList>);
    EXPECT_FALSE(std::is_copy_assignable_v<MediaPlayerList>);
}

}  // namespace
}  // namespace OrvuTests
