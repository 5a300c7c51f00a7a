#include <gtest/gtest.h>
#include <sys/socket.h>

#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "support/FailingMemory.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "transport/OrvuRestClientSocket.h"
#include "transport/OrvuRestServerSocket.h"

using namespace Orvu;
using namespace OrvuTests;

// That nothing leaks is the sanitizer's to say.

namespace {

TEST(ASingletonWithoutMemory, IsNullAndCanBeHadLater)
{
    const LogCapture log;
    EXPECT_EQ(withMemoryRefused([] { return OrvuRestInterface::getInstance(); },
                                [](OrvuRestInterface* facade, bool) { EXPECT_NE(facade, nullptr); }),
              0);
    EXPECT_GE(
        withMemoryRefused([] { return OrvuRestServerSocket::getInstance(); },
                          [](OrvuRestServerSocket* server, bool refused) { EXPECT_EQ(server == nullptr, refused); }),
        1);
    EXPECT_GE(
        withMemoryRefused([] { return OrvuRestClientSocket::getInstance(); },
                          [](OrvuRestClientSocket* client, bool refused) { EXPECT_EQ(client == nullptr, refused); }),
        1);
    OrvuRestInterface::destroyInstance();
}

TEST(ARequest, IsNeverMadeWithoutItsConnection)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    RawPeer peer(ends[0]);
    alignas(OrvuRestRequest) unsigned char place[sizeof(OrvuRestRequest)];
    EXPECT_EQ(withMemoryRefused([&] { return new (place) OrvuRestRequest(ends[1], nullptr); },
                                [&](OrvuRestRequest* request, bool) {
                                    EXPECT_FALSE(request->isPeerGone());
                                    request->~OrvuRestRequest();
                                }),
              0);
    EXPECT_EQ(peer.readToEnd(), "");
}

}  // namespace
