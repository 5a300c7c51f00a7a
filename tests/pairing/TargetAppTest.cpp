#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <type_traits>

#include "orvu/TargetApplications.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kFilters = R"("filters": [{"scheme": "https"}])";

std::string with(const std::string& members)
{
    return "{" + members + kFilters + "}";
}

TEST(ATargetAppFilter, IsAUrlOnceItHasSchemeAndHost)
{
    TargetAppFilter filter;
    filter.path = "p";
    EXPECT_EQ(filter.getAsUrl(), "");
    filter.scheme = "https";
    EXPECT_EQ(filter.getAsUrl(), "");
    filter.host = "example.com";
    EXPECT_EQ(filter.getAsUrl(), "https://example.com/p");
    filter.path = "/p";
    EXPECT_EQ(filter.getAsUrl(), "https://example.com/p");
    filter.path = "";
    EXPECT_EQ(filter.getAsUrl(), "https://example.com");
    filter.scheme = "";
    EXPECT_EQ(filter.getAsUrl(), "");
}

TEST(ATargetApp, WritesNameAndStateOnlyWhenAsked)
{
    TargetApp target;
    EXPECT_EQ(target.getDataType(), 66u);
    EXPECT_EQ(target.priority, PriorityTypeForeground);
    target.canonicalName = "c";
    target.running = true;
    target.serializeHeader(false);
    EXPECT_EQ(textOf(target), "{\n\t\"targetId\":\t\"\",\n\t\"displayName\":\t\"\",\n\t\"filters\":\t[]\n}");
    target.writeCanonicalName = true;
    target.writeRunningState = true;
    EXPECT_EQ(
        textOf(target),
        "{\n\t\"targetId\":\t\"\",\n\t\"displayName\":\t\"\",\n\t\"canonicalName\":\t\"c\",\n\t\"filters\":\t[],\n"
        "\t\"running\":\ttrue,\n\t\"priority\":\t\"foreground\"\n}");
    target.priority = PriorityTypeUnknown;
    EXPECT_EQ(
        textOf(target),
        "{\n\t\"targetId\":\t\"\",\n\t\"displayName\":\t\"\",\n\t\"canonicalName\":\t\"c\",\n\t\"filters\":\t[],\n"
        "\t\"running\":\ttrue\n}");
}

TEST(ATargetApp, NeedsAFilterThatItHolds)
{
    TargetApp target;
    EXPECT_FALSE(target.deserialize(R"({"targetId": "t", "filters": [{"host": "h"}], "running": true})"));
    EXPECT_EQ(target.targetId, "t");
    EXPECT_FALSE(target.running);
    target.addFilter(new TargetAppFilter);
    EXPECT_TRUE(target.deserialize(R"({"filters": []})"));  // it holds one already
}

TEST(ATargetApp, RemembersWhatWasRead)
{
    TargetApp target;
    EXPECT_TRUE(target.deserialize(with("").c_str()));
    EXPECT_FALSE(target.targetIdRead || target.displayNameRead || target.canonicalNameRead);
    EXPECT_TRUE(target.deserialize(with(R"("targetId": "t", "displayName": "d", "canonicalName": "c", )").c_str()));
    EXPECT_TRUE(target.targetIdRead && target.displayNameRead && target.canonicalNameRead);
    EXPECT_FALSE(target.writeCanonicalName || target.writeRunningState);
    EXPECT_TRUE(target.deserialize(with(R"("canonicalName": "", )").c_str()));
    EXPECT_FALSE(target.canonicalNameRead);
    EXPECT_TRUE(target.targetIdRead);
}

struct Refusal {
    std::string text;
    int code;
};

