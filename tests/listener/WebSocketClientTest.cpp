#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "listener/WebSocketClient.h"

namespace OrvuTests {
namespace {

using Orvu::faultOfAnswer;
using Orvu::ServerFrames;
using Kind = ServerFrames::Kind;

const std::string kKey = "dGhlIHNhbXBsZSBub25jZQ==";  // the example of RFC 6455, with the two below
const std::string kFields = "Upgrade: websocket\r\nConnection: Upgrade\r\n";
const std::string kAccept = "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=";

TEST(AnOpeningRequest, AsksForAWebSocket)
{
    EXPECT_EQ(Orvu::openingRequest("tv.local", 9001, kKey),
              "GET / HTTP/1.1\r\n"
              "Host: tv.local:9001\r\n"
              "Upgrade: websocket\r\n"
              "Connection: Upgrade\r\n"
              "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n"
              "Sec-WebSocket-Version: 13\r\n"
              "\r\n");
}

TEST(AKey, IsSixteenBytesInBase64)
{
    EXPECT_EQ(Orvu::webSocketKey({'t', 'h', 'e', ' ', 's', 'a', 'm', 'p', 'l', 'e', ' ', 'n', 'o', 'n', 'c', 'e'}),
              kKey);
    EXPECT_EQ(Orvu::webSocketKey({0xff, 0xfe, 0xfd}), "//79AAAAAAAAAAAAAAAAAA==");
}

TEST(AnAnswer, OpensTheWebSocket)
{
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Switching Protocols\r\n" + kFields + kAccept, kKey), "");
}

TEST(AnAnswer, MayNameItsFieldsInOtherLetters)
{
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Yes\r\nserver: some:thing\r\nUPGRADE:WebSocket\r\n"
                            "connection: keep-alive, upgrade \r\nsec-websocket-accept:\ts3pPLMBiTxaQ9kYGzzhZRbK+xOo= ",
                            kKey),
              "");
}

TEST(AnAnswer, RefusesByItsStatus)
{
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 404 Not Found\r\n" + kFields + kAccept, kKey),
              "it answers \"HTTP/1.1 404 Not Found\"");
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 1010 Odd\r\n" + kFields + kAccept, kKey), "it answers \"HTTP/1.1 1010 Odd\"");
    EXPECT_EQ(faultOfAnswer("\x1b[31mSSH-2.0", kKey), "it answers \"\\u001b[31mSSH-2.0\"");
    EXPECT_EQ(faultOfAnswer("", kKey), "it answers \"\"");
}

TEST(AnAnswer, RefusesByLeadingElsewhere)
{
    const std::string fault = "it changes to something else than a WebSocket";
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Yes\r\nUpgrade: h2c\r\nConnection: Upgrade\r\n" + kAccept, kKey), fault);
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Yes\r\nUpgrade: websocket\r\nConnection: close\r\n" + kAccept, kKey), fault);
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Yes\r\n" + kAccept, kKey), fault);
}

TEST(AnAnswer, MustConfirmTheKey)
{
    const std::string fault = "it does not confirm the key";
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Yes\r\n" + kFields + kAccept, "AAAAAAAAAAAAAAAAAAAAAA=="), fault);
    EXPECT_EQ(faultOfAnswer("HTTP/1.1 101 Yes\r\n" + kFields, kKey), fault);
    EXPECT_EQ(
        faultOfAnswer("HTTP/1.1 101 Yes\r\n" + kFields + "Sec-WebSocket-Accept: S3PPLMBITXAQ9KYGZZHZRBK+XOO=", kKey),
        fault);
}

TEST(ACloseFrame, IsMasked)
{
    EXPECT_EQ(Orvu::closeFrame({0x01, 0x02, 0x03, 0x04}), "\x88\x82\x01\x02\x03\x04\x02\xea");
}

/// What a stream of frames says: its messages, a last one that is not whole, and how it ends.
struct Read {
    std::vector<std::string> messages;
    std::string begun;
    Kind end = Kind::Nothing;
};

Read readInPieces(const std::string& stream, std::size_t size)
{
    ServerFrames reader;
    Read read;
    for (std::size_t at = 0; at < stream.size() && read.end == Kind::Nothing; at += size) {
        std::string_view bytes = std::string_view(stream).substr(at, size);
        for (ServerFrames::Part part = reader.next(bytes); part.kind != Kind::Nothing; part = reader.next(bytes)) {
            read.begun += part.payload;
            if (part.kind == Kind::MessageEnd) read.messages.push_back(std::exchange(read.begun, ""));
            read.end = part.kind;
            if (part.kind == Kind::Close || part.kind == Kind::Fault) return read;
        }
        read.end = Kind::Nothing;
        EXPECT_TRUE(bytes.empty());
    }
    return read;
}

