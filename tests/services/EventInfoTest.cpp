#include <climits>
#include <gtest/gtest.h>
#include <string>

#include "orvu/EventInformation.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AnEvent, WritesNullForItsCopyrightAndItsRatingsDescriptionBelowOne)
{
    for (const int number : {0, -1, INT_MIN}) {
        EventInfo event;
        event.copyrightId = event.parentalRatingDescription = number;
        EXPECT_NE(textOf(event).find("\"copyrightId\":\tnull"), std::string::npos) << number;
        EXPECT_NE(textOf(event).find("\"parentalRatingDescription\":\tnull"), std::string::npos) << number;
    }
    EventInfo event;
    event.copyrightId = event.parentalRatingDescription = INT_MAX;
    EXPECT_NE(textOf(event).find("\"copyrightId\":\t2147483647"), std::string::npos);
    EXPECT_NE(textOf(event).find("\"parentalRatingDescription\":\t2147483647"), std::string::npos);
}

/// What an event writes under `key`, without blanks; "" when it leaves the key out.
std::string writtenUnder(const char* key, EventInfo& event)
{
    const Tree tree = treeOf(textOf(event));
    cJSON* const member = cJSON_GetObjectItemCaseSensitive(tree.get(), key);
    return member ? taken(cJSON_PrintUnformatted(member)) : "";
}

template <class Descriptor>
std::string writtenFor(const char* key, Descriptor* EventInfo::*field, Descriptor* descriptor)
{
    EventInfo event;
    event.*field = descriptor;
    return writtenUnder(key, event);
}

/// That an application's descriptors speak for themselves; those that are minified may use comments and any blanks.
template <class Descriptor>
void expectSpeaksForItself(const char* key, Descriptor* EventInfo::*field, bool isMinified)
{
    EXPECT_EQ(writtenFor<Descriptor>(key, field, new Silent<Descriptor>), "") << key;
    for (const char* text : {"no JSON", "", "{", R"({"a": 1)"})
        EXPECT_EQ(writtenFor<Descriptor>(key, field, new Saying<Descriptor>(text)), "") << key << text;
    EXPECT_EQ(writtenFor<Descriptor>(key, field, new Saying<Descriptor>(R"({"HEADER": "mine", "a b": [1, "c d"]})")),
              R"({"HEADER":"mine","a b":[1,"c d"]})")
        << key;
    EXPECT_EQ(writtenFor<Descriptor>(key, field, new Saying<Descriptor>("null and more")), "null") << key;
    EXPECT_EQ(writtenFor<Descriptor>(
                  key, field, new Saying<Descriptor>("{\"a\": /* one */ 1, // two\n \"b\": \"/* no comment */\"}")),
              isMinified ? R"({"a":1,"b":"/* no comment */"})" : "")
        << key;
    EXPECT_EQ(writtenFor<Descriptor>(key, field, new Saying<Descriptor>("[1 2]")), isMinified ? "[12]" : "") << key;
}

TEST(AnEvent, LetsDescriptorsOfAnApplicationSpeakForThemselves)
{
    expectSpeaksForItself("linkage", &EventInfo::linkage, false);
    expectSpeaksForItself("hyperlink", &EventInfo::hyperlink, false);
    expectSpeaksForItself("series", &EventInfo::series, true);
    expectSpeaksForItself("eventGroup", &EventInfo::eventGroup, true);
    expectSpeaksForItself("componentGroup", &EventInfo::componentGroup, true);
}

TEST(AnEvent, WritesTheNumbersOfAnyGenreItself)
{
    EXPECT_EQ(writtenFor<ContentDescriptor>("contentDescription", &EventInfo::contentDescription,
                                            new Silent<ContentDescriptor>),
              "[0,0,0,0]");
    EXPECT_EQ(writtenFor<ContentDescriptor>("contentDescription", &EventInfo::contentDescription,
                                            new Saying<ContentDescriptor>("5")),
              "[0,0,0,0]");
}

TEST(AnEvent, MakesADescriptorOfAnyValue)
{
    for (const char* value : {"null", "5", "true", R"("x")", "[]", "{}", "[1, 2, 3, 4]"}) {
        std::string text = "{\"name\": \"N\"";
        for (const char* key : {"contentDescription", "linkage", "hyperlink", "series", "eventGroup", "componentGroup"})
            text += ", \"" + std::string(key) + "\": " + value;
        EventInfo event;
        EXPECT_TRUE(event.deserialize((text + "}").c_str())) << value;
        ASSERT_TRUE(event.contentDescription && event.linkage && event.hyperlink) << value;
        ASSERT_TRUE(event.series && event.eventGroup && event.componentGroup) << value;
        EXPECT_EQ(textOf(*event.contentDescription), R"({"contentDescription":[0,0,0,0]})") << value;
        EXPECT_EQ(textOf(*event.eventGroup), R"({"type":0,"eventGroupDescriptor":[]})") << value;
        EXPECT_EQ(event.name, "N");
    }
}

TEST(AnEvent, ReadsItsDescriptors)
{
    EventInfo event;
    EXPECT_TRUE(event.deserialize(R"({
        "CONTENTDESCRIPTION": {"contentDescription": [1, 2, 3, 4]},
        "linkage": {"type": 1, "data": "d"}, "hyperlink": {"url": "u"}, "series": {"url": 2},
        "eventGroup": {"type": 3, "x": [{"id": 4}]}, "eventGroup": {"type": 9, "x": []},
        "componentGroup": {"type": 5, "x": [{"caUnit": {"id": 6, "x": [7]}}]}})"));
    EXPECT_EQ(event.contentDescription->content[3], 4);
    EXPECT_EQ(event.linkage->type, 1);
    EXPECT_EQ(event.linkage->data, "");
    EXPECT_EQ(event.hyperlink->url, "u");
    EXPECT_EQ(event.series->url, 2);
    EXPECT_EQ(event.eventGroup->type, 3);
    ASSERT_EQ(event.eventGroup->descriptors.size(), 1u);
    EXPECT_EQ(event.eventGroup->descriptors[0]->id, 4);
    ASSERT_EQ(event.componentGroup->components.size(), 1u);
    EXPECT_EQ(event.componentGroup->components[0]->caUnit->componentTags, std::vector<int>{7});
}

TEST(AnEvent, IsNotReadBackAsItWasWritten)
{
    EventInfo event;
    event.contentDescription = new ContentDescriptor;
    event.contentDescription->content[0] = 5;
    EventInfo read;
    EXPECT_TRUE(read.deserialize(textOf(event).c_str()));
    ASSERT_TRUE(read.contentDescription && read.linkage);  // null reads as a default descriptor, a bare list as zeros
    EXPECT_EQ(read.contentDescription->content[0], 0);
}

TEST(AnEvent, DeletesItsDescriptors)
{
    int destroyed = 0;
    {
        EventInfo event;
        event.contentDescription = new Counted<ContentDescriptor>(destroyed);
        event.linkage = new Counted<LinkageDescriptor>(destroyed);
        event.hyperlink = new Counted<HyperlinkDescriptor>(destroyed);
        event.series = new Counted<SeriesDescriptor>(destroyed);
        event.eventGroup = new Counted<EventGroup>(destroyed);
        event.componentGroup = new Counted<ComponentGroup>(destroyed);
    }
    EXPECT_EQ(destroyed, 6);
}

}  // namespace
}  // namespace OrvuTests
