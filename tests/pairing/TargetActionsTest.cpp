#include <gtest/gtest.h>

#include "orvu/TargetApplications.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(ATargetAppAction, WritesTargetAndActionUnlessItCarriesALink)
{
    TargetAppAction action;
    EXPECT_EQ(action.getDataType(), 68u);
    EXPECT_EQ(action.priority, 0);
    action.priority = PriorityTypeBackground;
    EXPECT_EQ(textOf(action),
              "{\n\t\"HEADER\":\t\"targetAppAction\",\n\t\"targetId\":\t\"\",\n\t\"action\":\t\"unknown\"\n}");
    action.serializeHeader(false);
    action.targetId = "t";
    action.action = TargetStatusTypeUninstalled;
    EXPECT_EQ(textOf(action), "{\n\t\"targetId\":\t\"t\",\n\t\"action\":\t\"uninstalled\"\n}");
    action.url = "u";
    EXPECT_EQ(textOf(action), "{\n\t\"url\":\t\"u\"\n}");
}

TEST(ATargetAppAction, ReadsStartAndStopOnly)
{
    TargetAppAction action;
    EXPECT_TRUE(action.deserialize(R"({"url": "u", "targetId": "t", "action": "stop", "priority": "background"})"));
    EXPECT_EQ(action.action, TargetStatusTypeStop);
    EXPECT_EQ(action.priority, PriorityTypeBackground);
    EXPECT_TRUE(action.urlRead && action.targetIdRead && action.actionRead && action.priorityRead);
    for (const char* word : {"uninstalled", "requesting", "unknown", "Start", ""}) {
        EXPECT_TRUE(action.deserialize((std::string(R"({"action": ")") + word + "\"}").c_str()));
        EXPECT_EQ(action.action, TargetStatusTypeUnknown) << word;
    }
}

TEST(ATargetAppAction, FailsOnANumberOrABooleanWhereATextIsDue)
{
    for (const char* key : {"targetId", "action", "priority"}) {
        for (const char* value : {"5", "true", "false"}) {
            TargetAppAction action;
            EXPECT_FALSE(action.deserialize((std::string(R"({"url": "u", ")") + key + "\": " + value + "}").c_str()));
            EXPECT_EQ(action.url, "u");
            EXPECT_TRUE(action.urlRead);
        }
        for (const char* value : {"null", "[]", "{}"}) {
            TargetAppAction action;
            EXPECT_TRUE(action.deserialize((std::string("{\"") + key + "\": " + value + "}").c_str())) << key << value;
            EXPECT_FALSE(action.targetIdRead || action.actionRead || action.priorityRead);
        }
    }
    TargetAppAction action;
    EXPECT_TRUE(action.deserialize(R"({"url": 5})"));
    EXPECT_FALSE(action.urlRead);
}

TEST(ATargetAppAction, KeepsWhatItReadBeforeAFault)
{
    TargetAppAction action;
    EXPECT_FALSE(action.deserialize(R"({"priority": "background", "targetId": "t", "action": 5})"));
    EXPECT_EQ(action.targetId, "t");
    EXPECT_FALSE(action.priorityRead);
}

/// What only an object can be read as.
template <class Message>
class AnAction : public testing::Test {};
using Actions = testing::Types<TargetAppAction, TargetAppPerformAction>;
TYPED_TEST_SUITE(AnAction, Actions, );

TYPED_TEST(AnAction, IsReadFromObjectsOnly)
{
    TypeParam action;
    for (const char* text : {"[]", "5", "null", "true", "\"text\"", "", "{", "no JSON"})
        EXPECT_FALSE(action.deserialize(text)) << text;
    EXPECT_FALSE(action.deserialize(nullptr));
    EXPECT_TRUE(action.deserialize("{} more"));
    EXPECT_FALSE(action.actionRead || action.priorityRead);
    unsigned char error = 77;
    EXPECT_FALSE(action.deserialize("{}", error));
    EXPECT_EQ(error, 77);
}

TEST(ATargetAppPerformAction, RemembersWhatWasRead)
{
    TargetAppPerformAction action;
    EXPECT_TRUE(action.deserialize(R"({"canonicalName": "c", "ACTION": "start", "priority": 5, "targetId": 5})"));
    EXPECT_EQ(action.canonicalName, "c");
    EXPECT_EQ(action.action, TargetStatusTypeStart);
    EXPECT_EQ(action.priority, PriorityTypeForeground);
    EXPECT_TRUE(action.canonicalNameRead && action.actionRead);
    EXPECT_FALSE(action.priorityRead);
}

}  // namespace
}  // namespace OrvuTests
