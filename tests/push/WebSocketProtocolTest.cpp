#include <cstring>
#include <gmock/gmock.h>

#include "transport/WebSocketProtocol.h"

using namespace Orvu;
using testing::Eq;
using testing::Optional;

namespace {

const std::string kKey = "dGhlIHNhbXBsZSBub25jZQ==";
const std::string kAnswer =
    "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
    "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n";

/// A text that comes in reads of at most `piece` bytes.
class Pieces : public ByteSource {
public:
    Pieces(std::string text, std::size_t piece) : text_(std::move(text)), piece_(piece) {}

    ssize_t read(char* to, std::size_t size) override
    {
        const std::size_t count = std::min({size, piece_, text_.size() - at_});
        std::memcpy(to, text_.data() + at_, count);
        at_ += count;
        return static_cast<ssize_t>(count);
    }
    std::size_t left() const { return text_.size() - at_; }

private:
    std::string text_;
    std::size_t piece_;
    std::size_t at_ = 0;
};

std::string requestIn(const std::string& text, std::size_t piece)
{
    Pieces source(text, piece);
    return readOpeningRequest(source);
}

TEST(AnOpeningRequest, EndsWithItsBlankLineWhateverItsPieces)
{
    const std::string request = "GET / HTTP/1.1\r\nHost: x\r\n\r\n";
    for (std::size_t piece = 1; piece <= request.size(); ++piece)
        EXPECT_EQ(requestIn(request, piece), request);
    Pieces source(request + "more", 1);
    EXPECT_EQ(readOpeningRequest(source), request);
    EXPECT_EQ(source.left(), 4u);
}

TEST(AnOpeningRequest, EndsAfterTwoKilobytes)
{
    const std::string request(3000, 'x');
    for (const std::size_t piece : {std::size_t{1}, std::size_t{1000}, std::size_t{3000}})
        EXPECT_EQ(requestIn(request, piece), std::string(2048, 'x'));
}

TEST(AnOpeningRequest, EndsWithTheStream)
{
    EXPECT_EQ(requestIn("", 1), "");
    EXPECT_EQ(requestIn("GET / HTTP/1.1\r\n", 1), "GET / HTTP/1.1\r\n");
}

TEST(AnOpeningRequest, MayHoldNulsBeforeItsEnd)
{
    const std::string request("a\0b\r\n\r\n", 7);
    EXPECT_EQ(requestIn(request, 1), request);
}

TEST(AnAnswer, CarriesTheAcceptValueOfTheKey)
{
    EXPECT_EQ(getHSaccept(kKey), "s3pPLMBiTxaQ9kYGzzhZRbK+xOo=");
    EXPECT_EQ(getHSaccept("x3JJHMbDL1EzLkh9GBhXDw=="), "HSmrc0sMlYUkAGmm5OPpG2HaGWk=");
    EXPECT_THAT(getHSresponse("Sec-WebSocket-Key: " + kKey + "\r\n\r\n"), Optional(kAnswer));
    EXPECT_EQ(kAnswer.size(), 129u);
}

TEST(AnAnswer, TakesTheSecondWordOfTheFirstLineThatNamesTheKey)
{
    const std::string other(24, 'o');
    EXPECT_THAT(
        getHSresponse("GET / HTTP/1.1\r\nSec-WebSocket-Key: " + kKey + "\r\nSec-WebSocket-Key: " + other + "\r\n\r\n"),
        Optional(kAnswer));
    EXPECT_THAT(getHSresponse("Sec-WebSocket-Key:    " + kKey + "   \r\n\r\n"), Optional(kAnswer));
    EXPECT_THAT(getHSresponse("  Sec-WebSocket-Key: " + kKey + " more words\r\n\r\n"), Optional(kAnswer));
    EXPECT_THAT(getHSresponse("X-Sec-WebSocket-Keys: " + kKey + "\r\n\r\n"), Optional(kAnswer));
    EXPECT_THAT(getHSresponse("Sec-WebSocket-Key: " + kKey), Optional(kAnswer));
    EXPECT_THAT(getHSresponse("a\r\nb\r\nSec-WebSocket-Key: " + kKey + "\r\nc"), Optional(kAnswer));
}

class ARequestWithoutAKey : public testing::TestWithParam<std::string> {};

TEST_P(ARequestWithoutAKey, HasNoAnswer)
{
    EXPECT_EQ(getHSresponse(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Such, ARequestWithoutAKey,
                         testing::Values("", "\r\n\r\n", "GET / HTTP/1.1\r\n\r\n", "Sec-WebSocket-Key",
                                         "Sec-WebSocket-Key:", "Sec-WebSocket-Key: ",
                                         "Sec-WebSocket-Key:   \r\n" + kKey + "\r\n", "Sec-WebSocket-Key:" + kKey,
                                         "Sec-WebSocket-Key:\t" + kKey, "sec-websocket-key: " + kKey,
                                         "Sec-WebSocket-Key: " + kKey.substr(1), "Sec-WebSocket-Key: " + kKey + "=",
                                         "Sec-WebSocket-Key: " + kKey + "\t", "Sec-WebSocket-Key: " + kKey + "\n",
                                         " Sec-WebSocket-Key:\r\n" + kKey,
                                         "GET /Sec-WebSocket-Key HTTP/1.1\r\nSec-WebSocket-Key: " + kKey + "\r\n\r\n",
                                         "Sec-WebSocket-Ke"
                                         "\r\ny: " +
                                             kKey,
                                         std::string(2048, ' '), std::string(2048, '\0')));

std::string headerBytes(int opcode, unsigned size)
{
    const FrameHeader header(opcode, size);
    return std::string(reinterpret_cast<const char*>(header.bytes), header.size);
}

TEST(AFrameHeader, HasTheShortestLengthThatWillDo)
{
    EXPECT_EQ(headerBytes(WS_FR_OP_TXT, 0), std::string("\x81\x00", 2));
    EXPECT_EQ(headerBytes(WS_FR_OP_BIN, 125), "\x82\x7d");
    EXPECT_EQ(headerBytes(WS_FR_OP_BIN, 126), std::string("\x82\x7e\x00\x7e", 4));
    EXPECT_EQ(headerBytes(WS_FR_OP_BIN, 65535), "\x82\x7e\xff\xff");
    EXPECT_EQ(headerBytes(WS_FR_OP_BIN, 65536), std::string("\x82\x7f\x00\x00\x00\x00\x00\x01\x00\x00", 10));
    EXPECT_EQ(headerBytes(WS_FR_OP_BIN, 0xfedcba98), std::string("\x82\x7f\x00\x00\x00\x00\xfe\xdc\xba\x98", 10));
}

ReceivedFrame decoded(const std::string& bytes)
{
    return decodeFrame(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

TEST(AReceivedFrame, IsUnmaskedWithEachByteOfTheKeyInTurn)
{
    const ReceivedFrame frame = decoded("\x81\x85\x37\xfa\x21\x3d\x7f\x9f\x4d\x51\x58");
    EXPECT_EQ(frame.opcode, WS_FR_OP_TXT);
    EXPECT_THAT(frame.payload, Optional(Eq("Hello")));
}

TEST(AReceivedFrame, HasItsKeyBehindItsLength)
{
    const std::string keyAndText = "\x01\x02\x03\x04idop";
    EXPECT_THAT(decoded("\x81\x84" + keyAndText).payload, Optional(Eq("hflt")));
    EXPECT_THAT(decoded(std::string("\x81\xfe\x00\x04", 4) + keyAndText).payload, Optional(Eq("hflt")));
    EXPECT_THAT(decoded(std::string("\x81\xff\0\0\0\0\0\0\0\x04", 10) + keyAndText).payload, Optional(Eq("hflt")));
    EXPECT_THAT(decoded("\x81\x7d" + keyAndText).payload, Optional(Eq("hflt")));
}

TEST(AReceivedFrame, EndsWhereTheBytesEnd)
{
    EXPECT_THAT(decoded(std::string("\x81\x80\0\0\0\0hello", 11)).payload, Optional(Eq("hello")));
    EXPECT_THAT(decoded(std::string("\x81\xfd\0\0\0\0", 6)).payload, Optional(Eq("")));
}

TEST(AReceivedFrame, HasNoPayloadWhenItIsTooShort)
{
    const std::string frames[] = {std::string("\x81\x85\1\2\3\4", 6), std::string("\x81\xfe\0\1\1\2\3\4", 8),
                                  std::string("\x81\xff\0\0\0\0\0\0\0\1\1\2\3\4", 14)};
    for (const std::string& frame : frames) {
        for (std::size_t size = 1; size < frame.size(); ++size) {
            const ReceivedFrame received = decoded(frame.substr(0, size));
            EXPECT_EQ(received.opcode, WS_FR_OP_TXT);
            EXPECT_EQ(received.payload, std::nullopt) << size << " of " << frame.size();
        }
        EXPECT_THAT(decoded(frame).payload, Optional(Eq("")));
    }
}

TEST(AReceivedFrame, HasAPayloadOnlyAsAFinalText)
{
    for (int first = 0; first < 256; ++first) {
        const ReceivedFrame frame = decoded(static_cast<char>(first) + std::string("\x85\1\2\3\4hello"));
        EXPECT_EQ(frame.opcode, first & 0x0f);
        EXPECT_EQ(frame.payload.has_value(), first == 0x81) << first;
    }
}

}  // namespace
