#include <gmock/gmock.h>
#include <memory>
#include <netinet/in.h>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/FailingMemory.h"
#include "support/RawPeer.h"
#include "transport/InFlight.h"
#include "transport/OrvuRestClientSocket.h"
#include "transport/OrvuRestServerSocket.h"
#include "transport/RequestClient.h"
#include "transport/RequestWorker.h"

using namespace Orvu;
using namespace OrvuTests;
using testing::AnyOf;

// Everything that is refused here is refused on the test's own thread. That nothing leaks is the sanitizer's to say, and for
// descriptors the test's.

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"a text beyond any small buffer"})";
const std::string kSuccess = "{\n\t\"HEADER\":\t\"success\"\n}";
const std::string kUnknown = "{\n\t\"HEADER\":\t\"unknown\"\n}";

/// Keeps the log in memory that no allocation of this program is needed for.
class LogInAFile {
public:
    LogInAFile() : file_(memfd_create("log", MFD_CLOEXEC)), before_(dup(STDERR_FILENO)) { dup2(file_, STDERR_FILENO); }
    ~LogInAFile()
    {
        dup2(before_, STDERR_FILENO);
        close(before_);
        close(file_);
    }
    /// What was logged since the last call.
    std::string take()
    {
        std::string text(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
        text.resize(static_cast<std::size_t>(pread(file_, text.data(), text.size(), 0)));
        if (ftruncate(file_, 0) != 0) text.clear();
        lseek(file_, 0, SEEK_SET);
        return text;
    }

private:
    const int file_;
    const int before_;
};

/// The lowest free descriptor: one that leaks moves it up.
int nextDescriptor()
{
    const int fd = dup(STDIN_FILENO);
    close(fd);
    return fd;
}

void* answerWithSuccess(OrvuRestRequest* request)
{
    SuccessResponse answer;
    request->sendResponse(&answer);
    delete request;
    return nullptr;
}

/// False when not even a worker could be made, which is the accept loop's to report.
bool serve(int connection, const std::shared_ptr<InFlight>& inFlight)
{
    std::optional<RequestWorker> worker;
    try {
        worker.emplace(Connection(Socket(connection), inFlight));
    } catch (const std::bad_alloc&) {
        return false;
    }
    worker->run();
    return true;
}

TEST(AWorkerWithoutMemory, EndsItsExchangeWithALogLine)
{
    LogInAFile log;
    const auto inFlight = std::make_shared<InFlight>();
    OrvuRestInterface::getInstance()->registerRequestCallback(answerWithSuccess);
    const int before = nextDescriptor();
    int peer = -1;
    const int refusals = withMemoryRefused(
        [&] {
            int ends[2];
            EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
            const std::uint32_t length = static_cast<std::uint32_t>(kRequest.size()) + 1;
            EXPECT_EQ(send(ends[0], &length, sizeof length, 0), 4);
            EXPECT_EQ(send(ends[0], kRequest.data(), kRequest.size(), 0), static_cast<ssize_t>(kRequest.size()));
            peer = ends[0];
            return serve(ends[1], inFlight);
        },
        [&](bool hadAWorker, bool refused) {
            const std::string answer = RawPeer(peer).readToEnd();
            const std::string logged = log.take();
            if (!refused) {
                EXPECT_EQ(answer, frameOf(kSuccess));
            } else if (hadAWorker) {
                EXPECT_THAT(answer, AnyOf("", frameOf(kSuccess), frameOf(kUnknown)));
                EXPECT_TRUE(!answer.empty() || logged.find("ERROR") != std::string::npos) << logged;
            }
            EXPECT_EQ(nextDescriptor(), before);
        });
    EXPECT_GT(refusals, 5);
    inFlight->waitUntilEmpty();
    OrvuRestInterface::destroyInstance();
}

/// Answers every request, on its own thread and without an allocation.
class AnsweringPeer {
public:
    AnsweringPeer() : answer_(frameOf(R"({"HEADER":"serviceSelection","serviceContextId":"another long text"})"))
    {
        fd_ = boundSocket(lease_.port(), true);
        thread_ = std::thread([this] {
            char bytes[1000];
            for (int client; (client = accept(fd_, nullptr, nullptr)) >= 0; close(client))
                if (recv(client, bytes, sizeof bytes, 0) > 0)
                    send(client, answer_.data(), answer_.size(), MSG_NOSIGNAL);
        });
    }
    ~AnsweringPeer()
    {
        shutdown(fd_, SHUT_RDWR);
        thread_.join();
        close(fd_);
    }
    int port() const { return lease_.port(); }

private:
    PortLease lease_;
    const std::string answer_;
    int fd_;
    std::thread thread_;
};

/// Whether this process has a socket that is connected to `port`.
bool isConnectedTo(int port)
{
    for (int fd = 3; fd < 100; ++fd) {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        const bool connected = getpeername(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0;
        if (connected && ntohs(address.sin_port) == port) return true;
    }
    return false;
}

TEST(AClientWithoutMemory, GivesAnErrorMessageAndCloses)
{
    LogInAFile log;
    const AnsweringPeer peer;
    RequestClient client;
    ASSERT_TRUE(client.configure("127.0.0.1", peer.port()));
    ServiceSelection request;
    request.serviceContextId = "a text beyond any small buffer";
    const int refusals = withMemoryRefused(
        [&] { return std::unique_ptr<Serializable>(client.sendRequest(&request)); },
        [&](const std::unique_ptr<Serializable>& answer, bool refused) {
            const std::string logged = log.take();
            ASSERT_NE(answer, nullptr) << logged;
            if (!refused) {
                EXPECT_EQ(answer->getDataType(), DataTypeServiceSelection);
                return;
            }
            EXPECT_THAT(answer->getDataType(), AnyOf(DataTypeEmptyData, DataTypeUnknown, DataTypeServiceSelection));
            EXPECT_FALSE(isConnectedTo(peer.port())) << logged;
        });
    EXPECT_GT(refusals, 5);
}

TEST(AClientWithoutMemory, CannotBeConfigured)
{
    LogInAFile log;
    const AnsweringPeer peer;
    RequestClient client;
    const std::string host = "127.0.0.1";
    const int refusals =
        withMemoryRefused([&] { return client.configure(host.c_str(), peer.port()); },
                          [&](bool configured, bool refused) { EXPECT_NE(configured, refused) << log.take(); });
    EXPECT_GE(refusals, 1);
}

TEST(ASingletonWithoutMemory, IsNullAndCanBeHadLater)
{
    const LogInAFile log;
    EXPECT_EQ(withMemoryRefused([] { return OrvuRestInterface::getInstance(); },
                                [](OrvuRestInterface* facade, bool refused) { EXPECT_EQ(facade == nullptr, refused); }),
              1);
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

TEST(AServerWithoutMemory, DoesNotStartToListen)
{
    const LogInAFile log;
    OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
    const PortLease lease;
    const int refusals = withMemoryRefused([&] { return facade.startListenRequests(lease.port()); },
                                           [](bool listening, bool refused) { EXPECT_NE(listening, refused); });
    EXPECT_GE(refusals, 2);
    OrvuRestInterface::destroyInstance();
}

TEST(ARequestWithoutMemory, ClosesItsConnection)
{
    LogInAFile log;
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    RawPeer peer(ends[0]);
    {
        alignas(OrvuRestRequest) unsigned char place[sizeof(OrvuRestRequest)];
        auto* const request = [&] {
            const FailingMemory memory(1);
            return new (place) OrvuRestRequest(ends[1], nullptr);
        }();
        EXPECT_EQ(peer.readToEnd(), "");
        request->~OrvuRestRequest();
    }
    EXPECT_NE(log.take().find("OrvuRestRequest::OrvuRestRequest: ERROR out of memory!"), std::string::npos);
}

}  // namespace
