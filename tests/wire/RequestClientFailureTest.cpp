#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <thread>

#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "transport/OrvuRestClientSocket.h"
#include "wire/ClientFixture.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"
#include "wire/Throwing.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::Contains;
using testing::ElementsAre;

namespace {

const std::string kSend = "OrvuRestClientSocket::send: ";

using ARequestClientThatFails = ARequestClient;

TEST_F(ARequestClientThatFails, GivesUnknowRequestForANullRequest)
{
    const std::unique_ptr<Serializable> answer(client().sendRequest(nullptr));
    EXPECT_EQ(answer->getDataType(), DataTypeUnknown);
    EXPECT_THAT(log.lines(), ElementsAre("OrvuRestClientSocket::sendRequest (Serializable): -- init", kSend + "-- init",
                                         kSend + "ERROR cannot send NULL data",
                                         "OrvuRestClientSocket::sendRequest(Serializable): -- end"));
}

TEST_F(ARequestClientThatFails, GivesCannotConnectToServerWhenNobodyListens)
{
    const PortLease nobody;
    client().configureClient("127.0.0.1", nobody.port());
    SuccessResponse request;
    const std::unique_ptr<Serializable> answer(client().sendRequest(&request));
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    EXPECT_TRUE(areInOrder(log.lines(), {kSend + "-- init",
                                         "OrvuRestClientSocket::connectSocket: ERROR connecting to host: 127.0.0.1:" +
                                             std::to_string(nobody.port()),
                                         kSend + "ERROR cannot connect to server"}));
}

TEST_F(ARequestClientThatFails, TakesWhatIsNoPortForOneThatCannotBeReached)
{
    EXPECT_FALSE(client().configureClient("127.0.0.1", 65536 + peer.port()));
    EXPECT_FALSE(client().configureClient("127.0.0.1", -1));
    EXPECT_THAT(log.lines(), Contains("OrvuRestClientSocket::connectSocket: ERROR connecting to host: 127.0.0.1:-1"));
}

TEST_F(ARequestClientThatFails, GivesCannotConnectToServerWithoutADescriptor)
{
    SuccessResponse request;
    std::unique_ptr<Serializable> answer;
    {
        const NoDescriptorsLeft none;
        answer.reset(client().sendRequest(&request));
    }
    EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    EXPECT_THAT(log.lines(), Contains("OrvuRestClientSocket::connectSocket: ERROR opening client socket"));
}

void close(RawPeer& connection)
{
    EXPECT_EQ(connection.readToEnd(), "");
}

TEST_F(ARequestClientThatFails, GivesUnknowRequestForARequestThatWritesNothing)
{
    Silent<SuccessResponse> request;
    EXPECT_EQ(send(&request, close)->getDataType(), DataTypeUnknown);
    EXPECT_TRUE(areInOrder(log.lines(), {kSend + "ERROR cannot serialize request!", kSend + "-- end"}));
}

TEST_F(ARequestClientThatFails, GivesUnknowRequestForARequestThatThrows)
{
    Throwing request;
    EXPECT_EQ(send(&request, close)->getDataType(), DataTypeUnknown);
    EXPECT_TRUE(areInOrder(log.lines(), {kSend + "ERROR cannot serialize request!", kSend + "-- end"}));
}

TEST_F(ARequestClientThatFails, GivesEmptyDataForAnEmptyRequest)
{
    Saying<SuccessResponse> request("");
    EXPECT_EQ(send(&request, close)->getDataType(), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "ERROR serializable data is empty!"));
}

TEST_F(ARequestClientThatFails, GivesEmptyDataWhenItsPeerIsGoneBeforeTheRequestIsSent)
{
    Latch gone;
    struct Waiting : SuccessResponse {
        explicit Waiting(Latch& latch) : gone(latch) {}
        char* serialize() override
        {
            gone.wait();
            return SuccessResponse::serialize();
        }
        Latch& gone;
    } request(gone);
    const auto answer = send(&request, [&](RawPeer& connection) {
        connection.vanish();
        gone.open();
    });
    EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "ERROR writing to socket"));
}

TEST_F(ARequestClientThatFails, GivesEmptyDataWhenItsPeerVanishesInTheMiddleOfALargeRequest)
{
    ServiceTime request;
    request.time.assign(16u << 20, 'x');
    const auto answer = send(&request, [](RawPeer& connection) {
        connection.receive(1000);
        connection.vanish();
    });
    EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "ERROR writing to socket"));
}

