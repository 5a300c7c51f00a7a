#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "orvu/OrvuRestInterface.h"

/// publisher PROTOCOL PORT: a program with one push server that does what signals tell it, and says so in a line each:
///
///     SIGUSR1  pushes "hello" ("pushed 1" or "pushed 0")
///     SIGUSR2  takes all descriptors that are left ("none left"); gives them back the next time ("some left")
///     SIGTERM  stops the server ("stopped") and ends
///     SIGINT   ends with the server running
///
/// Its first line is its process number, which says that clients can connect.

namespace {

using Orvu::OrvuRestInterface;

std::vector<int> taken;

void say(const std::string& line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

void pushHello(int handler)
{
    unsigned char hello[] = {'h', 'e', 'l', 'l', 'o'};
    say(OrvuRestInterface::getInstance()->sendMessage(handler, hello, sizeof hello) ? "pushed 1" : "pushed 0");
}

void takeDescriptors()
{
    for (int fd; (fd = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) >= 0;)
        taken.push_back(fd);
    say("none left");
}

void giveDescriptorsBack()
{
    std::for_each(taken.begin(), taken.end(), close);
    taken.clear();
    say("some left");
}

int publish(const char* protocol, int port, const sigset_t& signals)
{
    OrvuRestInterface::getInstance()->setSocketsPortsRange(port, port);
    const std::unique_ptr<Orvu::SocketServerInfo> info(OrvuRestInterface::getInstance()->createServer(protocol));
    if (!info || info->error != 0) return EXIT_FAILURE;
    say(std::to_string(getpid()));
    for (int signal; sigwait(&signals, &signal) == 0;) {
        if (signal == SIGUSR1) pushHello(info->handler);
        if (signal == SIGUSR2) taken.empty() ? takeDescriptors() : giveDescriptorsBack();
        if (signal == SIGTERM) break;
        if (signal == SIGINT) std::exit(EXIT_SUCCESS);
    }
    OrvuRestInterface::destroyInstance();
    say("stopped");
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv)
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGUSR1, SIGUSR2, SIGTERM, SIGINT})
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return argc == 3 ? publish(argv[1], std::atoi(argv[2]), signals) : EXIT_FAILURE;
}
