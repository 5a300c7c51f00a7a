#include <gmock/gmock.h>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "messages/core/Exact.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "support/Children.h"
#include "wire/ClientFixture.h"
#include "wire/Sockets.h"
#include "wire/WithoutTypeInfo.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

int portOf(int (*name)(int, sockaddr*, socklen_t*), int fd)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    return name(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0 ? ntohs(address.sin_port) : -1;
}

/// This process's other end of `connection`.
int otherEndOf(const RawPeer& connection)
{
    for (const int fd : openSockets())
        if (portOf(getsockname, fd) == portOf(getpeername, connection.fd())) return fd;
    return -1;
}

timeval timeOutOf(int fd, int option)
{
    timeval time{-1, -1};
    socklen_t size = sizeof time;
    getsockopt(fd, SOL_SOCKET, option, &time, &size);
    return time;
}

constexpr int kNone = 0;

struct TheTimeOut : ARequestClient {
    /// The seconds that the client waits at most while it sends `request`.
    long long of(Serializable& request)
    {
        timeval reading{};
        timeval writing{};
        send(&request, [&](RawPeer& connection) {
            connection.readFrame();
            reading = timeOutOf(otherEndOf(connection), SO_RCVTIMEO);
            writing = timeOutOf(otherEndOf(connection), SO_SNDTIMEO);
        });
        EXPECT_EQ(reading.tv_sec, writing.tv_sec);
        return reading.tv_sec;
    }
};

TEST_F(TheTimeOut, IsFiveSeconds)
{
    SuccessResponse request;
    EXPECT_EQ(of(request), 5);
}

TEST_F(TheTimeOut, IsNoneForAConfirmationThatWaitsForTheUser)
{
    ConfirmationScreen request("phone");
    EXPECT_EQ(of(request), kNone);
}

TEST_F(TheTimeOut, IsFiveSecondsForAConfirmationThatIsDisposedOf)
{
    ConfirmationScreen request("phone");
    request.dispose = true;
    EXPECT_EQ(of(request), 5);
}

TEST_F(TheTimeOut, IsNoneForAnApplicationsOwnKindOfConfirmation)
{
    Inheriting<ConfirmationScreen> request("phone");
    EXPECT_EQ(of(request), kNone);
}

/// Says that it is a confirmation, and is another class.
class Impostor : public Serializable {
public:
    Impostor() : Serializable(DataTypeConfirmationScreen) {}
    char* serialize() override { return textOfAnApplication(R"({"HEADER":"confirmationScreen"})"); }
    bool deserialize(const char*) override { return true; }
    using Serializable::deserialize;
};

TEST_F(TheTimeOut, IsFiveSecondsForAnotherClassOfTheSameType)
{
    Impostor request;
    EXPECT_EQ(of(request), 5);
}

TEST_F(TheTimeOut, IsFiveSecondsForClassesWithoutTypeInformation)
{
    for (const auto& request : {screenWithoutTypeInfo(), anotherClassWithoutTypeInfo()}) {
        ASSERT_EQ(typeOf(*request), nullptr);
        EXPECT_EQ(of(*request), 5);
    }
}

}  // namespace
