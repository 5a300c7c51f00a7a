#pragma once

#include <netinet/in.h>
#include <string_view>
#include <sys/types.h>

#include "transport/Socket.h"

namespace Orvu {

/// A connection to a publisher. Every wait on it ends when its bell rings, which is the listener's.
class ListenerConnection {
public:
    enum class Awaited {
        Ready,
        TimeOver,
        Stop,  ///< The bell rang.
        Fault  ///< `errno` says which.
    };

    explicit ListenerConnection(const Socket& bell) : bell_(bell) {}

    /// Connects within 5 s: 0, or the error number. ECANCELED when the bell rang.
    int connectTo(in_addr host, int port);

    /// Waits for bytes and takes what has come: their number, 0 at the end of the stream, or -1. Then `errno` is the
    /// reason: ETIMEDOUT at `until`, ECANCELED when the bell rang.
    ssize_t receive(char* room, std::size_t size, Deadline until = kNever);

    /// Sends all of `bytes`: 0, or the error number. ETIMEDOUT after 5 s, ECANCELED when the bell rang.
    int send(std::string_view bytes);

    /// Sends `goodBye` if there is room at once, then waits for the publisher to close as well, half a second at most,
    /// so that bytes which are still coming do not reset the connection under it. The bell does not cut this
    /// short.
    void finish(std::string_view goodBye);

private:
    Awaited wait(short events, Deadline until);
    int faultAfter(Awaited awaited) const;

    const Socket& bell_;
    Socket socket_;
};

}  // namespace Orvu
