#pragma once

#include <memory>

#include "transport/Acceptor.h"
#include "transport/OrvuRestSimpleServer.h"
#include "transport/Workers.h"

namespace Orvu {

/// The request server: one request a connection, each handed to the application's callback on a worker.
///
/// One object a process, made on first use.
class ORVU_EXPORT OrvuRestServerSocket : public OrvuRestSimpleServer {
public:
    /// The process's request server. Null when out of memory.
    static OrvuRestServerSocket* getInstance();
    /// The same, which then lives at least as long as the result.
    ORVU_LOCAL static std::shared_ptr<OrvuRestServerSocket> shared();

    /// Stops the server, and deletes it once nobody uses it. Requests still being received are dropped; returns when
    /// they are. No callback begins afterwards.
    static void destroyInstance();
    /// The part of it that concerns requests.
    ORVU_LOCAL static void dropRequests();

    bool configure(int port) override;
    /// The part that listens; it can be configured for one address of the host, too.
    ORVU_LOCAL Acceptor& acceptor() { return acceptor_; }

    /// Once true, peers can connect. Callbacks run with the signal mask of the calling thread.
    bool start() override;
    /// Requests that were accepted are still served.
    void stop() override;
    /// The request server does not push: false.
    bool send(unsigned char* data, unsigned int size) override;

private:
    class ORVU_LOCAL Requests;

    ORVU_LOCAL OrvuRestServerSocket();
    ORVU_LOCAL ~OrvuRestServerSocket() override;

    const std::unique_ptr<Requests> requests_;
    Acceptor acceptor_;
};

}  // namespace Orvu
