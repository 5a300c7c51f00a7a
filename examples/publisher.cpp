/// \file
/// A publisher: it pushes the current service to every client, a new one each second, until Ctrl-C.
///
///     publisher tcp|websocket [MIN-PORT MAX-PORT]
///
/// Without ports the system chooses one. The library's own log lines go to standard error; run it with ORVU_LOG=none
/// to turn them off.

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <iterator>

#include "orvu/Typed.h"

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

    Orvu::Publisher publisher(argv[1], argc == 4 ? std::atoi(argv[2]) : 0, argc == 4 ? std::atoi(argv[3]) : 0);
    if (!publisher) {
        std::cerr << "publisher: " << publisher.reason() << "\n";
        return 1;
    }
    std::cout << argv[1] << " server on " << publisher.address() << ":" << publisher.port() << std::endl;
    const char* const names[] = {"Canal Um HD", "Canal Um Notícias", "Canal Dois HD"};
    const timespec second{1, 0};
    for (std::size_t next = 0; sigtimedwait(&signals, nullptr, &second) < 0; next = (next + 1) % std::size(names)) {
        Orvu::Service service;
        service.serviceName = names[next];
        publisher.push(service);
    }
    publisher.stop();  // closes the listeners' connections
    std::cout << "ended" << std::endl;
}
