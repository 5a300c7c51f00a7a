#pragma once

#include <memory>

#include "orvu/Serializable.h"

namespace Orvu {

class RequestClient;

/// The request client: remembers one peer, and has a connection of its own for each request to it.
///
/// One object a process, made on first use. Any thread; several may have requests in flight at once.
class ORVU_EXPORT OrvuRestClientSocket {
public:
    OrvuRestClientSocket(const OrvuRestClientSocket&) = delete;
    OrvuRestClientSocket& operator=(const OrvuRestClientSocket&) = delete;

    /// The process's request client. Null when memory cannot be had.
    static OrvuRestClientSocket* getInstance();

    /// Deletes the client. Exchanges in flight are woken and end with an error message as their answer; it does not wait
    /// for them.
    static void destroyInstance();

    /// Sets the peer, a name or dotted IPv4 address, and tests that it can be reached within 5 s. The peer is kept even when
    /// the result is false. Requests in flight stay with the peer they have.
    bool configure(const char* host, int port);

    /// A connection to the peer whose reads and writes wait for `timeoutSeconds` at most, 0 for without end. The caller
    /// closes the descriptor. 0 on any failure.
    int connectSocket(int timeoutSeconds);

    /// One exchange. Returns the answer, owned by the caller; never null: a CannotConnectToServer when the peer cannot be
    /// reached, an EmptyData when no answer comes, an UnknowRequest when the request cannot be written or the answer not be
    /// understood. `request` stays the caller's. Blocks, each step for `timeoutSeconds` at most, 0 for without end.
    Serializable* send(Serializable* request, int timeoutSeconds);

    /// The same with the time-out that the request asks for: 5 s, without end for a ConfirmationScreen whose `dispose` is
    /// false, since the user decides.
    Serializable* sendRequest(Serializable* request);

    /// The same with an empty request of `type`. Null for a type that the factory cannot make.
    Serializable* sendRequest(DataType type);

private:
    friend class OrvuRestInterface;

    explicit OrvuRestClientSocket(std::shared_ptr<RequestClient> client);
    ~OrvuRestClientSocket();

    static OrvuRestClientSocket* instanceLocked();
    /// What the client is made of, which outlives the client while somebody uses it. Null when memory cannot be had.
    static std::shared_ptr<RequestClient> shared();

    const std::shared_ptr<RequestClient> client_;
};

}  // namespace Orvu
