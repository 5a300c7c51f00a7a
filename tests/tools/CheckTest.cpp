#include <gtest/gtest.h>
#include <string>

#include "tools/Tool.h"

namespace OrvuTests {
namespace {

Ended check(const std::string& text)
{
    ProcessOptions how;
    how.input = text;
    return run(orvu({"check", "-"}), how);
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

TEST(Checking, ListsTheDifferences)
{
    expect(check(R"({"HEADER":"serviceList","serviceList":[{"serviceName":"A","serviceId":"5","odd key":[1]},7]})"), 1,
           "type     serviceList (9), class ServiceList\n"
           "schema   serviceList.schema.json\n"
           "read     yes\n"
           "written  with 6 differences\n"
           "  serviceList[0].serviceId: \"5\" becomes 0\n"
           "  serviceList[0][\"odd key\"]: [1] is not written\n"
           "  serviceList[0].serviceContextId: \"\" is added\n"
           "  serviceList[0].transportStreamId: 0 is added\n"
           "  serviceList[0].originalNetworkId: 0 is added\n"
           "  serviceList[1]: 7 becomes {\"serviceContextId\":\"\",\"serviceName\":\"\",\"transportStreamId\":0,"
           "\"originalNetworkId\":0,\"serviceId\":0}\n"
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

TEST(Checking, SaysWhatOfAListIsLost)
{
    expect(check(R"({"HEADER":"screenDescription","screen_items":[null]})"), 1,
           "type     screenDescription (89), class ScreenDescription\n"
           "schema   screenDescription.schema.json\n"
           "read     yes\n"
           "written  with 1 difference\n"
           "  screen_items[0]: null becomes "
           "{\"type\":\"\",\"visible\":false,\"enabled\":false,\"focused\":false,\"contentList\":[]}\n"
           "\n"
           "{\n"
           "\t\"HEADER\":\t\"screenDescription\",\n"
           "\t\"screen_items\":\t[{\n"
           "\t\t\t\"type\":\t\"\",\n"
           "\t\t\t\"visible\":\tfalse,\n"
           "\t\t\t\"enabled\":\tfalse,\n"
           "\t\t\t\"focused\":\tfalse,\n"
           "\t\t\t\"contentList\":\t[]\n"
           "\t\t}]\n"
           "}\n");
}

TEST(Checking, CountsTextBehindTheJsonAsADifference)
{
    expect(check("{\"HEADER\":\"success\"} }\n"), 1,
           "type     success (7), class SuccessResponse\n"
           "schema   success.schema.json\n"
           "read     yes\n"
           "written  with 1 difference\n"
           "  (behind the JSON): \"}\\n\" is not read\n"
           "\n"
           "{\n\t\"HEADER\":\t\"success\"\n}\n");
}

TEST(Checking, SaysWhenTheTextIsNoJson)
{
    expect(check(""), 2, "read     no: the text is empty\n");
    expect(check("{\"HEADER\": success}"), 2, "read     no: the text is not JSON from line 1, column 12 on\n");
}

TEST(Checking, SaysWhenNothingTellsTheType)
{
    const std::string expected =
        "type     none\n"
        "read     no: no text under \"HEADER\", so nothing tells the type\n";
    expect(check("{}"), 2, expected);
    expect(check("5"), 2, expected);
    expect(check(R"({"HEADER":8})"), 2, expected);
}

TEST(Checking, SaysWhenTheTypeIsUnknown)
{
    expect(check(R"({"HEADER":"service\u001bList"})"), 2,
           "type     \"service\\u001bList\"\n"
           "read     no: the type is unknown\n");
}

TEST(Checking, ReadsTheTypeUnknownItself)
{
    expect(check("{\n\t\"HEADER\":\t\"unknown\"\n}"), 0,
           "type     unknown (0), class UnknowRequest\n"
           "schema   unknown.schema.json\n"
           "read     yes\n"
           "written  the same text\n");
}

TEST(Checking, SaysWhenNoHeaderIsReadAsTheType)
{
    expect(check(R"({"HEADER":"pos"})"), 2,
           "type     pos\n"
           "read     no: no header is read as this type\n");
}

TEST(Checking, SaysWhenNoMessageIsMadeFromTheType)
{
    expect(check(R"({"HEADER":"siCacheUnavailable"})"), 2,
           "type     siCacheUnavailable\n"
           "read     no: no message is made from this type\n");
}

TEST(Checking, SaysWhenTheMessageRefusesTheText)
{
    expect(check(R"({"HEADER":"qrCodeScreen","displayName":"Celular da Ana"})"), 2,
           "type     qrCodeScreen (27), class QrCodeScreen\n"
           "schema   qrCodeScreen.schema.json\n"
           "read     no: QrCodeScreen refuses the text\n");
}

TEST(Checking, SaysWhenANumberCannotBeConverted)
{
    expect(check(R"({"HEADER":"serviceComponent","componentTag":"0xffffffff"})"), 2,
           "type     serviceComponent (20), class ServiceComponent\n"
           "schema   serviceComponent.schema.json\n"
           "read     no: std::out_of_range from stoi\n");
    expect(check(R"({"HEADER":"serviceComponent","componentTag":"0x"})"), 2,
           "type     serviceComponent (20), class ServiceComponent\n"
           "schema   serviceComponent.schema.json\n"
           "read     no: std::invalid_argument from stoi\n");
}

TEST(Checking, KeepsTheLinesThatAMessagePrintsOutOfItsOutput)
{
    expect(check(R"({"HEADER":"serviceCompTagAction","componentTag":1,"localAssociatedAccess":false,)"
                 R"("pos":{"x":0,"y":0,"w":640,"h":"50%"}})"),
           1,
           "type     serviceCompTagAction (23), class ServiceCompTagAction\n"
           "schema   serviceCompTagAction.schema.json\n"
           "read     yes\n"
           "written  with 1 difference\n"
           "  pos.h: \"50%\" becomes 360\n"
           "\n"
           "{\n"
           "\t\"HEADER\":\t\"serviceCompTagAction\",\n"
           "\t\"componentTag\":\t1,\n"
           "\t\"localAssociatedAccess\":\tfalse,\n"
           "\t\"pos\":\t{\n"
           "\t\t\"x\":\t0,\n"
           "\t\t\"y\":\t0,\n"
           "\t\t\"w\":\t640,\n"
           "\t\t\"h\":\t360\n"
           "\t}\n"
           "}\n");
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
