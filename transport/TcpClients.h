#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <poll.h>
#include <vector>

#include "transport/Acceptor.h"

namespace Orvu {

class Outgoing;

/// The clients of a TCP push server: send() sends to all of them. Any thread.
class TcpClients final : public Connections {
public:
    TcpClients();
    ~TcpClients();

    void begin(const Socket& listener) override;
    void take(Socket connection) override;
    /// A push in progress ends.
    void drop() override;
    /// Drops clients whose peer is gone.
    bool makeRoom() override;

    /// True when at least one client took all bytes. Throws std::bad_alloc before the first byte goes out.
    bool send(const unsigned char* data, unsigned int size);

private:
    struct Client;
    struct Delivery;

    bool unlistGone();
    bool unlist(bool (Client::*isGone)() const);
    void forgetUnlisted();
    void addressAll();
    bool handOut(const Outgoing& bytes);
    void finish();
    bool settle() const;

    std::mutex sending_;                // one push at a time, which has these:
    std::vector<Delivery> deliveries_;  // one for each client that the last push found
    std::vector<pollfd> waiting_;

    std::mutex mutex_;  // guards what follows; never held while writing or joining
    bool isOpen_ = false;
    std::vector<std::shared_ptr<Client>> clients_;
    std::atomic<bool> haveChanged_{false};  // since deliveries_ were made for them
};

}  // namespace Orvu
