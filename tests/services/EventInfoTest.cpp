#include <climits>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <type_traits>

#include "orvu/EventInformation.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AnEvent, StartsEmpty)
{
    const EventInfo event;
    EXPECT_EQ(event.getDataType(), 71u);
    EXPECT_EQ(event.startTime + event.endTime + event.name + event.shortDescription + event.extendedDescription, "");
    EXPECT_EQ(event.copyrightInfo + event.audioLanguageCode + event.audioLanguageCode2, "");
    EXPECT_EQ(event.dataContentLanguageCode + event.dataContentText + event.logoURI, "");
    EXPECT_EQ(event.runningStatus, 0);
    EXPECT_EQ(event.originalNetworkId, 0);
    EXPECT_EQ(event.copyrightId, 0);
    EXPECT_EQ(event.parentalRating, 0);
    EXPECT_EQ(event.parentalRatingDescription, 0);
    EXPECT_FALSE(event.hasInteractivity);
    EXPECT_FALSE(event.contentDescription || event.linkage || event.hyperlink);
    EXPECT_FALSE(event.series || event.eventGroup || event.componentGroup);
}

TEST(AnEvent, WritesNullForWhatIsEmpty)
{
    EventInfo event;
    EXPECT_EQ(textOf(event),
              "{\n"
              "\t\"HEADER\":\t\"eventInfo\",\n"
              "\t\"startTime\":\tnull,\n"
              "\t\"endTime\":\tnull,\n"
              "\t\"runningStatus\":\t0,\n"
              "\t\"name\":\tnull,\n"
              "\t\"originalNetworkId\":\t0,\n"
              "\t\"shortDescription\":\tnull,\n"
              "\t\"extendedDescription\":\tnull,\n"
              "\t\"copyrightId\":\tnull,\n"
              "\t\"copyrightInfo\":\tnull,\n"
              "\t\"parentalRating\":\t0,\n"
              "\t\"parentalRatingDescription\":\tnull,\n"
              "\t\"audioLanguageCode\":\tnull,\n"
              "\t\"audioLanguageCode2\":\tnull,\n"
              "\t\"dataContentLanguageCode\":\tnull,\n"
              "\t\"dataContentText\":\tnull,\n"
              "\t\"hasInteractivity\":\tfalse,\n"
              "\t\"logoURI\":\tnull,\n"
              "\t\"contentDescription\":\tnull,\n"
              "\t\"linkage\":\tnull,\n"
              "\t\"hyperlink\":\tnull,\n"
              "\t\"series\":\tnull,\n"
              "\t\"eventGroup\":\tnull,\n"
              "\t\"componentGroup\":\tnull\n"
              "}");
}

/// An event in which every field has a value of its own, without "HEADER".
std::unique_ptr<EventInfo> fullEvent()
{
    auto event = std::make_unique<EventInfo>();
    event->serializeHeader(false);
    event->startTime = "20:00";
    event->endTime = "21:00";
    event->runningStatus = -1;
    event->name = "N";
    event->originalNetworkId = 2;
    event->shortDescription = "S";
    event->extendedDescription = "E";
    event->copyrightId = 1;
    event->copyrightInfo = "C";
    event->parentalRating = -3;
    event->parentalRatingDescription = 1;
    event->audioLanguageCode = "por";
    event->audioLanguageCode2 = "eng";
    event->dataContentLanguageCode = "spa";
    event->dataContentText = "D";
    event->hasInteractivity = true;
    event->logoURI = "L";
    return event;
}

constexpr const char* kFullEvent =
    "{\n"
    "\t\"startTime\":\t\"20:00\",\n"
    "\t\"endTime\":\t\"21:00\",\n"
    "\t\"runningStatus\":\t-1,\n"
    "\t\"name\":\t\"N\",\n"
    "\t\"originalNetworkId\":\t2,\n"
    "\t\"shortDescription\":\t\"S\",\n"
    "\t\"extendedDescription\":\t\"E\",\n"
    "\t\"copyrightId\":\t1,\n"
    "\t\"copyrightInfo\":\t\"C\",\n"
    "\t\"parentalRating\":\t-3,\n"
    "\t\"parentalRatingDescription\":\t1,\n"
    "\t\"audioLanguageCode\":\t\"por\",\n"
    "\t\"audioLanguageCode2\":\t\"eng\",\n"
    "\t\"dataContentLanguageCode\":\t\"spa\",\n"
    "\t\"dataContentText\":\t\"D\",\n"
    "\t\"hasInteractivity\":\ttrue,\n"
    "\t\"logoURI\":\t\"L\",\n";