/// What the stream says, which is to be the same however it is cut.
Read readOf(const std::string& stream)
{
    Read read = readInPieces(stream, stream.size() + 1);
    for (const std::size_t size : {1, 2, 3, 1000}) {
        const Read other = readInPieces(stream, size);
        EXPECT_EQ(other.messages, read.messages) << "in pieces of " << size;
        EXPECT_EQ(other.begun, read.begun) << "in pieces of " << size;
        EXPECT_EQ(other.end, read.end) << "in pieces of " << size;
    }
    return read;
}

using Messages = std::vector<std::string>;

TEST(Frames, HaveLengthsInThreeForms)
{
    const std::string most(125, 'a');
    const std::string more(126, 'b');
    const std::string muchMore(65535, 'c');
    const std::string veryMuch(65536, 'd');
    const std::string stream = std::string("\x82\x00", 2) + "\x82\x01x" + "\x82\x7d" + most +
                               std::string("\x82\x7e\x00\x7e", 4) + more + "\x82\x7e\xff\xff" + muchMore +
                               std::string("\x82\x7f\x00\x00\x00\x00\x00\x01\x00\x00", 10) + veryMuch;
    EXPECT_TRUE(readOf(stream).messages == (Messages{"", "x", most, more, muchMore, veryMuch}));
}

TEST(Frames, AreReadWhileTheyCome)
{
    ServerFrames reader;
    std::string_view bytes = "\x82\x05he";
    EXPECT_EQ(reader.next(bytes).payload, "he");
    EXPECT_EQ(reader.next(bytes).kind, Kind::Nothing);
    bytes = "llo";
    EXPECT_EQ(reader.next(bytes).payload, "llo");
    EXPECT_EQ(reader.next(bytes).kind, Kind::MessageEnd);
    EXPECT_EQ(reader.next(bytes).kind, Kind::Nothing);
}

TEST(Frames, MayBeTextsAndPiecesOfMessages)
{
    const Read read =
        readOf("\x81\x02hi\x01\x02he\x80\x03llo\x02\x01" + std::string("x\x00\x00\x80\x00", 5) + "\x01\x02wo");
    EXPECT_EQ(read.messages, (Messages{"hi", "hello", "x"}));
    EXPECT_EQ(read.begun, "wo");
}

TEST(Frames, HavePingsAndPongsBetweenThem)
{
    const Read read = readOf("\x01\x02he\x89\x04ping\x80\x03llo" + std::string("\x8a\x00\x89\x00", 4) + "\x82\x01x");
    EXPECT_EQ(read.messages, (Messages{"hello", "x"}));
    EXPECT_EQ(read.end, Kind::Nothing);
}

TEST(APing, IsReadWithItsPayloadWhereverItIsCut)
{
    ServerFrames frames;
    for (const char byte : std::string("\x89\x04ping")) {
        std::string_view bytes(&byte, 1);
        if (frames.next(bytes).kind == Kind::Ping) {
            EXPECT_EQ(frames.ping(), "ping");
            return;
        }
    }
    ADD_FAILURE() << "no ping";
}

TEST(APong, CarriesThePayloadOfThePingMasked)
{
    EXPECT_EQ(Orvu::pongFrame("hi", {0x01, 0x02, 0x03, 0x04}), "\x8a\x82\x01\x02\x03\x04\x69\x6b");
    EXPECT_EQ(Orvu::pongFrame("", {0x01, 0x02, 0x03, 0x04}), std::string("\x8a\x80\x01\x02\x03\x04"));
}

TEST(Frames, EndWithACloseFrame)
{
    const Read read = readOf("\x82\x01x\x88\x02\x03\xe8\x82\x01y");
    EXPECT_EQ(read.messages, Messages{"x"});
    EXPECT_EQ(read.end, Kind::Close);
}

TEST(Frames, AreFaultyWhenNoServerMaySendThem)
{
    const std::string masked = "\x82\x81\x01\x02\x03\x04x";
    const std::string compressed = "\xc2\x01x";
    const std::string ofAnUnknownKind = "\x83\x01x";
    const std::string tooLong = "\x82\x7f\x80" + std::string(7, '\0');
    const std::string noFrame = "HTTP/1.1 200 OK\r\n";
    const std::string longPing = "\x89\x7e" + std::string(1, '\0') + "\x7e" + std::string(126, 'p');
    const std::string pieceOfAPing = "\x09\x04ping";
    for (const std::string& faulty : {masked, compressed, ofAnUnknownKind, tooLong, noFrame, longPing, pieceOfAPing}) {
        const Read read = readOf("\x82\x01x" + faulty);
        EXPECT_EQ(read.messages, Messages{"x"});
        EXPECT_EQ(read.end, Kind::Fault);
    }
}

}  // namespace
}  // namespace OrvuTests
