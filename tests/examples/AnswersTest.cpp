#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvu/EventInformation.h"
#include "orvu/Files.h"
#include "orvu/MediaPlayers.h"
#include "orvu/ServiceContext.h"
#include "orvu/Services.h"
#include "support/Messages.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

std::vector<std::string> answerFiles()
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(ORVU_EXAMPLE_ANSWERS))
        files.push_back(entry.path().string());
    return files;
}

std::string textOf(const std::string& file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

/// Descriptors of an event are written in one form and read in another, so its text comes back changed, on purpose.
bool holdsEvents(const std::string& file)
{
    return std::filesystem::path(file).stem().string().rfind("eventInfo", 0) == 0;
}

/// A bare query is the type's empty message. Of some types a receiver cannot read it, and answers that it did not
/// understand.
bool isUnderstoodWhenBare(const std::string& type)
{
    const std::string header = R"({"HEADER": ")" + type + R"("})";
    const Orvu::DataType value = Orvu::Serializable::deserializeHeader(header.c_str());
    const std::unique_ptr<Orvu::Serializable> query(Orvu::Serializable::factory(value));
    const std::unique_ptr<Orvu::Serializable> received(Orvu::Serializable::factory(value));
    const std::string text = OrvuTests::textOf(*query);
    try {
        return received->deserialize(text.c_str());
    } catch (const std::out_of_range&) {
        return false;  // a component's unknown tag does not fit the number that it is read into
    }
}

class AnExampleAnswer : public testing::TestWithParam<std::string> {};

TEST_P(AnExampleAnswer, ReadsAndIsWrittenBackAsItStands)
{
    const Ended ended = run(orvu({"check", GetParam()}));
    EXPECT_THAT(ended.out, testing::HasSubstr("read     yes"));
    EXPECT_EQ(ended.code, holdsEvents(GetParam()) ? 1 : 0);
    EXPECT_EQ(ended.out.find("written  the same text\n") == std::string::npos, holdsEvents(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Answers, AnExampleAnswer, testing::ValuesIn(answerFiles()),
                         [](const auto& file) { return std::filesystem::path(file.param).stem().string(); });

TEST(TheExampleAnswers, AreServedWithoutComplaint)
{
    const PortLease port;
    Process serving(orvu({"serve", std::to_string(port.port()), "--answers", ORVU_EXAMPLE_ANSWERS}));
    ASSERT_TRUE(serving.waitForOutput("listening"));
    for (const std::string& file : answerFiles()) {
        const std::string type = std::filesystem::path(file).stem().string();
        const Ended ended = run(orvu({"ask", type, "--raw", "--port", std::to_string(port.port())}));
        if (!isUnderstoodWhenBare(type)) {
            EXPECT_EQ(ended.out, "{\n\t\"HEADER\":\t\"unknown\"\n}") << file;
        } else if (!holdsEvents(file)) {
            EXPECT_EQ(ended.out, textOf(file));
        }
    }
    serving.signal(SIGTERM);
    EXPECT_EQ(serving.wait().err, "");
}

void expectGoodLocator(const Orvu::Service& service)
{
    EXPECT_TRUE(Orvu::ServiceContext::parse(service.serviceContextId).valid) << service.serviceContextId;
    EXPECT_EQ(service.serviceContextId,
              Orvu::ServiceContext::generateStringId(static_cast<unsigned>(service.originalNetworkId),
                                                     static_cast<unsigned>(service.transportStreamId),
                                                     static_cast<unsigned>(service.serviceId)));
}

TEST(TheExampleAnswers, NameServicesByGoodLocators)
{
    Orvu::ServiceList list;
    ASSERT_TRUE(list.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/serviceList.json").c_str()));
    EXPECT_EQ(list.services.size(), 12u);
    for (const Orvu::Service* service : list.services)
        expectGoodLocator(*service);
    Orvu::Service current;
    ASSERT_TRUE(current.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/currentService.json").c_str()));
    expectGoodLocator(current);
    EXPECT_EQ(current.serviceName, list.services[0]->serviceName);
}

/// The CRC of MPEG-2 sections; 0 over a section that ends with its own.
std::uint32_t crcOf(const unsigned char* bytes, std::size_t size)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= std::uint32_t{bytes[i]} << 24;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc << 1 ^ (crc & 0x80000000 ? 0x04C11DB7 : 0);
    }
    return crc;
}

void expectWholeSection(const Orvu::BinaryData& table)
{
    ASSERT_GE(table.bufferSize, 3u);
    EXPECT_EQ(table.bufferSize, 3u + (table.buffer[1] % 16 * 256u + table.buffer[2]));
    EXPECT_EQ(crcOf(table.buffer, table.bufferSize), 0u);
}

TEST(TheExampleAnswers, CarryWholeSections)
{
    for (const std::string type : {"binaryNIT", "binarySDT", "binaryPAT", "binaryPMT", "binaryEPG"}) {
        SCOPED_TRACE(type);
        Orvu::BinaryData table(Orvu::DataTypeBinaryNIT);
        ASSERT_TRUE(table.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/" + type + ".json").c_str()));
        expectWholeSection(table);
    }
    Orvu::BinaryDataMultipart tables;
    ASSERT_TRUE(tables.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/binaryDataMultipart.json").c_str()));
    EXPECT_EQ(tables.parts.size(), 2u);
    for (const Orvu::BinaryData* part : tables.parts)
        expectWholeSection(*part);
}

/// A broadcast carries H.264 and AAC, as the example components do.
TEST(TheExampleAnswers, OfferAPlayerForTheBroadcast)
{
    Orvu::MediaPlayerList list;
    ASSERT_TRUE(list.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/players.json").c_str()));
    Orvu::MediaPlayer single;
    ASSERT_TRUE(single.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/player.json").c_str()));
    for (const Orvu::MediaPlayer* player : {&single, list.players.at(0)}) {
        EXPECT_THAT(player->schemesSupported, testing::Contains(Orvu::DrmSchemeSbtvdTs));
        EXPECT_THAT(player->codecsSupported->video, testing::Contains(Orvu::VideoCodecH264));
        EXPECT_THAT(player->codecsSupported->audio, testing::Contains(Orvu::AudioCodecAACLC));
    }
}

TEST(TheExampleAnswers, TellATimeWithinThePresentEvent)
{
    Orvu::ServiceTime now;
    ASSERT_TRUE(now.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/serviceTime.json").c_str()));
    Orvu::EventInfoList guide;
    ASSERT_TRUE(guide.deserialize(textOf(ORVU_EXAMPLE_ANSWERS "/eventInfoList.json").c_str()));
    EXPECT_GE(now.time, guide.present->startTime);
    EXPECT_LT(now.time, guide.present->endTime);
    EXPECT_EQ(guide.following->startTime, guide.present->endTime);
}

}  // namespace
}  // namespace OrvuTests
