#pragma once

#include "transport/Socket.h"

namespace Orvu {

/// Binds a fresh socket to TCP `port` of every interface; false when the port cannot be had.
bool bindTo(const Socket& socket, int port);

/// Lets what is written go out at once, however small, instead of waiting until the peer has confirmed what went before.
void sendAtOnce(const Socket& socket);

/// After a failed accept: whether the system, and not one peer, is the reason, so that it would fail again at once.
bool isLasting(int reason);

/// After a failed accept: whether there is no descriptor left for the connection.
bool isWantOfDescriptors(int reason);

/// Lets some time pass before the next try, so that an accept loop does not spin.
void pauseAccepting();

}  // namespace Orvu
