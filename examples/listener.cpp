/// \file
/// A listener: it prints what a publisher pushes, and the state of the connection, until Ctrl-C.
///
///     listener tcp|websocket PORT [HOST]
///
/// The library's own log lines go to standard error; run it with ORVU_LOG=none to turn them off.

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

#include "orvu/Typed.h"

namespace {

/// What no handler takes by its type.
void print(const Orvu::PushedMessage& other)
{
    if (other.kind == Orvu::PushedValue) std::cout << "a message of " << other.size << " bytes" << std::endl;
    if (other.kind == Orvu::PushedText) std::cout << "not JSON: " << other.text << std::endl;
}

void tell(const Orvu::ListenerStatus& status)
{
    if (status.state == Orvu::ListenerStateAttached) std::cout << "attached" << std::endl;
    if (status.state == Orvu::ListenerStateWaiting)
        std::cout << status.reason << "; trying again in " << (status.waitMilliseconds + 999) / 1000 << " s"
                  << std::endl;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string protocol = argc == 3 || argc == 4 ? argv[1] : "";
    if (protocol != "tcp" && protocol != "websocket") {
        std::cerr << "usage: listener tcp|websocket PORT [HOST]\n";
        return 64;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any other thread is started

    Orvu::Listener listener;  // its handlers run on its thread, one after the other
    listener.on([](const Orvu::Service& service) { std::cout << "now on " << service.serviceName << std::endl; });
    listener.on(print);
    listener.on(tell);
    const Orvu::Channel channel = protocol == "tcp" ? Orvu::ChannelTcp : Orvu::ChannelWebSocket;
    if (!listener.listen(argc == 4 ? argv[3] : "127.0.0.1", std::atoi(argv[2]), channel)) {
        std::cerr << "listener: " << listener.reason() << "\n";
        return 1;
    }
    int signal;
    sigwait(&signals, &signal);
    listener.stop();  // no handler runs any more
    std::cout << "ended" << std::endl;
}
