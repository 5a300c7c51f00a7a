#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "support/Messages.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

using Tree = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

int countOf(const cJSON* rows, const char* key, const char* value)
{
    int count = 0;
    for (const cJSON* row = rows->child; row != nullptr; row = row->next)
        count += cJSON_GetStringValue(cJSON_GetObjectItem(row, key)) == std::string(value);
    return count;
}

TEST(TheTypes, AreATable)
{
    const Ended ended = run(orvu({"types"}));
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
    const std::vector<std::string> lines = linesOf(ended.out);
    ASSERT_EQ(lines.size(), allTypes().size() + 1);
    EXPECT_EQ(lines[0], "value  wire name                 header    factory  class");
    EXPECT_EQ(lines[1], "0      unknown                   fallback  yes      UnknowRequest");
    EXPECT_EQ(lines[2], "1      emptyData                 no        no       EmptyData");
    EXPECT_EQ(lines[9], "8      currentService            yes       yes      Service");
    EXPECT_EQ(lines[27], "26     confirmationScreen        yes       yes      ConfirmationScreen");
    EXPECT_EQ(lines[93], "92     tvServiceNotInUse         yes       yes      TVServiceNotInUse");
    EXPECT_EQ(lines[96], "95     siCacheUnavailable        yes       no       -");
}

TEST(TheTypes, HaveTheClassesThatOnlyApplicationsMake)
{
    const std::vector<std::string> lines = linesOf(run(orvu({"types"})).out);
    ASSERT_EQ(lines.size(), allTypes().size() + 1);
    EXPECT_EQ(lines[20], "19     pos                       no        no       Position");
    EXPECT_EQ(lines[44], "43     codecsSupported           no        no       Codecs");
    EXPECT_EQ(lines[52], "51     persistentVariableValue   no        no       PersistentVariableValue");
    EXPECT_EQ(lines[74], "73     contentDescription        no        no       ContentDescriptor");
    EXPECT_EQ(lines[75], "74     linkageDescriptor         no        no       LinkageDescriptor");
    EXPECT_EQ(lines[76], "75     hyperlinkDescriptor       no        no       HyperlinkDescriptor");
    EXPECT_EQ(lines[77], "76     seriesDescriptor          no        no       SeriesDescriptor");
    EXPECT_EQ(lines[78], "77     eventGroupDescriptor      no        no       EventGroupDescriptor");
    EXPECT_EQ(lines[79], "78     eventGroup                no        no       EventGroup");
    EXPECT_EQ(lines[80], "79     componentGroup            no        no       ComponentGroup");
    EXPECT_EQ(lines[81], "80     componentGroupDescriptor  no        no       ComponentGroupDescriptor");
    EXPECT_EQ(lines[82], "81     cAUnit                    no        no       CAUnit");
}

TEST(TheTypes, AllHaveAClassButOne)
{
    std::vector<std::string> without;
    for (const std::string& line : linesOf(run(orvu({"types"})).out))
        if (line.back() == '-') without.push_back(line);
    EXPECT_EQ(without, std::vector<std::string>{"95     siCacheUnavailable        yes       no       -"});
}

TEST(TheTypes, AreAJsonArrayWhenAsked)
{
    const Ended ended = run(orvu({"types", "--json"}));
    EXPECT_EQ(ended.code, 0);
    const Tree rows(cJSON_ParseWithOpts(ended.out.c_str(), nullptr, true), cJSON_Delete);
    ASSERT_TRUE(rows);
    const int types = static_cast<int>(allTypes().size());
    ASSERT_EQ(cJSON_GetArraySize(rows.get()), types);
    EXPECT_EQ(countOf(rows.get(), "header", "fallback"), 1);
    EXPECT_EQ(countOf(rows.get(), "header", "no"), 13);
    EXPECT_EQ(countOf(rows.get(), "header", "yes"), types - 14);
    EXPECT_EQ(ended.out.substr(0, ended.out.find("  },\n") + 5),
              "[\n"
              "  {\n"
              "    \"value\": 0,\n"
              "    \"name\": \"unknown\",\n"
              "    \"header\": \"fallback\",\n"
              "    \"factory\": true,\n"
              "    \"class\": \"UnknowRequest\"\n"
              "  },\n");
    EXPECT_THAT(ended.out, testing::HasSubstr("  {\n"
                                              "    \"value\": 95,\n"
                                              "    \"name\": \"siCacheUnavailable\",\n"
                                              "    \"header\": \"yes\",\n"
                                              "    \"factory\": false,\n"
                                              "    \"class\": null\n"
                                              "  },\n"));
}

TEST(TheTypes, SayTheSameInBothForms)
{
    const std::vector<std::string> lines = linesOf(run(orvu({"types"})).out);
    const std::string json = run(orvu({"types", "--json"})).out;
    const Tree rows(cJSON_Parse(json.c_str()), cJSON_Delete);
    ASSERT_TRUE(rows);
    size_t at = 1;
    for (const cJSON* row = rows->child; row != nullptr; row = row->next, ++at) {
        ASSERT_LT(at, lines.size());
        std::istringstream words(lines[at]);
        std::string value, name, header, factory, type;
        words >> value >> name >> header >> factory >> type;
        EXPECT_EQ(std::stoi(value), cJSON_GetObjectItem(row, "value")->valueint);
        EXPECT_STREQ(name.c_str(), cJSON_GetObjectItem(row, "name")->valuestring);
        EXPECT_STREQ(header.c_str(), cJSON_GetObjectItem(row, "header")->valuestring);
        EXPECT_EQ(factory == "yes", cJSON_IsTrue(cJSON_GetObjectItem(row, "factory")));
        const char* className = cJSON_GetStringValue(cJSON_GetObjectItem(row, "class"));
        EXPECT_STREQ(type.c_str(), className != nullptr ? className : "-");
    }
}

TEST(AType, TellsItsKeys)
{
    EXPECT_EQ(run(orvu({"types", "eventGroup"})).out,
              "eventGroup (78), class EventGroup\n"
              "  type                                    number\n"
              "  (the list after it)                     list of objects\n"
              "    id                                    number\n"
              "    tsId                                  number\n"
              "    networkId                             number\n"
              "    serviceId                             number\n");
    EXPECT_EQ(run(orvu({"types", "targetAppPerformAction"})).out,
              "targetAppPerformAction (69), class TargetAppPerformAction\n"
              "  canonicalName                           text\n"
              "  action                                  word: start, stop\n"
              "  priority                                word: foreground, background\n");
    EXPECT_EQ(run(orvu({"types", "serviceTime"})).out,
              "serviceTime (24), class ServiceTime\n"
              "  time                          required  text\n");
    EXPECT_EQ(run(orvu({"types", "success"})).out, "success (7), class SuccessResponse\n  reads no keys\n");
}

TEST(AType, TellsItsKeysAsJsonWhenAsked)
{
    EXPECT_EQ(run(orvu({"types", "serviceTime", "--json"})).out,
              "[\n  {\n    \"key\": \"time\",\n    \"kind\": \"text\",\n    \"required\": true,\n    \"words\": [],\n"
              "    \"keys\": []\n  }\n]\n");
}

TEST(AType, ThatIsNotKnownIsNamedWithTheNearest)
{
    const Ended ended = run(orvu({"types", "eventgroup"}));
    EXPECT_EQ(ended.code, 64);
    EXPECT_EQ(ended.err, "orvu: eventgroup: no such type; did you mean \"eventGroup\"?\n");
}

}  // namespace
}  // namespace OrvuTests