TEST(AnEvent, WritesItsKeysInTheAgreedOrder)
{
    const auto event = fullEvent();
    event->contentDescription = new ContentDescriptor;
    event->contentDescription->content[1] = 5;
    event->linkage = new LinkageDescriptor;
    event->hyperlink = new HyperlinkDescriptor;
    event->series = new SeriesDescriptor;
    event->eventGroup = new EventGroup;
    event->eventGroup->addDescriptor(new EventGroupDescriptor);
    event->componentGroup = new ComponentGroup;
    EXPECT_EQ(textOf(*event), kFullEvent + std::string("\t\"contentDescription\":\t[0, 5, 0, 0],\n"
                                                       "\t\"linkage\":\t{\n"
                                                       "\t\t\"tsId\":\t0,\n"
                                                       "\t\t\"networkId\":\t0,\n"
                                                       "\t\t\"serviceId\":\t0,\n"
                                                       "\t\t\"type\":\t0,\n"
                                                       "\t\t\"data\":\t\"\"\n"
                                                       "\t},\n"
                                                       "\t\"hyperlink\":\t{\n"
                                                       "\t\t\"type\":\t0,\n"
                                                       "\t\t\"destinationType\":\t0,\n"
                                                       "\t\t\"tsId\":\t0,\n"
                                                       "\t\t\"networkId\":\t0,\n"
                                                       "\t\t\"eventId\":\t0,\n"
                                                       "\t\t\"componentTag\":\t0,\n"
                                                       "\t\t\"moduleId\":\t0,\n"
                                                       "\t\t\"serviceId\":\t0,\n"
                                                       "\t\t\"contentId\":\t0,\n"
                                                       "\t\t\"url\":\t\"\"\n"
                                                       "\t},\n"
                                                       "\t\"series\":\t{\n"
                                                       "\t\t\"id\":\t0,\n"
                                                       "\t\t\"url\":\t0,\n"
                                                       "\t\t\"repeatLabel\":\t0,\n"
                                                       "\t\t\"programPattern\":\t0,\n"
                                                       "\t\t\"episodeNumber\":\t0,\n"
                                                       "\t\t\"lastEpisodeNumber\":\t0,\n"
                                                       "\t\t\"name\":\t\"\"\n"
                                                       "\t},\n"
                                                       "\t\"eventGroup\":\t{\n"
                                                       "\t\t\"type\":\t0,\n"
                                                       "\t\t\"eventGroupDescriptor\":\t[{\n"
                                                       "\t\t\t\t\"id\":\t0,\n"
                                                       "\t\t\t\t\"tsId\":\t0,\n"
                                                       "\t\t\t\t\"networkId\":\t0,\n"
                                                       "\t\t\t\t\"serviceId\":\t0\n"
                                                       "\t\t\t}]\n"
                                                       "\t},\n"
                                                       "\t\"componentGroup\":\t{\n"
                                                       "\t\t\"type\":\t0,\n"
                                                       "\t\t\"componentGroupDescriptor\":\t[]\n"
                                                       "\t}\n"
                                                       "}"));
}

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

TEST(AnEvent, MakesNoDescriptorWithoutItsKey)
{
    EventInfo event;
    EXPECT_TRUE(event.deserialize("{}"));
    EXPECT_FALSE(event.contentDescription || event.linkage || event.hyperlink);
    EXPECT_FALSE(event.series || event.eventGroup || event.componentGroup);
}

TEST(AnEvent, ReplacesADescriptorAndLeavesTheOldOneToTheCaller)
{
    EventInfo event;
    SeriesDescriptor held;
    held.name = "held";
    event.series = &held;
    EXPECT_TRUE(event.deserialize(R"({"series": {"id": 5}})"));
    EXPECT_NE(event.series, &held);
    EXPECT_EQ(event.series->id, 5);
    EXPECT_EQ(event.series->name, "");
    EXPECT_EQ(held.id, 0);
    const std::unique_ptr<SeriesDescriptor> first(event.series);
    EXPECT_TRUE(event.deserialize(R"({"series": null})"));
    EXPECT_NE(event.series, first.get());
    EXPECT_EQ(first->id, 5);
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

TEST(AnEvent, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<EventInfo>);
    EXPECT_FALSE(std::is_copy_assignable_v<EventInfo>);
}

}  // namespace
}  // namespace OrvuTests
