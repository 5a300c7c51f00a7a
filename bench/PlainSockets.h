#pragma once

#include <cstddef>
#include <string_view>
#include <thread>
#include <vector>

namespace OrvuBench {

/// \file
/// The exchange as one would write it without further needs: one frame each way on a connection of its own. No
/// time-outs, no stopping half way, no log.

/// Room on the stack for the one frame that comes in; longer frames are not supported. The first use of a page of a
/// fresh stack is a page fault, so a server takes only what requests need.
struct RequestRoom {
    char bytes[4 * 1024];
};
struct AnswerRoom {
    char bytes[64 * 1024];
};

/// A stream socket; throws std::system_error.
int streamSocket();

/// Binds it to a free port of this machine and listens. The port; throws std::system_error.
int listenOnFreePort(int fd);

/// Connects it to a port of this machine.
bool connectTo(int port, int fd);

/// A port that was free a moment ago, for servers that cannot say which port they chose.
int freePort();

/// Reads one frame into `room`; its text, which ends with a NUL there, or none when it does not come whole.
std::string_view receiveText(int fd, char* room, std::size_t size);

/// Sends one frame.
bool sendText(int fd, std::string_view text);

/// Sends `request` to `port` of this machine; the answer's text, in `room`, or none.
std::string_view exchange(int port, std::string_view request, AnswerRoom& room);

class PlainServer {
public:
    /// Answers one request on its connection, by sendText(). Called on the thread that serves the connection.
    using Answer = void (*)(int connection, const char* request);

    /// Which threads serve the connections.
    enum Threads {
        OneEach,  ///< A detached one for each connection, made when it was accepted.
        Kept      ///< Four threads that already run: each accepts a connection and serves it, one after the other.
    };

    /// Listens on a free port of this machine. Throws std::system_error.
    explicit PlainServer(Answer answer, Threads threads = OneEach);
    ~PlainServer();
    PlainServer(const PlainServer&) = delete;
    PlainServer& operator=(const PlainServer&) = delete;

    int port() const { return port_; }

private:
    void acceptConnections() const;

    const Answer answer_;
    const Threads threads_;
    const int listener_;
    const int port_;
    std::vector<std::thread> acceptThreads_;
};

}  // namespace OrvuBench
