#pragma once

#include "orvu/Export.h"

namespace Orvu {

/// A server of this library, whatever it speaks. Deleted through this interface; deleting stops it.
class ORVU_EXPORT OrvuRestSimpleServer {
public:
    OrvuRestSimpleServer() = default;
    OrvuRestSimpleServer(const OrvuRestSimpleServer&) = delete;
    OrvuRestSimpleServer& operator=(const OrvuRestSimpleServer&) = delete;
    virtual ~OrvuRestSimpleServer();

    /// Takes TCP `port` of every interface; false when it is not available. Stops a running server first.
    virtual bool configure(int port) = 0;

    /// Lets clients connect to the configured port. True as well, and nothing changes, when the server is running.
    virtual bool start() = 0;

    /// Ends listening and gives the port back, within a second whatever peers do.
    virtual void stop() = 0;

    /// Pushes `size` bytes, which stay the caller's, to the clients.
    virtual bool send(unsigned char* data, unsigned int size) = 0;
};

}  // namespace Orvu
