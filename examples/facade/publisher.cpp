/// \file
/// A small publisher over the facade: it pushes the current service to every client, a new one each second,
/// until Ctrl-C.
///
///     publisher tcp|websocket [MIN-PORT MAX-PORT]
///
/// Without ports the system chooses one. The library's own log lines go to standard error; run it with ORVU_LOG=none to
/// be rid of them.

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>

#include "orvu/Orvu.h"

namespace {

using Orvu::OrvuRestInterface;

const char* const kNames[] = {"Canal Um HD", "Canal Um Notícias", "Canal Dois HD"};

/// Pushes the text of a message. A push server takes any bytes: what listeners expect is the application's to say.
void push(int handler, Orvu::Serializable& message)
{
    const std::unique_ptr<char, void (*)(void*)> text(message.serialize(), std::free);
    if (!text) return;  // out of memory
    auto* const bytes = reinterpret_cast<unsigned char*>(text.get());
    OrvuRestInterface::getInstance()->sendMessage(handler, bytes, static_cast<unsigned>(std::strlen(text.get())));
}

/// Pushes until one of `signals` comes.
void publish(int handler, const sigset_t& signals)
{
    const timespec second{1, 0};
    for (std::size_t next = 0; sigtimedwait(&signals, nullptr, &second) < 0; next = (next + 1) % std::size(kNames)) {
        Orvu::Service service;
        service.serviceName = kNames[next];
        push(handler, service);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2 && argc != 4) {
        std::cerr << "usage: publisher tcp|websocket [MIN-PORT MAX-PORT]\n";
        return 64;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any other thread is started

    OrvuRestInterface* orvu = OrvuRestInterface::getInstance();
    orvu->setSocketsPortsRange(argc == 4 ? std::atoi(argv[2]) : 0, argc == 4 ? std::atoi(argv[3]) : 0);
    const std::unique_ptr<Orvu::SocketServerInfo> server(orvu->createServer(argv[1]));
    if (!server || server->error != 0) {
        std::cerr << "publisher: cannot create the server\n";
        return 1;
    }
    std::cout << server->protocol << " server on " << server->ipAddress << ":" << server->port << std::endl;
    publish(server->handler, signals);
    OrvuRestInterface::destroyInstance();  // closes the clients' connections
    std::cout << "ended" << std::endl;
}
