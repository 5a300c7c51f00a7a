#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "orvu/SocketServerInfo.h"
#include "transport/Acceptor.h"
#include "transport/ListenAddress.h"
#include "transport/OrvuRestSimpleServer.h"

namespace Orvu {

/// The push servers of the process, each under its handle. Any thread: a server that is stopped while another thread
/// pushes through it ends that push, and lives until the thread has left it.
class PushServers {
public:
    struct Server {
        std::shared_ptr<OrvuRestSimpleServer> pushes;
        Acceptor* acceptor = nullptr;  // its part
    };

    using PortRange = std::pair<int, int>;  // both ends included

    void setPortRange(PortRange range);

    /// What OrvuRestInterface::createServer() does, in the range that was set where `own` is none.
    SocketServerInfo* create(std::string protocol, const ListenAddress& address, std::optional<PortRange> own);
    bool stop(int handler);
    /// Stops them all and forgets the range.
    void end();
    void stopAll();
    bool send(int handler, unsigned char* data, unsigned int size);

private:
    static constexpr PortRange kNoPorts{1, 0};  // an empty range, until the application gives one

    PortRange portRange();
    int newHandler() const;
    void startAs(SocketServerInfo& info, Server server);
    int count();
    void stopEach();
    std::shared_ptr<OrvuRestSimpleServer> find(int handler);

    std::mutex mutex_;  // guards all below; never held while a server stops or pushes
    PortRange portRange_ = kNoPorts;
    std::map<int, Server> servers_;
};

}  // namespace Orvu
