#include <atomic>
#include <fcntl.h>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Results.h"
#include "transport/OrvuRestClientSocket.h"
#include "wire/Latch.h"
#include "wire/Receiver.h"

/// wire-child WHAT [PORT]: a program that uses the library, for the tests of what only a whole process shows.

using namespace Orvu;
using namespace OrvuTests;

namespace {

Latch& callbackEntered()
{
    static auto* const kForEver = new Latch;
    return *kForEver;
}

void* answerOrStay(OrvuRestRequest* request)
{
    if (request->getData()->getDataType() == DataTypeSuccess) {
        answerWithSuccess(request);
        return nullptr;
    }
    callbackEntered().open();
    for (;;)
        pause();
}

RawPeer* peerThatHasSent(int port, const std::string& bytes)
{
    auto* const peer = new RawPeer(RawPeer::connectedTo(port));
    peer->send(bytes);
    return peer;
}

/// Leaves main while the server runs, with workers at every step, and a request of its own in flight.
int leaveMain()
{
    static PortLease lease;
    static RawListener silent;
    OrvuRestInterface* const facade = OrvuRestInterface::getInstance();
    facade->registerRequestCallback(answerOrStay);
    if (!facade->startListenRequests(lease.port())) return 1;
    static RawPeer* const peers[] = {peerThatHasSent(lease.port(), ""), peerThatHasSent(lease.port(), "\x01\x02"),
                                     peerThatHasSent(lease.port(), frameOf(kSuccess).substr(0, 20)),
                                     peerThatHasSent(lease.port(), frameOf("{}"))};
    callbackEntered().wait();
    if (!facade->configureClient("127.0.0.1", silent.port())) return 2;
    silent.accept();
    std::thread([facade] {
        SuccessResponse request;
        delete facade->sendRequest(&request);
    }).detach();
    static const RawPeer asked = silent.accept();
    return peers[0] && asked.fd() >= 0 ? 0 : 3;
}

/// Started without a standard input: no descriptor may take its place, or it would count as none.
int withoutInput(int port)
{
    std::atomic<bool> isFree{false};
    const RegisteredHandler handler([&](OrvuRestRequest* request) {
        isFree = fcntl(STDIN_FILENO, F_GETFD) < 0;
        answerWithSuccess(request);
    });
    OrvuRestInterface& facade = *OrvuRestInterface::getInstance();
    if (!facade.startListenRequests(port)) return 1;
    if (!facade.configureClient("127.0.0.1", port)) return 2;
    SuccessResponse request;
    const std::unique_ptr<Serializable> answer(facade.sendRequest(&request));
    const int number = OrvuRestClientSocket::getInstance()->connectSocket(5);
    close(number);
    OrvuRestInterface::destroyInstance();
    return answer->getDataType() == DataTypeSuccess && number >= 3 && isFree ? 0 : 3;
}

}  // namespace

int main(int, char** arguments)
{
    const std::string what = arguments[1];
    if (what == "leave-main") return leaveMain();
    if (what == "without-input") return withoutInput(std::stoi(arguments[2]));
    return 64;
}
