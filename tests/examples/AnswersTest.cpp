#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "orvu/ServiceContext.h"
#include "orvu/Services.h"
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

class AnExampleAnswer : public testing::TestWithParam<std::string> {};

TEST_P(AnExampleAnswer, ReadsAndIsWrittenBackAsItStands)
{
    const Ended ended = run(orvu({"check", GetParam()}));
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, testing::EndsWith("read     yes\nwritten  the same text\n"));
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
        EXPECT_EQ(ended.out, textOf(file));
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

}  // namespace
}  // namespace OrvuTests
