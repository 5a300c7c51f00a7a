#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "orvu/EventInformation.h"
#include "support/BothRoads.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Keys = std::vector<std::string>;

const Keys kGroupKeys = {"HEADER", "id", "TSID", "networkId", "networkId", "serviceId"};
const Keys kUnitKeys = {"before", "ID", "id", "caUnit"};
const Keys kComponentKeys = {"id", "totalBitRate", "description", "CAUNIT", "caUnit"};
const Keys kEventKeys = {"startTime",
                         "endTime",
                         "runningStatus",
                         "name",
                         "HEADER",
                         "originalNetworkId",
                         "shortDescription",
                         "copyrightId",
                         "parentalRating",
                         "HASINTERACTIVITY",
                         "logoURI",
                         "logoURI",
                         "contentDescription",
                         "linkage",
                         "hyperlink",
                         "series",
                         "eventGroup",
                         "componentGroup"};

template <class Descriptor>
void expectTheSameInAnEvent(Descriptor* EventInfo::*field)
{
    expectTheSameText<Descriptor>([field](Descriptor* descriptor) {
        EventInfo event;
        event.*field = descriptor;
        return textOf(event);
    });
}

TEST(AnEventOnBothRoads, WritesTheSameDescriptors)
{
    expectTheSameInAnEvent(&EventInfo::contentDescription);
    expectTheSameInAnEvent(&EventInfo::linkage);
    expectTheSameInAnEvent(&EventInfo::hyperlink);
    expectTheSameInAnEvent(&EventInfo::series);
    expectTheSameInAnEvent(&EventInfo::eventGroup);
    expectTheSameInAnEvent(&EventInfo::componentGroup);
}

TEST(AnEventGroupOnBothRoads, WritesAndReadsTheSameDescriptors)
{
    expectTheSameText<EventGroupDescriptor>([](EventGroupDescriptor* descriptor) {
        EventGroup group;
        group.addDescriptor(descriptor);
        return textOf(group);
    });
    expectReadAsAlone<EventGroup>(&EventGroup::descriptors, kGroupKeys, {R"({"type": 1, "list": )", "}"});
}

TEST(AComponentGroupOnBothRoads, WritesAndReadsTheSameComponents)
{
    expectTheSameText<ComponentGroupDescriptor>([](ComponentGroupDescriptor* component) {
        ComponentGroup group;
        group.addComponent(component);
        return textOf(group);
    });
    expectReadAsAlone<ComponentGroup>(&ComponentGroup::components, kComponentKeys, {R"({"type": 1, "list": )", "}"});
}

TEST(AComponentGroupDescriptorOnBothRoads, WritesAndReadsTheSameUnit)
{
    expectTheSameText<CAUnit>([](CAUnit* unit) {
        ComponentGroupDescriptor component;
        delete std::exchange(component.caUnit, unit);
        return textOf(component);
    });
    expectTheSameRead<CAUnit>(kUnitKeys, [](CAUnit* unit, const std::string& item) {
        ComponentGroupDescriptor component;
        delete std::exchange(component.caUnit, unit);
        EXPECT_TRUE(component.deserialize((R"({"caUnit": )" + item + "}").c_str()));
        return textOf(component);
    });
}

TEST(AnEventInfoListOnBothRoads, WritesTheSameEvents)
{
    expectTheSameText<EventInfo>([](EventInfo* event) {
        EventInfoList list;
        list.present = event;
        return textOf(list);
    });
    expectTheSameText<EventInfo>([](EventInfo* event) {
        EventInfoList list;
        list.following = event;
        return textOf(list);
    });
    expectTheSameText<EventInfo>([](EventInfo* event) {
        EventInfoList list;
        list.addScheduleEvent(event);
        return textOf(list);
    });
}

TEST(AnEventInfoListOnBothRoads, ReadsTheSameEvents)
{
    for (EventInfo* EventInfoList::*const field : {&EventInfoList::present, &EventInfoList::following}) {
        expectTheSameRead<EventInfo>(kEventKeys, [field](EventInfo* event, const std::string& item) {
            EventInfoList list;
            list.*field = event;
            const char* const key = field == &EventInfoList::present ? "present" : "following";
            const std::string text = R"({"schedule": [], ")" + std::string(key) + "\": " + item + "}";
            EXPECT_TRUE(list.deserialize(text.c_str()));
            return textOf(list);
        });
    }
    Keys keysOfOneTime = kEventKeys;
    keysOfOneTime.erase(keysOfOneTime.begin());  // the schedule keeps the order of its text then
    expectReadAsAlone<EventInfoList>(&EventInfoList::schedule, keysOfOneTime, {R"({"schedule": )", "}"});
}

}  // namespace
}  // namespace OrvuTests
