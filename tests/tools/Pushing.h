#pragma once

#include <string>
#include <vector>

#include "support/PortLease.h"
#include "support/Process.h"
#include "support/RawPeer.h"
#include "tools/Tool.h"

namespace OrvuTests {

/// A named pipe that a process reads or writes by its path. As long as it is open here, the process finds no end, and
/// waits when nobody reads.
class Pipe {
public:
    Pipe();
    ~Pipe();
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    const std::string& path() const { return path_; }
    /// Writes all of `bytes`, as fast as the process reads.
    void write(const std::string& bytes);
    /// Waits until not one byte more fits in; false after 30 s.
    bool waitUntilFull();
    void close();

private:
    Folder folder_;
    std::string path_;
    int fd_;
};

/// One port as a range, for `--ports`.
std::string rangeOf(int port);

/// `text` over and over, at least `size` bytes of it.
std::string repeated(const std::string& text, std::size_t size);

/// `orvu push` with a port of its own, fed line by line.
class Publisher {
public:
    /// "tcp" or "websocket". Throws std::runtime_error when it does not come up.
    explicit Publisher(const std::string& protocol, const std::vector<std::string>& options = {});

    int port() const { return port_.port(); }
    std::string portText() const { return std::to_string(port()); }
    const std::string& protocol() const { return protocol_; }
    Process& process() { return process_; }

    /// Puts `bytes` into its input.
    void say(const std::string& bytes) { input_.write(bytes); }
    /// Says one line, waits until it was pushed, and returns what is told of it.
    std::string push(const std::string& line);
    /// Pushes "[]" until a client takes it.
    void waitForClient();
    /// Pushes "[]" until none does.
    void waitForNoClient();
    /// Pushes "[]" until the watcher shows it.
    void waitFor(Process& watcher);

    /// Ends its input.
    Ended endInput();
    /// Stops it as Ctrl-C does.
    Ended interrupt();

private:
    std::string protocol_;
    PortLease port_;
    Pipe input_;
    Process process_;
};

/// The arguments of `orvu watch` for a port of this machine and a protocol.
std::vector<std::string> watching(int port, const std::string& protocol, const std::vector<std::string>& options = {});

/// What a watcher over TCP or a WebSocket says on standard error once it is connected to a port of this machine.
std::string watchingLine(int port);
/// What it says when the publisher has pushed something and then closes the connection.
std::string closedLine(int port);

/// What a watcher showed after the lines "[]" that it was waited for with.
std::string shownAfterwards(const std::string& out);

/// A WebSocket client that has performed its opening handshake with a server on a port of this machine.
RawPeer attachedTo(int port);

/// What a WebSocket client asks first, up to its blank line.
std::string openingRequestFrom(RawPeer& client);
/// The answer to it.
std::string answerTo(const std::string& openingRequest);
/// The next client of a server, its opening handshake performed.
RawPeer attachedFrom(RawListener& server);

}  // namespace OrvuTests
