#pragma once

#include <memory>
#include <mutex>

#include "orvu/Export.h"

namespace Orvu {

class Serializable;
class Socket;

/// One received request: the message, and the connection on which it is answered, once.
///
/// The application owns it from the callback on: it answers with sendResponse(), from any thread and whenever it likes,
/// and deletes the request. It can answer a request that it kept after OrvuRestInterface::destroyInstance(), too.
/// Answering and deleting from different threads do not interleave.
class ORVU_EXPORT OrvuRestRequest {
public:
    /// Takes `sockfd`, a connected socket (a value below 1: no connection), and `data`, which may be null.
    OrvuRestRequest(int sockfd, Serializable* data);
    OrvuRestRequest(const OrvuRestRequest&) = delete;
    OrvuRestRequest& operator=(const OrvuRestRequest&) = delete;

    /// Deletes the message. A request that was not answered is closed: its peer receives nothing.
    ~OrvuRestRequest();

    /// The received message; null when the request was made without one. The request still owns it.
    Serializable* getData();

    /// Whether nobody is waiting for the answer any more, for an application that takes its time: true after an end of
    /// stream or an error, and once the request is answered. A peer that closed only its sending side counts as gone.
    /// Never waits: false while another thread answers or asks.
    bool isPeerGone();

    /// Answers the request and closes its connection. `response` stays the caller's; a null one, or one that cannot be
    /// written, closes the connection without an answer. Returns the number of text bytes sent; -1 when the peer did
    /// not take them all (it went away meanwhile, or stopped reading for 5 s); 0 when nothing went out: nothing was to
    /// be sent, the peer had gone before, or the request was answered before. Blocks until the answer is handed to the
    /// system.
    int sendResponse(Serializable* response);

    /// Takes both, for the library.
    ORVU_LOCAL OrvuRestRequest(Socket connection, std::unique_ptr<Serializable> data) noexcept;

private:
    /// Owns the connection's socket, whose class this header does not know.
    class Connection {
    public:
        ORVU_LOCAL explicit Connection(Socket socket) noexcept;
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;
        ORVU_LOCAL ~Connection();

        int fd() const { return fd_; }
        /// Gives it away.
        ORVU_LOCAL Socket release();

    private:
        alignas(void*) int fd_;
    };

    Connection connection_;  // without one once the request is answered
    std::unique_ptr<Serializable> data_;
    std::mutex mutex_;
};

}  // namespace Orvu
