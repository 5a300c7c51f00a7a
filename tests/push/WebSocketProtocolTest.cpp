#include <gmock/gmock.h>
#include <ostream>

#include "transport/WebSocketProtocol.h"

using namespace Orvu;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

namespace {

const std::string kKey = "dGhlIHNhbXBsZSBub25jZQ==";
const std::string kAnswer =
    "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
    "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n";

const unsigned char* bytesOf(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

/// An opening request that came in pieces of `piece` bytes, and how many of the bytes are part of it.
struct Requested {
    Requested(const std::string& bytes, std::size_t piece)
    {
        for (std::size_t at = 0; at < bytes.size() && !request.isWhole(); at += piece)
            size += request.take(bytesOf(bytes) + at, std::min(piece, bytes.size() - at));
    }

    OpeningRequest request;
    std::size_t size = 0;
};

const std::string kRequest = "GET / HTTP/1.1\r\nHost: x\r\n\r\n";

TEST(AnOpeningRequest, EndsWithItsBlankLineWhateverItsPieces)
{
    for (std::size_t piece = 1; piece <= kRequest.size() + 4; ++piece) {
        const Requested came(kRequest + "more", piece);
        EXPECT_TRUE(came.request.isWhole());
        EXPECT_EQ(came.request.text(), kRequest);
        EXPECT_EQ(came.size, kRequest.size());
    }
}

TEST(AnOpeningRequest, IsNotWholeBeforeItsBlankLine)
{
    for (std::size_t size = 0; size < kRequest.size(); ++size) {
        const Requested came(kRequest.substr(0, size), 1);
        EXPECT_FALSE(came.request.isWhole());
        EXPECT_FALSE(came.request.canBeJudged());
        EXPECT_EQ(came.request.text(), kRequest.substr(0, size));
    }
}

TEST(AnOpeningRequest, MayHaveOtherBytesOfABlankLineBeforeIt)
{
    const std::string texts[] = {"\r\n\r\n", "\n\r\n\r\n", "\r\r\n\r\n", "\r\n\r\r\n\r\n", "\r\n\n\r\n\r\n"};
    for (const std::string& text : texts) {
        EXPECT_EQ(Requested(text + "\r\n\r\n", 1).size, text.size());
        EXPECT_EQ(Requested(text + "\r\n\r\n", 100).size, text.size());
    }
}

TEST(AnOpeningRequest, IsJudgedByItsFirstEightKilobytesAndStillEndsWithItsBlankLine)
{
    const std::string request = std::string(10000, 'x') + "\r\n\r\n";
    for (const std::size_t piece : {1, 1000, 8192, 20000}) {
        Requested came(request.substr(0, 8191), piece);
        EXPECT_FALSE(came.request.canBeJudged());
        came.request.take(bytesOf(request), 1);
        EXPECT_TRUE(came.request.canBeJudged());
        EXPECT_EQ(came.request.text(), std::string(8192, 'x'));
        const Requested whole(request + "more", piece);
        EXPECT_EQ(whole.size, request.size());
        EXPECT_EQ(whole.request.text(), std::string(8192, 'x'));
    }
}

TEST(AnOpeningRequest, MayHoldNulsBeforeItsEnd)
{
    const std::string request("a\0b\r\n\r\n", 7);
    EXPECT_EQ(Requested(request, 1).request.text(), request);
}

TEST(AnOpeningRequest, StillFindsItsBlankLineWhenItsTextIsDropped)
{
    OpeningRequest request;
    request.take(bytesOf(kRequest), 10);
    request.dropText();
    EXPECT_EQ(request.take(bytesOf(kRequest) + 10, kRequest.size() - 10), kRequest.size() - 10);
    EXPECT_TRUE(request.isWhole());
    EXPECT_EQ(request.text(), "");
    EXPECT_EQ(request.take(bytesOf(kRequest), kRequest.size()), 0u);
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

/// What a stream has found.
struct Found {
    int opcode;
    std::string payload;
    std::uint64_t size;
    std::string shown;
};
bool operator==(const Found& a, const Found& b)
{
    return a.opcode == b.opcode && a.payload == b.payload && a.size == b.size && a.shown == b.shown;
}
void PrintTo(const Found& found, std::ostream* out)
{
    *out << found.opcode << ", " << found.size << " bytes: " << found.payload.substr(0, 40);
}

/// Hands the stream bytes that came next, in pieces of `piece`.
std::vector<Found> findIn(FrameStream& stream, const std::string& bytes, std::size_t piece)
{
    std::vector<Found> all;
    for (std::size_t from = 0; from < bytes.size(); from += piece) {
        const unsigned char* at = bytesOf(bytes) + from;
        const unsigned char* const end = at + std::min(piece, bytes.size() - from);
        while (const ReceivedFrame* const frame = stream.next(at, end))
            all.push_back({frame->opcode, frame->payload, frame->size,
                           std::string(reinterpret_cast<const char*>(frame->shown), frame->shownSize)});
        EXPECT_EQ(at, end);
    }
    return all;
}

std::vector<Found> framesIn(const std::string& bytes, std::size_t piece = std::string::npos / 2)
{
    FrameStream stream;
    return findIn(stream, bytes, piece);
}

std::vector<std::string> textsIn(const std::string& bytes)
{
    std::vector<std::string> texts;
    for (const Found& found : framesIn(bytes))
        texts.push_back(found.payload);
    return texts;
}

std::string withLength(std::uint64_t length, int size)
{
    std::string bytes;
    while (size > 0)
        bytes += static_cast<char>(length >> 8 * --size);
    return bytes;
}

/// A frame whose key changes nothing.
std::string plainFrame(int first, const std::string& payload)
{
    const std::size_t size = payload.size();
    const std::string length = size < 126     ? withLength(0x80 | size, 1)
                               : size < 65536 ? "\xfe" + withLength(size, 2)
                                              : "\xff" + withLength(size, 8);
    return static_cast<char>(first) + length + std::string(4, '\0') + payload;
}

TEST(AFrameStream, UnmasksATextWithEachByteOfTheKeyInTurn)
{
    const std::string frame = "\x81\x85\x37\xfa\x21\x3d\x7f\x9f\x4d\x51\x58";
    EXPECT_THAT(framesIn(frame), ElementsAre(Found{WS_FR_OP_TXT, "Hello", 11, frame}));
}

TEST(AFrameStream, HasTheKeyAfterTheLength)
{
    const std::string keyAndText = "\x01\x02\x03\x04idop";
    EXPECT_THAT(textsIn("\x81\x84" + keyAndText), ElementsAre("hflt"));
    EXPECT_THAT(textsIn("\x81\xfe" + withLength(4, 2) + keyAndText), ElementsAre("hflt"));
    EXPECT_THAT(textsIn("\x81\xff" + withLength(4, 8) + keyAndText), ElementsAre("hflt"));
}

TEST(AFrameStream, TakesFourBytesForTheKeyWithoutTheMaskBit)
{
    const std::string keyAndText = "\x01\x02\x03\x04idop";
    EXPECT_THAT(textsIn("\x81\x04" + keyAndText + "\x81\x84" + keyAndText), ElementsAre("hflt", "hflt"));
    EXPECT_THAT(textsIn("\x81\x7e" + withLength(4, 2) + keyAndText), ElementsAre("hflt"));
    EXPECT_THAT(textsIn("\x81\x7f" + withLength(4, 8) + keyAndText), ElementsAre("hflt"));
    EXPECT_THAT(textsIn("\x82\x04" + keyAndText + "\x81\x84" + keyAndText), ElementsAre("", "hflt"));
}

TEST(AFrameStream, FindsTheSameFramesInPiecesOfEachSize)
{
    const std::string frames = plainFrame(0x81, "one") + plainFrame(0x82, "two") + plainFrame(0x81, "") +
                               plainFrame(0x81, std::string(126, 'x')) + plainFrame(0x89, "") +
                               plainFrame(0x81, std::string(3000, 'y')) + plainFrame(0x00, std::string(65536, 'z')) +
                               plainFrame(0x81, "last");
    const std::vector<Found> whole = framesIn(frames);
    ASSERT_EQ(whole.size(), 8u);
    EXPECT_EQ(whole[0], (Found{WS_FR_OP_TXT, "one", 9, plainFrame(0x81, "one")}));
    EXPECT_EQ(whole[1], (Found{WS_FR_OP_BIN, "", 9, plainFrame(0x82, "two")}));
    EXPECT_EQ(whole[3].payload, std::string(126, 'x'));
    EXPECT_EQ(whole[5].payload, std::string(3000, 'y'));
    EXPECT_EQ(whole[5].shown, plainFrame(0x81, std::string(3000, 'y')).substr(0, ReceivedFrame::kShown));
    EXPECT_EQ(whole[6].size, 65536u + 14);
    EXPECT_EQ(whole[7].payload, "last");
    for (const std::size_t piece : {1, 2, 3, 5, 7, 13, 14, 15, 100, 2048, 8192})
        EXPECT_EQ(framesIn(frames, piece), whole) << piece;
}

TEST(AFrameStream, WaitsForTheEndOfAFrame)
{
    for (const std::string& frame :
         {plainFrame(0x81, "hello"), plainFrame(0x81, ""), plainFrame(0x89, "hello"),
          plainFrame(0x81, std::string(126, 'x')), plainFrame(0x02, std::string(65536, 'x'))})
        for (std::size_t size = 0; size < frame.size(); size += 1 + size / 20) {
            FrameStream stream;
            EXPECT_THAT(findIn(stream, frame.substr(0, size), 100000), IsEmpty()) << size << " of " << frame.size();
            EXPECT_THAT(findIn(stream, frame.substr(size), 100000), SizeIs(1)) << size << " of " << frame.size();
        }
}

TEST(AFrameStream, HasAPayloadOnlyOfAFinalText)
{
    for (int first = 0; first < 256; ++first) {
        if ((first & 0x0f) == WS_FR_OP_CLSE) continue;
        const std::string frame = plainFrame(first, "hello");
        const std::string payload = first == 0x81 ? "hello" : "";
        EXPECT_THAT(framesIn(frame, 1), ElementsAre(Found{first & 0x0f, payload, 11, frame}));
    }
}

TEST(AFrameStream, FindsACloseFrameByItsFirstByteAlsoAfterAnotherFrame)
{
    for (int first = 8; first < 256; first += 16) {
        const std::string byte(1, static_cast<char>(first));
        EXPECT_THAT(framesIn(byte), ElementsAre(Found{WS_FR_OP_CLSE, "", 1, byte}));
        const std::vector<Found> found = framesIn(plainFrame(0x81, "hello") + byte);
        ASSERT_EQ(found.size(), 2u);
        EXPECT_EQ(found[1], (Found{WS_FR_OP_CLSE, "", 1, byte}));
    }
}

TEST(AFrameStream, LooksAtNothingAfterACloseFrame)
{
    const std::string close = plainFrame(0x88, "\x03\xe8");
    EXPECT_THAT(framesIn(close), ElementsAre(Found{WS_FR_OP_CLSE, "", 8, close}));
    const std::string more = close + plainFrame(0x81, "hello");
    EXPECT_THAT(framesIn(more), ElementsAre(Found{WS_FR_OP_CLSE, "", more.size(), more}));
}

TEST(AFrameStream, FindsTextsOfUpTo64Kilobytes)
{
    const std::string longest(FrameStream::kLongestText, 'x');
    ASSERT_EQ(longest.size(), 65536u);
    EXPECT_THAT(textsIn(plainFrame(0x81, longest) + plainFrame(0x81, longest)), ElementsAre(longest, longest));
}

TEST(AFrameStream, EndsWithALongerTextAsSoonAsItsLengthHasCome)
{
    for (const std::uint64_t length :
         {std::uint64_t{65537}, std::uint64_t{1} << 32, std::uint64_t{1} << 63, ~std::uint64_t{0}}) {
        const std::string frame = "\x81\xff" + withLength(length, 8) + std::string(4, '\0');
        for (const std::size_t piece : {1, 100}) {
            FrameStream stream;
            EXPECT_THAT(findIn(stream, plainFrame(0x81, "one") + frame.substr(0, 13), piece), SizeIs(1));
            EXPECT_FALSE(stream.isTooLong());
            EXPECT_THAT(findIn(stream, frame.substr(13) + "xyz", piece), IsEmpty());
            EXPECT_TRUE(stream.isTooLong());
            EXPECT_THAT(findIn(stream, plainFrame(0x81, "two"), piece), IsEmpty());
            EXPECT_TRUE(stream.isTooLong());
        }
    }
}

TEST(AFrameStream, SkipsOtherFramesHoweverLong)
{
    const std::string megabyte(1 << 20, 'x');
    for (const int first : {0x82, 0x80, 0x00, 0x01, 0x89, 0x8a, 0xc1}) {
        FrameStream stream;
        const std::string header = static_cast<char>(first) + ("\xff" + withLength(std::uint64_t{5} << 30, 8)) + "mask";
        EXPECT_THAT(findIn(stream, header, 1), IsEmpty());
        for (int i = 0; i < 5 * 1024 - 1; ++i)
            ASSERT_THAT(findIn(stream, megabyte, 1 << 20), IsEmpty());
        const std::vector<Found> found = findIn(stream, megabyte + plainFrame(0x81, "hello"), 1 << 20);
        ASSERT_EQ(found.size(), 2u);
        EXPECT_EQ(found[0].opcode, first & 0x0f);
        EXPECT_EQ(found[0].size, (std::uint64_t{5} << 30) + 14);
        EXPECT_EQ(found[1].payload, "hello");
    }
}

TEST(AFrameStream, MaySkipTheLongestFrameThereIs)
{
    FrameStream stream;
    EXPECT_THAT(findIn(stream, "\x82\xff" + withLength(~std::uint64_t{0}, 8) + "mask", 1), IsEmpty());
    EXPECT_THAT(findIn(stream, std::string(1 << 20, '\x88'), 1000), IsEmpty());
    EXPECT_FALSE(stream.isTooLong());
}

}  // namespace