TEST(ATargetApp, TellsWhyItCannotBeRead)
{
    for (const Refusal& refusal :
         {Refusal{"{}", 2}, Refusal{"5", 2}, Refusal{with(""), 2}, Refusal{with(R"("canonicalName": "c", )"), 2},
          Refusal{with(R"("targetId": 5, )"), 2}, Refusal{R"({"displayName": "d"})", 3},
          Refusal{R"({"targetId": "t"})", 3}, Refusal{R"({"targetId": "t", "filters": []})", 4},
          Refusal{R"({"targetId": "t", "filters": 5})", 4},
          Refusal{R"({"targetId": "t", "filters": [{"host": "h"}]})", 4}, Refusal{with(R"("displayName": "d", )"), 5},
          Refusal{with(R"("displayName": "d", "canonicalName": "", )"), 5}}) {
        TargetApp target;
        unsigned char error = 77;
        EXPECT_FALSE(target.deserialize(refusal.text.c_str(), error)) << refusal.text;
        EXPECT_EQ(error, refusal.code) << refusal.text;
    }
}

TEST(ATargetApp, IsKnownByAnIdOrByItsNames)
{
    for (const char* members :
         {R"("targetId": "t", )", R"("targetId": "", )", R"("displayName": "d", "canonicalName": "c", )"}) {
        TargetApp target;
        unsigned char error = 77;
        EXPECT_TRUE(target.deserialize(with(members).c_str(), error)) << members;
        EXPECT_EQ(error, 77) << members;
        EXPECT_TRUE(target.deserialize(with(R"("displayName": "e", )").c_str(), error)) << members;  // known by now
    }
}

TEST(ATargetApp, NamesItsFirstFaultAlone)
{
    TargetApp target;
    unsigned char error = 77;
    EXPECT_FALSE(target.deserialize(R"({"canonicalName": "c", "filters": []})", error));
    EXPECT_EQ(error, 2);
    EXPECT_EQ(target.canonicalName, "");  // not looked at any more
}

TEST(ATargetApp, IsClonedWithItsFilters)
{
    TargetApp target;
    ASSERT_TRUE(target.deserialize(
        with(
            R"("targetId": "t", "displayName": "d", "canonicalName": "c", "running": true, "priority": "background", )")
            .c_str()));
    target.filters[0]->host = "h";
    target.filters.push_back(nullptr);
    target.writeCanonicalName = target.writeRunningState = true;
    target.serializeHeader(false);
    const std::unique_ptr<TargetApp> clone(target.clone());
    ASSERT_EQ(clone->filters.size(), 1u);
    EXPECT_NE(clone->filters[0], target.filters[0]);
    EXPECT_FALSE(clone->targetIdRead || clone->displayNameRead || clone->canonicalNameRead);
    EXPECT_EQ(textOf(*clone),
              "{\n\t\"HEADER\":\t\"targetApp\",\n\t\"targetId\":\t\"t\",\n\t\"displayName\":\t\"d\",\n"
              "\t\"canonicalName\":\t\"c\",\n\t\"filters\":\t[{\n\t\t\t\"scheme\":\t\"https\",\n\t\t\t\"host\":"
              "\t\"h\"\n\t\t}],\n"
              "\t\"running\":\ttrue,\n\t\"priority\":\t\"background\"\n}");
    EXPECT_FALSE(std::is_copy_constructible_v<TargetApp>);
}

TEST(ATargetAppList, DecidesAboutTheCanonicalNamesOfItsTargets)
{
    TargetAppList list;
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"targetApps\",\n\t\"targetApps\":\t[]\n}");
    list.addTargetApp(new TargetApp);
    list.targets.push_back(nullptr);
    list.targetId = "t";
    EXPECT_EQ(textOf(list),
              "{\n\t\"HEADER\":\t\"targetApps\",\n\t\"targetId\":\t\"t\",\n\t\"targetApps\":\t[{\n\t\t\t\"targetId\":"
              "\t\"\",\n"
              "\t\t\t\"displayName\":\t\"\",\n\t\t\t\"canonicalName\":\t\"\",\n\t\t\t\"filters\":\t[]\n\t\t}]\n}");
    EXPECT_TRUE(list.targets[0]->writeCanonicalName);
    list.writeCanonicalNames = false;
    EXPECT_EQ(textOf(list).find("canonicalName"), std::string::npos);
    EXPECT_FALSE(list.targets[0]->writeCanonicalName);
}

}  // namespace
}  // namespace OrvuTests
