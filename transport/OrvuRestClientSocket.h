#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "orvu/Serializable.h"
#include "transport/InFlight.h"

namespace Orvu {

class ExchangeNotes;
struct ExchangeReport;

/// The request client: remembers one peer, and has a connection of its own for each request to it.
///
/// One object a process, made on first use. Any thread; several may have requests in flight at once.
class ORVU_EXPORT OrvuRestClientSocket : public std::enable_shared_from_this<OrvuRestClientSocket> {
public:
    OrvuRestClientSocket(const OrvuRestClientSocket&) = delete;
    OrvuRestClientSocket& operator=(const OrvuRestClientSocket&) = delete;

    /// The process's request client. Null when out of memory.
    static OrvuRestClientSocket* getInstance();
    /// The same, which then lives at least as long as the result.
    ORVU_LOCAL static std::shared_ptr<OrvuRestClientSocket> sharedInstance();

    /// Deletes the client once nobody uses it. Exchanges in flight are woken and end with an error message as their
    /// answer; it does not wait for them.
    static void destroyInstance();

    /// Wakes the exchanges in flight, which end with an error message as their answer; it does not wait for them. Those
    /// that begin afterwards are not touched.
    ORVU_LOCAL static void cancelRequests();
    /// The same for the exchanges of `group` alone.
    ORVU_LOCAL static void cancelRequests(const void* group);

    /// Sets the peer, a name or dotted IPv4 address, and tests that it can be reached within 5 s. The peer is kept even
    /// when the result is false. Requests in flight stay with the peer they have.
    bool configure(const char* host, int port);

    /// A connection to the peer whose reads and writes wait for `timeoutSeconds` at most; 0 is no limit. The caller
    /// closes the descriptor. 0 on any failure.
    int connectSocket(int timeoutSeconds);

    /// One exchange. Returns the answer, owned by the caller; null only when out of memory: a CannotConnectToServer
    /// when the peer cannot be reached, an EmptyData when no answer comes, an UnknowRequest when the request cannot be
    /// written or the answer not be understood. `request` stays the caller's. Blocks, each step for `timeoutSeconds` at
    /// most (0 is no limit), and as long as a name takes to resolve.
    Serializable* send(Serializable* request, int timeoutSeconds);

    /// The same with the time-out that the request asks for: 5 s, or no limit for a ConfirmationScreen whose `dispose`
    /// is false, since the user decides.
    Serializable* sendRequest(Serializable* request);

    /// The same with an empty request of `type`. Null as well for a type that the factory cannot make.
    Serializable* sendRequest(DataType type);

    /// Both with a report, which is filled unless it is smaller than its first version.
    Serializable* sendRequest(Serializable* request, ExchangeReport& report);
    Serializable* sendRequest(DataType type, ExchangeReport& report);

    /// A peer that is not remembered; its host stays the caller's and may be null.
    struct Address {
        const char* host;
        int port;
    };
    /// One exchange with that peer.
    ORVU_LOCAL Serializable* sendRequest(const Address& address, Serializable* request, ExchangeReport& report);
    /// Whether it can be reached within 5 s, as part of `group`, which may be null.
    ORVU_LOCAL bool isReachable(const Address& address, const void* group);

private:
    struct Peer {
        std::string host;
        int port = 0;
    };

    ORVU_LOCAL OrvuRestClientSocket();
    ORVU_LOCAL ~OrvuRestClientSocket();

    ORVU_LOCAL void setPeer(Peer peer);
    ORVU_LOCAL Peer peerAt(const Address* own);
    ORVU_LOCAL bool canConnect(const Address* address, const void* group);
    // Those below have the remembered peer where `address` is null.
    ORVU_LOCAL ConnectionInFlight connect(const Address* address, int timeoutSeconds, ExchangeNotes& notes,
                                          InGroup* exchange);
    ORVU_LOCAL Serializable* sendRequest(const Address* address, Serializable* request, ExchangeNotes& notes);
    ORVU_LOCAL Serializable* sendRequest(DataType type, ExchangeNotes& notes);
    ORVU_LOCAL Serializable* send(const Address* address, Serializable* request, int timeoutSeconds,
                                  ExchangeNotes& notes);
    ORVU_LOCAL Serializable* exchange(const Address* address, Serializable* request, int timeoutSeconds,
                                      ExchangeNotes& notes);

    std::mutex mutex_;  // guards peer_
    Peer peer_;
    const std::shared_ptr<InFlight> inFlight_;
};

}  // namespace Orvu
