#include <cerrno>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "wire/ReportFixture.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

/// How an exchange that waits is ended by the application.
class AnEnd : public AReport, public testing::WithParamInterface<void (*)()> {};

TEST_P(AnEnd, IsReportedWhileTheAnswerIsAwaited)
{
    ConfirmationScreen request("phone");  // which has no time-out
    ask(request, [](RawPeer& connection) {
        connection.readFrame();
        GetParam()();
        connection.readToEnd();
    });
    EXPECT_EQ(report.phase, ExchangePhaseNoAnswer);
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.errorNumber, ECANCELED);
    EXPECT_TRUE(report.mayHaveArrived);
}

TEST_P(AnEnd, IsReportedWhileARequestGoesOut)
{
    ConfirmationScreen request(std::string(16u << 20, 'x'));
    ask(request, [](RawPeer& connection) {
        connection.receive(1000);
        GetParam()();
        connection.readToEnd();
    });
    EXPECT_EQ(report.phase, ExchangePhaseNotSent);
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.errorNumber, ECANCELED);
    EXPECT_TRUE(report.mayHaveArrived);
}

TEST_P(AnEnd, IsReportedWhileTheClientConnects)
{
    RawListener full(0);
    ASSERT_TRUE(client().configureClient("127.0.0.1", full.port()));  // takes the place of one not yet accepted
    ConfirmationScreen request("phone");
    std::unique_ptr<Serializable> answer;
    std::thread asking([&] { answer.reset(client().sendRequest(&request, report)); });
    while (!isBeingOpened(full.port()))
        std::this_thread::yield();
    GetParam()();
    asking.join();
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    EXPECT_EQ(report.phase, ExchangePhaseNotConnected);
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.errorNumber, ECANCELED);
    EXPECT_FALSE(report.mayHaveArrived);
}

INSTANTIATE_TEST_SUITE_P(By, AnEnd,
                         testing::Values([] { OrvuRestInterface::getInstance()->cancelRequests(); },
                                         [] { OrvuRestInterface::destroyInstance(); }),
                         [](const auto& end) { return end.index == 0 ? "cancelRequests" : "destroyInstance"; });

}  // namespace
