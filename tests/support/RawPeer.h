#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "support/PortLease.h"

namespace OrvuTests {

/// The four bytes that announce a length, the NUL counted.
std::string lengthBytes(std::uint32_t length);

/// One frame with `text`, as it is on the wire.
std::string frameOf(const std::string& text);

/// One end of a connection, below any message: sends the bytes that it is given, in the pieces that it is given.
/// What it waits for comes within 60 s, or it throws std::runtime_error.
class RawPeer {
public:
    explicit RawPeer(int fd);  ///< Takes a connected socket.
    static RawPeer connectedTo(int port);
    static RawPeer unconnected();
    void connectTo(int port);
    RawPeer(RawPeer&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    RawPeer& operator=(RawPeer&& other) noexcept;
    ~RawPeer();

    /// False when the other side is gone.
    bool send(const std::string& bytes);
    /// The same, each byte a segment of its own.
    bool sendByteByByte(const std::string& bytes);

    /// `size` bytes; fewer when the connection ends before.
    std::string receive(std::size_t size);
    /// The text of a frame; none when the connection ends before it is whole.
    std::optional<std::string> readFrame();
    /// What comes until the other side closes or resets the connection.
    std::string readToEnd();
    /// The same, one read of at most `size` bytes at a time.
    std::string readToEnd(std::size_t size);

    /// Says that nothing more will be sent; what comes can still be read.
    void finishSending();
    /// Resets the connection.
    void vanish();
    void close();

    /// The port of this side, which is what the other side sees of it.
    int ownPort() const;
    int fd() const { return fd_; }

private:
    int fd_;
};

/// Listens on a leased port and accepts when told.
class RawListener {
public:
    explicit RawListener(int backlog = 128);
    ~RawListener();
    RawListener(const RawListener&) = delete;
    RawListener& operator=(const RawListener&) = delete;

    int port() const { return lease_.port(); }
    RawPeer accept();

private:
    PortLease lease_;
    int fd_;
};

/// A socket that is bound to `port`, and listens when asked to; -1 when the system refuses.
int boundSocket(int port, bool listening);

}  // namespace OrvuTests
