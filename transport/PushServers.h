#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "orvu/OrvuRestInterface.h"
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

    void setPortRange(int minPort, int maxPort);

    /// What OrvuRestInterface::createServer() does.
    SocketServerInfo* create(std::string protocol, const ListenAddress& address);
    bool stop(int handler);
    /// Stops them all and forgets the range.
    void end();
    void stopAll();
    bool send(int handler, unsigned char* data, unsigned int size);

private:
    static constexpr std::pair<int, int> kNoPorts{1, 0};  // an empty range, until the application gives one

    int newHandler() const;
    void startAs(SocketServerInfo& info, Server server);
    int count();
    void stopEach();

    std::mutex mutex_;  // guards all below; never held while a server stops or pushes
    int minPort_ = kNoPorts.first;
    int maxPort_ = kNoPorts.second;
    std::map<int, Server> servers_;
};

}  // namespace Orvu
