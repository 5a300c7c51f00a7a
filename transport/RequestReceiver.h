#pragma once

#include <memory>

#include "orvu/OrvuRestRequest.h"
#include "transport/InFlight.h"

namespace Orvu {

/// What is logged of each connection that is accepted, with its descriptor.
constexpr char kAcceptedLine[] = "OrvuRestServerSocket::serverThread: clientSockfd: %d";

/// Receives the request of one connection, and answers what cannot be handed to the application. Null when there is
/// nothing to hand over; what is then left of the connection stays the caller's.
///
/// The connection leaves the exchanges in flight once the text is received, before it is read: how long reading takes
/// is the peer's choice. Server and facade may be gone from then on.
std::unique_ptr<OrvuRestRequest> receiveRequest(Connection& connection);

/// Logs that a request of the connection with this descriptor is dropped because its server goes away.
void logDropped(int number);

}  // namespace Orvu
