#pragma once

#include <netinet/in.h>
#include <optional>
#include <string>

#include "transport/Socket.h"

namespace Orvu {

/// \file
/// What it takes to connect to a peer.

/// The first IPv4 address of a name or dotted address, in the order of the host's entry. Without one, `error` is set:
/// EAFNOSUPPORT for an IPv6 address and for a name that has no IPv4 address, EAGAIN when no name server answered, the
/// system's error number when it failed, 0 for a name that nobody knows. Blocks as long as the system looks. Throws
/// std::bad_alloc.
std::optional<in_addr> resolved(const std::string& host, int& error);

/// Whether connecting a socket succeeded, asked once it can be written: 0, or the error number.
int pendingError(int fd);

/// Connects a socket: 0, or the error number; ETIMEDOUT when the peer does not answer in time. Waits as long as the
/// socket's send time-out says, which is to be `patience`.
int connectTo(int fd, const in_addr& host, int port, Seconds patience);

}  // namespace Orvu
