#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/ServiceComponents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Pids = std::vector<unsigned short>;

TEST(AStreamPidsRequest, WritesAZeroThatAnApplicationPutThere)
{
    StreamPidsRequest request;
    request.pids = {0};
    EXPECT_EQ(textOf(request).find("[0]"), textOf(request).size() - 5);
}

TEST(AStreamPidsRequest, CannotAskForPidZero)
{
    StreamPidsRequest request;
    request.addPid(0);
    EXPECT_TRUE(request.pids.empty());
    request.addPid(1);
    request.addPid(0);
    EXPECT_EQ(request.pids, (Pids{1}));
}

/// A request that holds PID 7 before it reads.
struct Reading {
    StreamPidsRequest request;
    bool success;
    unsigned char error = 77;

    explicit Reading(const char* text)
    {
        request.handle = "held";
        request.addPid(7);
        StreamPidsRequest other;
        other.addPid(7);
        success = request.deserializeObject(text, error);
        EXPECT_EQ(other.deserialize(text), success);
        EXPECT_EQ(other.pids, request.pids);
    }
};

TEST(AStreamPidsRequest, ReadsItsPidsAfterThoseItHolds)
{
    const Reading read(R"({"HEADER": "streamPidsRequest", "HANDLE": "h", "clientaddr": "c", "Pids": [8191, 8191, 1]})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.error, 77);
    EXPECT_EQ(read.request.handle + read.request.clientAddr, "hc");
    EXPECT_EQ(read.request.pids, (Pids{7, 8191, 8191, 1}));
}

TEST(AStreamPidsRequest, CutsPidsTo16BitsAndSkipsWhatIsZeroThen)
{
    const Reading read(R"({"pids": [0, 256, 65537, "x", 65536, null, [5], {"a": 5}, -1, 2.9, false]})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.request.pids, (Pids{7, 256, 1, 65535, 2}));
}

TEST(AStreamPidsRequest, CutsSaturatedPids)
{
    const Reading read(R"({"pids": [2147483648, 1e400, -2147483649, -1e400]})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.request.pids, (Pids{7, 65535, 65535}));  // INT_MAX twice; the low 16 bits of INT_MIN are 0
}

TEST(AStreamPidsRequest, TakesABooleanForNoPid)
{
    EXPECT_EQ(Reading(R"({"pids": [true]})").request.pids, (Pids{7}));
}

TEST(AStreamPidsRequest, FailsWith105WithoutPids)
{
    for (const char* text : {R"({"handle": "h"})", R"({"HEADER": "streamPidsRequest", "handle": "h", "pid": []})"}) {
        const Reading read(text);
        EXPECT_FALSE(read.success) << text;
        EXPECT_EQ(read.error, 105) << text;
        EXPECT_EQ(read.request.handle, "h") << text;  // what was read before stays
        EXPECT_EQ(read.request.pids, (Pids{7})) << text;
    }
    for (const char* text : {"{}", "[]", "5", "null", R"("pids")", R"([{"pids": []}])"})
        EXPECT_EQ(Reading(text).error, 105) << text;
}

TEST(AStreamPidsRequest, FailsWith101WherePidsAreNoArray)
{
    for (const char* value : {"5", "null", "true", R"("[1]")", "{}", R"({"a": 1})"}) {
        const Reading read((R"({"handle": "h", "pids": )" + std::string(value) + "}").c_str());
        EXPECT_FALSE(read.success) << value;
        EXPECT_EQ(read.error, 101) << value;
        EXPECT_EQ(read.request.handle, "h") << value;
    }
    EXPECT_EQ(Reading(R"({"pids": 5, "pids": [1]})").error, 101);
}

TEST(AStreamPidsRequest, FailsWith101WhereTheTextIsNotJson)
{
    for (const char* text : {"", "{", "no JSON", R"({"handle": "h", "pids": [1])"}) {
        const Reading read(text);
        EXPECT_FALSE(read.success) << text;
        EXPECT_EQ(read.error, 101) << text;
        EXPECT_EQ(read.request.handle, "held") << text;
    }
}

TEST(AStreamPidsRequest, GivesNoReasonForANullText)
{
    const Reading read(nullptr);
    EXPECT_FALSE(read.success);
    EXPECT_EQ(read.error, 77);
    StreamPidsRequest request;
    unsigned char error = 77;
    EXPECT_FALSE(request.deserializeObject(nullptr, error));
    EXPECT_FALSE(request.deserializeObject(NULL, error));  // NOLINT(modernize-use-nullptr): as C programmers write
    EXPECT_EQ(error, 77);
}

TEST(AStreamPidsRequest, IsReadFromAParsedItemToo)
{
    StreamPidsRequest request;
    EXPECT_TRUE(request.deserializeObject(treeOf(R"({"pids": [1, 2.9999999999999996]})").get()));
    EXPECT_EQ(request.pids, (Pids{1, 3}));
    EXPECT_FALSE(request.deserializeObject(treeOf("{}").get()));
}

TEST(AStreamPidsRequest, LeavesTheErrorReportingReaderToItsBase)
{
    StreamPidsRequest request;
    unsigned char error = 77;
    EXPECT_FALSE(request.deserialize(R"({"pids": [1]})", error));
    EXPECT_FALSE(request.deserializeObject(treeOf(R"({"pids": [1]})").get(), error));
    EXPECT_EQ(error, 77);
    EXPECT_TRUE(request.pids.empty());
}

TEST(AStreamPidsResponse, WritesNoErrorWithSuccess)
{
    StreamPidsResponse response;
    response.handle = "h";
    response.streamUrl = "http://10.0.0.1/s";
    response.mimeType = "video/mp4";
    response.error = 5;
    response.success = true;
    response.serializeHeader(false);
    EXPECT_EQ(textOf(response),
              "{\n\t\"handle\":\t\"h\",\n\t\"streamUrl\":\t\"http://10.0.0.1/s\",\n\t\"mimeType\":\t\"video/mp4\"\n}");
}

TEST(AStreamPidsResponse, NeverReadsItsMimeTypeBack)
{
    for (const char* value : {R"("video/mp4")", "5", "true", "null"}) {
        StreamPidsResponse response;
        EXPECT_TRUE(response.deserialize((R"({"mimeType": )" + std::string(value) + R"(, "error": 3})").c_str()));
        EXPECT_EQ(response.mimeType, "video/mp2t") << value;
        EXPECT_EQ(response.error, 3) << value;
    }
}

TEST(AStreamPidsResponse, NeverReadsItsSuccess)
{
    StreamPidsResponse response;
    EXPECT_TRUE(response.deserialize(R"({"success": true, "error": 3})"));
    EXPECT_FALSE(response.success);
    response.success = true;
    EXPECT_TRUE(response.deserialize(R"({"error": 4})"));
    EXPECT_TRUE(response.success);
    EXPECT_EQ(response.error, 4);
}

}  // namespace
}  // namespace OrvuTests
