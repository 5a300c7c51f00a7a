#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

#include "orvu/BinaryData.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::unique_ptr<BinaryData> partOf(const std::string& bytes)
{
    auto part = std::make_unique<BinaryData>(DataTypeBinaryDataMultipart);
    part->bufferSize = static_cast<unsigned>(bytes.size());
    part->buffer = static_cast<unsigned char*>(std::malloc(bytes.size() + 1));
    std::memcpy(part->buffer, bytes.data(), bytes.size());
    return part;
}

TEST(ABinaryDataMultipart, LeavesPartsWithoutBytesToTheCaller)
{
    BinaryDataMultipart message;
    const std::unique_ptr<BinaryData> empty = partOf("");
    BinaryData withoutBlock(DataTypeBinaryDataMultipart);
    withoutBlock.bufferSize = 5;
    message.addBinaryData(nullptr);
    message.addBinaryData(empty.get());
    message.addBinaryData(&withoutBlock);
    EXPECT_TRUE(message.parts.empty());
}

TEST(ABinaryDataMultipart, ReadsPartsOfItsOwnType)
{
    BinaryDataMultipart message;
    ASSERT_TRUE(message.deserialize(R"({"binarydatamultipart": [
        {"serviceContextId": "1.2.01", "bufferSize": 3, "buffer": "AQID", "timestamp": "t"}]})"));
    ASSERT_EQ(message.parts.size(), 1u);
    const BinaryData& part = *message.parts[0];
    EXPECT_EQ(part.getDataType(), 88u);
    EXPECT_EQ(part.serviceContextId, "1.2.01");
    EXPECT_EQ(std::memcmp(part.buffer, "\x01\x02\x03", 3), 0);
    EXPECT_EQ(part.timestamp, "t");
}

TEST(ABinaryDataMultipart, KeepsNoPartWithoutBytes)
{
    BinaryDataMultipart message;
    ASSERT_TRUE(message.deserialize(R"({"binaryDataMultipart": [
        {"serviceContextId": "", "bufferSize": 0, "buffer": ""},
        {"serviceContextId": "kept", "bufferSize": 3, "buffer": "AQID"}]})"));
    ASSERT_EQ(message.parts.size(), 1u);
    EXPECT_EQ(message.parts[0]->serviceContextId, "kept");
}

TEST(ABinaryDataMultipart, NeedsItsParts)
{
    BinaryDataMultipart message;
    EXPECT_FALSE(message.deserialize(R"({"serviceContextId": "1.2.01", "timestamp": "t"})"));
    EXPECT_EQ(message.serviceContextId, "1.2.01");
    EXPECT_EQ(message.timestamp, "");
}

}  // namespace
}  // namespace OrvuTests
