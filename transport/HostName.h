#pragma once

#include <netinet/in.h>
#include <optional>
#include <string>

namespace Orvu {

/// The first IPv4 address of a name or dotted address, in the order of the host's entry. Without one, `error` is set:
/// EAFNOSUPPORT for an IPv6 address and for a name that has no IPv4 address, EAGAIN when no name server answered, the
/// system's error number when it failed, 0 for a name that nobody knows. Blocks as long as the system looks. Throws
/// std::bad_alloc.
std::optional<in_addr> resolved(const std::string& host, int& error);

}  // namespace Orvu
