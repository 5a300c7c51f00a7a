/// \file
/// A small publisher over the facade: it pushes the current service to every client, a new one each second,
/// until Ctrl-C.
///
///     publisher tcp|websocket [MIN-PORT MAX-PORT]
///
/// Without ports the system chooses one. The library's own log lines go to standard error; run it with ORVU_LOG=none
/// to turn them off.

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <memory>

#include "orvu/Orvu.h"

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

    Orvu::OrvuRestInterface* orvu = Orvu::OrvuRestInterface::getInstance();
    const int minPort = argc == 4 ? std::atoi(argv[2]) : 0, maxPort = argc == 4 ? std::atoi(argv[3]) : 0;
    const std::unique_ptr<Orvu::SocketServerInfo> server(orvu->createServer(argv[1], minPort, maxPort));
    if (!server || server->error != 0) {
        std::cerr << "publisher: cannot create the server\n";
        return 1;
    }
    std::cout << server->protocol << " server on " << server->ipAddress << ":" << server->port << std::endl;
    const char* const names[] = {"Canal Um HD", "Canal Um Notícias", "Canal Dois HD"};
    const timespec second{1, 0};
    for (std::size_t next = 0; sigtimedwait(&signals, nullptr, &second) < 0; next = (next + 1) % std::size(names)) {
        Orvu::Service service;
        service.serviceName = names[next];
        orvu->sendMessage(server->handler, service);  // a push server takes any bytes; here, a message's text
    }
    Orvu::OrvuRestInterface::destroyInstance();  // closes the clients' connections
    std::cout << "ended" << std::endl;
}
