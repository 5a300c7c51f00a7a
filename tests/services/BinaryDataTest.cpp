#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "orvu/BinaryData.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

unsigned char* blockWith(const std::string& bytes)
{
    auto* const block = static_cast<unsigned char*>(std::malloc(bytes.size()));
    std::memcpy(block, bytes.data(), bytes.size());
    return block;
}

/// A PMT of those bytes.
struct Table : BinaryData {
    explicit Table(const std::string& bytes) : BinaryData(DataTypeBinaryPMT)
    {
        buffer = blockWith(bytes);
        bufferSize = static_cast<unsigned>(bytes.size());
    }
};

std::string memberOf(BinaryData& data, const char* key)
{
    const Tree tree = treeOf(textOf(data));
    return taken(cJSON_PrintUnformatted(cJSON_GetObjectItemCaseSensitive(tree.get(), key)));
}

std::string base64Of(BinaryData& data)
{
    return memberOf(data, "buffer");
}

TEST(BinaryDataOf, ThreeBytesIsWrittenAsBase64)
{
    Table table("\x01\x02\x03");
    table.serviceContextId = "1.2.01";
    table.timestamp = "12:00";
    table.serializeHeader(false);
    EXPECT_EQ(textOf(table),
              "{\n\t\"serviceContextId\":\t\"1.2.01\",\n\t\"bufferSize\":\t3,\n\t\"buffer\":\t\"AQID\",\n"
              "\t\"timestamp\":\t\"12:00\"\n}");
}

TEST(BinaryDataOf, AnApplicationIsWrittenUpToItsSize)
{
    Table table(std::string("\0\xff\x10\x20", 4));
    EXPECT_EQ(base64Of(table), R"("AP8QIA==")");
    table.bufferSize = 2;
    EXPECT_EQ(base64Of(table), R"("AP8=")");
    table.bufferSize = 0;
    EXPECT_EQ(base64Of(table), R"("")");
}

TEST(BinaryDataOf, NoBlockIsWrittenAsAnEmptyText)
{
    BinaryData data(DataTypeBinaryEPG);
    data.bufferSize = 4294967295u;
    EXPECT_EQ(base64Of(data), R"("")");
    EXPECT_EQ(memberOf(data, "bufferSize"), "4294967295");
}

/// Data as new, read from a text.
struct Reading {
    BinaryData data{DataTypeBinaryPMT};
    bool success;

    explicit Reading(const std::string& text) : success(data.deserialize(text.c_str())) {}
};

TEST(BinaryDataReading, TakesAllItsKeys)
{
    const Reading read(
        R"({"HEADER": "x", "SERVICECONTEXTID": "1.2.01", "BufferSize": 3, "BUFFER": "AQID",
            "TimeStamp": "12:00"} more)");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.data.serviceContextId, "1.2.01");
    EXPECT_EQ(read.data.bufferSize, 3u);
    ASSERT_NE(read.data.buffer, nullptr);
    EXPECT_EQ(std::memcmp(read.data.buffer, "\x01\x02\x03\0\0\0\0\0\0\0\0\0", 12), 0);  // four times the size, zeroed
    EXPECT_EQ(read.data.timestamp, "12:00");
}

TEST(BinaryDataReading, TakesTheFirstOfEqualKeysInAnyOrder)
{
    const Reading read(R"({"timestamp": "t", "buffer": "AQID", "buffer": "AAAA", "bufferSize": 3, "bufferSize": 1,
                           "serviceContextId": "a", "serviceContextId": "b", "timestamp": "u"})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.data.serviceContextId + read.data.timestamp, "at");
    EXPECT_EQ(read.data.buffer[0], 1);
}

TEST(BinaryDataReading, MayDoWithoutATimestamp)
{
    for (const char* more : {"", R"(, "timestamp": 5)", R"(, "timestamp": null)"}) {
        BinaryData data(DataTypeBinaryPMT);
        data.timestamp = "held";
        EXPECT_TRUE(data.deserialize(
            (R"({"serviceContextId": "", "bufferSize": 3, "buffer": "AQID")" + std::string(more) + "}").c_str()));
        EXPECT_EQ(data.timestamp, "held");
    }
}

