#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "core/CatalogueTable.h"
#include "messages/core/CJsonBridge.h"
#include "messages/core/Catalogue.h"
#include "support/LogCapture.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The type of the text, and what the library logged on the way.
struct Header {
    DataType type;
    std::vector<std::string> lines;
};

Header headerOf(const char* text)
{
    LogCapture log;
    const DataType type = Serializable::deserializeHeader(text);
    return {type, log.lines()};
}

TEST(AHeader, NamesTheType)
{
    const Header header = headerOf(R"({"serviceName": "A", "HEADER": "currentService"})");
    EXPECT_EQ(header.type, DataTypeCurrentService);
    EXPECT_THAT(header.lines, ElementsAre("deserializeHeader: HEADER: currentService"));
}

TEST(AHeader, MayStandInAnyLetterCase)
{
    EXPECT_EQ(headerOf(R"({"header": "success"})").type, DataTypeSuccess);
    EXPECT_EQ(headerOf(R"({"HeAdEr": "success"})").type, DataTypeSuccess);
    EXPECT_THAT(headerOf(R"({"Header": "success"})").lines, ElementsAre("deserializeHeader: HEADER: success"));
}

TEST(AHeader, HoldsItsNameInOneLetterCaseOnly)
{
    const Header header = headerOf(R"({"HEADER": "Success"})");
    EXPECT_EQ(header.type, DataTypeUnknown);
    EXPECT_THAT(header.lines, ElementsAre("deserializeHeader: HEADER: Success"));
}

TEST(AHeader, IsUnknownWhenEmpty)
{
    const Header header = headerOf(R"({"HEADER": ""})");
    EXPECT_EQ(header.type, DataTypeUnknown);
    EXPECT_THAT(header.lines, ElementsAre("deserializeHeader: HEADER: "));
}

TEST(AHeader, IsUnknownWhenItSaysUnknown)
{
    const Header header = headerOf(R"({"HEADER": "unknown"})");
    EXPECT_EQ(header.type, DataTypeUnknown);
    EXPECT_THAT(header.lines, ElementsAre("deserializeHeader: HEADER: unknown"));
}

TEST(AHeader, MayKnowATypeThatTheFactoryDoesNotMake)
{
    EXPECT_EQ(headerOf(R"({"HEADER": "siCacheUnavailable"})").type, 95u);
    EXPECT_EQ(Serializable::factory(DataTypeSiCacheUnavailable), nullptr);
}

TEST(AHeader, IsMissedInTheLog)
{
    for (const char* text : {"{}", R"({"HEADERS": "success"})", R"({"a": {"HEADER": "success"}})", "[]", "5",
                             R"("HEADER")", "null", "true", R"([{"HEADER": "success"}])"}) {
        const Header header = headerOf(text);
        EXPECT_EQ(header.type, DataTypeUnknown) << text;
        EXPECT_THAT(header.lines, ElementsAre("deserializeHeader: Cannot found 'HEADER' in json!")) << text;
    }
}

TEST(AHeader, IsUnknownWhenItIsNotAText)
{
    for (const char* text : {R"({"HEADER": 7})", R"({"HEADER": null})", R"({"HEADER": true})",
                             R"({"HEADER": ["success"]})", R"({"HEADER": {"HEADER": "success"}})"}) {
        const Header header = headerOf(text);
        EXPECT_EQ(header.type, DataTypeUnknown) << text;
        EXPECT_THAT(header.lines, IsEmpty()) << text;
    }
}

TEST(AHeader, IsTheFirstOfSeveral)
{
    EXPECT_EQ(headerOf(R"({"header": "noSignal", "HEADER": "success"})").type, DataTypeNoSignal);
    EXPECT_EQ(headerOf(R"({"HEADER": 7, "HEADER": "success"})").type, DataTypeUnknown);
}

TEST(AHeader, EndsAtItsFirstNul)
{
    EXPECT_EQ(headerOf(R"({"HEADER": "success\u0000ful"})").type, DataTypeSuccess);
}

TEST(AHeader, IsFoundWhateverFollowsTheText)
{
    EXPECT_EQ(headerOf(R"( {"HEADER": "success"} and more)").type, DataTypeSuccess);
    EXPECT_EQ(headerOf(R"({"HEADER": "success"}{"HEADER": "noSignal"})").type, DataTypeSuccess);
}

TEST(AHeader, IsSoughtSilentlyInWhatIsNotJson)
{
    for (const char* text : {"", " ", "{", "success", R"({"HEADER": "success")", R"({'HEADER': 'success'})"}) {
        const Header header = headerOf(text);
        EXPECT_EQ(header.type, DataTypeUnknown) << text;
        EXPECT_THAT(header.lines, IsEmpty()) << text;
    }
    EXPECT_EQ(headerOf(nullptr).type, DataTypeUnknown);
    EXPECT_THAT(headerOf(nullptr).lines, IsEmpty());
}

