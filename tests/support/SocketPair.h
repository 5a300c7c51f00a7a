#pragma once

#include <stdexcept>
#include <sys/socket.h>

namespace OrvuTests {

/// The two ends of a connection. Whoever uses one closes it.
struct SocketPair {
    SocketPair()
    {
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw std::runtime_error("no sockets");
    }

    int ends[2];
};

}  // namespace OrvuTests
