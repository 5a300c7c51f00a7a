/// \file
/// A small listener over PushListener itself: it prints what a publisher pushes, and the state of the connection,
/// until Ctrl-C.
///
///     listener tcp|websocket PORT [HOST]
///
/// The library's own log lines go to standard error; run it with ORVU_LOG=none to turn them off.

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "orvu/Orvu.h"

namespace {

/// Called on the listener's thread. A message whose type the library knows comes with its object.
void print(Orvu::PushedMessage& message, void*)
{
    if (const auto* service = dynamic_cast<const Orvu::Service*>(message.object))
        std::cout << "now on " << service->serviceName << std::endl;
    else if (message.kind == Orvu::PushedValue)
        std::cout << "a message of " << message.size << " bytes" << std::endl;
    else if (message.kind == Orvu::PushedText)
        std::cout << "not JSON: " << message.text << std::endl;
}

/// The same thread.
void tell(const Orvu::ListenerStatus& status, void*)
{
    if (status.state == Orvu::ListenerStateAttached) std::cout << "attached" << std::endl;
    if (status.state == Orvu::ListenerStateWaiting)
        std::cout << status.reason << "; trying again in " << (status.waitMilliseconds + 999) / 1000 << " s"
                  << std::endl;
}

}  // namespace

int main(int argc, char** argv)
{
    const bool isWebSocket = argc > 1 && std::strcmp(argv[1], "websocket") == 0;
    if (argc < 3 || argc > 4 || (!isWebSocket && std::strcmp(argv[1], "tcp") != 0)) {
        std::cerr << "usage: listener tcp|websocket PORT [HOST]\n";
        return 64;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any other thread is started

    Orvu::PushListener listener;
    listener.onMessage(print, nullptr);
    listener.onState(tell, nullptr);
    listener.makeObjects(true);
    const Orvu::Channel channel = isWebSocket ? Orvu::ChannelWebSocket : Orvu::ChannelTcp;
    if (!listener.listen(argc == 4 ? argv[3] : "127.0.0.1", std::atoi(argv[2]), channel)) {
        std::cerr << "listener: cannot listen to port " << argv[2] << "\n";
        return 1;
    }
    int signal;
    sigwait(&signals, &signal);
    listener.stop();  // no callback runs any more
    std::cout << "ended" << std::endl;
}
