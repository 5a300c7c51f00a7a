#pragma once

#include <string>

#include "messages/core/CheckedText.h"
#include "orvu/Serializable.h"

namespace Orvu {

/// The IPv4 address and port of the peer of a socket; empty without one. Throws std::bad_alloc.
std::string peerOf(int fd);

/// Logs why a text could not be read: who sent it, its type and its first fault. The text is read once more for that,
/// unless the log is off; without memory there is no line. `function` begins the line.
void logRefusal(const char* function, const std::string& peer, CheckedText& checked, DataType type);

}  // namespace Orvu