TEST(AHeader, IsNoFormatForTheLog)
{
    EXPECT_THAT(headerOf(R"({"HEADER": "%s%n%d"})").lines, ElementsAre("deserializeHeader: HEADER: %s%n%d"));
}

TEST(TheHeaderTypes, TellTheMappedFromTheNamed)
{
    for (const CatalogueRow& row : kCatalogue) {
        const std::string text = R"({"HEADER": ")" + std::string(row.wireName) + R"("})";
        const HeaderTypes types = headerTypes(CheckedText(text.c_str()));
        EXPECT_EQ(types.mapped, row.mapping == Mapped ? row.type : DataTypeUnknown) << row.wireName;
        EXPECT_EQ(types.named, row.type) << row.wireName;
    }
}

TEST(TheHeaderTypes, AreUnknownWithoutAName)
{
    for (const char* text : {"{}", "5", R"({"HEADER": 5})", R"({"HEADER": ""})", R"({"HEADER": "nonsense"})"}) {
        const HeaderTypes types = headerTypes(CheckedText(text));
        EXPECT_EQ(types.mapped, DataTypeUnknown) << text;
        EXPECT_EQ(types.named, DataTypeUnknown) << text;
    }
    EXPECT_EQ(headerTypes(CheckedText(nullptr)).mapped, DataTypeUnknown);
    EXPECT_EQ(headerTypes(CheckedText(nullptr)).named, DataTypeUnknown);
}

std::string withoutHeader(const std::string& text)
{
    return taken(Serializable::removeHeader(mallocText(text)));
}

TEST(RemovingAHeader, LeavesTheOtherMembersFormatted)
{
    EXPECT_EQ(withoutHeader(R"({"HEADER":"currentService","serviceName":"A","list":[1,{"b":null}]})"),
              "{\n\t\"serviceName\":\t\"A\",\n\t\"list\":\t[1, {\n\t\t\t\"b\":\tnull\n\t\t}]\n}");
}

TEST(RemovingAHeader, LeavesAnEmptyObject)
{
    EXPECT_EQ(withoutHeader(R"({"HEADER": "success"})"), "{\n}");
}

TEST(RemovingAHeader, FindsItAtTheEnd)
{
    EXPECT_EQ(withoutHeader(R"({"a": 1, "HEADER": "success"})"), "{\n\t\"a\":\t1\n}");
}

TEST(RemovingAHeader, FindsItInAnyLetterCase)
{
    EXPECT_EQ(withoutHeader(R"({"a": 1, "header": "success", "b": 2})"), "{\n\t\"a\":\t1,\n\t\"b\":\t2\n}");
}

TEST(RemovingAHeader, TakesOneOfAnyKind)
{
    EXPECT_EQ(withoutHeader(R"({"HEADER": {"HEADER": 5}, "a": 1})"), "{\n\t\"a\":\t1\n}");
}

TEST(RemovingAHeader, LeavesASecondOne)
{
    EXPECT_EQ(withoutHeader(R"({"Header": "success", "HEADER": "noSignal"})"), "{\n\t\"HEADER\":\t\"noSignal\"\n}");
}

TEST(RemovingAHeader, LeavesThoseOfNestedObjects)
{
    EXPECT_EQ(withoutHeader(R"({"HEADER": "success", "a": {"HEADER": "pos"}})"),
              "{\n\t\"a\":\t{\n\t\t\"HEADER\":\t\"pos\"\n\t}\n}");
}

TEST(RemovingAHeader, FormatsATextThatHasNone)
{
    EXPECT_EQ(withoutHeader(R"({"a":1})"), "{\n\t\"a\":\t1\n}");
    EXPECT_EQ(withoutHeader("{}"), "{\n}");
}

TEST(RemovingAHeader, LeavesWhatIsNotAnObject)
{
    EXPECT_EQ(withoutHeader(R"([{"HEADER": "success"}])"), "[{\n\t\t\"HEADER\":\t\"success\"\n\t}]");
    EXPECT_EQ(withoutHeader("5"), "5");
    EXPECT_EQ(withoutHeader("null"), "null");
    EXPECT_EQ(withoutHeader(R"("HEADER")"), R"("HEADER")");
}

TEST(RemovingAHeader, DropsWhatFollowsTheText)
{
    EXPECT_EQ(withoutHeader(R"({"HEADER": "success", "a": 1} and more)"), "{\n\t\"a\":\t1\n}");
}

// That the text was released all the same is the leak checker's to say.
TEST(RemovingAHeader, GivesNothingForWhatIsNotJson)
{
    EXPECT_EQ(withoutHeader(""), "(null)");
    EXPECT_EQ(withoutHeader("{"), "(null)");
    EXPECT_EQ(withoutHeader("success"), "(null)");
    EXPECT_EQ(Serializable::removeHeader(nullptr), nullptr);
}

}  // namespace
}  // namespace OrvuTests
