#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/EventInformation.h"
#include "support/Children.h"
#include "support/Sanitizers.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Times = std::vector<std::string>;

EventInfo* eventAt(const std::string& time)
{
    auto* const event = new EventInfo;
    event->startTime = time;
    return event;
}

Times timesOf(const EventInfoList& list)
{
    Times times;
    for (const EventInfo* event : list.schedule)
        times.push_back(event ? event->startTime : "none");
    return times;
}

bool startsBefore(const std::string& a, const std::string& b)
{
    EventInfo first;
    EventInfo second;
    first.startTime = a;
    second.startTime = b;
    return EventInfoList::compare(&first, &second);
}

TEST(TheOrderOfEvents, IsThatOfTheBytesOfTheirStartTimes)
{
    EXPECT_TRUE(startsBefore("2020-01-01 23:00", "2020-01-02 10:00"));
    EXPECT_TRUE(startsBefore("2020-01-01 23:00", "2020-01-01 9:00"));
    EXPECT_TRUE(startsBefore("", "1"));
    EXPECT_TRUE(startsBefore("1", "10"));
    EXPECT_TRUE(startsBefore("Z", "a"));
    EXPECT_TRUE(startsBefore("z", "\xc3"));  // bytes, not characters that may be negative
    EXPECT_TRUE(startsBefore("1", std::string("1\0", 2)));
    EXPECT_FALSE(startsBefore("2", "1"));
    EXPECT_FALSE(startsBefore("10", "1"));
    EXPECT_FALSE(startsBefore("\xc3", "z"));
}

TEST(TheOrderOfEvents, TellsNoEqualTimesApart)
{
    EXPECT_FALSE(startsBefore("1", "1"));
    EXPECT_FALSE(startsBefore("", ""));
    EventInfo event;
    EXPECT_FALSE(EventInfoList::compare(&event, &event));
}

TEST(ASchedule, IsSortedByBytesNotByTime)
{
    EventInfoList list;
    for (const char* time : {"2020-01-02 10:00", "2020-01-01 23:00", "2020-01-01 9:00"})
        list.addScheduleEvent(eventAt(time));
    EXPECT_EQ(timesOf(list), (Times{"2020-01-01 23:00", "2020-01-01 9:00", "2020-01-02 10:00"}));
}

TEST(ASchedule, IsSortedAfterEachEvent)
{
    EventInfoList list;
    Times expected;
    for (const char* time : {"5", "3", "8", "", "5", "55", "4", "9", "0", "5"}) {
        list.addScheduleEvent(eventAt(time));
        expected.push_back(time);
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(timesOf(list), expected);
    }
}

TEST(ASchedule, IsSortedAlsoAfterTimesWereChangedFromOutside)
{
    EventInfoList list;
    for (const char* time : {"1", "2", "3", "4"})
        list.addScheduleEvent(eventAt(time));
    list.schedule[0]->startTime = "9";
    list.schedule[3]->startTime = "0";
    list.addScheduleEvent(eventAt("5"));
    EXPECT_EQ(timesOf(list), (Times{"0", "2", "3", "5", "9"}));
    list.schedule[4]->startTime = "1";
    list.addScheduleEvent(eventAt("1"));
    EXPECT_EQ(timesOf(list), (Times{"0", "1", "1", "2", "3", "5"}));
    std::reverse(list.schedule.begin(), list.schedule.end());
    list.addScheduleEvent(eventAt("4"));
    EXPECT_EQ(timesOf(list), (Times{"0", "1", "1", "2", "3", "4", "5"}));
}

TEST(ASchedule, IsSortedByAReadAlsoAfterTimesWereChangedFromOutside)
{
    EventInfoList list;
    for (const char* time : {"1", "2", "3"})
        list.addScheduleEvent(eventAt(time));
    list.schedule[0]->startTime = "9";
    EXPECT_TRUE(list.deserialize(R"({"schedule": [{"startTime": "5"}, {"startTime": "4"}]})"));
    EXPECT_EQ(timesOf(list), (Times{"2", "3", "4", "5", "9"}));
}

TEST(ASchedule, StaysInTheApplicationsOrderWhenAReadAddsNothing)
{
    EventInfoList list;
    for (const char* time : {"1", "2", "3"})
        list.addScheduleEvent(eventAt(time));
    list.schedule[0]->startTime = "9";
    EXPECT_TRUE(list.deserialize(R"({"schedule": []})"));
    EXPECT_FALSE(list.deserialize("{}"));
    EXPECT_EQ(timesOf(list), (Times{"9", "2", "3"}));
}

TEST(ASchedule, KeepsEventsOfEqualTimesInTheOrderInWhichTheyAreRead)
{
    std::string items;
    std::string names;
    for (char name = 'a'; name <= 'z'; ++name) {  // more than a sort leaves in order by chance
        items += (items.empty() ? "" : ",") + (R"({"startTime": "1", "name": ")" + std::string(1, name) + "\"}");
        names += name;
    }
    EventInfoList list;
    ASSERT_TRUE(list.deserialize((R"({"schedule": [)" + items + "]}").c_str()));
    std::string read;
    for (const EventInfo* event : list.schedule)
        read += event->name;
    EXPECT_EQ(read, names);
}

TEST(ASchedule, StaysAsItIsForNoEvent)
{
    EventInfoList list;
    list.addScheduleEvent(eventAt("1"));
    list.addScheduleEvent(nullptr);
    EXPECT_EQ(timesOf(list), (Times{"1"}));
}

TEST(ASchedule, SortsNullsThatAnApplicationPutThereToItsFront)
{
    EventInfoList list;
    list.addScheduleEvent(eventAt("1"));
    list.schedule.push_back(nullptr);
    list.addScheduleEvent(eventAt(""));
    EXPECT_EQ(timesOf(list), (Times{"none", "", "1"}));
    list.schedule.push_back(nullptr);
    EXPECT_TRUE(list.deserialize(R"({"schedule": [{"startTime": "0"}]})"));
    EXPECT_EQ(timesOf(list), (Times{"none", "none", "", "0", "1"}));
}

constexpr int kMany = kIsSlow ? 5000 : 20000;  // each looks at all: the square of it counts

std::string timeOf(int i)
{
    return std::to_string(100000 + i);
}

void expectManyInOrder(const EventInfoList& list)
{
    ASSERT_EQ(list.schedule.size(), static_cast<std::size_t>(kMany));
    for (int i = 0; i < kMany; ++i)
        ASSERT_EQ(list.schedule[i]->startTime, timeOf(i));
}

TEST(ASchedule, TakesManyEventsInAscendingOrder)
{
    EventInfoList list;
    for (int i = 0; i < kMany; ++i)
        list.addScheduleEvent(eventAt(timeOf(i)));
    expectManyInOrder(list);
}

TEST(ASchedule, TakesManyEventsInDescendingOrder)
{
    EventInfoList list;
    for (int i = kMany - 1; i >= 0; --i)
        list.addScheduleEvent(eventAt(timeOf(i)));
    expectManyInOrder(list);
}

TEST(ASchedule, IsFreedWithAllItsEvents)
{
    int destroyed = 0;
    {
        EventInfoList list;
        for (int i = 0; i < 10; ++i) {
            auto* const event = new Counted<EventInfo>(destroyed);
            event->startTime = timeOf(i * 7 % 10);
            list.addScheduleEvent(event);
        }
    }
    EXPECT_EQ(destroyed, 10);
}

}  // namespace
}  // namespace OrvuTests
