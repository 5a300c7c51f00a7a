#include <gmock/gmock.h>
#include <memory>

#include "orvu/OrvuRestInterface.h"
#include "wire/Receiver.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::ElementsAre;

namespace {

struct AFacade : testing::Test {
    ~AFacade() override { OrvuRestInterface::destroyInstance(); }

    LogCapture log;
    OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
};

TEST_F(AFacade, IsOneForTheProcess)
{
    EXPECT_EQ(OrvuRestInterface::getInstance(), &facade);
}

TEST_F(AFacade, GivesNoRequestAwayWithoutACallback)
{
    OrvuRestRequest request(0, nullptr);
    EXPECT_FALSE(facade.notifyCallback(&request));
    EXPECT_THAT(log.lines(), ElementsAre("OrvuRestRequest::OrvuRestRequest: OK", "OrvuRestInterface::notifyCallback",
                                         "Register a callback to receive requests!"));
}

OrvuRestRequest* notified = nullptr;

void* keep(OrvuRestRequest* request)
{
    notified = request;
    return nullptr;  // and null is not a failure
}

TEST_F(AFacade, GivesARequestToTheCallbackOnTheCallersThread)
{
    facade.registerRequestCallback(keep);
    OrvuRestRequest request(0, nullptr);
    EXPECT_TRUE(facade.notifyCallback(&request));
    EXPECT_EQ(notified, &request);
}

TEST_F(AFacade, ForgetsItsCallbackWhenItIsDestroyed)
{
    facade.registerRequestCallback(keep);
    OrvuRestInterface::destroyInstance();
    OrvuRestRequest request(0, nullptr);
    EXPECT_FALSE(OrvuRestInterface::getInstance()->notifyCallback(&request));
}

int logged = 0;

void* count(const char*)
{
    ++logged;
    return nullptr;
}

TEST_F(AFacade, NeverCallsTheLogCallback)
{
    facade.registerLogCallback(count);
    OrvuRestInterface::log("a line");
    EXPECT_EQ(logged, 0);
    EXPECT_THAT(log.lines(), ElementsAre("a line"));
}

TEST_F(AFacade, IsTrueForStoppingWhatDoesNotListen)
{
    EXPECT_TRUE(facade.stopListenRequests());
    EXPECT_THAT(log.lines(), ElementsAre("stopListenRequests", "OrvuRestServerSocket::stop: Stopping server"));
}

TEST_F(AFacade, IsFalseForAPortThatIsTaken)
{
    const PortLease lease;
    const RawPeer taken(boundSocket(lease.port(), true));
    EXPECT_FALSE(facade.startListenRequests(lease.port()));
    EXPECT_THAT(log.lines(),
                ElementsAre("startListenRequests", "OrvuRestServerSocket::configure: ERROR binding server socket!"));
}

}  // namespace