/// What is left of held data after a read that fails.
struct Failing {
    Table data{"\x0a\x0b\x0c"};

    explicit Failing(const std::string& text)
    {
        data.serviceContextId = "held";
        data.timestamp = "held";
        const unsigned char* const block = data.buffer;
        EXPECT_FALSE(data.deserialize(text.c_str())) << text;
        EXPECT_EQ(data.buffer, block) << text;
        EXPECT_EQ(data.timestamp, "held") << text;
    }
};

TEST(BinaryDataReading, FailsWithoutItsLocator)
{
    for (const char* members : {"", R"("serviceContextId": 5, )", R"("serviceContextId": null, )",
                                R"("serviceContextId": [], "serviceContextId": "a", )"}) {
        const Failing failed("{" + std::string(members) + R"("bufferSize": 9, "buffer": "AQID", "timestamp": "t"})");
        EXPECT_EQ(failed.data.serviceContextId, "held");
        EXPECT_EQ(failed.data.bufferSize, 3u);
    }
}

TEST(BinaryDataReading, FailsWithoutItsSizeAndKeepsTheNewLocator)
{
    for (const char* members : {"", R"("bufferSize": "9", )", R"("bufferSize": null, )", R"("bufferSize": {}, )"}) {
        const Failing failed(R"({"serviceContextId": "new", )" + std::string(members) +
                             R"("buffer": "AQID", "timestamp": "t"})");
        EXPECT_EQ(failed.data.serviceContextId, "new");
        EXPECT_EQ(failed.data.bufferSize, 3u);
    }
}

TEST(BinaryDataReading, FailsWithoutItsBytesAndKeepsTheNewLocatorAndSize)
{
    for (const char* members : {"", R"("buffer": 5, )", R"("buffer": null, )", R"("buffer": ["AQID"], )"}) {
        const Failing failed(R"({"serviceContextId": "new", "bufferSize": 9, )" + std::string(members) +
                             R"("timestamp": "t"})");
        EXPECT_EQ(failed.data.serviceContextId, "new");
        EXPECT_EQ(failed.data.bufferSize, 9u);
    }
}

TEST(BinaryDataReading, FailsOnWhatIsNoJsonOrNoObject)
{
    for (const char* text : {"", "{", "no JSON", "{}", "[]", "5", "null", R"([{"serviceContextId": ""}])"}) {
        const Failing failed(text);
        EXPECT_EQ(failed.data.serviceContextId, "held") << text;
        EXPECT_EQ(failed.data.bufferSize, 3u) << text;
    }
    Table table("a");
    EXPECT_FALSE(table.deserialize(nullptr));
    unsigned char error = 77;
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "", "bufferSize": 3, "buffer": "AQID"})", error));
    EXPECT_EQ(error, 77);
    EXPECT_EQ(table.bufferSize, 1u);
}

TEST(BinaryDataReading, IsTheSameFromAParsedItem)
{
    BinaryData data(DataTypeBinaryPMT);
    EXPECT_TRUE(data.deserializeObject(
        treeOf(R"({"serviceContextId": "", "bufferSize": 2.9999999999999996, "buffer": "AQID"})").get()));
    EXPECT_EQ(data.bufferSize, 3u);
}

TEST(BinaryDataReading, IsTheInverseOfWriting)
{
    std::string bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += static_cast<char>(i * 7);
    Table table(bytes);
    BinaryData read(DataTypeBinaryPMT);
    EXPECT_TRUE(read.deserialize(textOf(table).c_str()));
    ASSERT_EQ(read.bufferSize, 1000u);
    EXPECT_EQ(std::memcmp(read.buffer, bytes.data(), bytes.size()), 0);
    EXPECT_EQ(textOf(read), textOf(table));
}

}  // namespace
}  // namespace OrvuTests
