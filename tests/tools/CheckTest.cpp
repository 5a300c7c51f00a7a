#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tools/Tool.h"

namespace OrvuTests {
namespace {

Ended check(const std::string& text, std::vector<std::string> options = {})
{
    ProcessOptions how;
    how.input = text;
    options.insert(options.begin(), {"check", "-"});
    return run(orvu(options), how);
}

void expect(const Ended& ended, int code, const std::string& out)
{
    EXPECT_EQ(ended.code, code);
    EXPECT_EQ(ended.out, out);
    EXPECT_EQ(ended.err, "");
}

TEST(Checking, SaysWhenTheSameTextIsWritten)
{
    const Folder folder;
    const std::string file = folder.write("a.json", "{\n\t\"HEADER\":\t\"serviceTime\",\n\t\"time\":\t\"20:30\"\n}");
    expect(run(orvu({"check", file})), 0,
           "type     serviceTime (24), class ServiceTime\n"
           "schema   serviceTime.schema.json\n"
           "read     yes\n"
           "written  the same text\n");
}

TEST(Checking, SaysWhenOnlyTheLayoutDiffers)
{
    expect(check("{\"time\":\"20\\u003a30\", \"HEADER\":\"serviceTime\"}\n"), 0,
           "type     serviceTime (24), class ServiceTime\n"
           "schema   serviceTime.schema.json\n"
           "read     yes\n"
           "written  the same content, laid out differently\n");
}

const char* const kOddList =
    R"({"HEADER":"serviceList","serviceList":[{"serviceName":"A","serviceId":"5","odd key":[1]},7]})";

const std::string kOddListFound =
    "type     serviceList (9), class ServiceList\n"
    "schema   serviceList.schema.json\n"
    "read     yes, but:\n"
    "  line 1, column 71: serviceList[0].serviceId: a text where a number is expected, ignored\n"
    "  line 1, column 75: serviceList[0][\"odd key\"]: not read\n"
    "  line 1, column 90: serviceList[1]: a number where an object is expected, read as an empty one\n"
    "written  not the same content\n"
    "lost     1\n"
    "  serviceList[0][\"odd key\"]: [1]\n"
    "changed  2\n"
    "  serviceList[0].serviceId: \"5\" becomes 0\n"
    "  serviceList[1]: 7 becomes {\"serviceContextId\":\"\",\"serviceName\":\"\",\"transportStreamId\":0,"
    "\"originalNetworkId\":0,\"serviceId\":0}\n";

TEST(Checking, TellsApartWhatIsLostWhatIsChangedAndWhatAreDefaults)
{
    expect(check(kOddList), 1, kOddListFound + "added    3 defaults; --all lists what was added\n");
}

TEST(Checking, ListsTheDefaultsAndTheTextWhenAsked)
{
    expect(check(kOddList, {"--all"}), 1,
           kOddListFound +
               "added    3\n"
               "  serviceList[0].serviceContextId: \"\"\n"
               "  serviceList[0].transportStreamId: 0\n"
               "  serviceList[0].originalNetworkId: 0\n"
               "\n"
               "{\n"
               "\t\"HEADER\":\t\"serviceList\",\n"
               "\t\"serviceList\":\t[{\n"
               "\t\t\t\"serviceContextId\":\t\"\",\n"
               "\t\t\t\"serviceName\":\t\"A\",\n"
               "\t\t\t\"transportStreamId\":\t0,\n"
               "\t\t\t\"originalNetworkId\":\t0,\n"
               "\t\t\t\"serviceId\":\t0\n"
               "\t\t}, {\n"
               "\t\t\t\"serviceContextId\":\t\"\",\n"
               "\t\t\t\"serviceName\":\t\"\",\n"
               "\t\t\t\"transportStreamId\":\t0,\n"
               "\t\t\t\"originalNetworkId\":\t0,\n"
               "\t\t\t\"serviceId\":\t0\n"
               "\t\t}]\n"
               "}\n");
}

TEST(Checking, DoesNotCountDefaultsAsADifference)
{
    expect(check(R"({"HEADER":"currentService","serviceName":"A"})"), 0,
           "type     currentService (8), class Service\n"
           "schema   currentService.schema.json\n"
           "read     yes\n"
           "written  the same content, and more\n"
           "added    4 defaults; --all lists what was added\n");
}

TEST(Checking, TakesWhatStandsForANullAsADefault)
{
    expect(check(R"({"HEADER":"screenDescription","screen_items":[null]})"), 0,
           "type     screenDescription (89), class ScreenDescription\n"
           "schema   screenDescription.schema.json\n"
           "read     yes\n"
           "written  the same content, and more\n"
           "added    1 default; --all lists what was added\n");
}

TEST(Checking, PutsPlacesThatDifferInNumbersAloneIntoOneLine)
{
    const std::string out =
        check(R"({"HEADER":"serviceList","serviceList":[{"nme":1},{"serviceId":[]},{"nme":2},{"nme":3}]})").out;
    EXPECT_THAT(out, testing::HasSubstr("\n  line 1, column 41: serviceList[0].nme: not read  (3 such places)\n"));
    EXPECT_THAT(out, testing::HasSubstr("\nlost     3\n  serviceList[0].nme: 1  (3 such places)\n"));
}

TEST(Checking, CountsTextAfterTheJsonAsLost)
{
    expect(check("{\"HEADER\":\"success\"} }\n"), 1,
           "type     success (7), class SuccessResponse\n"
           "schema   success.schema.json\n"
           "read     yes, but:\n"
           "  line 1, column 22: text after the JSON is not read\n"
           "written  not the same content\n"
           "lost     1\n"
           "  (after the JSON): \"}\\n\"\n");
}

TEST(Checking, SaysWhenTheTextIsNotJson)
{
    expect(check(""), 2, "read     no: line 1, column 1: is empty\n");
    expect(check("{\"HEADER\": success}"), 2,
           "read     no: line 1, column 12: is not JSON from here on: \"success}\"\n");
}

TEST(Checking, SaysWhenNothingTellsTheType)
{
    expect(check("{}"), 2,
           "type     none\n"
           "read     no: line 1, column 1: HEADER: required, missing: nothing names the type\n");
    expect(check("5"), 2,
           "type     none\n"
           "read     no: line 1, column 1: HEADER: missing, since the text is not an object\n");
    expect(check(R"({"HEADER":8})"), 2,
           "type     none\n"
           "read     no: line 1, column 11: HEADER: 8 is not the name of a type\n");
}

TEST(Checking, SaysWhenTheTypeIsUnknown)
{
    expect(check(R"({"HEADER":"service\u001bList"})"), 2,
           "type     \"service\\u001bList\"\n"
           "read     no: line 1, column 11: HEADER: \"service List\" names no type; the nearest is \"serviceList\"\n");
}

TEST(Checking, ReadsTheTypeUnknownItself)
{
    expect(check("{\n\t\"HEADER\":\t\"unknown\"\n}"), 0,
           "type     unknown (0), class UnknowRequest\n"
           "schema   unknown.schema.json\n"
           "read     yes\n"
           "written  the same text\n");
}

TEST(Checking, SaysWhenNoTextIsReadAsTheType)
{
    for (const std::string type : {"pos", "siCacheUnavailable"}) {
        expect(check(R"({"HEADER":")" + type + R"("})"), 2,
               "type     " + type + "\nread     no: line 1, column 11: HEADER: \"" + type +
                   "\" names a type that cannot be received\n");
    }
}

TEST(Checking, SaysWhyTheTextIsRefused)
{
    expect(check(R"({"HEADER":"qrCodeScreen","displayName":"Celular da Ana","qrCodData":"x"})"), 2,
           "type     qrCodeScreen (27), class QrCodeScreen\n"
           "schema   qrCodeScreen.schema.json\n"
           "read     no: line 1, column 1: qrCodeData: required, missing; there is \"qrCodData\"\n"
           "  line 1, column 57: qrCodData: not read; the nearest is \"qrCodeData\"\n");
}

TEST(Checking, SaysWhenANumberCannotBeConverted)
{
    expect(check(R"({"HEADER":"serviceComponent","componentTag":"0xffffffff"})"), 2,
           "type     serviceComponent (20), class ServiceComponent\n"
           "schema   serviceComponent.schema.json\n"
           "read     no: line 1, column 45: componentTag: \"0xffffffff\" is a number that does not fit 32 bits\n");
    expect(check(R"({"HEADER":"serviceComponent","componentTag":"0x"})"), 2,
           "type     serviceComponent (20), class ServiceComponent\n"
           "schema   serviceComponent.schema.json\n"
           "read     no: line 1, column 45: componentTag: \"0x\" holds no number\n");
}

TEST(Checking, KeepsTheLinesThatAMessagePrintsOutOfItsOutput)
{
    expect(check(R"({"HEADER":"serviceCompTagAction","componentTag":1,"localAssociatedAccess":false,)"
                 R"("pos":{"x":0,"y":0,"w":640,"h":"50%"}})"),
           1,
           "type     serviceCompTagAction (23), class ServiceCompTagAction\n"
           "schema   serviceCompTagAction.schema.json\n"
           "read     yes\n"
           "written  not the same content\n"
           "changed  1\n"
           "  pos.h: \"50%\" becomes 360\n");
}

TEST(Checking, SaysWhenTheFileCannotBeRead)
{
    const Folder folder;
    const Ended ended = run(orvu({"check", folder.file("none.json")}));
    EXPECT_EQ(ended.code, 66);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: " + folder.file("none.json") + ": No such file or directory\n");
    EXPECT_EQ(run(orvu({"check", folder.path()})).err, "orvu: " + folder.path() + ": Is a directory\n");
}

}  // namespace
}  // namespace OrvuTests
