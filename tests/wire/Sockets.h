#pragma once

#include <cstddef>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace OrvuTests {

/// The open descriptors of this process.
std::vector<int> openDescriptors();

/// Those of them that are sockets.
std::vector<int> openSockets();

/// The one that listens on `port`; -1 without one.
int listenerOn(int port);

/// Whether somebody listens on `port`.
bool canConnect(int port);
/// Whether nobody does, so that somebody can.
bool canListenOn(int port);

/// The address that it listens on, dotted; empty without one.
std::string listenAddressOf(int port);

/// How many connections may wait at a listener to be accepted, and how many the system allows.
unsigned backlogOf(int listener);
unsigned longestBacklog();

/// How many connections to `port` are still being opened.
int connectionsBeingOpened(int port);
/// Whether there is one.
inline bool isBeingOpened(int port)
{
    return connectionsBeingOpened(port) > 0;
}

/// What this process has in memory, in bytes: now, and the most since the last call of resetPeakMemory().
std::size_t residentMemory();
std::size_t peakMemory();
void resetPeakMemory();

/// While it lives this process can open no descriptor. A thread that waits in accept has reserved one by then.
class NoDescriptorsLeft {
public:
    NoDescriptorsLeft();
    ~NoDescriptorsLeft();
    NoDescriptorsLeft(const NoDescriptorsLeft&) = delete;
    NoDescriptorsLeft& operator=(const NoDescriptorsLeft&) = delete;

private:
    rlimit before_;
    std::vector<int> taken_;
};

/// While it lives the system starts no thread for this process: each would get a stack larger than there is room for.
class NoThreadsLeft {
public:
    NoThreadsLeft();
    ~NoThreadsLeft();
    NoThreadsLeft(const NoThreadsLeft&) = delete;
    NoThreadsLeft& operator=(const NoThreadsLeft&) = delete;

private:
    std::size_t before_;
};

}  // namespace OrvuTests
