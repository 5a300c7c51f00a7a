#include <cstdint>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "messages/core/Explanation.h"
#include "orvu/Orvu.h"

using namespace Orvu;
using testing::ElementsAre;
using testing::IsEmpty;

namespace OrvuTests {
namespace {

std::vector<std::string> linesOf(const Explanation& explanation)
{
    std::vector<std::string> lines;
    for (const Finding& finding : explanation.findings)
        lines.push_back(toString(finding));
    return lines;
}

std::vector<std::string> explained(const std::string& text)
{
    return linesOf(explain(text.c_str()));
}

TEST(AnExplanation, IsEmptyWhereEverythingIsRead)
{
    const Explanation explanation = explain(R"({"HEADER": "serviceTime", "time": "20:30"})");
    EXPECT_TRUE(explanation.isRead);
    EXPECT_EQ(explanation.type, DataTypeServiceTime);
    EXPECT_THAT(linesOf(explanation), IsEmpty());
}

TEST(AnExplanation, NamesAKeyThatIsMissing)
{
    EXPECT_THAT(explained(R"({"HEADER": "serviceTime"})"), ElementsAre("line 1, column 1: time: required, missing"));
}

TEST(AnExplanation, NamesAKeyThatIsThereInItsPlace)
{
    EXPECT_THAT(explained("{\"HEADER\": \"eventInfoList\",\n \"schedules\": []}"),
                ElementsAre("line 1, column 1: schedule: required, missing; there is \"schedules\"",
                            "line 2, column 2: schedules: not read; the nearest is \"schedule\""));
}

TEST(AnExplanation, TellsWhichKindIsRequired)
{
    EXPECT_THAT(explained("{\"HEADER\": \"serviceTime\",\n\n  \"time\": 2030}"),
                ElementsAre("line 3, column 11: time: a number where a text is required"));
}

struct WrongKind {
    const char* value;
    const char* name;
};
class AValueOfTheWrongKind : public testing::TestWithParam<WrongKind> {};

TEST_P(AValueOfTheWrongKind, IsNamed)
{
    const std::string value = GetParam().value;
    EXPECT_THAT(explained(R"({"HEADER": "serviceTime", "time": )" + value + "}"),
                ElementsAre(std::string("line 1, column 35: time: ") + GetParam().name + " where a text is required"));
}

INSTANTIATE_TEST_SUITE_P(ForAText, AValueOfTheWrongKind,
                         testing::Values(WrongKind{"-1", "a number"}, WrongKind{"true", "a boolean"},
                                         WrongKind{"null", "null"}, WrongKind{"[]", "a list"},
                                         WrongKind{"{}", "an object"}));

struct WantedKind {
    const char* text;
    const char* line;
};
class AWantedKind : public testing::TestWithParam<WantedKind> {};

TEST_P(AWantedKind, IsNamed)
{
    EXPECT_THAT(explained(GetParam().text), ElementsAre(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(
    Of, AWantedKind,
    testing::Values(WantedKind{R"({"HEADER": "currentService", "serviceId": "1"})",
                               "line 1, column 43: serviceId: a text where a number is expected, ignored"},
                    WantedKind{R"({"HEADER": "serviceComponent", "componentTag": []})",
                               "line 1, column 48: componentTag: a list where a number or a text is expected, ignored"},
                    WantedKind{R"({"HEADER": "gingaEditCommand", "elementId": 5})",
                               "line 1, column 45: elementId: a number where a text or an object is expected, ignored"},
                    WantedKind{R"({"HEADER": "streamPidsRequest", "pids": 5})",
                               "line 1, column 41: pids: a number where a list is required"},
                    WantedKind{
                        R"({"HEADER": "serviceList", "serviceList": {"a": {}, "b": {}}})",
                        "line 1, column 42: serviceList: an object where a list is expected: its values are read"},
                    WantedKind{R"({"HEADER": "serviceList", "serviceList": null})",
                               "line 1, column 42: serviceList: null where a list is expected, read as an empty one"},
                    WantedKind{R"({"HEADER": "targetAppAction", "action": "start", "priority": 1})",
                               "line 1, column 62: priority: a number where a text is required"},
                    WantedKind{R"({"HEADER": "drmSystem", "formatsSupported": ["hls", 5]})",
                               "line 1, column 53: formatsSupported[1]: a number where a text is expected, ignored"},
                    WantedKind{R"({"HEADER": "platformCapabilities", "platformCapabilities": 5})",
                               "line 1, column 60: platformCapabilities: a number where an object is required"},
                    WantedKind{R"({"HEADER": "eventInfo", "eventGroup": {"type": 1}})",
                               "line 1, column 48: eventGroup.type: 1 has no list after it"},
                    WantedKind{R"({"HEADER": "streamPidsResponse", "mimeType": "video/mp4"})",
                               "line 1, column 46: mimeType: has no effect when it is read"}));

TEST(AnExplanation, SaysThatAMessageThatIsNotAnObjectIsEmpty)
{
    EXPECT_THAT(linesOf(explain("5", DataTypeCurrentService)),
                ElementsAre("line 1, column 1: a number where an object is expected, read as an empty one"));
    EXPECT_THAT(linesOf(explain("[]", DataTypeServiceTime)),
                ElementsAre("line 1, column 1: a list where an object is required"));
    EXPECT_THAT(linesOf(explain("[]", DataTypeTargetAppAction)),
                ElementsAre("line 1, column 1: a list where an object is required"));
}

TEST(AnExplanation, TellsWhenATextMakesTooManyObjects)
{
    std::string items = "{}";
    for (int i = 0; i < 300000; ++i)
        items += ",{}";
    const Explanation explanation = explain((R"({"HEADER": "eventInfoList", "schedule": [)" + items + "]}").c_str());
    EXPECT_FALSE(explanation.isRead);
    EXPECT_THAT(toString(explanation.findings.front()),
                testing::EndsWith("makes more objects than a text of this size may"));
}

TEST(AnExplanation, TellsWhenATextHasTooManyParts)
{
    std::string items = "[]";
    for (std::uint32_t i = 0; i < CheckedText::kMaxContainers; ++i)
        items += ",[]";
    EXPECT_THAT(explained("[" + items + "]"),
                ElementsAre("line 1, column 1: holds more objects and lists, or bytes, than are read"));
}

TEST(AnExplanation, KeepsCharactersWholeWhereItCutsThem)
{
    EXPECT_THAT(explained("{\"HEADER\": \"" + std::string(39, 'x') + "é\"}"),
                ElementsAre("line 1, column 12: HEADER: \"" + std::string(39, 'x') + "...\" names no type"));
}

TEST(AnExplanation, TellsWhatIsIgnoredBecauseOfItsKind)
{
    const Explanation explanation = explain(R"({"HEADER": "keyset", "keyset": ["a", 1], "releaseKeyset": "yes"})");
    EXPECT_TRUE(explanation.isRead);
    EXPECT_THAT(linesOf(explanation),
                ElementsAre("line 1, column 59: releaseKeyset: a text where a boolean is expected, ignored"));
}

TEST(AnExplanation, TellsWhichValuesAreRefused)
{
    EXPECT_THAT(explained(R"({"HEADER": "serviceCompTagAction", "vol": 900})"),
                ElementsAre("line 1, column 43: vol: 900 is outside 0 to 100"));
    EXPECT_THAT(explained(R"({"HEADER": "serviceCompTagAction", "pos": {"x": "abc%"}})"),
                ElementsAre("line 1, column 49: pos.x: \"abc%\" holds no number"));
    EXPECT_THAT(explained(R"({"HEADER": "serviceCompTagAction", "pos": {"x": 0, "y": 0, "w": 1281, "h": 1}})"),
                ElementsAre("line 1, column 43: pos: {\"x\": 0, \"y\": 0, \"w\": 1281, \"h\": 1} is not within the "
                            "display of 1280 by 720"));
    EXPECT_THAT(explained(R"({"HEADER": "serviceCompTagAction", "action": "select"})"),
                ElementsAre("line 1, column 46: action: \"select\" is none of \"start\", \"pause\" and \"stop\""));
    EXPECT_THAT(explained(R"({"HEADER": "gingaAppAction", "action": "pause"})"),
                ElementsAre("line 1, column 40: action: \"pause\" is neither \"start\" nor \"stop\""));
    EXPECT_THAT(explained(R"({"HEADER": "serviceComponent", "componentTag": "0x1FFFFFFFF"})"),
                ElementsAre("line 1, column 48: componentTag: \"0x1FFFFFFFF\" is a number that does not fit 32 bits"));
}

TEST(AnExplanation, PrintsNothingThatReadingWouldPrint)
{
    testing::internal::CaptureStdout();
    explain(R"({"HEADER": "serviceCompTagAction", "pos": {"x": 0, "y": 0, "w": 2, "h": 1}})");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(AnExplanation, TellsWhichWordsAreNotRead)
{
    EXPECT_THAT(
        explained(R"({"HEADER": "nclNodeAction", "action": "strat"})"),
        ElementsAre("line 1, column 39: action: \"strat\" is not a word that is read here; the nearest is \"start\""));
    EXPECT_THAT(explained(R"({"HEADER": "displayLayers", "type": 5})"),
                ElementsAre("line 1, column 37: type: a number where a text is expected, ignored"));
}

TEST(AnExplanation, TellsWhichItemsOfAListAreLeftOut)
{
    const Explanation explanation =
        explain(R"({"HEADER": "targetApps", "targetApps": [{"filters": [{"host": "tv"}]}]})");
    EXPECT_TRUE(explanation.isRead);
    EXPECT_THAT(
        linesOf(explanation),
        ElementsAre("line 1, column 53: targetApps[0].filters: [{\"host\": \"tv\"}] has no filter that can be read",
                    "line 1, column 54: targetApps[0].filters[0].scheme: required, missing"));
}

TEST(AnExplanation, TellsWhatReadsAsAnEmptyPart)
{
    EXPECT_THAT(explained(R"({"HEADER": "eventInfo", "linkage": 5, "contentDescription": [1, 2, 3, 4]})"),
                ElementsAre("line 1, column 36: linkage: a number where an object is expected, read as an empty one",
                            "line 1, column 61: contentDescription: a list where an object is required"));
    EXPECT_THAT(explained(R"({"HEADER": "serviceList", "serviceList": "none"})"),
                ElementsAre("line 1, column 42: serviceList: a text where a list is expected, read as an empty one"));
}

TEST(AnExplanation, TakesNullForNothing)
{
    EXPECT_THAT(explained(R"({"HEADER": "eventInfo", "linkage": null, "contentDescription": null, "name": null})"),
                IsEmpty());
}

TEST(AnExplanation, KnowsWhatIsReadByItsPlace)
{
    EXPECT_THAT(explained(R"({"HEADER": "eventInfo", "eventGroup": {"type": 1, "anything": [{"serviceId": 1}]}})"),
                IsEmpty());
}

TEST(AnExplanation, TellsOfAKeyThatComesTwice)
{
    EXPECT_THAT(explained(R"({"HEADER": "serviceTime", "time": "a", "Time": "b"})"),
                ElementsAre("line 1, column 40: Time: comes a second time, not read"));
}

TEST(AnExplanation, TellsOfAKeyThatIsNotReadBesideAnother)
{
    EXPECT_THAT(explained(R"({"HEADER": "serviceCompTagAction", "pos": {"x": 0, "y": 0, "w": 1, "h": 1}, "vol": 5})"),
                ElementsAre("line 1, column 77: vol: not read in this text"));
}

TEST(AnExplanation, NamesTextAfterTheJson)
{
    EXPECT_THAT(explained("{\"HEADER\": \"success\"}\n more"),
                ElementsAre("line 2, column 2: text after the JSON is not read"));
}

TEST(AnExplanation, CountsCharactersAndNotBytes)
{
    EXPECT_THAT(explained(R"({"ação": 1, "HEADER": 5})"),
                ElementsAre("line 1, column 23: HEADER: 5 is not the name of a type"));
}

TEST(AnExplanation, KeepsControlCharactersAndLengthOutOfItsLines)
{
    EXPECT_THAT(explained("{\"HEADER\": \"success\", \"\x7F 0aZ-_\": 1}"),
                ElementsAre("line 1, column 23: [\"  0aZ-_\"]: not read"));
    EXPECT_THAT(explained("{\"HEADER\": \"\x1B[31m" + std::string(100, 'x') + "\"}"),
                ElementsAre("line 1, column 12: HEADER: \" [31m" + std::string(35, 'x') + "...\" names no type"));
}

TEST(AnExplanation, ShortensKeys)
{
    EXPECT_THAT(explained(R"({"HEADER": "success", ")" + std::string(100, 'k') + R"(": 1})"),
                ElementsAre("line 1, column 23: [\"" + std::string(40, 'k') + "...\"]: not read"));
}

struct NoMessage {
    const char* text;
    const char* line;
};
class ATextWithoutAType : public testing::TestWithParam<NoMessage> {};

TEST_P(ATextWithoutAType, IsExplained)
{
    const Explanation explanation = explain(GetParam().text);
    EXPECT_FALSE(explanation.isRead);
    EXPECT_EQ(explanation.type, DataTypeUnknown);
    EXPECT_THAT(linesOf(explanation), ElementsAre(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(
    Of, ATextWithoutAType,
    testing::Values(
        NoMessage{nullptr, "line 1, column 1: is empty"}, NoMessage{" \n ", "line 1, column 1: is empty"},
        NoMessage{"{\n\n", "line 1, column 2: ends inside an object"},
        NoMessage{"{\"a\": {\n\"b\": [1,", "line 2, column 9: ends inside a list"},
        NoMessage{R"({"a": "\")", "line 1, column 10: ends inside a text"},
        NoMessage{"{\"é", "line 1, column 4: ends inside a text"},
        NoMessage{"[\"a\\\"", "line 1, column 6: ends inside a text"},
        NoMessage{"\n\n  nonsense", "line 3, column 3: is not JSON from here on: \"nonsense\""},
        NoMessage{"{\"a\": 1]", "line 1, column 8: is not JSON from here on: \"]\""},
        NoMessage{R"({"a": 1,})", "line 1, column 9: is not JSON from here on: \"}\""},
        NoMessage{R"({"a": [{}, 1], "b": {}, 2)", "line 1, column 25: is not JSON from here on: \"2\""},
        NoMessage{"what?", "line 1, column 1: is not JSON from here on: \"what?\""},
        NoMessage{R"({"a": "\q"})", "line 1, column 8: is not JSON from here on: \"\\q\"}\""},
        NoMessage{"[]", "line 1, column 1: HEADER: missing, since the text is not an object"},
        NoMessage{"{}", "line 1, column 1: HEADER: required, missing: nothing names the type"},
        NoMessage{R"({"HEADER": "servicelist"})",
                  "line 1, column 12: HEADER: \"servicelist\" names no type; the nearest is \"serviceList\""},
        NoMessage{R"({"HEADER": "pos"})", "line 1, column 12: HEADER: \"pos\" names a type that cannot be received"},
        NoMessage{R"({"HEADER": "siCacheUnavailable"})",
                  "line 1, column 12: HEADER: \"siCacheUnavailable\" names a type that cannot be received"}));

TEST(AnExplanation, TellsWhereATextNestsTooDeep)
{
    std::string objects;
    for (int i = 0; i < 1000; ++i)
        objects += R"({"":)";
    EXPECT_THAT(explained(objects + "{}"), ElementsAre("line 1, column 4001: nests deeper than 1000 levels"));
    EXPECT_THAT(explained(objects + "x"), ElementsAre("line 1, column 4001: is not JSON from here on: \"x\""));
    EXPECT_THAT(explained(std::string(1001, '[')), ElementsAre("line 1, column 1001: nests deeper than 1000 levels"));
}

TEST(AnExplanation, CountsWhatItDoesNotList)
{
    std::string items;
    for (int i = 0; i < 500; ++i)
        items += "{},";
    const Explanation explanation = explain((R"({"HEADER": "targetApps", "targetApps": [)" + items + "1]}").c_str());
    EXPECT_TRUE(explanation.isRead);
    EXPECT_EQ(explanation.findings.size(), 200u);
    EXPECT_GE(explanation.further, 301u);
}

TEST(AnExplanation, CountsWhateverItDoesNotList)
{
    std::string words;
    std::string keys;
    for (int i = 0; i < 1500; ++i) {
        words += R"("no word",)";
        keys += R"("other":1,)";
    }
    const Explanation ofWords =
        explain((R"({"HEADER": "drmSystem", "formatsSupported": [)" + words + "1]} more").c_str());
    EXPECT_TRUE(ofWords.isRead);
    EXPECT_EQ(ofWords.findings.size(), 200u);
    EXPECT_EQ(ofWords.further, 1302u);
    const Explanation ofKeys = explain(("{" + keys + R"("HEADER": "serviceTime", "times": 1})").c_str());
    EXPECT_EQ(ofKeys.findings.size(), 200u);
    EXPECT_EQ(ofKeys.findings.front().message, "required, missing");  // no more than 1000 keys are compared
    EXPECT_EQ(ofKeys.further, 1302u);
}

TEST(AnExplanation, BeginsWithTheFaultHoweverMuchComesBeforeIt)
{
    std::string items;
    for (int i = 0; i < 500; ++i)
        items += R"({"x": 1},)";
    const std::string text = R"({"HEADER": "dsmccFileList", "unknown": [)" + items + "1]}";
    const Explanation explanation = explain(text.c_str());
    ASSERT_FALSE(explanation.isRead);
    EXPECT_EQ(explanation.findings.front().kind, Finding::Fault);
}

TEST(AnExplanation, OfAnotherTypeThanTheHeaderNamesIsByThatType)
{
    EXPECT_THAT(linesOf(explain(R"({"HEADER": "serviceList", "x": []})", Position::kDataType)),
                ElementsAre("line 1, column 32: x: [] is neither a number nor a percentage such as \"50%\""));
    EXPECT_THAT(linesOf(explain("nonsense", Position::kDataType)),
                ElementsAre("line 1, column 1: is not JSON from here on: \"nonsense\""));
    EXPECT_THAT(linesOf(explain(R"({"componentTag": true})", DataTypeServiceComponent)), IsEmpty());
    EXPECT_THAT(linesOf(explain("{}", DataTypeSiCacheUnavailable)),
                ElementsAre("line 1, column 1: is of a type that has no message"));
    EXPECT_THAT(linesOf(explain("{}", static_cast<DataType>(9999))),
                ElementsAre("line 1, column 1: is of a type that has no message"));
}

TEST(TheFirstFault, OfARefusedTextIsOneLine)
{
    CheckedText checked(R"({"components": [{"pos": {"x": []}}], "components2": 1, "HEADER": "components"})");
    EXPECT_EQ(firstFault(checked, DataTypeServiceTime), "line 1, column 1: time: required, missing");
    EXPECT_EQ(firstFault(checked, DataTypeServiceComponentTag), "line 1, column 1: componentTag: required, missing");
}

TEST(TheFirstFault, IsNotOneOfThePartsBeforeIt)
{
    CheckedText checked(R"({"present": {"eventGroup": {"type": 1}, "linkage": {}}})");
    EXPECT_EQ(firstFault(checked, DataTypeEventInfoList), "line 1, column 1: schedule: required, missing");
}

TEST(TheFirstFault, IsNamedAsFarAsItIsKnown)
{
    CheckedText checked("{}");
    EXPECT_EQ(firstFault(checked, DataTypeSuccess), "refused");
    EXPECT_EQ(firstFault(checked, static_cast<DataType>(9999)), "the type has no message");
    EXPECT_EQ(firstFault(checked, DataTypeSiCacheUnavailable), "the type has no message");
}

TEST(TheFirstFault, OfANumberInAPartIsFoundToo)
{
    CheckedText checked(R"({"components": [{"componentTag": "0x"}]})");
    EXPECT_EQ(firstFault(checked, ServiceComponentList::kDataType),
              "line 1, column 34: components[0].componentTag: \"0x\" holds no number");
}

}  // namespace
}  // namespace OrvuTests
