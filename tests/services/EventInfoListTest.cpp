#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvu/EventInformation.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kEmptyList = "{\n\t\"HEADER\":\t\"eventInfoList\",\n\t\"schedule\":\t[]\n}";

using Names = std::vector<std::string>;

Names namesOf(const EventInfoList& list)
{
    Names names;
    for (const EventInfo* event : list.schedule)
        names.push_back(event->name);
    return names;
}

TEST(AnEventInfoList, StartsEmpty)
{
    const EventInfoList list;
    EXPECT_EQ(list.getDataType(), 72u);
    EXPECT_EQ(list.serviceContextId + list.timestamp, "");
    EXPECT_FALSE(list.present || list.following);
    EXPECT_TRUE(list.schedule.empty());
}

TEST(AnEventInfoList, WritesItsHeaderWhateverTheFlagSays)
{
    EventInfoList list;
    EXPECT_EQ(textOf(list), kEmptyList);
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), kEmptyList);
}

/// Speaks for itself with its start time.
EventInfo* eventSaying(const std::string& text)
{
    auto* const event = new Saying<EventInfo>(text);
    event->startTime = text;
    return event;
}

TEST(AnEventInfoList, WritesItsKeysInTheAgreedOrder)
{
    EventInfoList list;
    list.serviceContextId = "1.2.01";
    list.present = eventSaying("1");
    list.following = eventSaying("[]");
    list.addScheduleEvent(eventSaying("4"));
    list.addScheduleEvent(eventSaying("3"));
    list.timestamp = "12:00";
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"eventInfoList\",\n"
              "\t\"serviceContextId\":\t\"1.2.01\",\n"
              "\t\"present\":\t1,\n"
              "\t\"following\":\t[],\n"
              "\t\"schedule\":\t[3, 4],\n"
              "\t\"timestamp\":\t\"12:00\"\n"
              "}");
}

TEST(AnEventInfoList, WritesItsEventsWithoutTheirHeaders)
{
    EventInfoList list;
    list.present = new EventInfo;
    list.following = new EventInfo;
    list.addScheduleEvent(new EventInfo);
    const Tree tree = treeOf(textOf(list));
    for (const char* key : {"present", "following"})
        EXPECT_STREQ(cJSON_GetObjectItem(tree.get(), key)->child->string, "startTime");
    EXPECT_STREQ(cJSON_GetObjectItem(tree.get(), "schedule")->child->child->string, "startTime");
    for (EventInfo* const event : {list.present, list.following, list.schedule[0]})
        EXPECT_EQ(textOf(*event).find("HEADER"), std::string::npos);
}

TEST(AnEventInfoList, SkipsEventsWithoutAJsonTextAndSwitchesTheirHeadersOff)
{
    EventInfoList list;
    list.present = new Silent<EventInfo>;
    list.following = new Saying<EventInfo>("no JSON");
    list.addScheduleEvent(new Silent<EventInfo>);
    list.addScheduleEvent(new Saying<EventInfo>("{"));
    list.schedule.push_back(nullptr);
    EXPECT_EQ(textOf(list), kEmptyList);
    for (EventInfo* const event : {list.present, list.following, list.schedule[0]})
        EXPECT_EQ(taken(event->EventInfo::serialize()).find("HEADER"), std::string::npos);
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

TEST(AnEventInfoList, MakesAnEventOfAnyValue)
{
    for (const char* value : {"null", "5", "true", R"("x")", "[]", "{}"}) {
        EventInfoList list;
        const std::string text =
            R"({"following": )" + std::string(value) + R"(, "present": )" + value + R"(, "schedule": [)" + value + "]}";
        EXPECT_TRUE(list.deserialize(text.c_str())) << value;
        EXPECT_TRUE(list.present && list.following && list.schedule.size() == 1) << value;
    }
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

TEST(AnEventInfoList, HasNoScheduleUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "true", "5", R"("text")", "[]", "{}"}) {
        EventInfoList list;
        EXPECT_TRUE(list.deserialize((R"({"schedule": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(list.schedule.empty()) << value;
    }
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

TEST(AnEventInfoList, DeletesItsEvents)
{
    int destroyed = 0;
    {
        EventInfoList list;
        list.present = new Counted<EventInfo>(destroyed);
        list.following = new Counted<EventInfo>(destroyed);
        list.addScheduleEvent(new Counted<EventInfo>(destroyed));
        list.addScheduleEvent(nullptr);
        list.schedule.push_back(nullptr);
        EXPECT_EQ(list.schedule.size(), 2u);
    }
    EXPECT_EQ(destroyed, 3);
}

TEST(AnEventInfoList, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<EventInfoList>);
    EXPECT_FALSE(std::is_copy_assignable_v<EventInfoList>);
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
