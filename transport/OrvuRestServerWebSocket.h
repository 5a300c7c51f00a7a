#pragma once

#include "transport/Acceptor.h"
#include "transport/OrvuRestSimpleServer.h"
#include "transport/WebSocketClients.h"

namespace Orvu {

/// Pushes messages to one browser-side client over WebSocket (RFC 6455) and echoes the texts that it sends.
///
/// Any thread. While a client is attached, later ones are refused; of those that connect before, the first whose
/// opening request is whole is attached. Texts of up to 64 KiB come back; a longer one, like a close frame, ends the
/// connection. Binary, continuation, ping and pong frames are ignored.
class ORVU_EXPORT OrvuRestServerWebSocket : public OrvuRestSimpleServer {
public:
    OrvuRestServerWebSocket();
    ~OrvuRestServerWebSocket() override;

    bool configure(int port) override;
    /// The part that listens; it can be configured for one address of the host, too.
    ORVU_LOCAL Acceptor& acceptor() { return acceptor_; }

    bool start() override;
    /// Closes the client as well, and all that are in their handshake. A push in progress ends.
    void stop() override;
    /// Sends one binary frame. A frame that the client has no room for is dropped whole; one that began to go out is
    /// finished within 5 s, or the client is detached. True when the frame went out, and when writing it failed; false
    /// when no client is attached, unless there are no bytes to send.
    bool send(unsigned char* data, unsigned int size) override;

private:
    WebSocketClients clients_;
    Acceptor acceptor_;
};

}  // namespace Orvu
