#pragma once

#include <netinet/in.h>
#include <optional>
#include <string>
#include <string_view>

#include "Descriptor.h"
#include "Ending.h"

namespace OrvuTool {

/// The first IPv4 address of `host`, with `port`; none when there is none. Blocks, whatever signals come.
std::optional<sockaddr_in> addressOf(const std::string& host, int port);

/// Why addressOf() finds no address of `host`: it cannot be resolved, or has IPv6 addresses alone. Blocks as
/// addressOf() does.
std::string faultOfHost(const std::string& host);

/// A connection to a server. All its waits end when a signal does. `ending` outlives it.
class Connection {
public:
    enum class Came {
        Bytes,
        End,    ///< The server has closed it, or gone.
        Fault,  ///< See fault().
        TimeOver,
        Stop  ///< A signal came, or whoever reads `reader` has left.
    };

    explicit Connection(Ending& ending) : ending_(ending) {}

    /// Connects within 5 s. When it returns false, fault() tells why, unless a signal came.
    bool connectTo(const sockaddr_in& server);

    /// Sends all of `bytes`, waiting for room until then.
    bool send(std::string_view bytes, Clock::time_point until);

    /// Sends `bytes` if there is room at once.
    void sendAtOnce(std::string_view bytes);

    /// Waits for the next bytes, which take the place of `bytes`. `reader` is the descriptor of a pipe that somebody reads.
    Came receive(std::string& bytes, int reader, Clock::time_point until = kNever);

    /// Why connectTo() or receive() failed.
    const std::string& fault() const { return fault_; }

private:
    bool isReady(short events, Clock::time_point until);

    Ending& ending_;
    Descriptor socket_;
    std::string fault_;
};

}  // namespace OrvuTool
