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

TEST(BinaryDataReading, KeepsWhatItReadBeforeTheKeyThatIsMissing)
{
    Table table("\x0a\x0b\x0c");
    const unsigned char* const block = table.buffer;
    EXPECT_FALSE(table.deserialize(R"({"bufferSize": 9, "buffer": "AQID", "timestamp": "t"})"));
    EXPECT_EQ(table.bufferSize, 3u);
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "new", "buffer": "AQID", "timestamp": "t"})"));
    EXPECT_EQ(table.serviceContextId, "new");
    EXPECT_FALSE(table.deserialize(R"({"serviceContextId": "new", "bufferSize": 9, "timestamp": "t"})"));
    EXPECT_EQ(table.bufferSize, 9u);
    EXPECT_EQ(table.timestamp, "");
    EXPECT_EQ(table.buffer, block);
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
