#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "orvu/MediaPlayers.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(APlayerCommand, WritesAnEmptyPlayerButNoEmptyUrlAndNoUnknownAction)
{
    MediaPlayerAction command;
    command.serializeHeader(false);
    command.playerid = new std::string;
    command.url = new std::string;
    command.action = new StatusType(StatusTypeUnknown);
    EXPECT_EQ(textOf(command), "{\n\t\"playerid\":\t\"\"\n}");
    *command.action = static_cast<StatusType>(26);
    EXPECT_EQ(textOf(command), "{\n\t\"playerid\":\t\"\",\n\t\"action\":\t\"\"\n}");
}

TEST(APlayerCommand, HoldsAUnknownWordAsUnknown)
{
    MediaPlayerAction command;
    EXPECT_TRUE(command.deserialize(R"({"action": "Stop"})"));
    ASSERT_NE(command.action, nullptr);
    EXPECT_EQ(*command.action, StatusTypeUnknown);
}

TEST(APlayerCommand, HoldsNothingThatItsTextDoesNotCarry)
{
    MediaPlayerAction command;
    for (const char* text :
         {"{}", "[]", "5", "null", R"({"playerid": 1, "url": null, "action": 3, "vol": "5"})", R"({"currTime": [5]})"})
        EXPECT_TRUE(command.deserialize(text)) << text;
    EXPECT_FALSE(command.playerid || command.url || command.action || command.pos || command.vol || command.currTime);
}

TEST(APlayerCommand, HasNewFieldsAfterASecondRead)
{
    MediaPlayerAction command;
    EXPECT_TRUE(command.deserialize(
        R"({"playerid": "p", "url": "u", "action": "stop", "vol": 1, "currTime": 2, "pos": {"x": 3}})"));
    const Position* const pos = command.pos;
    EXPECT_TRUE(command.deserialize(
        R"({"playerid": "P", "url": "U", "action": "start", "vol": 10, "currTime": 20, "pos": {"y": 4}})"));
    EXPECT_EQ(*command.playerid + *command.url, "PU");
    EXPECT_EQ(*command.action, StatusTypeStart);
    EXPECT_EQ(*command.vol + *command.currTime, 30);
    EXPECT_EQ(command.pos, pos);
    EXPECT_EQ(pos->x + pos->y, 7);
}

TEST(APlayerCommand, LetsTheExceptionsOfItsPositionPass)
{
    MediaPlayerAction command;
    EXPECT_THROW(command.deserialize(R"({"playerid": "p", "pos": {"x": "ab%"}, "vol": 5})"), std::invalid_argument);
    EXPECT_THROW(command.deserialize(R"({"pos": {"x": "1e400%"}})"), std::out_of_range);
    EXPECT_EQ(*command.playerid, "p");
    EXPECT_EQ(command.vol, nullptr);
}

}  // namespace
}  // namespace OrvuTests