TEST_F(ARequestClientThatFails, GivesEmptyDataWhenItsPeerClosesWithoutAnAnswer)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, ""), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "Cannot get buffer size!"));
}

TEST_F(ARequestClientThatFails, GivesEmptyDataForALengthCutShort)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, lengthBytes(25).substr(0, 3)), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "Cannot get buffer size!"));
}

class AnAnswerWithoutAText : public ARequestClient, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(AnAnswerWithoutAText, IsAnEmptyData)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, lengthBytes(GetParam())), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "ERROR response data is empty!"));
}

INSTANTIATE_TEST_SUITE_P(OfLength, AnAnswerWithoutAText, testing::Values(0, 1, 2, 25));

TEST_F(ARequestClientThatFails, GivesEmptyDataForATextCutShort)
{
    SuccessResponse request;
    const std::string frame = frameOf(kSuccess);
    EXPECT_EQ(typeAnswering(request, frame.substr(0, frame.size() - 1)), DataTypeEmptyData);
    EXPECT_THAT(log.lines(), Contains(kSend + "ERROR response data is cut short!"));
}

TEST_F(ARequestClientThatFails, GivesEmptyDataWhenItsPeerVanishes)
{
    SuccessResponse request;
    for (const std::size_t size : {0, 2, 4, 20}) {
        const auto answer = send(&request, [&](RawPeer& connection) {
            connection.readFrame();
            connection.send(frameOf(kSuccess).substr(0, size));
            connection.vanish();
        });
        EXPECT_EQ(answer->getDataType(), DataTypeEmptyData) << size;
    }
}

class AnAnswerBeyondTheBound : public ARequestClient, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(AnAnswerBeyondTheBound, IsRefusedAtOnce)
{
    SuccessResponse request;
    resetPeakMemory();
    const std::size_t before = peakMemory();
    const auto answer = send(&request, [](RawPeer& connection) {
        connection.readFrame();
        connection.send(lengthBytes(GetParam()) + "{\"HEA");
        connection.readToEnd();  // the client is the one that closes
    });
    EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
    EXPECT_THAT(log.lines(),
                Contains(kSend + "ERROR response of " + std::to_string(GetParam()) + " bytes is too long!"));
    EXPECT_LT(peakMemory(), before + (4u << 20));
}

INSTANTIATE_TEST_SUITE_P(Of, AnAnswerBeyondTheBound, testing::Values((64u << 20) + 2, 0x7FFFFFFFu, 0xFFFFFFFFu));

class AnAnswerOfNoKnownType : public ARequestClient, public testing::WithParamInterface<const char*> {};

TEST_P(AnAnswerOfNoKnownType, IsAnUnknowRequest)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, frameOf(GetParam())), DataTypeUnknown);
    EXPECT_THAT(log.lines(), Contains("OrvuRestClientSocket::send worked? -- end"));
}

INSTANTIATE_TEST_SUITE_P(Sent, AnAnswerOfNoKnownType,
                         testing::Values(R"({"HEADER":"pos"})", R"({"HEADER":"emptyData"})", R"({"HEADER":"nonsense"})",
                                         R"({"HEADER":7})", "{}", "no JSON"));

TEST_F(ARequestClientThatFails, GivesUnknowRequestForATypeWithoutAMessage)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, frameOf(R"({"HEADER":"siCacheUnavailable"})")), DataTypeUnknown);
    EXPECT_TRUE(areInOrder(log.lines(), {"factory: dataType: siCacheUnavailable",
                                         kSend + "ERROR cannot find serializable class", kSend + "-- end"}));
}

TEST_F(ARequestClientThatFails, GivesUnknowRequestForAnAnswerThatItsClassCannotRead)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, frameOf(R"({"HEADER":"serviceTime"})")), DataTypeUnknown);
    EXPECT_TRUE(areInOrder(log.lines(), {kSend + "ERROR cannot deserialize response!",
                                         kSend + "127.0.0.1:" + std::to_string(peer.port()) +
                                             ": serviceTime: line 1, column 1: time: required, missing"}));
}

TEST_F(ARequestClientThatFails, GivesUnknowRequestForANumberThatCannotBeConverted)
{
    SuccessResponse request;
    EXPECT_EQ(typeAnswering(request, frameOf(R"({"HEADER":"serviceComponent","componentTag":"0x"})")), DataTypeUnknown);
    EXPECT_THAT(log.lines(), Contains(kSend + "ERROR cannot deserialize response!"));
}

