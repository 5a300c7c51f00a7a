#include <gmock/gmock.h>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "transport/OrvuRestClientSocket.h"
#include "wire/ClientFixture.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::ElementsAre;
using testing::Optional;

namespace {

const std::string kClient = "OrvuRestClientSocket::";

TEST_F(ARequestClient, SendsAFrameAndGivesTheAnswerToItsCaller)
{
    ServiceSelection request;
    request.serviceContextId = "1.2.01";
    const auto answer = send(&request, [](RawPeer& connection) {
        EXPECT_EQ(connection.readFrame(),
                  "{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"1.2.01\"\n}");
        connection.send(frameOf(R"({"HEADER":"currentService","serviceName":"Canal","serviceId":7})"));
    });
    const auto* const service = dynamic_cast<Service*>(answer.get());
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->serviceName, "Canal");
    EXPECT_EQ(service->serviceId, 7);
}

TEST_F(ARequestClient, GivesTheSuccessOfItsPeer)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, frameOf(kSuccess)), DataTypeSuccess);
}

TEST_F(ARequestClient, ClosesTheConnectionAfterTheAnswer)
{
    SuccessResponse request;
    send(&request, [](RawPeer& connection) {
        connection.readFrame();
        connection.send(frameOf(kSuccess));
        EXPECT_EQ(connection.readToEnd(), "");
    });
}

TEST_F(ARequestClient, LogsEveryStepOfAnExchange)
{
    SuccessResponse request;
    typeAnswering(request, frameOf(kSuccess));
    EXPECT_THAT(log.lines(),
                ElementsAre(kClient + "sendRequest (Serializable): -- init", kClient + "send: -- init",
                            kClient + "connectSocket: -- init", kClient + "connectSocket: -- end",
                            "deserializeHeader: HEADER: success", "factory: dataType: success",
                            kClient + "send worked? -- end", kClient + "sendRequest(Serializable): -- end"));
}

TEST_F(ARequestClient, PutsAnAnswerTogetherThatComesInSegmentsOfOneByte)
{
    SuccessResponse request;
    const auto answer = send(&request, [](RawPeer& connection) {
        connection.readFrame();
        connection.sendByteByByte(frameOf(R"({"HEADER":"serviceTime","time":"2024-02-29T12:00:00"})"));
    });
    EXPECT_EQ(textOf(*answer), "{\n\t\"HEADER\":\t\"serviceTime\",\n\t\"time\":\t\"2024-02-29T12:00:00\"\n}");
}

TEST_F(ARequestClient, CarriesTextsLargerThanAMebibyteBothWays)
{
    const std::string there(3u << 20, 't');
    const std::string back(2u << 20, 'b');
    ServiceTime request;
    request.time = there;
    const auto answer = send(&request, [&](RawPeer& connection) {
        EXPECT_TRUE(connection.readFrame() == "{\n\t\"HEADER\":\t\"serviceTime\",\n\t\"time\":\t\"" + there + "\"\n}");
        connection.send(frameOf(R"({"HEADER":"serviceTime","time":")" + back + "\"}"));
    });
    const auto* const time = dynamic_cast<ServiceTime*>(answer.get());
    ASSERT_NE(time, nullptr);
    EXPECT_TRUE(time->time == back);
}

TEST_F(ARequestClient, AsksABareTypeWithItsDefaultObject)
{
    std::optional<std::string> asked;
    std::thread acting([&] {
        RawPeer connection = peer.accept();
        asked = connection.readFrame();
        connection.send(frameOf(kSuccess));
    });
    const std::unique_ptr<Serializable> answer(client().sendRequest(DataTypeServiceSelection));
    acting.join();
    EXPECT_THAT(asked,
                Optional(std::string("{\n\t\"HEADER\":\t\"serviceSelection\",\n\t\"serviceContextId\":\t\"\"\n}")));
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
    EXPECT_TRUE(areInOrder(
        log.lines(), {kClient + "sendRequest (DataType): -- init", "factory: dataType: serviceSelection",
                      kClient + "sendRequest (Serializable): -- init", kClient + "sendRequest(Serializable): -- end",
                      kClient + "sendRequest (DataType): -- end 1"}));
}

TEST_F(ARequestClient, GivesNullOnlyForATypeThatCannotBeMade)
{
    EXPECT_EQ(client().sendRequest(DataTypeEmptyData), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(kClient + "sendRequest (DataType): -- init", "factory: dataType: emptyData",
                                         kClient + "sendRequest (DataType): -- end 2"));
    EXPECT_EQ(client().sendRequest(static_cast<DataType>(200)), nullptr);
}

TEST_F(ARequestClient, HasSeveralRequestsInFlightAtOnce)
{
    std::vector<std::thread> asking;
    std::vector<RawPeer> connections;
    for (int i = 0; i < 8; ++i) {
        asking.emplace_back([] {
            SuccessResponse request;
            const std::unique_ptr<Serializable> answer(client().sendRequest(&request));
            EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
        });
        connections.push_back(peer.accept());
    }
    for (RawPeer& connection : connections)
        connection.send(frameOf(kSuccess));
    for (std::thread& thread : asking)
        thread.join();
}

