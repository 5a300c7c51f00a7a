#include <iostream>
#include <memory>
#include <string>

#include "orvu/OrvuRestInterface.h"
#include "support/PortLease.h"

namespace {

using Orvu::OrvuRestInterface;
using Orvu::SocketServerInfo;

/// A WebSocket push server on a port of its own, which it keeps from one start to the next.
class PushServer {
public:
    void start();
    void stop();
    void push(std::string text);

private:
    const OrvuTests::PortLease lease_;
    std::unique_ptr<SocketServerInfo> info_;
};

/// One event, one line, at once: the tests wait for it.
void tell(const std::string& event)
{
    std::cout << event << std::endl;
}

void PushServer::start()
{
    OrvuRestInterface* const orvu = OrvuRestInterface::getInstance();
    orvu->setSocketsPortsRange(lease_.port(), lease_.port());
    info_.reset(orvu->createServer("websocket"));
    const bool listening = info_ && info_->error == 0;
    tell(listening ? "listening " + std::to_string(info_->port) : "cannot listen");
}

void PushServer::stop()
{
    const bool stopped = info_ && OrvuRestInterface::getInstance()->stopServer(info_->handler);
    tell(stopped ? "stopped" : "cannot stop");
}

void PushServer::push(std::string text)
{
    auto* const bytes = reinterpret_cast<unsigned char*>(&text[0]);
    const auto size = static_cast<unsigned int>(text.size());
    const bool pushed = info_ && OrvuRestInterface::getInstance()->sendMessage(info_->handler, bytes, size);
    tell(pushed ? "pushed " + std::to_string(size) : "not pushed");
}

/// Does what one line asks for; false for "quit".
bool obey(const std::string& line, PushServer& server)
{
    const std::string kPush = "push ";
    if (line == "quit") return false;
    if (line == "stop" || line == "restart") server.stop();
    if (line == "start" || line == "restart") server.start();
    if (line.compare(0, kPush.size(), kPush) == 0) server.push(line.substr(kPush.size()));
    return true;
}

}  // namespace

/// The server side of the browser tests: "push TEXT", "stop", "start", "restart" and "quit", a line each on standard
/// input; what came of it, a line each on standard output. Ends with its input, too.
int main()
{
    PushServer server;
    server.start();
    std::string line;
    while (std::getline(std::cin, line) && obey(line, server)) {
    }
    OrvuRestInterface::destroyInstance();
    return 0;
}
