#pragma once

#include <string>

#include "orvu/Export.h"

namespace Orvu {

/// What OrvuRestInterface::createServer() says about a push server.
struct ORVU_EXPORT SocketServerInfo {
    int handler = 0;        ///< The handle under which the server is registered.
    std::string protocol;   ///< "tcp" or "websocket", as asked for.
    std::string ipAddress;  ///< The listen address where one is set; otherwise this device's IPv4 address. Dotted.
    int port = 0;           ///< The TCP port on which clients connect, also when the system chose it.
    int error = 0;  ///< 0 when the server is running; 1 when it could not be started: the handle is then not valid.
};

}  // namespace Orvu
