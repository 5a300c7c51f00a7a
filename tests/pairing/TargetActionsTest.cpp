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

TEST(ATargetAppAction, RemembersWhatWasRead)
{
    TargetAppAction action;
    EXPECT_TRUE(action.deserialize(R"({"url": 5, "targetId": null, "action": [], "priority": {}})"));
    EXPECT_FALSE(action.urlRead || action.targetIdRead || action.actionRead || action.priorityRead);
    EXPECT_TRUE(action.deserialize(R"({"url": "u", "targetId": "t", "action": "stop", "priority": "background"})"));
    EXPECT_TRUE(action.urlRead && action.targetIdRead && action.actionRead && action.priorityRead);
}

TEST(ATargetAppAction, KeepsWhatItReadBeforeAFault)
{
    TargetAppAction action;
    EXPECT_FALSE(action.deserialize(R"({"priority": "background", "targetId": "t", "action": 5})"));
    EXPECT_TRUE(action.targetIdRead);
    EXPECT_EQ(action.targetId, "t");
    EXPECT_FALSE(action.actionRead || action.priorityRead);
}

TEST(ATargetAppPerformAction, RemembersWhatWasRead)
{
    TargetAppPerformAction action;
    EXPECT_TRUE(action.deserialize(R"({"canonicalName": 5, "action": null, "priority": 5})"));
    EXPECT_FALSE(action.canonicalNameRead || action.actionRead || action.priorityRead);
    EXPECT_TRUE(action.deserialize(R"({"canonicalName": "c", "action": "start", "priority": "background"})"));
    EXPECT_TRUE(action.canonicalNameRead && action.actionRead && action.priorityRead);
}

}  // namespace
}  // namespace OrvuTests
