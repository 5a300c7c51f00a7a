#include "transport/OrvuRestServerTcpSocket.h"

#include <algorithm>
#include <new>

#include "log/Log.h"

namespace Orvu {
namespace {

constexpr unsigned kMostLogged = 4096;  // no log line holds more

constexpr Acceptor::Kind kKind{
    "OrvuRestServerTcpSocket",
    Acceptor::SinceStarted,
    Acceptor::ClosesSocket,
    "OrvuRestServerTcpSocket::stop: Stopping server",
    nullptr,
    "OrvuRestServerTcpSocket::serverThread: Server loop start!",
    nullptr,
    nullptr,
    "OrvuRestServerTcpSocket::serverThread: Server loop end!",
    nullptr,
};

}  // namespace

OrvuRestServerTcpSocket::OrvuRestServerTcpSocket() : acceptor_(kKind, clients_) {}
OrvuRestServerTcpSocket::~OrvuRestServerTcpSocket() = default;

bool OrvuRestServerTcpSocket::configure(int port)
{
    return acceptor_.configure({htonl(INADDR_ANY)}, port);
}

bool OrvuRestServerTcpSocket::start()
{
    return acceptor_.start();
}

void OrvuRestServerTcpSocket::stop()
{
    acceptor_.stop();
}

[[gnu::hot]] bool OrvuRestServerTcpSocket::send(unsigned char* data, unsigned int size)
{
    if (!data) size = 0;
    logLine("OrvuRestServerTcpSocket::send: Send to client: %.*s",
            static_cast<int>(std::min<unsigned>(size, kMostLogged)), data ? reinterpret_cast<char*>(data) : "");
    try {
        return clients_.send(data, size);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerTcpSocket::send: ERROR out of memory!");
        return false;
    }
}

}  // namespace Orvu
