#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "orvu/MediaPlayers.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(APlayerCommand, StartsWithoutAnyField)
{
    MediaPlayerAction command;
    EXPECT_EQ(command.getDataType(), 46u);
    EXPECT_FALSE(command.playerid || command.url || command.action || command.pos || command.vol || command.currTime);
    EXPECT_EQ(textOf(command), "{\n\t\"HEADER\":\t\"playerAction\"\n}");
    command.serializeHeader(false);
    EXPECT_EQ(textOf(command), "{\n}");
}

TEST(APlayerCommand, WritesItsKeysInTheAgreedOrder)
{
    MediaPlayerAction command;
    command.serializeHeader(false);
    command.playerid = new std::string("p");
    command.url = new std::string("http://a/b");
    command.action = new StatusType(StatusTypeStop);
    command.pos = new Position(1, 2, 3, 4);
    command.vol = new int(0);
    command.currTime = new int(-1);
    EXPECT_EQ(textOf(command),
              "{\n"
              "\t\"playerid\":\t\"p\",\n"
              "\t\"url\":\t\"http://a/b\",\n"
              "\t\"action\":\t\"stop\",\n"
              "\t\"pos\":\t{\n"
              "\t\t\"x\":\t1,\n"
              "\t\t\"y\":\t2,\n"
              "\t\t\"w\":\t3,\n"
              "\t\t\"h\":\t4\n"
              "\t},\n"
              "\t\"vol\":\t0,\n"
              "\t\"currTime\":\t-1\n"
              "}");
}

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

TEST(APlayerCommand, LetsAPositionOfAnApplicationSpeakForItself)
{
    MediaPlayerAction command;
    command.serializeHeader(false);
    command.pos = new Silent<Position>;
    EXPECT_EQ(textOf(command), "{\n}");
    delete std::exchange(command.pos, new Saying<Position>("no JSON"));
    EXPECT_EQ(textOf(command), "{\n}");
    delete std::exchange(command.pos, new Saying<Position>("[ 1 ]"));
    EXPECT_EQ(textOf(command), "{\n\t\"pos\":\t[1]\n}");
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

TEST(APlayerCommand, MakesAPositionOfAnyValue)
{
    for (const char* value : {"null", "5", "true", R"("x")", "[]", "{}", R"({"x": "bad"})"}) {
        MediaPlayerAction command;
        EXPECT_TRUE(command.deserialize((R"({"pos": )" + std::string(value) + R"(, "vol": 5})").c_str())) << value;
        ASSERT_NE(command.pos, nullptr) << value;
        EXPECT_EQ(command.pos->w, 1280) << value;
        ASSERT_NE(command.vol, nullptr) << value;
    }
}

TEST(APlayerCommand, LetsTheExceptionsOfItsPositionPass)
{
    MediaPlayerAction command;
    EXPECT_THROW(command.deserialize(R"({"playerid": "p", "pos": {"x": "ab%"}, "vol": 5})"), std::invalid_argument);
    EXPECT_THROW(command.deserialize(R"({"pos": {"x": "1e400%"}})"), std::out_of_range);
    EXPECT_EQ(*command.playerid, "p");
    EXPECT_EQ(command.vol, nullptr);
}

TEST(APlayerCommand, LetsAPositionOfAnApplicationReadForItself)
{
    MediaPlayerAction command;
    auto* const pos = new Listening<Position>(false);
    command.pos = pos;
    EXPECT_TRUE(command.deserialize(R"({"pos": {"x": "ab%"}, "vol": 5})"));
    EXPECT_EQ(pos->heard, "{\n\t\"x\":\t\"ab%\"\n}");
    EXPECT_EQ(*command.vol, 5);
}

TEST(APlayerCommand, DeletesItsPosition)
{
    int destroyed = 0;
    {
        MediaPlayerAction command;
        command.pos = new Counted<Position>(destroyed);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(APlayerCommand, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<MediaPlayerAction>);
    EXPECT_FALSE(std::is_copy_assignable_v<MediaPlayerAction>);
}

}  // namespace
}  // namespace OrvuTests
