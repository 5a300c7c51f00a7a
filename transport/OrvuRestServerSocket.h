#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "transport/OrvuRestSimpleServer.h"
#include "transport/Socket.h"
#include "transport/Threads.h"

namespace Orvu {

class InFlight;

/// The request server: one request a connection, each on a thread of its own, handed to the application's callback.
///
/// One object a process, made on first use.
class ORVU_EXPORT OrvuRestServerSocket : public OrvuRestSimpleServer {
public:
    /// The process's request server. Null when memory cannot be had.
    static OrvuRestServerSocket* getInstance();

    /// Stops and deletes the server. Requests still being received are dropped; returns when they are.
    static void destroyInstance();

    bool configure(int port) override;
    /// Once true, peers can connect.
    bool start() override;
    /// Requests that were accepted are still served.
    void stop() override;
    /// The request server does not push: false.
    bool send(unsigned char* data, unsigned int size) override;

private:
    friend class OrvuRestInterface;

    OrvuRestServerSocket();
    ~OrvuRestServerSocket() override;

    /// Drops the requests still being received, those to come as well, and returns when they are dropped. For whoever is
    /// about to destroy the server.
    static void dropRequests();

    void stopLocked();
    void acceptConnections();
    void serve(Socket socket);

    std::mutex mutex_;  // guards configure, start and stop; no thread of the server takes it
    Socket listener_;
    bool configured_ = false;  // not after a failed bind, though the socket is kept
    std::atomic<bool> running_{false};
    Thread acceptThread_;
    const std::shared_ptr<InFlight> inFlight_;  // the connections whose request is still being received
};

}  // namespace Orvu
