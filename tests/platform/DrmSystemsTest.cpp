#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/Codecs.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Formats = std::vector<DrmFormat>;

constexpr const char* kEmptySystem = R"({"systemId":"","drmName":"","drmVersion":"","formatsSupported":[]})";
constexpr const char* kEmptyList = "{\n\t\"HEADER\":\t\"drms\",\n\t\"drms\":\t[]\n}";

TEST(ADrmSystem, StartsEmpty)
{
    DrmSystem system;
    EXPECT_EQ(system.getDataType(), 41u);
    EXPECT_TRUE(system.formatsSupported.empty() && system.schemesSupported.empty());
    EXPECT_EQ(textOf(system), kEmptySystem);
}

TEST(ADrmSystem, WritesItsKeysInTheAgreedOrderWithoutAHeader)
{
    DrmSystem system;
    system.systemId = "urn:1";
    system.drmName = "N";
    system.drmVersion = "2";
    system.addFormatSupported(DrmFormatDash);
    system.addFormatSupported(DrmFormatDash);
    system.addFormatSupported(DrmFormatUnknown);
    system.addFormatSupported(static_cast<DrmFormat>(6));
    constexpr const char* kText = R"({"systemId":"urn:1","drmName":"N","drmVersion":"2",)"
                                  R"("formatsSupported":["dash","dash","Unknown",""]})";
    EXPECT_EQ(textOf(system), kText);
    system.serializeHeader(false);
    EXPECT_EQ(textOf(system), kText);
}

TEST(ADrmSystem, NeverWritesItsSchemes)
{
    DrmSystem system;
    system.addSchemeSupported(DrmSchemeHttps);
    system.addSchemeSupported(DrmSchemeHttps);
    EXPECT_EQ(system.schemesSupported.size(), 2u);
    EXPECT_EQ(textOf(system), kEmptySystem);
    DrmSystem read;
    EXPECT_TRUE(read.deserialize(textOf(system).c_str()));
    EXPECT_TRUE(read.schemesSupported.empty());
}

TEST(ADrmSystem, NeverReadsSchemes)
{
    DrmSystem system;
    EXPECT_TRUE(system.deserialize(R"({"formatsSupported": [], "schemesSupported": ["https"]})"));
    EXPECT_TRUE(system.schemesSupported.empty());
}

TEST(ADrmSystem, ReadsItsFormatsBehindThoseItHolds)
{
    DrmSystem system;
    EXPECT_TRUE(
        system.deserialize(R"({"FORMATSSUPPORTED": ["mp4", "MP4", null, 5, "Unknown"], "formatsSupported": ["hls"]})"));
    EXPECT_TRUE(system.deserialize(R"({"formatsSupported": {"a": "pes"}})"));
    EXPECT_EQ(system.formatsSupported, (Formats{DrmFormatMp4, DrmFormatUnknown, DrmFormatUnknown, DrmFormatPes}));
}

TEST(ADrmSystem, HasNoFormatsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("mp4")", "[]", "{}"}) {
        DrmSystem system;
        EXPECT_TRUE(system.deserialize((R"({"formatsSupported": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(system.formatsSupported.empty()) << value;
    }
}

TEST(ADrmSystem, IsNotReadWithoutFormatsAndKeepsWhatWasReadBefore)
{
    DrmSystem system;
    EXPECT_FALSE(system.deserialize(R"({"systemId": "a", "drmName": "b", "drmVersion": "c", "schemesSupported": []})"));
    EXPECT_EQ(system.systemId + system.drmName + system.drmVersion, "abc");
    for (const char* text : {"{}", "[]", "5", "null", R"([{"formatsSupported": []}])"})
        EXPECT_FALSE(system.deserialize(text)) << text;
}

TEST(ADrmSystem, HasAccessors)
{
    DrmSystem system;
    system.setSystemId("a");
    system.setDrmName("b");
    system.setDrmVersion("c");
    EXPECT_EQ(system.getSystemId() + system.getDrmName() + system.getDrmVersion(), "abc");
}

using Names = std::vector<std::string>;

Names namesOf(const DrmSystemList& list)
{
    Names names;
    for (const DrmSystem* system : list.systems)
        names.push_back(system->drmName);
    return names;
}

TEST(ADrmSystemList, WritesItsHeaderWhateverTheFlagSays)
{
    DrmSystemList list;
    EXPECT_EQ(list.getDataType(), 42u);
    EXPECT_EQ(textOf(list), kEmptyList);
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), kEmptyList);
}

TEST(ADrmSystemList, WritesItsSystemsFormatted)
{
    DrmSystemList list;
    list.addSystem(new DrmSystem);
    list.systems[0]->addFormatSupported(DrmFormatMpegTs);
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"drms\",\n"
              "\t\"drms\":\t[{\n"
              "\t\t\t\"systemId\":\t\"\",\n"
              "\t\t\t\"drmName\":\t\"\",\n"
              "\t\t\t\"drmVersion\":\t\"\",\n"
              "\t\t\t\"formatsSupported\":\t[\"mpeg-ts\"]\n"
              "\t\t}]\n"
              "}");
}

TEST(ADrmSystemList, SkipsSystemsWithoutAJsonText)
{
    DrmSystemList list;
    list.addSystem(new Silent<DrmSystem>);
    list.addSystem(new Saying<DrmSystem>("no JSON"));
    list.addSystem(nullptr);
    list.systems.push_back(nullptr);
    EXPECT_EQ(list.systems.size(), 3u);
    EXPECT_EQ(textOf(list), kEmptyList);
    list.addSystem(new Saying<DrmSystem>("[ 1 ] more"));
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"drms\",\n\t\"drms\":\t[[1]]\n}");
}

TEST(ADrmSystemList, DropsSystemsThatCannotBeRead)
{
    DrmSystemList list;
    EXPECT_TRUE(
        list.deserialize(R"({"DRMS": [{"drmName": "A", "formatsSupported": []}, {"drmName": "B"}, 5, null, "x", [],
                                     {"drmName": "C", "formatsSupported": null}], "drms": []} and more)"));
    EXPECT_EQ(namesOf(list), (Names{"A", "C"}));
    EXPECT_TRUE(list.deserialize(R"({"drms": {"x": {"drmName": "D", "formatsSupported": []}}})"));
    EXPECT_EQ(namesOf(list), (Names{"A", "C", "D"}));
}

TEST(ADrmSystemList, HasNoSystemsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("x")", "[]", "{}"}) {
        DrmSystemList list;
        EXPECT_TRUE(list.deserialize((R"({"drms": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(list.systems.empty()) << value;
    }
}

TEST(ADrmSystemList, IsNotReadWithoutItsKey)
{
    DrmSystemList list;
    EXPECT_FALSE(list.deserialize(nullptr));
    for (const char* text : {"{}", "[]", "5", "null", "", "{", "no JSON", R"([{"drms": []}])"})
        EXPECT_FALSE(list.deserialize(text)) << text;
    unsigned char error = 77;
    EXPECT_FALSE(list.deserialize(R"({"drms": []})", error));
    EXPECT_EQ(error, 77);
}

TEST(ADrmSystemList, DeletesItsSystems)
{
    int destroyed = 0;
    {
        DrmSystemList list;
        list.addSystem(new Counted<DrmSystem>(destroyed));
        list.systems.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ADrmSystemList, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<DrmSystemList>);
    EXPECT_FALSE(std::is_copy_assignable_v<DrmSystemList>);
}

}  // namespace
}  // namespace OrvuTests