TEST_F(ARequestClientThatFails, ClosesEverySocket)
{
    SuccessResponse request;
    const std::size_t before = openSockets().size();
    for (const std::string& bytes : {std::string(), lengthBytes(0), lengthBytes(25), lengthBytes(0xFFFFFFFF),
                                     frameOf(R"({"HEADER":"siCacheUnavailable"})"), frameOf("no JSON"),
                                     frameOf(R"({"HEADER":"serviceTime"})"), frameOf(kSuccess)})
        typeAnswering(request, bytes);
    Silent<SuccessResponse> silent;
    send(&silent, close);
    EXPECT_EQ(openSockets().size(), before);
}

TEST_F(ARequestClientThatFails, IsWokenByDestructionWhileItWaitsForTheAnswer)
{
    ConfirmationScreen request("phone");  // which has no time-out
    for (const std::size_t size : {0, 3, 4, 20}) {
        ASSERT_TRUE(client().configureClient("127.0.0.1", peer.port()));
        peer.accept();
        const auto answer = send(&request, [&](RawPeer& connection) {
            connection.readFrame();
            connection.send(frameOf(kSuccess).substr(0, size));
            OrvuRestInterface::destroyInstance();
            EXPECT_EQ(connection.readToEnd(), "");
        });
        EXPECT_EQ(answer->getDataType(), DataTypeEmptyData) << size;
    }
}

TEST_F(ARequestClientThatFails, IsWokenByDestructionWhileItSends)
{
    ConfirmationScreen request(std::string(16u << 20, 'x'));
    const auto answer = send(&request, [&](RawPeer& connection) {
        connection.receive(1000);
        OrvuRestInterface::destroyInstance();
        connection.readToEnd();
    });
    EXPECT_EQ(answer->getDataType(), DataTypeEmptyData);
}

TEST_F(ARequestClientThatFails, IsWokenByDestructionWhileItConnects)
{
    RawListener full(0);
    const RawPeer waiting = RawPeer::connectedTo(full.port());  // takes the place of one not yet accepted
    std::thread configuring([&] { EXPECT_FALSE(client().configureClient("127.0.0.1", full.port())); });
    while (!isBeingOpened(full.port()))
        std::this_thread::yield();
    OrvuRestClientSocket::destroyInstance();
    configuring.join();
}

TEST_F(ARequestClientThatFails, KeepsNoOtherRequestWaitingWhileItConnects)
{
    RawListener full(0);
    const RawPeer waiting = RawPeer::connectedTo(full.port());
    std::thread configuring([&] { EXPECT_FALSE(client().configureClient("127.0.0.1", full.port())); });
    while (!isBeingOpened(full.port()))
        std::this_thread::yield();
    EXPECT_TRUE(client().configureClient("127.0.0.1", peer.port()));
    EXPECT_TRUE(isBeingOpened(full.port()));
    OrvuRestInterface::destroyInstance();
    configuring.join();
}

TEST_F(ARequestClientThatFails, GivesCannotConnectToServerWhenItIsWokenWhileItConnects)
{
    RawListener full(0);
    ASSERT_TRUE(client().configureClient("127.0.0.1", full.port()));  // takes the place of one not yet accepted
    ConfirmationScreen request("phone");
    std::thread asking([&] {
        const std::unique_ptr<Serializable> answer(client().sendRequest(&request));
        EXPECT_EQ(answer->getDataType(), DataTypeCannotConnectToServer);
    });
    while (!isBeingOpened(full.port()))
        std::this_thread::yield();
    OrvuRestInterface::destroyInstance();
    asking.join();
}

TEST_F(ARequestClientThatFails, MayBeDestroyedByOneThreadWhileOthersUseIt)
{
    const Receiver receiver;
    std::atomic<bool> over{false};
    std::vector<std::thread> asking;
    for (int i = 0; i < 3; ++i)
        asking.emplace_back([&] {
            SuccessResponse request;
            while (!over) {
                const std::unique_ptr<Serializable> answer(client().sendRequest(&request));
                EXPECT_THAT(answer->getDataType(), testing::AnyOf(DataTypeSuccess, DataTypeEmptyData, DataTypeUnknown,
                                                                  DataTypeCannotConnectToServer));
            }
        });
    for (int round = 0; round < 200; ++round) {
        client().configureClient("127.0.0.1", receiver.port());
        OrvuRestClientSocket::destroyInstance();
    }
    over = true;
    for (std::thread& thread : asking)
        thread.join();
}

}  // namespace
