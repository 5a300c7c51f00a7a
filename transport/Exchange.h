#pragma once

#include <functional>
#include <netinet/in.h>
#include <new>
#include <optional>
#include <string>

#include "transport/InFlight.h"

namespace Orvu {

class ExchangeNotes;
class Serializable;

/// \file
/// The steps of one exchange of the request client. Each writes its log lines, and notes how far the exchange has come
/// and why it went no further. All throw std::bad_alloc.

/// A message that an exchange ends with by itself; null when out of memory.
template <class Message>
Serializable* make()
{
    return new (std::nothrow) Message;
}

/// What names the peer; only asked when its answer is refused.
using PeerName = std::function<std::string()>;

/// A fresh socket; empty when the system has none.
Socket openSocket(ExchangeNotes& notes);

/// The address of a name or dotted address; none when there is none. Blocks as long as the system looks.
std::optional<in_addr> findHost(const std::string& host, ExchangeNotes& notes);

/// Limits each read and write of the socket to `seconds`; 0 is no limit. False when the system refuses.
bool setTimeouts(const Socket& socket, int seconds, ExchangeNotes& notes);

/// Sends the request on a connection to the peer and reads its answer, which is the caller's; null only when out of
/// memory. Each step waits for `patience` at most; 0 is no limit.
Serializable* exchangeOn(ConnectionInFlight connection, Serializable& request, Seconds patience, ExchangeNotes& notes,
                         const PeerName& peerName);

}  // namespace Orvu
