#pragma once

#include "transport/Acceptor.h"
#include "transport/OrvuRestSimpleServer.h"
#include "transport/TcpClients.h"

namespace Orvu {

/// Pushes raw bytes, without any framing, to every client that connected. Nothing is ever read from a client.
///
/// Any thread. A push that is still going out delays the next one, and nothing else.
class ORVU_EXPORT OrvuRestServerTcpSocket : public OrvuRestSimpleServer {
public:
    OrvuRestServerTcpSocket();
    ~OrvuRestServerTcpSocket() override;

    bool configure(int port) override;
    /// The part that listens; it can be configured for one address of the host, too.
    ORVU_LOCAL Acceptor& acceptor() { return acceptor_; }

    bool start() override;
    /// Closes every client as well. A push in progress ends.
    void stop() override;
    /// Offers the bytes to every client in the order of acceptance, then gives those that could not take them whole the
    /// rest, for 5 s at most in all. A client that let this time pass is from then on only offered, until it takes a
    /// push whole: it may find messages cut. True when at least one client took all bytes. Clients that failed stay
    /// listed.
    bool send(unsigned char* data, unsigned int size) override;

private:
    TcpClients clients_;
    Acceptor acceptor_;
};

}  // namespace Orvu
