#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/EventInformation.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Names = std::vector<std::string>;

Names namesOf(const EventInfoList& list)
{
    Names names;
    for (const EventInfo* event : list.schedule)
        names.push_back(event->name);
    return names;
}

TEST(AnEventInfoList, ReadsItsPresentAndFollowingEvents)
{
    EventInfoList list;
    EXPECT_TRUE(list.deserialize(R"({"HEADER": "x", "PRESENT": {"name": "A", "series": {"id": 5}}, "Following": 5,
                                     "present": {"name": "B"}, "schedule": []} and more)"));
    ASSERT_TRUE(list.present && list.following);
    EXPECT_EQ(list.present->name, "A");
    EXPECT_EQ(list.present->series->id, 5);
    EXPECT_EQ(list.following->name, "");
}

TEST(AnEventInfoList, OverwritesTheEventItHoldsKeyByKey)
{
    EventInfoList list;
    EXPECT_TRUE(list.deserialize(R"({"present": {"name": "A", "endTime": "1"}, "schedule": []})"));
    EventInfo* const present = list.present;
    EXPECT_TRUE(list.deserialize(R"({"present": {"name": "B"}, "schedule": []})"));
    EXPECT_EQ(list.present, present);
    EXPECT_EQ(present->name + present->endTime, "B1");
    EXPECT_EQ(list.following, nullptr);
}

TEST(AnEventInfoList, SortsTheEventsItReadsAmongThoseItHolds)
{
    EventInfoList list;
    EXPECT_TRUE(list.deserialize(
        R"({"schedule": [{"name": "c", "startTime": "3"}, {"name": "a", "startTime": "1"},
                         {"name": "e", "startTime": "5"}]})"));
    EXPECT_EQ(namesOf(list), (Names{"a", "c", "e"}));
    EXPECT_TRUE(list.deserialize(
        R"({"SCHEDULE": {"x": {"name": "d", "startTime": "4"}, "y": {"name": "b", "startTime": "2"}},
            "schedule": [{}]})"));
    EXPECT_EQ(namesOf(list), (Names{"a", "b", "c", "d", "e"}));
    EXPECT_TRUE(list.deserialize(R"({"schedule": [5, null]})"));
    EXPECT_EQ(namesOf(list), (Names{"", "", "a", "b", "c", "d", "e"}));
    EXPECT_EQ(textOf(*list.schedule[0]).substr(0, 11), "{\n\t\"HEADER\"");
}

TEST(AnEventInfoList, IsNotReadWithoutItsSchedule)
{
    EventInfoList list;
    list.timestamp = "held";
    EXPECT_FALSE(list.deserialize(
        R"({"serviceContextId": "1", "present": {"name": "A"}, "following": {"name": "B"}, "timestamp": "new"})"));
    EXPECT_EQ(list.serviceContextId, "1");  // what was read before stays
    ASSERT_TRUE(list.present && list.following);
    EXPECT_EQ(list.present->name + list.following->name, "AB");
    EXPECT_EQ(list.timestamp, "held");
    for (const char* text : {"{}", "[]", "5", "null", "", "{", "no JSON", R"([{"schedule": []}])"})
        EXPECT_FALSE(list.deserialize(text)) << text;
    EXPECT_FALSE(list.deserialize(nullptr));
}

TEST(AnEventInfoList, WritesAndReadsManyEvents)
{
    constexpr int kMany = 30000;
    std::string text = R"({"schedule": [{"originalNetworkId": 0, "startTime": "x"})";
    for (int i = 1; i < kMany; ++i)
        text += R"(, {"originalNetworkId": )" + std::to_string(i) + R"(, "startTime": ")" + std::to_string(kMany - i) +
                "\"}";
    EventInfoList list;
    ASSERT_TRUE(list.deserialize((text + "]}").c_str()));
    ASSERT_EQ(list.schedule.size(), std::size_t{kMany});
    EXPECT_EQ(list.schedule.front()->startTime, "1");
    EXPECT_EQ(list.schedule.back()->startTime, "x");
    const std::string written = textOf(list);
    EXPECT_EQ(written.find("\"startTime\":\t\"1\""), written.find("\"startTime\""));
    EXPECT_EQ(written.rfind("\"startTime\":\t\"x\""), written.rfind("\"startTime\""));
    EXPECT_EQ(written.substr(written.size() - 6), "\t\t}]\n}");
}

}  // namespace
}  // namespace OrvuTests
