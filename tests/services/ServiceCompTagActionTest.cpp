#include <climits>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "orvu/ServiceComponents.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kLine = "ServiceCompTagAction::deserialize: this->pos->deserialize return = true\n";

TEST(AComponentAction, KnowsStartPauseAndStopOnly)
{
    ServiceCompTagAction action;
    for (int value = -1; value <= 26; ++value) {
        action.action = static_cast<StatusType>(value);
        EXPECT_EQ(action.checkAction(), value == 3 || value == 4 || value == 6) << value;
    }
}

TEST(AComponentAction, ChecksItsPosition)
{
    ServiceCompTagAction action;
    action.pos = new Position;
    EXPECT_TRUE(action.checkPos());
    action.pos->w = 1281;
    EXPECT_FALSE(action.checkPos());
    action.pos->setValues(INT_MAX, 0, INT_MAX, 1);
    EXPECT_FALSE(action.checkPos());
}

TEST(AComponentAction, KnowsVolumesUpTo100)
{
    ServiceCompTagAction action;
    for (const int vol : {0, 1, 99, 100})
        EXPECT_TRUE(action.checkVol(vol)) << vol;
    for (const int vol : {-1, 101, INT_MAX, INT_MIN})
        EXPECT_FALSE(action.checkVol(vol)) << vol;
}

TEST(AComponentAction, WritesAnyWordButUnknown)
{
    ServiceCompTagAction action;
    action.serializeHeader(false);
    action.action = StatusTypeRequesting;
    EXPECT_EQ(textOf(action),
              "{\n\t\"componentTag\":\t0,\n\t\"action\":\t\"requesting\",\n\t\"localAssociatedAccess\":\tfalse\n}");
    action.action = static_cast<StatusType>(26);
    EXPECT_EQ(textOf(action),
              "{\n\t\"componentTag\":\t0,\n\t\"action\":\t\"\",\n\t\"localAssociatedAccess\":\tfalse\n}");
}

bool writesPos(int w, int h)
{
    ServiceCompTagAction action;
    action.pos = new Position(0, 0, w, h);
    return cJSON_GetObjectItem(treeOf(textOf(action)).get(), "pos") != nullptr;
}

TEST(AComponentAction, WritesAPositionThatHasAWidthOrAHeight)
{
    EXPECT_TRUE(writesPos(0, 0));
    EXPECT_TRUE(writesPos(0, -1));
    EXPECT_TRUE(writesPos(-1, 0));
    EXPECT_FALSE(writesPos(-1, -1));
}

TEST(AComponentAction, LetsAPositionOfAnApplicationSpeakForItself)
{
    ServiceCompTagAction silent;
    silent.pos = new Silent<Position>;
    EXPECT_EQ(textOf(silent).find("pos"), std::string::npos);
    ServiceCompTagAction garbled;
    garbled.pos = new Saying<Position>("no JSON");
    EXPECT_EQ(textOf(garbled).find("pos"), std::string::npos);
    ServiceCompTagAction saying;
    saying.serializeHeader(false);
    saying.pos = new Saying<Position>("[1]");
    EXPECT_EQ(textOf(saying), "{\n\t\"componentTag\":\t0,\n\t\"localAssociatedAccess\":\tfalse,\n\t\"pos\":\t[1]\n}");
}

/// An action that holds values of its own before it reads.
struct Reading {
    ServiceCompTagAction action;
    bool success = false;
    unsigned char error = 77;
    std::string printed;

    explicit Reading(const char* text)
    {
        action.componentTag = 9;
        action.action = StatusTypeStop;
        action.vol = 30;
        action.pos = new Position(1, 2, 3, 4);
        testing::internal::CaptureStdout();
        success = action.deserialize(text, error);
        printed = testing::internal::GetCapturedStdout();
        EXPECT_EQ(error == 77, success) << text;
    }
};

TEST(AComponentAction, KeepsItsPositionWhenItFailsBeforeThat)
{
    for (const char* text : {"", "{", R"({"action": "resume"})"})
        EXPECT_NE(Reading(text).action.pos, nullptr) << text;
}

TEST(AComponentAction, FailsWith2OnAnActionThatAComponentDoesNotKnow)
{
    for (const char* word : {"resume", "unknown", "Start", "", "stopped", "prepare"}) {
        const Reading read(
            (R"({"vol": 5, "pos": {"x": 10}, "componentTag": 16, "action": ")" + std::string(word) + "\"}").c_str());
        EXPECT_FALSE(read.success) << word;
        EXPECT_EQ(read.error, 2) << word;
        EXPECT_EQ(read.action.componentTag, 16) << word;
        EXPECT_EQ(read.action.action, Status::stringToStatus(word)) << word;
        ASSERT_NE(read.action.pos, nullptr) << word;  // neither read nor dropped
        EXPECT_EQ(read.action.pos->x, 1) << word;
        EXPECT_EQ(read.action.vol, 30) << word;
    }
}