TEST_F(ARequestClient, AnswersAnExchangeAlreadyBegunByItsOldPeer)
{
    RawListener other;
    SuccessResponse request;
    const auto answer = send(&request, [&](RawPeer& connection) {
        EXPECT_TRUE(client().configureClient("127.0.0.1", other.port()));
        connection.send(frameOf(kSuccess));
    });
    EXPECT_EQ(answer->getDataType(), DataTypeSuccess);
}

TEST_F(ARequestClient, FindsItsPeerByName)
{
    EXPECT_TRUE(client().configureClient("localhost", peer.port()));
    peer.accept();
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, frameOf(kSuccess)), DataTypeSuccess);
}

TEST_F(ARequestClient, LogsHowItIsConfigured)
{
    client().configureClient("127.0.0.1", peer.port());
    EXPECT_THAT(log.lines(),
                ElementsAre(kClient + "configure: -- init", kClient + "configure: Checking server connection...",
                            kClient + "connectSocket: -- init", kClient + "connectSocket: -- end",
                            kClient + "configure: -- end"));
}

TEST_F(ARequestClient, ClosesTheConnectionThatTestsItsPeer)
{
    ASSERT_TRUE(client().configureClient("127.0.0.1", peer.port()));
    EXPECT_EQ(peer.accept().readToEnd(), "");
}

TEST_F(ARequestClient, KeepsAPeerThatCannotBeReached)
{
    PortLease later;
    EXPECT_FALSE(client().configureClient("127.0.0.1", later.port()));
    EXPECT_TRUE(areInOrder(
        log.lines(), {kClient + "connectSocket: ERROR connecting to host: 127.0.0.1:" + std::to_string(later.port()),
                      kClient + "configure: ERROR cannot connect to server"}));
    const RawPeer listening(boundSocket(later.port(), true));
    const int fd = OrvuRestClientSocket::getInstance()->connectSocket(5);
    EXPECT_GE(fd, 3);
    close(fd);
}

TEST_F(ARequestClient, GivesConnectionsThatItsCallerOwns)
{
    RawPeer ours(OrvuRestClientSocket::getInstance()->connectSocket(7));
    ASSERT_GE(ours.fd(), 3);
    RawPeer theirs = peer.accept();
    ours.send("hello");
    EXPECT_EQ(theirs.receive(5), "hello");
    ours.close();
    EXPECT_EQ(theirs.readToEnd(), "");
}

TEST_F(ARequestClient, GivesConnectionsTheirTimeOuts)
{
    for (const int seconds : {7, 0}) {
        const int fd = OrvuRestClientSocket::getInstance()->connectSocket(seconds);
        for (const int option : {SO_RCVTIMEO, SO_SNDTIMEO}) {
            timeval time{-1, -1};
            socklen_t size = sizeof time;
            ASSERT_EQ(getsockopt(fd, SOL_SOCKET, option, &time, &size), 0);
            EXPECT_EQ(time.tv_sec, seconds);
            EXPECT_EQ(time.tv_usec, 0);
        }
        close(fd);
    }
}

TEST(AnUnconfiguredRequestClient, CannotConnect)
{
    LogCapture log;
    SuccessResponse request;
    const std::unique_ptr<Serializable> answer(OrvuRestInterface::getInstance()->sendRequest(&request));
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    EXPECT_TRUE(areInOrder(log.lines(), {kClient + "connectSocket: -- init",
                                         kClient + "connectSocket: ERROR configure host/port before use!",
                                         kClient + "send: ERROR cannot connect to server"}));
    OrvuRestInterface::destroyInstance();
}

TEST(AnUnconfiguredRequestClient, StaysSoWithoutAHostOrAPort)
{
    LogCapture log;
    EXPECT_FALSE(OrvuRestInterface::getInstance()->configureClient("", 80));
    EXPECT_FALSE(OrvuRestInterface::getInstance()->configureClient(nullptr, 80));
    EXPECT_FALSE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", 0));
    EXPECT_EQ(log.count(kClient + "connectSocket: ERROR configure host/port before use!"), 3);
    OrvuRestInterface::destroyInstance();
}

TEST(ARequestClientAndServer, UnderstandEachOther)
{
    const Receiver receiver([](OrvuRestRequest* received) {
        const std::unique_ptr<OrvuRestRequest> request(received);
        ServiceList answer;
        for (const char* const name : {"Um", "Dois"}) {
            answer.addService(new Service);
            answer.services.back()->serviceName = name;
        }
        request->sendResponse(&answer);
    });
    ASSERT_TRUE(OrvuRestInterface::getInstance()->configureClient("127.0.0.1", receiver.port()));
    const std::unique_ptr<Serializable> list(OrvuRestInterface::getInstance()->sendRequest(DataTypeServiceList));
    const auto* const services = dynamic_cast<ServiceList*>(list.get());
    ASSERT_NE(services, nullptr);
    ASSERT_EQ(services->services.size(), 2U);
    EXPECT_EQ(services->services[1]->serviceName, "Dois");
}

}  // namespace
