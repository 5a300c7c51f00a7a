#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <poll.h>
#include <vector>

#include "transport/OrvuRestSimpleServer.h"
#include "transport/Socket.h"
#include "transport/Threads.h"

namespace Orvu {

/// Pushes raw bytes, without any framing, to every client that connected. Nothing is ever read from a client.
///
/// Any thread. A push that is still going out delays the next one, and nothing else.
class ORVU_EXPORT OrvuRestServerTcpSocket : public OrvuRestSimpleServer {
public:
    OrvuRestServerTcpSocket();
    ~OrvuRestServerTcpSocket() override;

    bool configure(int port) override;
    bool start() override;
    /// Closes every client as well. A push in progress ends.
    void stop() override;
    /// Offers the bytes to every client in the order of acceptance, then gives those that could not take them whole the
    /// rest, for 5 s at most in all. A client that let this time pass is from then on only offered, until it takes a push
    /// whole: it may find messages cut. True when at least one client took all bytes. Clients that failed stay listed.
    bool send(unsigned char* data, unsigned int size) override;

private:
    struct Client;
    struct Delivery;
    using Clients = std::vector<std::shared_ptr<Client>>;

    void stopLocked();
    void dropClients();
    void acceptClients();
    void list(Socket socket);
    bool releaseGone();
    bool unlistGone();
    void prepare(const unsigned char* data, unsigned int size);
    bool deliver(const unsigned char* data, unsigned int size);
    bool handOut();
    void finish();
    bool settle() const;

    std::mutex mutex_;  // guards configure, start and stop; no thread of the server takes it
    Socket serverSocket_;
    Thread serverThread_;
    std::atomic<bool> running_{false};

    std::mutex sending_;  // one push at a time, which has these:
    std::vector<Delivery> deliveries_;
    std::vector<pollfd> waiting_;

    std::mutex clientsMutex_;  // guards the list; never held while writing or joining
    Clients clients_;
};

}  // namespace Orvu