TEST(AComponentAction, ReadsAPositionAndThenNoVolume)
{
    const Reading read(R"({"vol": 150, "POS": {"x": 0, "y": 0, "w": "50%", "h": 360}, "pos": {"x": 7}})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.action.vol, 30);
    ASSERT_NE(read.action.pos, nullptr);
    EXPECT_EQ(read.action.pos->x, 0);
    EXPECT_EQ(read.action.pos->w, 640);
    EXPECT_EQ(read.printed, kLine);
}

TEST(AComponentAction, MakesAPositionWhenItHoldsNone)
{
    ServiceCompTagAction action;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(action.deserialize(R"({"pos": {"w": 100}})"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), kLine);
    ASSERT_NE(action.pos, nullptr);
    EXPECT_EQ(action.pos->w, 100);
    EXPECT_EQ(action.pos->h, 720);
}

TEST(AComponentAction, FailsWith3WhereThePositionIsNotAnObject)
{
    for (const char* value : {"null", "5", "true", R"("50%")", "[1]", "[]"}) {
        const Reading read((R"({"action": "start", "vol": 5, "pos": )" + std::string(value) + "}").c_str());
        EXPECT_FALSE(read.success) << value;
        EXPECT_EQ(read.error, 3) << value;
        EXPECT_EQ(read.action.action, StatusTypeStart) << value;
        EXPECT_EQ(read.action.pos->x, 1) << value;
        EXPECT_EQ(read.action.vol, 30) << value;
        EXPECT_EQ(read.printed, "") << value;
    }
    ServiceCompTagAction action;
    EXPECT_FALSE(action.deserialize(R"({"pos": 5})"));
    EXPECT_EQ(action.pos, nullptr);
}

TEST(AComponentAction, FailsWith3WhereThePositionCannotBeRead)
{
    const Reading read(R"({"pos": {"x": 10, "y": "bad"}})");
    EXPECT_FALSE(read.success);
    EXPECT_EQ(read.error, 3);
    EXPECT_EQ(read.action.pos->x, 10);
    EXPECT_EQ(read.action.pos->y, -1);
    EXPECT_EQ(read.printed, "");
    EXPECT_EQ(Reading(R"({"pos": {"x": 1e400}})").error, 3);  // printed, it is null
}

TEST(AComponentAction, FailsWith3WhereThePositionIsOffTheDisplay)
{
    for (const char* pos : {R"({"x": 0, "y": 0, "w": 1281, "h": 10})", R"({"x": -5})", R"({"w": 0})",
                            R"({"x": 2147483647, "w": 2147483647})"}) {
        const Reading read((R"({"pos": )" + std::string(pos) + "}").c_str());
        EXPECT_FALSE(read.success) << pos;
        EXPECT_EQ(read.error, 3) << pos;
        EXPECT_EQ(read.printed, kLine) << pos;
    }
}

TEST(AComponentAction, LetsTheExceptionsOfItsPositionPass)
{
    ServiceCompTagAction action;
    unsigned char error = 77;
    EXPECT_THROW(action.deserialize(R"({"componentTag": 5, "pos": {"x": "ab%"}})"), std::invalid_argument);
    EXPECT_THROW(action.deserialize(R"({"pos": {"x": "1e400%"}})", error), std::out_of_range);
    EXPECT_EQ(error, 77);
    EXPECT_EQ(action.componentTag, 5);
}

TEST(AComponentAction, DropsItsPositionWithoutAnother)
{
    int destroyed = 0;
    ServiceCompTagAction action;
    action.pos = new Counted<Position>(destroyed);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(action.deserialize(R"({"componentTag": 5})"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(action.pos, nullptr);
    EXPECT_EQ(destroyed, 1);
    EXPECT_TRUE(action.deserialize("{}"));
}

TEST(AComponentAction, FailsWith4OnAnyOtherVolume)
{
    for (const char* value :
         {"150", "101", "-1", "1e400", "-1e400", R"("50")", "true", "false", "null", "[50]", "{}"}) {
        const Reading read((R"({"action": "start", "vol": )" + std::string(value) + R"(, "vol": 5})").c_str());
        EXPECT_FALSE(read.success) << value;
        EXPECT_EQ(read.error, 4) << value;
        EXPECT_EQ(read.action.vol, 30) << value;
        EXPECT_EQ(read.action.action, StatusTypeStart) << value;
        EXPECT_EQ(read.action.pos, nullptr) << value;  // dropped before
    }
    EXPECT_EQ(Reading(R"({"action": "stop", "vol": 150})").error, 4);
}

TEST(AComponentAction, ReadsTwice)
{
    ServiceCompTagAction action;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(action.deserialize(R"({"pos": {"x": 10, "w": 100, "h": 100}})"));
    EXPECT_TRUE(action.deserialize(R"({"pos": {"y": 20}})"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string(kLine) + kLine);
    EXPECT_EQ(action.pos->x, 10);
    EXPECT_EQ(action.pos->y, 20);
    EXPECT_TRUE(action.deserialize(R"({"vol": 5})"));
    EXPECT_EQ(action.pos, nullptr);
    EXPECT_EQ(action.vol, 5);
}

/// An application's position that reads nothing and says so with an error of its own.
class Refusing : public Position {
public:
    using Position::deserialize;
    bool deserialize(const char*, unsigned char& error) override
    {
        error = 55;
        return false;
    }
};

TEST(AComponentAction, AsksAPositionOfAnApplicationForItsReasonsAndGivesItsOwn)
{
    ServiceCompTagAction action;
    action.pos = new Refusing;
    unsigned char error = 77;
    EXPECT_FALSE(action.deserialize(R"({"pos": {}})", error));
    EXPECT_EQ(error, 3);
}

/// An application's action with a reader of its own.
class OwnReader : public ServiceCompTagAction {
public:
    using ServiceCompTagAction::deserialize;
    bool deserialize(const char* text, unsigned char& error) override
    {
        seen = text;
        return ServiceCompTagAction::deserialize(text, error);
    }
    std::string seen;
};

TEST(AComponentAction, ReadsThroughTheErrorReportingReaderOfItsOwnClass)
{
    OwnReader action;
    EXPECT_TRUE(action.deserialize(R"({"componentTag": 5})"));
    EXPECT_EQ(action.seen, R"({"componentTag": 5})");
    EXPECT_EQ(action.componentTag, 5);
    EXPECT_TRUE(action.deserializeObject(treeOf(R"({"componentTag": 6})").get()));
    EXPECT_EQ(action.componentTag, 6);
}

}  // namespace
}  // namespace OrvuTests
